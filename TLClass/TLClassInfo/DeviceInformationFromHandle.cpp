#include "TLClass/TLClassInfo/DeviceInformationFromHandle.h"

CDeviceInformationFromHandle::CDeviceInformationFromHandle(CGenTLLib* pLib, DEV_HANDLE hDevice)
    : m_pLib(pLib), m_hDevice(hDevice) {}

GC_ERROR CDeviceInformationFromHandle::_GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer,
                                                std::size_t* pSize) {
    return m_pLib->DevGetInfo(m_hDevice, static_cast<DEVICE_INFO_CMD>(nCommand), pType, pBuffer, pSize);
}
