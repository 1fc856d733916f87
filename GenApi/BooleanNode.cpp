#include "GenApi/BooleanNode.h"

#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {

using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::OutOfRangeException;
using GenICam_3_0::Throw;

bool CBooleanNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    if (objProperty.Tag == ETag::Value && (objProperty.Text == "true" || objProperty.Text == "false")) {
        PROPERTY objNumber = objProperty;
        objNumber.Text = objProperty.Text == "true" ? "1" : "0";
        return m_objSource.Apply(objNumber, objReader);
    }
    if (objProperty.Tag == ETag::OnValue) {
        m_objOn.SetConstant(objProperty, objReader);
        return true;
    }
    if (objProperty.Tag == ETag::OffValue) {
        m_objOff.SetConstant(objProperty, objReader);
        return true;
    }
    return m_objSource.Apply(objProperty, objReader) || CNodeImpl::Apply(objProperty, objReader);
}

std::int64_t CBooleanNode::ReadInt(bool bIgnoreCache) {
    Cached(m_nValue, bIgnoreCache, [this, bIgnoreCache] { return m_objSource.Read(bIgnoreCache); });
    return m_nValue == m_objOn.Read(false) ? 1 : 0;
}

void CBooleanNode::WriteInt(std::int64_t nValue, bool bVerify) {
    const CEvaluation objStep(Context(), Name());
    if (bVerify && nValue != 0 && nValue != 1) {
        Throw<OutOfRangeException>(Subject() + ": the value " + FormatInteger(nValue) + " is neither 0 nor 1");
    }
    CChange objChange(Context());
    State().ValueValid = false;
    m_objSource.Write(nValue != 0 ? m_objOn.Read(false) : m_objOff.Read(false), bVerify);
    objChange.Finish();
}

void CBooleanNode::SetValue(bool Value, bool Verify) {
    CChange objChange(Context());
    if (Verify) {
        RequireWritable();
    }
    WriteInt(Value ? 1 : 0, Verify);
    objChange.Finish();
}

bool CBooleanNode::GetValue(bool Verify, bool IgnoreCache) {
    const AutoLock objLock(Context().Lock());
    RequireReadable();
    const bool bValue = ReadInt(IgnoreCache) != 0;
    if (Verify && !bValue && m_nValue != m_objOff.Read(false)) {
        Throw<OutOfRangeException>(Subject() + ": the number read stands neither for on nor for off");
    }
    return bValue;
}

gcstring CBooleanNode::ToString(bool Verify, bool IgnoreCache) {
    return GetValue(Verify, IgnoreCache) ? "1" : "0";
}

void CBooleanNode::FromString(const gcstring& ValueStr, bool Verify) {
    const auto bOn = ParseBoolean(ValueStr.view());
    if (!bOn) {
        Throw<InvalidArgumentException>(Subject() + ": '" + ValueStr.str() + "' stands neither for on nor for off");
    }
    SetValue(*bOn, Verify);
}

bool CBooleanNode::IsValueCacheValid() const {
    const AutoLock objLock(Context().Lock());
    return State().ValueValid;
}

}  // namespace GenApi_3_0
