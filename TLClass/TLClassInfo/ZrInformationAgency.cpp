#include "TLClass/TLClassInfo/ZrInformationAgency.h"

#include <cstdint>

#include "TLClass/TLClassInfo/AllDeviceInformationFromIFHandle.h"
#include "TLClass/TLClassInfo/AllInterfaceInformationFromTLHandle.h"
#include "TLClass/TLClassInfo/BufferInformationFromHandle.h"
#include "TLClass/TLClassInfo/ChildCount.h"
#include "TLClass/TLClassInfo/DataStreamID.h"
#include "TLClass/TLClassInfo/DataStreamInformationFromHandle.h"
#include "TLClass/TLClassInfo/DeviceInformationFromHandle.h"
#include "TLClass/TLClassInfo/InterfaceInformationFromHandle.h"
#include "TLClass/TLClassInfo/PortInformationFromHandle.h"
#include "TLClass/TLClassInfo/TLInfomationFromEmpty.h"
#include "TLClass/TLClassInfo/TLInfomationFromHandle.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"

TL_MODULE_INFO CZrInformationAgency::GetTLInformation(CGenTLLib* pLib) {
    return CTLInfomationFromEmpty(pLib).GetInformation();
}

TL_MODULE_INFO CZrInformationAgency::GetTLInformation(CGenTLLib* pLib, TL_HANDLE hTL) {
    return CTLInfomationFromHandle(pLib, hTL).GetInformation();
}

IF_MODULE_INFO CZrInformationAgency::GetInterfaceInformation(CGenTLLib* pLib, IF_HANDLE hInterface) {
    return CInterfaceInformationFromHandle(pLib, hInterface).GetInformation();
}

DEV_MODULE_INFO CZrInformationAgency::GetDeviceInformation(CGenTLLib* pLib, DEV_HANDLE hDevice) {
    return CDeviceInformationFromHandle(pLib, hDevice).GetInformation();
}

std::vector<IF_MODULE_INFO> CZrInformationAgency::GetAllInterfaceInformation(CGenTLLib* pLib, TL_HANDLE hTL) {
    return CAllInterfaceInformationFromTLHandle(hTL, pLib).GetAllInterfaceInformation();
}

std::vector<DEV_MODULE_INFO> CZrInformationAgency::GetAllDeviceInformation(CGenTLLib* pLib, IF_HANDLE hInterface) {
    return CAllDeviceInformationFromIFHandle(hInterface, pLib).GetAllDeviceInfomation();
}

std::vector<std::string> CZrInformationAgency::GetAllDataStreamIDOfDevice(CGenTLLib* pLib, DEV_HANDLE hDevice) {
    constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassInfo\\ZrInformationAgency";
    constexpr int kLine = 131;
    constexpr const char* kFunction = "CZrInformationAgency::GetAllDataStreamIDOfDevice";
    std::uint32_t nCount = 0;
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(pLib->DevGetNumDataStreams(hDevice, &nCount), pLib, kFile, kLine,
                                                    kFunction);
    CheckChildCount(nCount, kFile, kLine, kFunction);

    std::vector<std::string> vecID;
    vecID.reserve(nCount);
    for (std::uint32_t i = 0; i < nCount; ++i) {
        vecID.push_back(CDataStreamID(pLib, hDevice, i).GetID());
    }
    return vecID;
}

DS_MODULE_INFO CZrInformationAgency::GetDataStreamInformation(CGenTLLib* pLib, DS_HANDLE hDataStream) {
    return CDataStreamInformationFromHandle(pLib, hDataStream).GetInformation();
}

BUFFER_MODULE_INFO CZrInformationAgency::GetBufferInformation(CGenTLLib* pLib, DS_HANDLE hDataStream,
                                                              BUFFER_HANDLE hBuffer) {
    return CBufferInformationFromHandle(pLib, hDataStream, hBuffer).GetInformation();
}

PORT_MODULE_INFO CZrInformationAgency::GetPortInformation(CGenTLLib* pLib, PORT_HANDLE hPort) {
    return CPortInformationFromHandle(pLib, hPort).GetInformation();
}
