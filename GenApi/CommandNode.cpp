#include "GenApi/CommandNode.h"

#include <utility>

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {

bool CCommandNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    if (objProperty.Tag == ETag::CommandValue) {
        m_objCommand.SetConstant(objProperty, objReader);
        return true;
    }
    if (objProperty.Tag == ETag::pCommandValue) {
        m_objCommand.SetReference(objProperty, objReader, ELink::Input);
        return true;
    }
    return m_objSource.Apply(objProperty, objReader) || CNodeImpl::Apply(objProperty, objReader);
}

void CCommandNode::Execute(bool Verify) {
    CChange objChange(Context());
    if (Verify) {
        RequireWritable();
    }
    // A command's number is a pattern of bits that the description gives: the register's limits don't apply to it.
    m_objSource.Write(m_objCommand.Read(false), false);
    m_bRunning = true;
    objChange.Written(Number());
    objChange.Finish();
}

bool CCommandNode::IsDone(bool Verify) {
    CChange objChange(Context());
    const EAccessMode eMode = AccessMode();
    if (Verify && !IsAvailable(eMode)) {
        RequireWritable();
    }
    const bool bDone = IsDoneNow();
    if (bDone && std::exchange(m_bRunning, false)) {
        // What was read while it ran may have been halfway.
        objChange.Written(Number());
    }
    objChange.Finish();
    return bDone;
}

bool CCommandNode::IsDoneNow() {
    const CNodeImpl* pTarget = m_objSource.Node();
    if (pTarget == nullptr || !IsReadable(m_objSource.AccessMode())) {
        return true;
    }
    return m_objSource.Read(true) != m_objCommand.Read(false);
}

std::int64_t CCommandNode::ReadInt(bool /*bIgnoreCache*/) {
    const CEvaluation objStep(Context(), Name());
    // The device takes the number back on its own.
    Context().NoteUncachable();
    return IsDoneNow() ? 0 : 1;
}

gcstring CCommandNode::ToString(bool Verify, bool /*IgnoreCache*/) {
    return IsDone(Verify) ? "0" : "1";
}

void CCommandNode::FromString(const gcstring& ValueStr, bool Verify) {
    const auto nValue = ParseInteger(ValueStr.view());
    if (!nValue) {
        GenICam_3_0::Throw<GenICam_3_0::InvalidArgumentException>(Subject() + ": '" + ValueStr.str() +
                                                                  "' isn't a 64-bit integer");
    }
    if (*nValue != 0) {
        Execute(Verify);
    }
}

}  // namespace GenApi_3_0
