#include "TLClass/TLClassInfo/DeviceInformationFromID.h"

#include <utility>

CDeviceInformationFromID::CDeviceInformationFromID(IF_HANDLE hInterface, std::string strID, CGenTLLib* pLib)
    : m_hInterface(hInterface), m_strID(std::move(strID)), m_pLib(pLib) {}

GC_ERROR CDeviceInformationFromID::_GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer,
                                            std::size_t* pSize) {
    return m_pLib->IFGetDeviceInfo(m_hInterface, m_strID.c_str(), static_cast<DEVICE_INFO_CMD>(nCommand), pType,
                                   pBuffer, pSize);
}
