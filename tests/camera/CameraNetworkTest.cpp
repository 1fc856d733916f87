#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <future>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "camera/TestImage.h"
#include "gev/BigEndian.h"
#include "gev/GvcpForceIP.h"
#include "gev/GvcpRegister.h"
#include "gev/GvspHeader.h"
#include "tests/camera/RunningCamera.h"

namespace {

using namespace std::chrono_literals;
using gev::EGvcpStatus;

constexpr std::uint32_t kEverybody = 0xFFFFFFFF;
constexpr std::uint32_t kCamera = 0x0A000002;

/// A host's socket on its only adapter, which asks one thing at a time.
class CHost {
public:
    explicit CHost(const CNetworkNamespace& objMachine) {
        objMachine.Do([this] { m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0); });
        const int nOn = 1;
        const int nRoom = 16 << 20;  // some images
        const timeval objPatience{0, 300'000};
        setsockopt(m_nSocket, SOL_SOCKET, SO_BROADCAST, &nOn, sizeof nOn);
        setsockopt(m_nSocket, SOL_SOCKET, SO_RCVTIMEO, &objPatience, sizeof objPatience);
        setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUFFORCE, &nRoom, sizeof nRoom);
        setsockopt(m_nSocket, SOL_SOCKET, SO_BINDTODEVICE, "host0", 5);
        const sockaddr_in objAddress{.sin_family = AF_INET, .sin_port = 0, .sin_addr = {}, .sin_zero = {}};
        bind(m_nSocket, reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress);
    }
    ~CHost() { close(m_nSocket); }
    CHost(const CHost&) = delete;
    CHost& operator=(const CHost&) = delete;

    struct ANSWER {
        gev::GVCP_ACKNOWLEDGE_HEADER Header;
        std::uint32_t From;
        std::vector<std::byte> Payload;
    };

    void Send(std::uint32_t nTo, std::span<const std::byte> arrDatagram) {
        sockaddr_in objTo{};
        objTo.sin_family = AF_INET;
        objTo.sin_port = htons(gev::kGvcpPort);
        objTo.sin_addr.s_addr = htonl(nTo);
        sendto(m_nSocket, arrDatagram.data(), arrDatagram.size(), 0, reinterpret_cast<const sockaddr*>(&objTo),
               sizeof objTo);
    }

