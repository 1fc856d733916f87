// The library with a camera at the other end of the cable.

#include <algorithm>
#include <array>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "gev/Address.h"
#include "support/Text.h"
#include "tests/camera/RunningCamera.h"
#include "tests/producer/entries/NodeMapReader.h"
#include "tests/producer/entries/ProducerTest.h"

namespace {

constexpr std::uint64_t kScratch = 0x00E8;  // the user-defined name: 16 bytes that can be written
constexpr std::uint64_t kUrls = 0x0200;     // two of 512 bytes
constexpr std::uint64_t kHeartbeatTimeout = 0x0938;
constexpr std::uint64_t kLongEnough = 5000;

class ProducerCamera : public ProducerTest {
protected:
    void SetUp() override {
        ProducerTest::SetUp();
        if (!IsSkipped()) {
            m_hTL = OpenSystem();
            m_hInterface = OpenInterface(m_hTL);
        }
    }

    void TearDown() override {
        ProducerTest::TearDown();
        m_pCamera.reset();
    }

    void Plug(const std::string& strAddress, camera::FAULTS objFaults = {}) {
        camera::CAMERA_CONFIGURATION objConfiguration;
        objConfiguration.Interface = "far0";
        objConfiguration.IP = camera::ParseIPSetting(strAddress);
        objConfiguration.Faults = objFaults;
        m_pCamera = std::make_unique<CRunningCamera>(*m_objFar, objConfiguration);
    }

    std::uint32_t Update(std::uint64_t nTimeoutMs = 400) {
        bool8_t bChanged = 0;
        EXPECT_EQ(Lib().IFUpdateDeviceList(m_hInterface, &bChanged, nTimeoutMs), GC_ERR_SUCCESS) << LastError();
        m_bChanged = bChanged != 0;
        std::uint32_t nCount = 0;
        EXPECT_EQ(Lib().IFGetNumDevices(m_hInterface, &nCount), GC_ERR_SUCCESS);
        return nCount;
    }

    std::string Info(const std::string& strId, DEVICE_INFO_CMD nCommand) {
        char szText[512] = {};
        size_t nSize = sizeof(szText);
        INFO_DATATYPE nType = 0;
        EXPECT_EQ(Lib().IFGetDeviceInfo(m_hInterface, strId.c_str(), nCommand, &nType, szText, &nSize), GC_ERR_SUCCESS)
            << LastError();
        return nType == INFO_DATATYPE_STRING ? szText : std::to_string(static_cast<int>(szText[0]));
    }

    DEV_HANDLE Open(const std::string& strId, DEVICE_ACCESS_FLAGS nFlags = DEVICE_ACCESS_CONTROL) {
        DEV_HANDLE hDevice = nullptr;
        EXPECT_EQ(Lib().IFOpenDevice(m_hInterface, strId.c_str(), nFlags, &hDevice), GC_ERR_SUCCESS) << LastError();
        return hDevice;
    }

    PORT_HANDLE RemotePort(DEV_HANDLE hDevice) {
        PORT_HANDLE hPort = nullptr;
        EXPECT_EQ(Lib().DevGetPort(hDevice, &hPort), GC_ERR_SUCCESS) << LastError();
        return hPort;
    }

    GC_ERROR Read(PORT_HANDLE hPort, std::uint64_t nAddress, std::string& strData) {
        size_t nSize = strData.size();
        return Lib().GCReadPort(hPort, nAddress, strData.data(), &nSize);
    }

    GC_ERROR Write(PORT_HANDLE hPort, std::uint64_t nAddress, const std::string& strData) {
        size_t nSize = strData.size();
        return Lib().GCWritePort(hPort, nAddress, strData.data(), &nSize);
    }

    void ShortenHeartbeat(PORT_HANDLE hPort) {
        EXPECT_EQ(Write(hPort, kHeartbeatTimeout, std::string("\0\0\x01\xF4", 4)), GC_ERR_SUCCESS) << LastError();
    }

