// The library as the module tree meets it: found, loaded, updated, its node maps read.

#include <atomic>
#include <chrono>
#include <future>
#include <optional>
#include <string>
#include <vector>

#include <boost/pointer_cast.hpp>
#include <gtest/gtest.h>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassMain/GevInterface.h"
#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/TLManager.h"
#include "support/Environment.h"
#include "tests/TLClass/TemporaryDirectory.h"
#include "tests/producer/entries/NodeMapReader.h"
#include "tests/producer/entries/ProducerTest.h"

namespace {

class ProducerTree : public ProducerTest {
protected:
    void SetUp() override {
        ProducerTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        ASSERT_EQ(Lib().GCCloseLib(), GC_ERR_SUCCESS) << "the tree initialises it itself";
        m_objDirectory.emplace();
        SetEnvironment("GENICAM_GENTL64_PATH", PRODUCER_CTI_DIRECTORY);
        SetEnvironment("ALLUSERSPROFILE", m_objDirectory->Path("profile"));
        GetTLManager()->DoInit({"ZrGVTL.cti"});
        m_pTL = boost::dynamic_pointer_cast<CGevTL>(GetTLManager()->GetTLList().at(0));
        ASSERT_TRUE(m_pTL);
        bool bChanged = false;
        m_pTL->DoUpdateInterfaceList(0, &bChanged);
        EXPECT_TRUE(bChanged);
    }

    void TearDown() override {
        m_pTL.reset();
        if (m_objDirectory) {
            GetTLManager()->DoUninit();
        }
    }

    boost::shared_ptr<CGevInterface> Interface(std::size_t nIndex) const {
        return boost::dynamic_pointer_cast<CGevInterface>(m_pTL->GetInterfaceList().at(nIndex));
    }

    static IFeatureControl& Features(const CGcObject& objModule) { return *objModule.GetFeatureControl(); }

    std::optional<CTemporaryDirectory> m_objDirectory;
    boost::shared_ptr<CGevTL> m_pTL;
};

TEST_F(ProducerTree, ListsEveryAdapterWithTheSameAddressesByBothRoads) {
    ASSERT_EQ(m_pTL->GetInterfaceList().size(), 2u);
    EXPECT_EQ(Interface(0)->GetInterfaceInformation().DisplayName, "eth0 (10.1.0.1)");
    EXPECT_EQ(Interface(1)->GetInterfaceInformation().DisplayName, "eth1 (no IPv4 address)");
    const std::vector<GEV_IF_INFO> vecDefault = m_pTL->GetInterfaceSpecialInfo();
    ASSERT_EQ(vecDefault.size(), 2u);
    EXPECT_EQ(vecDefault[0].IPAddress, 0x0A010001);
    EXPECT_EQ(vecDefault[0].SubnetMask, 0xFFFFFF00);
    EXPECT_EQ(vecDefault[1].IPAddress, 0);
    for (std::size_t i = 0; i < 2; ++i) {
        IFeatureControl& objFeatures = Features(*Interface(i));
        EXPECT_EQ(objFeatures.DoGetInt("GevInterfaceSubnetIPAddress"), vecDefault[i].IPAddress);
        EXPECT_EQ(objFeatures.DoGetInt("GevInterfaceSubnetMask"), vecDefault[i].SubnetMask);
        EXPECT_EQ(objFeatures.DoGetInt("GevInterfaceMACAddress"), vecDefault[i].MACAddress);
        EXPECT_NE(vecDefault[i].MACAddress, 0);
        EXPECT_TRUE(vecDefault[i].GatewayValid);
        EXPECT_EQ(objFeatures.DoGetIntRange("DeviceSelector").Max, -1);
    }
    EXPECT_EQ(Features(*m_pTL).DoGetIntRange("InterfaceSelector").Max, 1);
    EXPECT_EQ(m_pTL->GetGevTLInfo().VersionMajor, 2);
}

TEST_F(ProducerTree, HasNodeMapsWhoseEveryFeatureReads) {
    EXPECT_GT(ReadAllNodes(*m_objLib, m_pTL->GetHandle()), 20);
    EXPECT_GT(ReadAllNodes(*m_objLib, Interface(0)->GetHandle()), 15);
}

TEST_F(ProducerTree, KeepsWhatIsListedReadableWhenItsAdapterGoes) {
    m_objMachine->Run("ip link del eth0");
    const boost::shared_ptr<CGevInterface> pGone = Interface(0);
    EXPECT_EQ(Features(*pGone).DoGetInt("GevInterfaceSubnetIPAddress"), 0x0A010001);
    bool bChanged = false;
    EXPECT_NO_THROW(pGone->DoUpdateDeviceList(100, &bChanged));
    m_pTL->DoUpdateInterfaceList(0, &bChanged);
    EXPECT_TRUE(bChanged);
    EXPECT_EQ(m_pTL->GetInterfaceList().size(), 1u);
    m_pTL->DoUpdateInterfaceList(0, &bChanged);
    EXPECT_FALSE(bChanged);
    EXPECT_EQ(m_pTL->GetRemovedInterfaceList().size(), 1u);
}

TEST_F(ProducerTree, StopsAnUpdateFromAnotherThreadByItsFeature) {
    const boost::shared_ptr<CGevInterface> pInterface = Interface(0);
    const auto tStart = std::chrono::steady_clock::now();
    std::future<void> objUpdate = std::async(std::launch::async, [&] {
        bool bChanged = false;
        pInterface->DoUpdateDeviceList(10'000, &bChanged);
    });
    // One that comes before the update has begun is forgotten.
    while (objUpdate.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
        Features(*pInterface).DoSendCommand("DeviceStopUpdateList");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - tStart, std::chrono::milliseconds(800)) << "a whole one takes 1 s";
}

TEST_F(ProducerTree, UpdatesAllAdaptersInEitherMode) {
    CGevUpdateAgency objAgency({m_pTL});
    bool bChanged = false;
    EXPECT_NO_THROW(objAgency.DoLimitedBroadcastUpdate(100, 1, &bChanged));
    EXPECT_EQ(Features(*Interface(0)).DoGetEnum("DeviceUpdateListMode"), 0);
    EXPECT_NO_THROW(objAgency.DoDirectedSubnetBroadcastUpdate(100, 1, &bChanged));
    EXPECT_EQ(Features(*Interface(0)).DoGetEnum("DeviceUpdateListMode"), 1);
}

}  // namespace
