#include "TLClass/TLClassInfo/DeviceID.h"

CDeviceID::CDeviceID(CGenTLLib* pLib, IF_HANDLE hInterface, std::uint32_t nIndex)
    : CModuleID(hInterface, nIndex, pLib) {}

GC_ERROR CDeviceID::_GetID(char* pBuffer, std::size_t* pSize) {
    return m_pLib->IFGetDeviceID(m_hParent, m_nIndex, pBuffer, pSize);
}
