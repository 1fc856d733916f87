#include "TLClass/TLClassInfo/DataStreamID.h"

CDataStreamID::CDataStreamID(CGenTLLib* pLib, DEV_HANDLE hDevice, std::uint32_t nIndex)
    : CModuleID(hDevice, nIndex, pLib) {}

GC_ERROR CDataStreamID::_GetID(char* pBuffer, std::size_t* pSize) {
    return m_pLib->DevGetDataStreamID(m_hParent, m_nIndex, pBuffer, pSize);
}
