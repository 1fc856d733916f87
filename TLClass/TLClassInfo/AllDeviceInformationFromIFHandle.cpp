#include "TLClass/TLClassInfo/AllDeviceInformationFromIFHandle.h"

#include "TLClass/TLClassInfo/AllInformation.h"
#include "TLClass/TLClassInfo/DeviceID.h"
#include "TLClass/TLClassInfo/DeviceInformationFromID.h"

std::vector<DEV_MODULE_INFO> CAllDeviceInformationFromIFHandle::GetAllDeviceInfomation() {
    return ReadAllInformation<DEV_MODULE_INFO, CDeviceID, CDeviceInformationFromID>(
        m_pLib, m_hInterface, [this](std::uint32_t* pCount) { return m_pLib->IFGetNumDevices(m_hInterface, pCount); },
        "..\\..\\..\\TLClass\\TLClassInfo\\AllDeviceInformationFromIFHandle", 46,
        "CAllDeviceInformationFromIFHandle::GetAllDeviceInfomation");
}
