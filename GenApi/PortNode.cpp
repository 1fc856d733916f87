#include "GenApi/PortNode.h"

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"
#include "GenApi/PropertyReader.h"

namespace GenApi_3_0 {

bool CPortNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    switch (objProperty.Tag) {
        case ETag::pChunkID:
            m_pChunkID = objReader.Node(objProperty, ELink::Mention, EWanted::Number);
            return true;
        case ETag::SwapEndianess:
            m_bSwapEndianess = objReader.YesNo(objProperty);
            return true;
        case ETag::CacheChunkData:
            m_bCacheChunkData = objReader.YesNo(objProperty);
            return true;
        default:
            return CNodeImpl::Apply(objProperty, objReader);
    }
}

IPort& CPortNode::Connected() const {
    if (m_pPort == nullptr) {
        GenICam_3_0::Throw<GenICam_3_0::AccessException>("The port '" + std::string(Name()) + "' isn't connected");
    }
    return *m_pPort;
}

void CPortNode::Read(void* pBuffer, std::int64_t Address, std::int64_t Length) {
    const AutoLock objLock(Context().Lock());
    Connected().Read(pBuffer, Address, Length);
}

void CPortNode::Write(const void* pBuffer, std::int64_t Address, std::int64_t Length) {
    const AutoLock objLock(Context().Lock());
    Connected().Write(pBuffer, Address, Length);
}

void CPortNode::SetPortImpl(IPort* pPort) {
    CChange objChange(Context());
    m_pPort = pPort;
    objChange.Invalidated(Number());
    objChange.Finish();
}

IPort* CPortNode::GetPortImpl() const {
    const AutoLock objLock(Context().Lock());
    return m_pPort;
}

EAccessMode CPortNode::SourceAccessMode() {
    if (m_pPort == nullptr) {
        return NA;
    }
    const EAccessMode eMode = m_pPort->GetAccessMode();
    if (eMode != RW) {
        // A port that is closed or shut may open again without telling.
        Context().NoteUncachable();
    }
    return eMode;
}

gcstring CPortNode::GetChunkID() const {
    if (m_pChunkID == nullptr) {
        return gcstring(TextOf(ETag::ChunkID));
    }
    const AutoLock objLock(Context().Lock());
    if (!IsReadable(m_pChunkID->AccessMode())) {
        return {};
    }
    return FormatHex(m_pChunkID->ReadInt(false)).substr(2);
}

}  // namespace GenApi_3_0
