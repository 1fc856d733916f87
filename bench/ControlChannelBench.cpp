// What our producer and the layers above it add to the round trips that a camera's protocol asks for: the download of a
// description against a bare loop of READMEM, an uncached feature against a bare READREG. Camera and producer stand in
// network namespaces of their own, with a cable between.

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassFeature/FeatureControl.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassXML/XMLAnalyzer.h"
#include "TLClass/TLClassXML/XMLUrl.h"
#include "bench/Turns.h"
#include "camera/FeatureTable.h"
#include "gev/Address.h"
#include "gev/Bootstrap.h"
#include "gev/GvcpMemory.h"
#include "gev/GvcpRegister.h"
#include "tests/camera/RunningCamera.h"
#include "tests/network/NetworkNamespace.h"

namespace {

constexpr std::uint32_t kCameraAddress = gev::MakeIPv4(10, 1, 0, 2);
constexpr const char* kFeature = "DeviceTemperature";

/// The least that an application can do: one socket, one datagram out, one in.
class CBareApplication {
public:
    CBareApplication() : m_nSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in objCamera{};
        objCamera.sin_family = AF_INET;
        objCamera.sin_port = htons(gev::kGvcpPort);
        objCamera.sin_addr.s_addr = htonl(kCameraAddress);
        const timeval objPatience{1, 0};
        setsockopt(m_nSocket, SOL_SOCKET, SO_RCVTIMEO, &objPatience, sizeof objPatience);
        if (connect(m_nSocket, reinterpret_cast<const sockaddr*>(&objCamera), sizeof objCamera) != 0) {
            throw std::runtime_error("no way to the camera");
        }
    }
    ~CBareApplication() { close(m_nSocket); }
    CBareApplication(const CBareApplication&) = delete;
    CBareApplication& operator=(const CBareApplication&) = delete;

    void ReadMemory(std::uint32_t nAddress, std::span<std::byte> arrMemory) {
        for (std::size_t nDone = 0; nDone < arrMemory.size();) {
            const std::size_t nPart = std::min(gev::kLongestMemoryBlock, arrMemory.size() - nDone);
            const gev::READMEM_COMMAND objCommand{static_cast<std::uint32_t>(nAddress + nDone),
                                                  static_cast<std::uint16_t>((nPart + 3) / 4 * 4)};
            std::span<const std::byte> arrData;
            if (gev::DecodeReadMemAck(Ask(gev::EncodeReadMem(m_arrOut, TakeID(), objCommand)), objCommand, arrData) !=
                gev::EGvcpStatus::Success) {
                throw std::runtime_error("READMEM failed");
            }
            std::ranges::copy(arrData.first(nPart), arrMemory.subspan(nDone).begin());
            nDone += nPart;
        }
    }

    std::uint32_t ReadRegister(std::uint32_t nAddress) {
        gev::CNumberView objValues;
        if (gev::DecodeReadRegAck(Ask(gev::EncodeReadReg(m_arrOut, TakeID(), std::span(&nAddress, 1))), 1, objValues) !=
            gev::EGvcpStatus::Success) {
            throw std::runtime_error("READREG failed");
        }
        return objValues.Get(0);
    }

private:
    std::uint16_t TakeID() { return m_nRequestID = gev::NextRequestID(m_nRequestID); }

    std::span<const std::byte> Ask(std::span<const std::byte> arrCommand) {
        send(m_nSocket, arrCommand.data(), arrCommand.size(), 0);
        const ssize_t nSize = recv(m_nSocket, m_arrIn.data(), m_arrIn.size(), 0);
        gev::GVCP_ACKNOWLEDGE_HEADER objHeader;
        std::span<const std::byte> arrPayload;
        if (nSize < 0 ||
            gev::DecodeAcknowledge(std::span(m_arrIn).first(static_cast<std::size_t>(nSize)), objHeader, arrPayload) !=
                gev::EGvcpStatus::Success ||
            objHeader.Status != gev::EGvcpStatus::Success) {
            throw std::runtime_error("the camera didn't answer");
        }
        return arrPayload;
    }

    int m_nSocket;
    std::uint16_t m_nRequestID = 0;
    gev::GvcpBuffer m_arrOut;
    gev::GvcpBuffer m_arrIn;
};

