#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "tests/network/NetworkNamespace.h"

/// The bundled producer, loaded and initialised, on a machine of the test's own: eth0 (10.1.0.1/24) is cabled to far0
/// of another machine, eth1 has no address and is cabled to far1.
class ProducerTest : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
            GTEST_SKIP() << strWhy;
        }
        m_objMachine.emplace();
        m_objFar.emplace();
        m_objMachine->Enter();
        Connect(*m_objMachine, "eth0", "10.1.0.1/24", *m_objFar, "far0", "");
        Connect(*m_objMachine, "eth1", "", *m_objFar, "far1", "");
        m_objLib.emplace("./" + std::filesystem::relative(PRODUCER_CTI).string());
        ASSERT_EQ(Lib().GCInitLib(), GC_ERR_SUCCESS);
    }

    void TearDown() override {
        if (m_objLib) {
            Lib().GCCloseLib();
        }
    }

    CGenTLLib& Lib() { return *m_objLib; }

    TL_HANDLE OpenSystem() {
        TL_HANDLE hTL = nullptr;
        EXPECT_EQ(Lib().TLOpen(&hTL), GC_ERR_SUCCESS) << LastError();
        bool8_t bChanged = 0;
        EXPECT_EQ(Lib().TLUpdateInterfaceList(hTL, &bChanged, 0), GC_ERR_SUCCESS) << LastError();
        return hTL;
    }

    std::string InterfaceId(TL_HANDLE hTL, std::uint32_t nIndex) {
        char szId[256] = {};
        size_t nSize = sizeof(szId);
        EXPECT_EQ(Lib().TLGetInterfaceID(hTL, nIndex, szId, &nSize), GC_ERR_SUCCESS) << LastError();
        return szId;
    }

    IF_HANDLE OpenInterface(TL_HANDLE hTL, std::uint32_t nIndex = 0) {
        IF_HANDLE hInterface = nullptr;
        EXPECT_EQ(Lib().TLOpenInterface(hTL, InterfaceId(hTL, nIndex).c_str(), &hInterface), GC_ERR_SUCCESS)
            << LastError();
        return hInterface;
    }

    std::string DeviceId(IF_HANDLE hInterface, std::uint32_t nIndex = 0) {
        char szId[256] = {};
        size_t nSize = sizeof(szId);
        EXPECT_EQ(Lib().IFGetDeviceID(hInterface, nIndex, szId, &nSize), GC_ERR_SUCCESS) << LastError();
        return szId;
    }

    std::string LastError() {
        GC_ERROR nCode = GC_ERR_SUCCESS;
        char szText[1024] = {};
        size_t nSize = sizeof(szText);
        Lib().GCGetLastError(&nCode, szText, &nSize);
        return std::to_string(nCode) + " " + szText;
    }

    std::optional<CNetworkNamespace> m_objMachine;
    std::optional<CNetworkNamespace> m_objFar;
    std::optional<CGenTLLib> m_objLib;
};