    /// Asks until there is an answer, at most 20 times, each with a wait of 300 ms.
    std::optional<ANSWER> Ask(std::uint32_t nTo, std::span<const std::byte> arrDatagram, int nTries = 20) {
        for (int i = 0; i < nTries; ++i) {
            Send(nTo, arrDatagram);
            sockaddr_in objFrom{};
            socklen_t nLength = sizeof objFrom;
            gev::GvcpBuffer arrBuffer;
            const ssize_t nReceived = recvfrom(m_nSocket, arrBuffer.data(), arrBuffer.size(), 0,
                                               reinterpret_cast<sockaddr*>(&objFrom), &nLength);
            ANSWER objAnswer;
            std::span<const std::byte> arrPayload;
            if (nReceived > 0 && gev::DecodeAcknowledge(std::span(arrBuffer).first(static_cast<std::size_t>(nReceived)),
                                                        objAnswer.Header, arrPayload) == EGvcpStatus::Success) {
                objAnswer.From = ntohl(objFrom.sin_addr.s_addr);
                objAnswer.Payload.assign(arrPayload.begin(), arrPayload.end());
                return objAnswer;
            }
        }
        return std::nullopt;
    }
    std::optional<ANSWER> Discover(bool bBroadcast = true) {
        const auto nFlags = static_cast<std::uint8_t>(bBroadcast ? 0x11 : 0x01);
        return Ask(kEverybody, gev::EncodeCommand(m_arrBuffer, gev::EGvcpCommand::Discovery, nFlags, 1));
    }
    /// The status, or nothing when there was no answer.
    std::optional<EGvcpStatus> Write(std::uint32_t nTo, std::uint32_t nAddress, std::uint32_t nValue) {
        const std::array arrWrite = {gev::REGISTER_WRITE{nAddress, nValue}};
        const auto objAnswer = Ask(nTo, gev::EncodeWriteReg(m_arrBuffer, NextID(), arrWrite), 3);
        return objAnswer ? std::optional(objAnswer->Header.Status) : std::nullopt;
    }
    std::optional<std::uint32_t> Read(std::uint32_t nTo, std::uint32_t nAddress) {
        const std::array arrAddress = {nAddress};
        const auto objAnswer = Ask(nTo, gev::EncodeReadReg(m_arrBuffer, NextID(), arrAddress), 3);
        return objAnswer && objAnswer->Payload.size() == 4 ? std::optional(gev::Get32(objAnswer->Payload, 0))
                                                           : std::nullopt;
    }
    [[nodiscard]] std::uint16_t GetPort() const {
        sockaddr_in objAddress{};
        socklen_t nLength = sizeof objAddress;
        getsockname(m_nSocket, reinterpret_cast<sockaddr*>(&objAddress), &nLength);
        return ntohs(objAddress.sin_port);
    }
    /// The payload of packets up to a trailer, each at its place, or a test packet as it is.
    std::vector<std::byte> ReceiveBlock(std::size_t nPerPacket) {
        std::vector<std::byte> vecBlock;
        std::vector<std::byte> vecPacket(10'000);
        for (int nSilent = 0; nSilent < 10;) {
            const ssize_t nReceived = recv(m_nSocket, vecPacket.data(), vecPacket.size(), 0);
            if (nReceived < 8) {
                ++nSilent;
                continue;
            }
            gev::GVSP_HEADER objHeader;
            std::span<const std::byte> arrBody;
            const auto arrPacket = std::span<const std::byte>(vecPacket).first(static_cast<std::size_t>(nReceived));
            gev::DecodeGvspHeader(arrPacket, objHeader, arrBody);
            if (objHeader.BlockID == 0) {
                return {arrPacket.begin(), arrPacket.end()};
            }
            if (objHeader.Format == gev::EGvspFormat::Trailer) {
                return vecBlock;
            }
            if (objHeader.Format == gev::EGvspFormat::Payload) {
                const std::size_t nPlace = (objHeader.PacketID - 1) * nPerPacket;
                vecBlock.resize(std::max(vecBlock.size(), nPlace + arrBody.size()));
                std::ranges::copy(arrBody, vecBlock.begin() + static_cast<std::ptrdiff_t>(nPlace));
            }
        }
        return {};
    }
    std::uint16_t NextID() { return m_nID = gev::NextRequestID(m_nID); }

private:
    int m_nSocket = -1;
    std::uint16_t m_nID = 0;
    gev::GvcpBuffer m_arrBuffer{};
};

/// A host at 10.0.0.1/24 with a cable to the adapter "camera0" of a machine for a camera.
class CameraOnNetwork : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
            GTEST_SKIP() << strWhy;
        }
        Machines.emplace();
        Connect(Machines->Near, "host0", "10.0.0.1/24", Machines->Far, "camera0", "");
    }
    static camera::CAMERA_CONFIGURATION Configuration(const char* pIP) {
        camera::CAMERA_CONFIGURATION objConfiguration;
        objConfiguration.Interface = "camera0";
        objConfiguration.IP = camera::ParseIPSetting(pIP);
        objConfiguration.Reconfiguration = 20ms;
        return objConfiguration;
    }

    struct MACHINES {
        CNetworkNamespace Near;
        CNetworkNamespace Far;
    };
    std::optional<MACHINES> Machines;
};