/// A camera at the other end of a cable, opened through the producer.
class COpenCamera {
public:
    COpenCamera() {
        if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
            throw std::runtime_error(strWhy);
        }
        m_objMachine.emplace();
        m_objFar.emplace();
        m_objMachine->Enter();
        Connect(*m_objMachine, "eth0", "10.1.0.1/24", *m_objFar, "far0", "");
        camera::CAMERA_CONFIGURATION objConfiguration;
        objConfiguration.Interface = "far0";
        objConfiguration.IP = camera::IP_SETTING{kCameraAddress, gev::MakeIPv4(255, 255, 255, 0), 0};
        m_pCamera = std::make_unique<CRunningCamera>(*m_objFar, objConfiguration);
        Open();
    }
    ~COpenCamera() {
        m_pFeatures.reset();
        m_pAnalyzer.reset();
        Lib.GCCloseLib();
    }
    COpenCamera(const COpenCamera&) = delete;
    COpenCamera& operator=(const COpenCamera&) = delete;

    PORT_HANDLE GetPort() const { return m_hPort; }
    IFeatureControl& Features() { return *m_pFeatures; }

    CGenTLLib Lib{PRODUCER_CTI};

private:
    void Check(GC_ERROR nResult) {
        if (nResult != GC_ERR_SUCCESS) {
            throw std::runtime_error("the producer answered " + std::to_string(nResult));
        }
    }

    void Open() {
        TL_HANDLE hTL = nullptr;
        IF_HANDLE hInterface = nullptr;
        DEV_HANDLE hDevice = nullptr;
        bool8_t bChanged = 0;
        char szID[256] = {};
        std::size_t nSize = sizeof szID;
        Check(Lib.GCInitLib());
        Check(Lib.TLOpen(&hTL));
        Check(Lib.TLUpdateInterfaceList(hTL, &bChanged, 0));
        Check(Lib.TLGetInterfaceID(hTL, 0, szID, &nSize));
        Check(Lib.TLOpenInterface(hTL, szID, &hInterface));
        Check(Lib.IFOpenDevice(hInterface, "IP::10.1.0.2", DEVICE_ACCESS_CONTROL, &hDevice));
        Check(Lib.DevGetPort(hDevice, &m_hPort));
        m_pAnalyzer = std::make_unique<CXMLAnalyzer>(&Lib);
        m_pAnalyzer->LoadXMLFromPortHandle(m_hPort);
        m_pFeatures = std::make_unique<CFeatureControl>(m_pAnalyzer->GetNodeMapRef());
    }

    std::optional<CNetworkNamespace> m_objMachine;
    std::optional<CNetworkNamespace> m_objFar;
    std::unique_ptr<CRunningCamera> m_pCamera;
    std::unique_ptr<CXMLAnalyzer> m_pAnalyzer;
    std::unique_ptr<CFeatureControl> m_pFeatures;
    PORT_HANDLE m_hPort = nullptr;
};

/// One camera for all, on the benchmarks' thread; it is never closed, as that thread outlives it.
COpenCamera& Camera() {
    static COpenCamera& s_objCamera = *new COpenCamera;
    return s_objCamera;
}

void DescriptionDownload(benchmark::State& objState) {
    COpenCamera& objCamera = Camera();
    CBareApplication objBare;
    std::array<char, gev::bootstrap::kFirstURL.Size + 1> arrURL{};
    objBare.ReadMemory(gev::bootstrap::kFirstURL.Address, std::as_writable_bytes(std::span(arrURL).first(512)));
    const XML_LOCAL_INFO objPlace = AnalyzeXMLUrl(arrURL.data()).Local;
    std::vector<std::byte> vecOurs(static_cast<std::size_t>(objPlace.Length));
    std::vector<std::byte> vecBare(vecOurs.size());
    CTurns objTurns;
    for (auto _ : objState) {
        objTurns.Take(
            [&] {
                std::size_t nSize = vecOurs.size();
                objCamera.Lib.GCReadPort(objCamera.GetPort(), objPlace.Address, vecOurs.data(), &nSize);
            },
            [&] { objBare.ReadMemory(static_cast<std::uint32_t>(objPlace.Address), vecBare); });
        if (vecOurs != vecBare) {
            objState.SkipWithError("what was read differs");
        }
    }
    Report(
        objTurns.GetMedian("download of a description of " + std::to_string(vecOurs.size()) + " bytes", AtMost(1.1)));
}
BENCHMARK(DescriptionDownload)->Unit(benchmark::kMillisecond)->Iterations(300)->UseRealTime();

void UncachedFeature(benchmark::State& objState) {
    COpenCamera& objCamera = Camera();
    CBareApplication objBare;
    const std::uint32_t nAddress = camera::FindFeature(kFeature).Address;
    const std::string strFeature = kFeature;
    CTurns objTurns;
    for (auto _ : objState) {
        objTurns.Take([&] { benchmark::DoNotOptimize(objCamera.Features().DoGetFloat(strFeature)); },
                      [&] { benchmark::DoNotOptimize(objBare.ReadRegister(nAddress)); });
    }
    Report(objTurns.GetMedian("uncached feature by name, over the network", AtMost(1.15)));
}
BENCHMARK(UncachedFeature)->Unit(benchmark::kMicrosecond)->Iterations(20000)->UseRealTime();

}  // namespace