    std::unique_ptr<CRunningCamera> m_pCamera;
    TL_HANDLE m_hTL = nullptr;
    IF_HANDLE m_hInterface = nullptr;
    bool m_bChanged = false;
};

TEST_F(ProducerCamera, IsListedWhileItAnswersFullUpdates) {
    Plug("10.1.0.2/24");
    ASSERT_EQ(Update(), 1u);
    EXPECT_TRUE(m_bChanged);
    const std::string strId = DeviceId(m_hInterface);
    const std::string strMac = std::string(gev::FormatMAC(m_pCamera->Get().GetMAC()).GetText());
    EXPECT_EQ(strId, "Virtual GigE(" + strMac + ")");
    EXPECT_EQ(Info(strId, DEVICE_INFO_DISPLAYNAME), "Virtual GigE(10.1.0.2[" + strMac + "])");
    EXPECT_EQ(Info(strId, DEVICE_INFO_ACCESS_STATUS), std::to_string(DEVICE_ACCESS_STATUS_READWRITE));
    EXPECT_EQ(Update(), 1u);
    EXPECT_FALSE(m_bChanged);
    EXPECT_EQ(ReadAllNodes(Lib(), m_hInterface) > 30, true) << "the features of a listed camera are there";
    m_pCamera.reset();
    EXPECT_EQ(Update(0), 1u) << "no time to be missed in";
    EXPECT_EQ(Update(), 0u);
    EXPECT_TRUE(m_bChanged);
}

TEST_F(ProducerCamera, OpensOnceByIdOrAddressWithNodeMapsOfAllItsModules) {
    Plug("10.1.0.2/24");
    // By its address it needn't be listed.
    DEV_HANDLE hDevice = Open("IP::10.1.0.2", DEVICE_ACCESS_READONLY);
    std::string strData(4, '\0');
    EXPECT_EQ(Read(RemotePort(hDevice), 0, strData), GC_ERR_SUCCESS) << LastError();
    EXPECT_EQ(Write(RemotePort(hDevice), kScratch, strData), GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(Lib().DevClose(hDevice), GC_ERR_SUCCESS);

    ASSERT_EQ(Update(), 1u);
    const std::string strId = DeviceId(m_hInterface);
    hDevice = Open(strId);
    EXPECT_EQ(Info(strId, DEVICE_INFO_ACCESS_STATUS), std::to_string(DEVICE_ACCESS_STATUS_OPEN_READWRITE));
    Update();
    EXPECT_TRUE(Info(strId, DEVICE_INFO_DISPLAYNAME).ends_with("])")) << "our own control is no remark";
    for (const char* pszAgain : {strId.c_str(), "IP::10.1.0.2"}) {
        DEV_HANDLE hSecond = nullptr;
        EXPECT_EQ(Lib().IFOpenDevice(m_hInterface, pszAgain, DEVICE_ACCESS_READONLY, &hSecond), GC_ERR_RESOURCE_IN_USE);
    }
    EXPECT_GT(ReadAllNodes(Lib(), hDevice), 20);
    EXPECT_GT(ReadAllNodes(Lib(), RemotePort(hDevice)), 50);

    char szStream[64] = {};
    size_t nSize = sizeof(szStream);
    ASSERT_EQ(Lib().DevGetDataStreamID(hDevice, 0, szStream, &nSize), GC_ERR_SUCCESS);
    DS_HANDLE hStream = nullptr;
    ASSERT_EQ(Lib().DevOpenDataStream(hDevice, szStream, &hStream), GC_ERR_SUCCESS) << LastError();
    EXPECT_GT(ReadAllNodes(Lib(), hStream), 1);
    EXPECT_EQ(Lib().DevClose(hDevice), GC_ERR_SUCCESS);
    EXPECT_EQ(Lib().DSClose(hStream), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(Lib().DevClose(Open(strId, DEVICE_ACCESS_EXCLUSIVE)), GC_ERR_SUCCESS) << "the control was given back";
}

TEST_F(ProducerCamera, ReadsAndWritesAnyPieceOfItsMemory) {
    Plug("10.1.0.2/24");
    const PORT_HANDLE hPort = RemotePort(Open("IP::10.1.0.2"));
    ASSERT_EQ(Write(hPort, kScratch, "0123456789abcdef"), GC_ERR_SUCCESS) << LastError();
    ASSERT_EQ(Write(hPort, kScratch + 3, "#####"), GC_ERR_SUCCESS) << LastError();
    std::string strData(11, '\0');
    ASSERT_EQ(Read(hPort, kScratch + 1, strData), GC_ERR_SUCCESS) << LastError();
    EXPECT_EQ(strData, "12#####89ab");
    std::array<char, 3> arrFirst{};
    std::array<char, 3> arrSecond{};
    std::array<PORT_REGISTER_STACK_ENTRY, 3> arrEntry{
        {{kScratch, arrFirst.data(), 3}, {kScratch + 13, arrSecond.data(), 3}, {0xFFFFFFFF, arrFirst.data(), 3}}};
    size_t nCount = 2;
    EXPECT_EQ(Lib().GCReadPortStacked(hPort, arrEntry.data(), &nCount), GC_ERR_SUCCESS);
    EXPECT_EQ(std::string(arrFirst.data(), 3) + std::string(arrSecond.data(), 3), "012def");
    nCount = 3;
    EXPECT_EQ(Lib().GCReadPortStacked(hPort, arrEntry.data(), &nCount), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(nCount, 2u) << "so many had succeeded";
}

TEST_F(ProducerCamera, TellsOnceThatItWentAwayAndRefusesFromThenOn) {
    Plug("10.1.0.2/24");
    DEV_HANDLE hDevice = Open("IP::10.1.0.2");
    const PORT_HANDLE hPort = RemotePort(hDevice);
    ShortenHeartbeat(hPort);
    EVENT_HANDLE hEvent = nullptr;
    ASSERT_EQ(Lib().GCRegisterEvent(hPort, EVENT_ZR_DEVICE_OFFLINE, &hEvent), GC_ERR_SUCCESS) << LastError();
    m_pCamera.reset();
    size_t nSize = 0;
    EXPECT_EQ(Lib().EventGetData(hEvent, nullptr, &nSize, kLongEnough), GC_ERR_SUCCESS) << LastError();
    EXPECT_EQ(Lib().EventGetData(hEvent, nullptr, &nSize, 0), GC_ERR_TIMEOUT);
    std::string strData(4, '\0');
    EXPECT_EQ(Read(hPort, 0, strData), GC_ERR_ZR_DEVICE_OFFLINE) << LastError();
    EXPECT_EQ(Lib().DevClose(hDevice), GC_ERR_SUCCESS);
}

TEST_F(ProducerCamera, ClosesBeneathEveryKindOfCall) {
    Plug("10.1.0.2/24");
    for (int nRound = 0; nRound < 20; ++nRound) {
        DEV_HANDLE hDevice = Open("IP::10.1.0.2");
        const PORT_HANDLE hPort = RemotePort(hDevice);
        EVENT_HANDLE hOffline = nullptr;
        EVENT_HANDLE hRemote = nullptr;
        ASSERT_EQ(Lib().GCRegisterEvent(hPort, EVENT_ZR_DEVICE_OFFLINE, &hOffline), GC_ERR_SUCCESS);
        ASSERT_EQ(Lib().GCRegisterEvent(hDevice, EVENT_REMOTE_DEVICE, &hRemote), GC_ERR_SUCCESS);
        std::vector<std::future<GC_ERROR>> vecCall;
        for (EVENT_HANDLE hEvent : {hOffline, hRemote}) {
            vecCall.push_back(std::async(std::launch::async, [this, hEvent] {
                size_t nSize = 0;
                return Lib().EventGetData(hEvent, nullptr, &nSize, GENTL_INFINITE);
            }));
        }
        vecCall.push_back(std::async(std::launch::async, [this, hPort] {
            std::string strUrls(1024, '\0');
            GC_ERROR nResult = GC_ERR_SUCCESS;
            while (nResult == GC_ERR_SUCCESS) {
                nResult = Read(hPort, kUrls, strUrls);
            }
            return nResult;
        }));
        EXPECT_EQ(Lib().DevClose(hDevice), GC_ERR_SUCCESS);
        for (std::future<GC_ERROR>& objCall : vecCall) {
            const GC_ERROR nResult = objCall.get();
            EXPECT_TRUE(nResult == GC_ERR_ABORT || nResult == GC_ERR_INVALID_HANDLE) << nResult;
        }
    }
}

TEST_F(ProducerCamera, ClosesWithAllAboveItAtOnceFromSeveralThreads) {
    Plug("10.1.0.2/24");
    for (int nRound = 0; nRound < 10; ++nRound) {
        const DEV_HANDLE hDevice = Open("IP::10.1.0.2");
        std::vector<std::future<GC_ERROR>> vecClose;
        vecClose.push_back(std::async(std::launch::async, [&] { return Lib().DevClose(hDevice); }));
        vecClose.push_back(std::async(std::launch::async, [&] { return Lib().IFClose(m_hInterface); }));
        vecClose.push_back(std::async(std::launch::async, [&] { return Lib().TLClose(m_hTL); }));
        for (std::future<GC_ERROR>& objClose : vecClose) {
            const GC_ERROR nResult = objClose.get();
            EXPECT_TRUE(nResult == GC_ERR_SUCCESS || nResult == GC_ERR_INVALID_HANDLE) << nResult;
        }
        // The parent's close has waited for its children's, so that all can be opened again at once.
        m_hTL = OpenSystem();
        m_hInterface = OpenInterface(m_hTL);
    }
}

TEST_F(ProducerCamera, ThatIsBeingOpenedIsGivenUpByAClose) {
    camera::FAULTS objFaults;
    objFaults.PendingForever = true;
    Plug("10.1.0.2/24", objFaults);
    ASSERT_EQ(Update(), 1u);
    const std::string strId = DeviceId(m_hInterface);
    auto objOpen = std::async(std::launch::async, [&] {
        DEV_HANDLE hDevice = nullptr;
        return Lib().IFOpenDevice(m_hInterface, strId.c_str(), DEVICE_ACCESS_CONTROL, &hDevice);
    });
    EXPECT_EQ(objOpen.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
    const auto objStart = std::chrono::steady_clock::now();
    EXPECT_EQ(Lib().IFClose(m_hInterface), GC_ERR_SUCCESS);
    EXPECT_EQ(objOpen.get(), GC_ERR_INVALID_HANDLE);
    EXPECT_LT(std::chrono::steady_clock::now() - objStart, std::chrono::seconds(2));
}

TEST_F(ProducerCamera, OfAnotherSubnetIsListedAndGetsAnAddress) {
    m_objMachine->Run("sysctl -qw net.ipv4.conf.all.rp_filter=0 net.ipv4.conf.eth0.rp_filter=0");
    Plug("172.16.9.9/24");
    ASSERT_EQ(Update(), 1u);
    const std::string strId = DeviceId(m_hInterface);
    EXPECT_TRUE(Info(strId, DEVICE_INFO_DISPLAYNAME).ends_with("]) wrong subnet"));
    EXPECT_EQ(Lib().IFForceIp(m_hInterface, strId.c_str(), "10.1.0.2", "nonsense", ""), GC_ERR_INVALID_PARAMETER);
    ASSERT_EQ(Lib().IFForceIp(m_hInterface, strId.c_str(), "10.1.0.2", "255.255.255.0", ""), GC_ERR_SUCCESS)
        << LastError();
    ASSERT_EQ(Update(), 1u);
    EXPECT_EQ(DeviceId(m_hInterface), strId) << "the ID knows no address";
    EXPECT_EQ(Lib().IFIpConfiguration(m_hInterface, strId.c_str(), 1, "10.1.0.3", "255.255.255.0", "", "named"),
              GC_ERR_SUCCESS)
        << LastError();
    ASSERT_EQ(Lib().IFResetDevice(m_hInterface, strId.c_str(), 0), GC_ERR_SUCCESS) << LastError();
    std::array<unsigned char, ZR_SPECIAL_DEVICE_REPLY_SIZE> arrReply{};
    size_t nSize = arrReply.size() - 1;
    EXPECT_EQ(Lib().IFUpdateSpecialDevice(m_hInterface, "10.1.0.3", arrReply.data(), &nSize), GC_ERR_BUFFER_TOO_SMALL);
    nSize = arrReply.size();
    ASSERT_EQ(Lib().IFUpdateSpecialDevice(m_hInterface, "10.1.0.3", arrReply.data(), &nSize), GC_ERR_SUCCESS)
        << LastError();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&arrReply[240])), "named");
    EXPECT_EQ(arrReply[16], DEVICE_ACCESS_STATUS_READWRITE);
}

TEST_F(ProducerCamera, MayBeHostileInEveryWayWithoutHarm) {
    for (const char* pszFault :
         {"names-without-end", "garbage", "wrong-length", "doubled", "foreign-id", "flood", "denied",
          "hostile-description=length", "hostile-description=bomb", "hostile-description=zip",
          "hostile-description=xml", "hostile-description=url", "hostile-description=unreadable"}) {
        SCOPED_TRACE(pszFault);
        camera::FAULTS objFaults;
        camera::SetFault(objFaults, pszFault);
        Plug("10.1.0.2/24", objFaults);
        if (Update() == 1) {
            const std::string strId = DeviceId(m_hInterface);
            EXPECT_TRUE(std::none_of(strId.begin(), strId.end(), [](char nChar) { return nChar >= 0 && nChar < ' '; }));
            std::wstring strWide;
            ASSERT_TRUE(StringToWString(strId, strWide));
            DEV_HANDLE hDevice = nullptr;
            if (Lib().IFOpenDevice(m_hInterface, strId.c_str(), DEVICE_ACCESS_CONTROL, &hDevice) == GC_ERR_SUCCESS) {
                try {
                    ReadAllNodes(Lib(), RemotePort(hDevice));
                } catch (const std::exception& objError) {
                    EXPECT_STRNE(objError.what(), "");
                }
                EXPECT_EQ(Lib().DevClose(hDevice), GC_ERR_SUCCESS);
            }
        }
        m_pCamera.reset();
    }
}

}  // namespace