TEST_F(CameraOnNetwork, IsFoundWithoutAnyAddressBehindAStrictFilterAndTakesTheOneForced) {
    Machines->Far.Run("sysctl -q net.ipv4.conf.all.rp_filter=1 net.ipv4.conf.camera0.rp_filter=1");
    auto objConfiguration = Configuration("10.0.0.2/24");
    objConfiguration.IP = camera::IP_SETTING{};
    CRunningCamera objCamera(Machines->Far, objConfiguration);
    CHost objHost(Machines->Near);
    ASSERT_TRUE(objHost.Discover());
    EXPECT_EQ(objCamera.Get().GetAddress(), 0u);

    gev::GvcpBuffer arrBuffer;
    const gev::FORCEIP_COMMAND objForce{objCamera.Get().GetMAC(), 0x0A000003, 0xFFFFFF00, 0};
    ASSERT_TRUE(objHost.Ask(kEverybody, gev::EncodeForceIP(arrBuffer, 5, objForce, true)));
    EXPECT_EQ(objHost.Discover(false)->From, 0x0A000003u) << "a neighbour now";
}

TEST_F(CameraOnNetwork, LosesItsApplicationWithTheHeartbeatAndVanishesWhenItIsTold) {
    CRunningCamera objCamera(Machines->Far, Configuration("10.0.0.2/24"));
    CHost objFirst(Machines->Near);
    CHost objSecond(Machines->Near);
    ASSERT_EQ(objFirst.Write(kCamera, 0x0A00, 2), EGvcpStatus::Success);
    ASSERT_EQ(objFirst.Write(kCamera, 0x0938, 500), EGvcpStatus::Success);
    EXPECT_EQ(objSecond.Write(kCamera, 0x0A00, 2), EGvcpStatus::AccessDenied);
    const auto tLast = std::chrono::steady_clock::now();
    while (objSecond.Read(kCamera, 0x0A00) != 0u && std::chrono::steady_clock::now() < tLast + 10s) {
    }
    EXPECT_GE(std::chrono::steady_clock::now() - tLast, 450ms);
    EXPECT_EQ(objSecond.Write(kCamera, 0x0A00, 2), EGvcpStatus::Success);

    camera::FAULTS objFaults;
    objFaults.Silent = camera::ESilence::All;
    objCamera.Get().SetFaults(objFaults);
    EXPECT_FALSE(objSecond.Read(kCamera, 0x0A00));
    objCamera.Get().SetFaults({});
    EXPECT_EQ(objSecond.Read(kCamera, 0x0000), 0x00020000u);
}

TEST_F(CameraOnNetwork, SendsBitExactImagesThatFitTheCableOrAreCutOnIt) {
    CRunningCamera objCamera(Machines->Far, Configuration("10.0.0.2/24"));
    CHost objHost(Machines->Near);
    CHost objSink(Machines->Near);
    ASSERT_EQ(objHost.Write(kCamera, 0x0A00, 2), EGvcpStatus::Success);
    objHost.Write(kCamera, 0xA120, 0x010C0006);  // Mono12Packed
    objHost.Write(kCamera, 0xA200, 0);           // one frame each
    objHost.Write(kCamera, 0x0D18, 0x0A000001);
    objHost.Write(kCamera, 0x0D00, objSink.GetPort());
    const camera::CTestImage objImage({1280, 1024, gev::EPixelFormat::Mono12Packed});
    std::vector<std::byte> vecWanted(objImage.GetSize());
    std::uint64_t nFrame = 0;
    for (const std::uint32_t nSize : {1500u, 576u, 8000u}) {  // the cable takes 1500
        SCOPED_TRACE(nSize);
        ASSERT_EQ(objHost.Write(kCamera, 0x0D04, nSize), EGvcpStatus::Success);
        ASSERT_EQ(objHost.Write(kCamera, 0xA204, 1), EGvcpStatus::Success);
        objImage.Draw(++nFrame, vecWanted);
        EXPECT_TRUE(objSink.ReceiveBlock(nSize - 36) == vecWanted);
    }
    objHost.Write(kCamera, 0x0D04, 0xC0000000 | 1500);
    EXPECT_EQ(objSink.ReceiveBlock(0).size(), 1500u - 28);
    objHost.Write(kCamera, 0x0D04, 0xC0000000 | 1504);
    objHost.Write(kCamera, 0x0D04, 0x80000000 | 1504);
    EXPECT_EQ(objSink.ReceiveBlock(0).size(), 1504u - 28) << "the one that may be cut; the other is lost";
}

