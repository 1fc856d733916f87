// The whole story on one cable: a camera that nothing reaches is listed, given an address by its MAC, listed on it and
// opened; and every datagram of that, read by a protocol analyser.

#include <chrono>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <thread>

#include <QUdpSocket>
#include <gtest/gtest.h>

#include "TLClass/TLClassFeature/FeatureControl.h"
#include "TLClass/TLClassXML/XMLAnalyzer.h"
#include "app/RecoveryBroadcast.h"
#include "app/RecoveryPackets.h"
#include "gev/Address.h"
#include "gev/GvcpHeader.h"
#include "tests/camera/RunningCamera.h"
#include "tests/network/WireCapture.h"
#include "tests/producer/entries/ProducerTest.h"

namespace {

constexpr std::uint64_t kWindowMs = 500;  // a machine with much else to do answers late
constexpr std::uint32_t kNewAddress = gev::MakeIPv4(10, 1, 0, 77);

/// A camera at the far end of eth0, and the producer that looks for it.
class CameraStory : public ProducerTest {
protected:
    void PlugIn() {
        camera::CAMERA_CONFIGURATION objConfiguration;
        objConfiguration.Interface = "far0";
        objConfiguration.Persistent = camera::ParseIPSetting("10.99.0.5/24");
        m_pCamera = std::make_unique<CRunningCamera>(*m_objFar, objConfiguration);
        m_hInterface = OpenInterface(OpenSystem());
    }

    void TearDown() override {
        ProducerTest::TearDown();
        m_pCamera.reset();
    }

    std::string GetMAC() { return std::string(gev::FormatMAC(m_pCamera->Get().GetMAC()).GetText()); }

    /// Updates the list, and gives what it shows of the only camera.
    std::string ListedName() {
        bool8_t bChanged = 0;
        EXPECT_EQ(Lib().IFUpdateDeviceList(m_hInterface, &bChanged, kWindowMs), GC_ERR_SUCCESS) << LastError();
        std::uint32_t nCount = 0;
        EXPECT_EQ(Lib().IFGetNumDevices(m_hInterface, &nCount), GC_ERR_SUCCESS) << LastError();
        EXPECT_EQ(nCount, 1U);
        char szName[256] = {};
        std::size_t nSize = sizeof szName;
        INFO_DATATYPE nType = 0;
        EXPECT_EQ(Lib().IFGetDeviceInfo(m_hInterface, DeviceId(m_hInterface).c_str(), DEVICE_INFO_DISPLAYNAME, &nType,
                                        szName, &nSize),
                  GC_ERR_SUCCESS)
            << LastError();
        return szName;
    }

    void Recover() {
        QUdpSocket objSocket;
        SendRecoveryPackets(objSocket, FillRecoveryPackets(QString::fromStdString(GetMAC()), "10.1.0.77").value());
        const auto objEnd = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (m_pCamera->Get().GetAddress() != kNewAddress && std::chrono::steady_clock::now() < objEnd) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        ASSERT_EQ(m_pCamera->Get().GetAddress(), kNewAddress);
    }

    GC_ERROR OpenDevice() {
        return Lib().IFOpenDevice(m_hInterface, DeviceId(m_hInterface).c_str(), DEVICE_ACCESS_CONTROL, &m_hDevice);
    }

    std::unique_ptr<CRunningCamera> m_pCamera;
    IF_HANDLE m_hInterface = nullptr;
    DEV_HANDLE m_hDevice = nullptr;
};

TEST_F(CameraStory, LostCameraIsListedRecoveredListedAnewAndOpenedAndAnAnalyserUnderstandsItAll) {
    CWireCapture objWire(*m_objMachine, "eth0", *m_objFar, "far0");
    PlugIn();
    EXPECT_TRUE(ListedName().starts_with("Virtual GigE(10.99.0.5[" + GetMAC() + "])"));
    const std::string strId = DeviceId(m_hInterface);
    // It hears us, and we don't hear it: an attempt must not leave it under a control that keeps the recovery out.
    EXPECT_EQ(OpenDevice(), GC_ERR_TIMEOUT) << LastError();

    ASSERT_NO_FATAL_FAILURE(Recover());
    m_objFar->Run("test \"$(ip -o -4 address show dev far0 | grep -c inet)\" = 1");
    m_objFar->Run("ip -o -4 address show dev far0 | grep -q '10.1.0.77/24 brd 10.1.0.255'");
    EXPECT_EQ(ListedName(), "Virtual GigE(10.1.0.77[" + GetMAC() + "])");
    EXPECT_EQ(DeviceId(m_hInterface), strId);
    ASSERT_EQ(OpenDevice(), GC_ERR_SUCCESS) << LastError();
    PORT_HANDLE hPort = nullptr;
    ASSERT_EQ(Lib().DevGetPort(m_hDevice, &hPort), GC_ERR_SUCCESS) << LastError();
    CXMLAnalyzer objAnalyzer(&Lib());
    objAnalyzer.LoadXMLFromPortHandle(hPort);
    CFeatureControl objFeatures(objAnalyzer.GetNodeMapRef());
    EXPECT_EQ(objFeatures.DoGetInt("GevCurrentIPAddress"), kNewAddress);
    EXPECT_EQ(objFeatures.DoGetInt("GevPersistentIPAddress"), kNewAddress) << "it keeps it when it is switched off";
    EXPECT_EQ(objFeatures.DoGetInt("GevCurrentSubnetMask"), gev::MakeIPv4(255, 255, 255, 0));
    objFeatures.DoSetString("DeviceUserID", "left camera");
    objFeatures.DoSetInt("Width", 640);
    ASSERT_EQ(Lib().DevClose(m_hDevice), GC_ERR_SUCCESS) << LastError();

    const auto vecDatagrams = objWire.TakeAll();
    if (std::system("command -v tshark >/dev/null") != 0) {
        GTEST_SKIP() << "no protocol analyser is installed (package tshark)";
    }
    const auto vecLines = Analyse(vecDatagrams,
                                  "-T fields -E separator=/s -e _ws.col.Protocol -e gvcp.cmd.command -e gvcp.ack"
                                  " -e _ws.malformed -e _ws.expert.message");
    EXPECT_EQ(vecLines.size(), vecDatagrams.size());
    // The vendor command is GVCP to the analyser, its acknowledge isn't. No line may end in a complaint.
    EXPECT_EQ(
        std::set(vecLines.begin(), vecLines.end()),
        (std::set<std::string>{"GVCP 0x0002   ", "GVCP  0x0003  ", "GVCP 0x0004   ", "GVCP 0x0080   ", "GVCP  0x0081  ",
                               "GVCP 0x0082   ", "GVCP  0x0083  ", "GVCP 0x0084   ", "GVCP  0x0085  ", "GVCP 0x0086   ",
                               "GVCP  0x0087  ", "GVCP 0x9000   ", "UDP    "}));
}

}  // namespace
