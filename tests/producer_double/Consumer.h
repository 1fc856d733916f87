#ifndef NORVIK_TESTS_PRODUCER_DOUBLE_CONSUMER_H
#define NORVIK_TESTS_PRODUCER_DOUBLE_CONSUMER_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/producer_double/ProducerLibrary.h"

namespace ProducerDouble {

/// A consumer as the double's own tests need it: all entries of a loaded double, and the calls that lead to a module.
class CConsumer {
public:
    explicit CConsumer(const std::string& strPath = PRODUCER_DOUBLE) : m_objLibrary(strPath) {
#define FETCH(name, parameters) name = m_objLibrary.Entry<P##name>(#name);
        GENTL_ENTRIES(FETCH)
#undef FETCH
    }

    IProducerControl& Producer() {
        return *m_objLibrary;
    }

    TL_HANDLE OpenSystem() {
        TL_HANDLE hTL = nullptr;
        EXPECT_EQ(GCInitLib(), GC_ERR_SUCCESS);
        EXPECT_EQ(TLOpen(&hTL), GC_ERR_SUCCESS);
        EXPECT_EQ(TLUpdateInterfaceList(hTL, nullptr, 0), GC_ERR_SUCCESS);
        return hTL;
    }

    IF_HANDLE OpenInterface(const char* pszId) {
        IF_HANDLE hInterface = nullptr;
        EXPECT_EQ(TLOpenInterface(OpenSystem(), pszId, &hInterface), GC_ERR_SUCCESS);
        EXPECT_EQ(IFUpdateDeviceList(hInterface, nullptr, 0), GC_ERR_SUCCESS);
        return hInterface;
    }

    /// Plugs "cam-1" into "if-1" and opens it.
    DEV_HANDLE OpenCamera(DEVICE_ACCESS_FLAGS nFlags = DEVICE_ACCESS_CONTROL) {
        Producer().AddInterface("if-1").Plug("cam-1");
        DEV_HANDLE hDevice = nullptr;
        EXPECT_EQ(IFOpenDevice(OpenInterface("if-1"), "cam-1", nFlags, &hDevice), GC_ERR_SUCCESS);
        return hDevice;
    }

    PORT_HANDLE RemotePort(DEV_HANDLE hDevice) {
        PORT_HANDLE hPort = nullptr;
        EXPECT_EQ(DevGetPort(hDevice, &hPort), GC_ERR_SUCCESS);
        return hPort;
    }

    std::vector<std::string> DeviceIds(IF_HANDLE hInterface) {
        std::uint32_t nCount = 0;
        EXPECT_EQ(IFGetNumDevices(hInterface, &nCount), GC_ERR_SUCCESS);
        std::vector<std::string> vecId;
        for (std::uint32_t i = 0; i < nCount; ++i) {
            char szId[64] = {};
            std::size_t nSize = sizeof(szId);
            EXPECT_EQ(IFGetDeviceID(hInterface, i, szId, &nSize), GC_ERR_SUCCESS);
            vecId.emplace_back(szId);
        }
        return vecId;
    }

    std::string Url(PORT_HANDLE hPort) {
        char szUrl[256] = {};
        std::size_t nSize = sizeof(szUrl);
        EXPECT_EQ(GCGetPortURLInfo(hPort, 0, URL_INFO_URL, nullptr, szUrl, &nSize), GC_ERR_SUCCESS);
        return szUrl;
    }

    std::string LastError() {
        char szText[256] = {};
        std::size_t nSize = sizeof(szText);
        GC_ERROR nCode = 0;
        EXPECT_EQ(GCGetLastError(&nCode, szText, &nSize), GC_ERR_SUCCESS);
        return std::to_string(nCode) + " " + szText;
    }

    /// A 64-bit number of the generated features.
    std::int64_t ReadNumber(PORT_HANDLE hPort, std::uint64_t nAddress) {
        std::array<std::uint8_t, 8> arrBytes{};
        std::size_t nSize = arrBytes.size();
        EXPECT_EQ(GCReadPort(hPort, nAddress, arrBytes.data(), &nSize), GC_ERR_SUCCESS) << LastError();
        std::uint64_t nValue = 0;
        for (const std::uint8_t n : arrBytes)
            nValue = (nValue << 8) | n;
        return static_cast<std::int64_t>(nValue);
    }

    GC_ERROR WriteNumber(PORT_HANDLE hPort, std::uint64_t nAddress, std::uint8_t nValue) {
        const std::array<std::uint8_t, 8> arrBytes{0, 0, 0, 0, 0, 0, 0, nValue};
        std::size_t nSize = arrBytes.size();
        return GCWritePort(hPort, nAddress, arrBytes.data(), &nSize);
    }

    EVENT_HANDLE Register(EVENTSRC_HANDLE hSource, EVENT_TYPE nType) {
        EVENT_HANDLE hEvent = nullptr;
        EXPECT_EQ(GCRegisterEvent(hSource, nType, &hEvent), GC_ERR_SUCCESS) << LastError();
        return hEvent;
    }

    GC_ERROR WaitFor(EVENT_HANDLE hEvent, std::uint64_t nTimeoutMs) {
        EVENT_NEW_BUFFER_DATA objData{};
        std::size_t nSize = sizeof(objData);
        return EventGetData(hEvent, &objData, &nSize, nTimeoutMs);
    }

#define MEMBER(name, parameters) P##name name = nullptr;
    GENTL_ENTRIES(MEMBER)
#undef MEMBER

private:
    CProducerLibrary m_objLibrary;
};

}  // namespace ProducerDouble

#endif
