// The library as the module tree meets it: found, loaded, updated, its node maps read.

#include "tests/producer/entries/TreeTest.h"

#include <chrono>
#include <exception>
#include <future>
#include <optional>
#include <utility>
#include <vector>

#include <boost/pointer_cast.hpp>
#include <gtest/gtest.h>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/GevInterface.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "tests/camera/RunningCamera.h"
#include "tests/producer/entries/NodeMapReader.h"

namespace {

struct BROADCAST_MODE {
    void (CGevUpdateAgency::*pUpdate)(std::uint64_t, std::uint64_t, bool*);
    const char* pszName;
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

TEST_F(ProducerTree, ListsACameraWithItsRecordsInEitherMode) {
    camera::CAMERA_CONFIGURATION objConfiguration = CameraAt("10.1.0.2/24");
    objConfiguration.Serial = "S-17";
    objConfiguration.UserName = "left";
    std::optional<CRunningCamera> objCamera(std::in_place, *m_objFar, objConfiguration);
    CGevUpdateAgency objAgency({m_pTL});
    bool bChanged = false;
    for (const BROADCAST_MODE& objMode :
         {BROADCAST_MODE{&CGevUpdateAgency::DoLimitedBroadcastUpdate, "LimitedBroadcast"},
          BROADCAST_MODE{&CGevUpdateAgency::DoDirectedSubnetBroadcastUpdate, "DirectedSubnetBroadcast"}}) {
        SCOPED_TRACE(objMode.pszName);
        (objAgency.*objMode.pUpdate)(200, 1, &bChanged);
        IFeatureControl& objFeatures = Features(*Interface(0));
        EXPECT_EQ(objFeatures.DoGetEnum("DeviceUpdateListMode"),
                  objFeatures.DoGetEnumEntryValue("DeviceUpdateListMode", objMode.pszName));
        ASSERT_EQ(Interface(0)->GetDeviceList().size(), 1u);
        const auto pDevice = boost::dynamic_pointer_cast<CGevDevice>(Interface(0)->GetDeviceList()[0]);
        ASSERT_TRUE(pDevice);
        EXPECT_EQ(pDevice->GetGevDevInfo().IPAddress, 0x0A010002);
        EXPECT_EQ(pDevice->GetGevDevInfo().SubnetMask, 0xFFFFFF00);
        EXPECT_EQ(static_cast<std::uint64_t>(pDevice->GetGevDevInfo().MACAddress),
                  objCamera->Get().GetMAC().GetValue());
        EXPECT_EQ(pDevice->GetCommonInformation().SerialNumber, "S-17");
        EXPECT_EQ(pDevice->GetCommonInformation().UserID, "left");
    }
    objCamera.reset();
    objAgency.DoLimitedBroadcastUpdate(500, 1, &bChanged);
    EXPECT_TRUE(Interface(0)->GetDeviceList().empty());
}

TEST_F(ProducerTree, OpensACameraUntilItGoesAndAgainWhenItIsBack) {
    constexpr std::uint32_t kLongEnoughMs = 5000;
    camera::CAMERA_CONFIGURATION objConfiguration = CameraAt("10.1.0.2/24");
    std::optional<CRunningCamera> objCamera(std::in_place, *m_objFar, objConfiguration);
    bool bChanged = false;
    Interface(0)->DoUpdateDeviceList(200, &bChanged);
    const boost::shared_ptr<IDevice> pDevice = Interface(0)->GetDeviceList().at(0);
    CEvent objOffline;
    COfflineSignal objCallback(objOffline);
    for (int nRound = 0; nRound < 2; ++nRound) {
        pDevice->DoOpenDevice(DEVICE_ACCESS_CONTROL);
        EXPECT_EQ(pDevice->GetRemoteFeatureControl()->DoGetString("DeviceModelName"), "Virtual GigE");
        Features(*pDevice).DoSetFloat("DeviceLinkHeartbeatTimeout", 500'000);
        EXPECT_EQ(Features(*pDevice).DoGetFloat("DeviceLinkHeartbeatTimeout"), 500'000);
        pDevice->StartRemoteDeviceEvent();
        EXPECT_NE(pDevice->GetRemoteDeviceEventThreadId(), 0u) << "the producer offers the event";
        pDevice->RegisterDeviceOfflineCallback(&objCallback);
        ASSERT_EQ(pDevice->GetDataStreamList().size(), 1u);
        EXPECT_NO_THROW(pDevice->GetDataStreamList()[0]->DoOpenDataStream());
        EXPECT_FALSE(pDevice->IsDeviceOffline());
        objCamera.reset();
        EXPECT_TRUE(objOffline.Wait(kLongEnoughMs));
        EXPECT_TRUE(pDevice->IsDeviceOffline());
        EXPECT_THROW(pDevice->GetRemoteFeatureControl()->DoGetInt("GevCurrentIPAddress"), std::exception);
        pDevice->DoCloseDevice();
        objCamera.emplace(*m_objFar, objConfiguration);
        Interface(0)->DoUpdateDeviceList(200, &bChanged);
        EXPECT_EQ(Interface(0)->GetDeviceList().at(0), pDevice);
    }
    const boost::shared_ptr<CGevDevice> pByAddress = Interface(0)->DoOpenDeviceByIP(0x0A010002, DEVICE_ACCESS_READONLY);
    EXPECT_TRUE(pByAddress->IsOpened());
    EXPECT_TRUE(Interface(0)->DoCreateSpecialDevice("10.1.0.2"));
    pByAddress->DoCloseDevice();
}

}  // namespace