TEST_F(CameraOnNetwork, CountsThePacketsThatFindNoWayOutAndSaysItOnce) {
    auto objConfiguration = Configuration("10.0.0.2/24");
    std::atomic<int> nSaid = 0;
    objConfiguration.Log = [&](std::string_view strLine) {
        nSaid += strLine.starts_with("images can't be sent to 192.168.9.1:5000: Network is unreachable") ? 1 : 0;
    };
    CRunningCamera objCamera(Machines->Far, objConfiguration);
    constexpr std::uint32_t kUnsent = camera::address::kStreamUnsentPacketCount;
    CHost objHost(Machines->Near);
    CHost objSink(Machines->Near);
    ASSERT_EQ(objHost.Write(kCamera, 0x0A00, 2), EGvcpStatus::Success);
    objHost.Write(kCamera, 0x0D18, 0xC0A80901);
    objHost.Write(kCamera, 0x0D00, 5000);
    objHost.Write(kCamera, 0x0D04, 0x80000000 | 1500);  // a test packet, which is no image
    objHost.Write(kCamera, 0xA204, 1);
    const auto tEnd = std::chrono::steady_clock::now() + 10s;
    while (objHost.Read(kCamera, kUnsent).value_or(0) < 2000 && std::chrono::steady_clock::now() < tEnd) {
    }
    EXPECT_EQ(*objHost.Read(kCamera, kUnsent) % 898, 0u) << "of each image all that it has";
    EXPECT_EQ(nSaid, 1);
    objHost.Write(kCamera, 0xA208, 1);
    objHost.Write(kCamera, 0x0D18, 0x0A000001);
    objHost.Write(kCamera, 0x0D00, objSink.GetPort());
    objHost.Write(kCamera, 0xA204, 1);
    EXPECT_EQ(objSink.ReceiveBlock(1464).size(), 1280u * 1024);
    EXPECT_EQ(objHost.Read(kCamera, kUnsent), 0u);
}

TEST_F(CameraOnNetwork, SaysWhatIsWrongWithItsAdapter) {
    const auto codeOf = [&](const char* pAdapter) {
        auto objConfiguration = Configuration("10.0.0.2/24");
        objConfiguration.Interface = pAdapter;
        try {
            CRunningCamera objCamera(Machines->Far, objConfiguration);
        } catch (const std::system_error& objError) {
            return objError.code().value();
        }
        return 0;
    };
    EXPECT_EQ(codeOf("nothing"), ENODEV);
    EXPECT_EQ(codeOf("a-name-that-is-far-too-long"), ENODEV);
    EXPECT_EQ(codeOf("lo"), EPROTONOSUPPORT);
    std::optional<CRunningCamera> objRunning(std::in_place, Machines->Far, Configuration("10.0.0.2/24"));
    EXPECT_EQ(codeOf("camera0"), EADDRINUSE);

    objRunning.reset();
    std::optional<camera::CVirtualCamera> objCamera;
    Machines->Far.Do([&] { objCamera.emplace(Configuration("10.0.0.2/24")); });
    std::future<void> objRun = std::async(std::launch::async, [&] { objCamera->Run(); });
    Machines->Far.Run("ip link del camera0");
    EXPECT_EQ(objRun.wait_for(20s), std::future_status::ready);
    objCamera->Stop();
    EXPECT_THROW(objRun.get(), std::system_error);
}

}  // namespace
