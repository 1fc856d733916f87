// The entries of device modules.

#include "producer/entries/Entry.h"
#include "producer/modules/DeviceModule.h"

using namespace producer;

GC_ERROR DevClose(DEV_HANDLE hDevice) {
    return RunInitialisedEntry("DevClose", [&] { CloseModule<CDeviceModule>(hDevice); });
}

GC_ERROR DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry(
        "DevGetInfo", [&] { Require<CDeviceModule>(hDevice)->GetInfo(nCommand).Deliver(pType, pBuffer, pSize); });
}

GC_ERROR DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemotePort) {
    return RunInitialisedEntry("DevGetPort", [&] {
        const auto pDevice = Require<CDeviceModule>(hDevice);
        RequireOut(phRemotePort, "the port handle");
        *phRemotePort = pDevice->GetRemotePort();
    });
}

GC_ERROR DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* pCount) {
    return RunInitialisedEntry("DevGetNumDataStreams", [&] {
        const auto pDevice = Require<CDeviceModule>(hDevice);
        RequireOut(pCount, "the number of data streams") = pDevice->GetStreamCount();
    });
}

GC_ERROR DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t nIndex, char* pszId, size_t* pSize) {
    return RunInitialisedEntry(
        "DevGetDataStreamID", [&] { DeliverText(Require<CDeviceModule>(hDevice)->GetStreamId(nIndex), pszId, pSize); });
}

GC_ERROR DevOpenDataStream(DEV_HANDLE hDevice, const char* pszStreamId, DS_HANDLE* phStream) {
    return RunInitialisedEntry("DevOpenDataStream", [&] {
        const auto pDevice = Require<CDeviceModule>(hDevice);
        const std::string strId = RequireText(pszStreamId, "the data stream's ID");
        RequireOut(phStream, "the data stream handle");
        *phStream = pDevice->OpenStream(strId);
    });
}
