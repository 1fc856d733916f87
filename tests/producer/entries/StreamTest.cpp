// Images of a camera at the other end of the cable, through the C interface of the library.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "GenApi/AccessMode.h"
#include "GenApi/Node.h"
#include "GenApi/NodeMapRef.h"
#include "GenApi/Value.h"
#include "TLClass/TLClassXML/XMLAnalyzer.h"
#include "camera/FeatureAddress.h"
#include "camera/TestImage.h"
#include "gev/BigEndian.h"
#include "gev/Bootstrap.h"
#include "gev/GvcpEvent.h"
#include "tests/camera/RunningCamera.h"
#include "tests/producer/entries/ProducerTest.h"

namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t kLongEnough = 5000;

/// What came of one acquisition.
struct ACQUIRED {
    std::size_t Frames = 0;
    std::size_t Incomplete = 0;
    std::size_t Wrong = 0;  ///< complete by their own account, and not as the camera drew them
    std::size_t Chunks = 0;
};

class ProducerStream : public ProducerTest {
protected:
    void Plug(const camera::STREAM_FAULTS& objFaults) {
        camera::CAMERA_CONFIGURATION objConfiguration;
        objConfiguration.Interface = "far0";
        objConfiguration.IP = camera::ParseIPSetting("10.1.0.2/24");
        objConfiguration.Faults.Stream = objFaults;
        m_pCamera = std::make_unique<CRunningCamera>(*m_objFar, objConfiguration);
        m_hTL = OpenSystem();
        m_hInterface = OpenInterface(m_hTL);
        ASSERT_EQ(Lib().IFOpenDevice(m_hInterface, "IP::10.1.0.2", DEVICE_ACCESS_CONTROL, &m_hDevice), GC_ERR_SUCCESS)
            << LastError();
        ASSERT_EQ(Lib().DevGetPort(m_hDevice, &m_hPort), GC_ERR_SUCCESS) << LastError();
        char szId[64] = {};
        size_t nSize = sizeof(szId);
        ASSERT_EQ(Lib().DevGetDataStreamID(m_hDevice, 0, szId, &nSize), GC_ERR_SUCCESS);
        ASSERT_EQ(Lib().DevOpenDataStream(m_hDevice, szId, &m_hStream), GC_ERR_SUCCESS) << LastError();
        ASSERT_EQ(Lib().GCRegisterEvent(m_hStream, EVENT_NEW_BUFFER, &m_hEvent), GC_ERR_SUCCESS) << LastError();
        Write(camera::address::kWidth, m_objFormat.Width);
        Write(camera::address::kHeight, m_objFormat.Height);
    }

    void TearDown() override {
        m_objDescription.reset();
        ProducerTest::TearDown();
        m_pCamera.reset();
    }

    void Write(std::uint64_t nAddress, std::uint32_t nValue) {
        std::array<std::byte, 4> arrValue{};
        gev::Put32(arrValue, 0, nValue);
        size_t nSize = 4;
        EXPECT_EQ(Lib().GCWritePort(m_hPort, nAddress, arrValue.data(), &nSize), GC_ERR_SUCCESS) << LastError();
    }

    std::uint32_t Read(std::uint64_t nAddress) {
        std::array<std::byte, 4> arrValue{};
        size_t nSize = 4;
        EXPECT_EQ(Lib().GCReadPort(m_hPort, nAddress, arrValue.data(), &nSize), GC_ERR_SUCCESS) << LastError();
        return gev::Get32(arrValue, 0);
    }

    template <class Value>
    Value BufferInfo(BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD nCommand) {
        Value nValue{};
        size_t nSize = sizeof nValue;
        INFO_DATATYPE nType = 0;
        EXPECT_EQ(Lib().DSGetBufferInfo(m_hStream, hBuffer, nCommand, &nType, &nValue, &nSize), GC_ERR_SUCCESS)
            << nCommand << " " << LastError();
        return nValue;
    }

    template <class Value>
    Value StreamInfo(STREAM_INFO_CMD nCommand) {
        Value nValue{};
        size_t nSize = sizeof nValue;
        INFO_DATATYPE nType = 0;
        EXPECT_EQ(Lib().DSGetInfo(m_hStream, nCommand, &nType, &nValue, &nSize), GC_ERR_SUCCESS)
            << nCommand << " " << LastError();
        return nValue;
    }

    /// A feature of the stream's own description.
    GenApi_3_0::IValue& StreamFeature(const char* pszName) {
        if (!m_objDescription) {
            m_objDescription.emplace(&Lib());
            m_objDescription->LoadXMLFromPortHandle(m_hStream);
        }
        return dynamic_cast<GenApi_3_0::IValue&>(*m_objDescription->GetNodeMapRef()->_GetNode(pszName));
    }

    std::uint64_t StreamCount(const char* pszName) { return std::stoull(StreamFeature(pszName).ToString().c_str()); }

    void StartWith(std::size_t nBuffers) {
        const std::size_t nSize = Read(camera::address::kPayloadSize);
        m_vecMemory.assign(nBuffers, std::vector<std::byte>(nSize));
        for (auto& vecMemory : m_vecMemory) {
            BUFFER_HANDLE hBuffer = nullptr;
            ASSERT_EQ(Lib().DSAnnounceBuffer(m_hStream, vecMemory.data(), nSize, &vecMemory, &hBuffer), GC_ERR_SUCCESS)
                << LastError();
        }
        ASSERT_EQ(Lib().DSFlushQueue(m_hStream, ACQ_QUEUE_ALL_TO_INPUT), GC_ERR_SUCCESS) << LastError();
        ASSERT_EQ(Lib().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE), GC_ERR_SUCCESS)
            << LastError();
    }

    /// Takes frames until so many came or none comes any more, and compares each with what the camera draws.
    ACQUIRED Acquire(std::size_t nFrames, std::uint64_t nTimeoutMs = kLongEnough) {
        const camera::CTestImage objImage(m_objFormat);
        std::vector<std::byte> vecExpected(objImage.GetSize());
        ACQUIRED objAcquired;
        for (EVENT_NEW_BUFFER_DATA objData{}; objAcquired.Frames < nFrames; ++objAcquired.Frames) {
            size_t nSize = sizeof objData;
            if (Lib().EventGetData(m_hEvent, &objData, &nSize, nTimeoutMs) != GC_ERR_SUCCESS) {
                break;
            }
            const auto& vecMemory = *static_cast<const std::vector<std::byte>*>(objData.pUserPointer);
            if (BufferInfo<bool8_t>(objData.BufferHandle, BUFFER_INFO_IS_INCOMPLETE) != 0) {
                ++objAcquired.Incomplete;
            } else {
                objImage.Draw(objImage.ReadFrameNumber(vecMemory), vecExpected);
                const bool bExact = std::equal(vecExpected.begin(), vecExpected.end(), vecMemory.begin());
                objAcquired.Wrong += bExact && IsTold(objData.BufferHandle) ? 0 : 1;
                size_t nChunks = 0;
                EXPECT_EQ(Lib().DSGetBufferChunkData(m_hStream, objData.BufferHandle, nullptr, &nChunks),
                          GC_ERR_SUCCESS)
                    << LastError();
                objAcquired.Chunks += nChunks;
            }
            EXPECT_EQ(Lib().DSQueueBuffer(m_hStream, objData.BufferHandle), GC_ERR_SUCCESS) << LastError();
        }
        return objAcquired;
    }

    bool IsTold(BUFFER_HANDLE hBuffer) {
        return BufferInfo<size_t>(hBuffer, BUFFER_INFO_WIDTH) == m_objFormat.Width &&
               BufferInfo<size_t>(hBuffer, BUFFER_INFO_HEIGHT) == m_objFormat.Height &&
               BufferInfo<std::uint64_t>(hBuffer, BUFFER_INFO_PIXELFORMAT) == 0x01080001 &&
               BufferInfo<size_t>(hBuffer, BUFFER_INFO_PAYLOADTYPE) == PAYLOAD_TYPE_IMAGE &&
               BufferInfo<std::uint64_t>(hBuffer, BUFFER_INFO_TIMESTAMP) != 0 &&
               BufferInfo<std::uint64_t>(hBuffer, BUFFER_INFO_TIMESTAMP_NS) != 0;
    }

    void SetRate(float nRate) {
        std::uint32_t nBits = 0;
        std::memcpy(&nBits, &nRate, sizeof nBits);
        Write(camera::address::kAcquisitionFrameRate, nBits);
    }

    void StopAndRevoke() {
        Write(camera::address::kAcquisitionStop, 1);
        EXPECT_EQ(Lib().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_KILL), GC_ERR_SUCCESS) << LastError();
        EXPECT_EQ(Lib().DSFlushQueue(m_hStream, ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS) << LastError();
        BUFFER_HANDLE hBuffer = nullptr;
        while (Lib().DSGetBufferID(m_hStream, 0, &hBuffer) == GC_ERR_SUCCESS) {
            void* pMemory = nullptr;
            ASSERT_EQ(Lib().DSRevokeBuffer(m_hStream, hBuffer, &pMemory, nullptr), GC_ERR_SUCCESS) << LastError();
            EXPECT_NE(pMemory, nullptr);
        }
        EXPECT_EQ(Read(gev::bootstrap::kStreamChannelPort.Address), 0u) << "the camera's channel is closed";
    }

    camera::IMAGE_FORMAT m_objFormat{640, 480};
    std::unique_ptr<CRunningCamera> m_pCamera;
    std::optional<CXMLAnalyzer> m_objDescription;
    TL_HANDLE m_hTL = nullptr;
    IF_HANDLE m_hInterface = nullptr;
    DEV_HANDLE m_hDevice = nullptr;
    PORT_HANDLE m_hPort = nullptr;
    DS_HANDLE m_hStream = nullptr;
    EVENT_HANDLE m_hEvent = nullptr;
    std::vector<std::vector<std::byte>> m_vecMemory;
};

TEST_F(ProducerStream, ImagesComeExactWithEveryIdWidthWithChunksAndAgainAfterAStop) {
    ASSERT_NO_FATAL_FAILURE(Plug({}));
    EXPECT_EQ(StreamInfo<std::uint32_t>(STREAM_INFO_ZR_OPTIMAL_PACKET_SIZE), 1500u);
    SetRate(60);
    for (const bool bWide : {false, true}) {
        Write(gev::bootstrap::kGvspConfiguration.Address,
              bWide ? gev::bootstrap::kGvspConfigurationExtendedBlockIDs : 0);
        Write(camera::address::kChunkModeActive, bWide ? 1 : 0);
        ASSERT_NO_FATAL_FAILURE(StartWith(8));
        EXPECT_EQ(Lib().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1), GC_ERR_RESOURCE_IN_USE);
        Write(camera::address::kAcquisitionStart, 1);
        const ACQUIRED objAcquired = Acquire(20);
        EXPECT_EQ(objAcquired.Frames, 20u);
        EXPECT_EQ(objAcquired.Wrong + objAcquired.Incomplete, 0u);
        EXPECT_EQ(objAcquired.Chunks != 0, bWide);
        EXPECT_EQ(Read(gev::bootstrap::kStreamChannelPacketSize.Address) & gev::bootstrap::kPacketSizeMask, 1500u);
        ASSERT_NO_FATAL_FAILURE(StopAndRevoke());
    }
}

struct FAULTY_CASE {
    const char* Name;
    camera::STREAM_FAULTS Faults;
    bool AllComplete;
    std::uint32_t PacketSize = 0;  ///< written by the consumer; 0: found by the producer
};

void PrintTo(const FAULTY_CASE& objCase, std::ostream* pStream) {
    *pStream << objCase.Name;
}

class ProducerStreamWithFaults : public ProducerStream, public testing::WithParamInterface<FAULTY_CASE> {};

TEST_P(ProducerStreamWithFaults, DeliversEveryFrameAndNoneIsWrongUnawares) {
    constexpr std::size_t kFrames = 40;
    ASSERT_NO_FATAL_FAILURE(Plug(GetParam().Faults));
    if (GetParam().AllComplete) {  // however seldom a busy machine lets the camera run
        StreamFeature("StreamResendTimeout").FromString("50000");
        StreamFeature("StreamBlockTimeout").FromString("10000000");
    }
    if (GetParam().PacketSize != 0) {
        Write(gev::bootstrap::kStreamChannelPacketSize.Address, GetParam().PacketSize);
    }
    SetRate(25);  // an image has over a second to be completed in, until too many others are under way
    ASSERT_NO_FATAL_FAILURE(StartWith(16));
    Write(camera::address::kAcquisitionStart, 1);
    const ACQUIRED objAcquired = Acquire(kFrames);
    EXPECT_EQ(objAcquired.Frames, kFrames);
    EXPECT_EQ(objAcquired.Wrong, 0u);
    EXPECT_EQ(objAcquired.Incomplete == 0, GetParam().AllComplete)
        << objAcquired.Incomplete << " incomplete, of packets " << StreamCount("StreamMissingPacketCount")
        << " missing; resent " << StreamCount("StreamResentPacketCount") << " for "
        << StreamCount("StreamResendRequestCount") << " requests, unavailable "
        << StreamCount("StreamUnavailablePacketCount");
    ASSERT_NO_FATAL_FAILURE(StopAndRevoke());
}

INSTANTIATE_TEST_SUITE_P(Faults, ProducerStreamWithFaults,
                         testing::Values(FAULTY_CASE{"FiveInAHundredLost", {.Loss = 5}, true},
                                         FAULTY_CASE{"BurstsLost", {.Loss = 1, .LossBurst = 32}, true},
                                         FAULTY_CASE{
                                             "LeadersAndTrailersLost", {.LostLeaders = 10, .LostTrailers = 10}, true},
                                         FAULTY_CASE{"ReorderedAndDoubled", {.Duplicates = 10, .Reorder = 30}, true},
                                         FAULTY_CASE{"WrongSizes", {.WrongSizes = 1}, true},
                                         FAULTY_CASE{"ForeignPackets", {.Foreign = 10}, true},
                                         FAULTY_CASE{"ForeignPacketsAtAGivenSize", {.Foreign = 10}, true, 1400},
                                         FAULTY_CASE{"LossWithoutResend", {.Loss = 1, .NoResend = true}, false}),
                         [](const auto& objInfo) { return objInfo.param.Name; });

TEST_F(ProducerStream, EventsOfTheCameraComeOnceEachWithTheirData) {
    ASSERT_NO_FATAL_FAILURE(Plug({}));
    EVENT_HANDLE hRemote = nullptr;
    ASSERT_EQ(Lib().GCRegisterEvent(m_hDevice, EVENT_REMOTE_DEVICE, &hRemote), GC_ERR_SUCCESS) << LastError();
    Write(camera::address::kEventNotification, 1);
    ASSERT_NO_FATAL_FAILURE(StartWith(4));
    Write(camera::address::kAcquisitionStart, 1);
    std::uint64_t nLastFrame = 0;
    for (int i = 0; i < 3; ++i) {
        std::array<std::byte, 1024> arrEvent{};
        size_t nSize = arrEvent.size();
        ASSERT_EQ(Lib().EventGetData(hRemote, arrEvent.data(), &nSize, kLongEnough), GC_ERR_SUCCESS) << LastError();
        std::uint64_t nId = 0;
        size_t nIdSize = sizeof nId;
        INFO_DATATYPE nType = 0;
        EXPECT_EQ(Lib().EventGetDataInfo(hRemote, arrEvent.data(), nSize, EVENT_DATA_NUMID, &nType, &nId, &nIdSize),
                  GC_ERR_SUCCESS);
        EXPECT_EQ(nId, gev::kEventEndOfExposure);
        std::array<std::byte, 540> arrValue{};
        size_t nValue = arrValue.size();
        EXPECT_EQ(
            Lib().EventGetDataInfo(hRemote, arrEvent.data(), nSize, EVENT_DATA_VALUE, &nType, arrValue.data(), &nValue),
            GC_ERR_SUCCESS);
        ASSERT_EQ(nValue, 16u) << "timestamp and frame number";
        EXPECT_EQ(gev::Get64(arrValue, 8), i == 0 ? gev::Get64(arrValue, 8) : nLastFrame + 1);
        nLastFrame = gev::Get64(arrValue, 8);
    }
    ASSERT_NO_FATAL_FAILURE(StopAndRevoke());
}

TEST_F(ProducerStream, OfACameraThatOnlyAsksForPatienceStopsStartsAndClosesWithinItsTimes) {
    const auto funCall = [this](const char* pszWhat, GC_ERROR nResult, std::chrono::milliseconds objMost,
                                auto funWhat) {
        const auto objStart = std::chrono::steady_clock::now();
        EXPECT_EQ(funWhat(), nResult) << pszWhat << " " << LastError();
        EXPECT_LT(std::chrono::steady_clock::now() - objStart, objMost) << pszWhat;
    };
    const auto funStart = [this] {
        return Lib().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE);
    };
    camera::FAULTS objFaults;
    objFaults.PendingForever = true;
    ASSERT_NO_FATAL_FAILURE(Plug({}));
    Write(gev::bootstrap::kHeartbeatTimeout.Address, 30'000);  // so that the camera isn't given up meanwhile
    ASSERT_NO_FATAL_FAILURE(StartWith(2));
    m_pCamera->Get().SetFaults(objFaults);
    funCall("stop", GC_ERR_SUCCESS, 1500ms,
            [this] { return Lib().DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_DEFAULT); });
    funCall("start", GC_ERR_TIMEOUT, 5500ms, funStart);
    m_pCamera->Get().SetFaults({});
    ASSERT_EQ(funStart(), GC_ERR_SUCCESS) << LastError();
    m_pCamera->Get().SetFaults(objFaults);
    funCall("close", GC_ERR_SUCCESS, 1000ms, [this] { return Lib().DevClose(m_hDevice); });
}

// By hand, in release: scripts/stream_endurance.sh.
TEST_F(ProducerStream, DISABLED_TenThousandImagesAtTheLimitOfAGigabitLink) {
    constexpr std::size_t kFrames = 10'000;
    constexpr double kBytesASecond = 1e9 / 8;
    m_objFar->Run("tc qdisc add dev far0 root tbf rate 1gbit burst 128kb latency 50ms");
    m_objFormat = {1280, 1024};
    ASSERT_NO_FATAL_FAILURE(Plug({}));
    const std::size_t nSize = Read(camera::address::kPayloadSize);
    constexpr std::size_t kPayload = 1464;
    const std::size_t nOnTheLink = nSize + (nSize / kPayload + 3) * (1514 - kPayload);  // with Ethernet headers
    SetRate(static_cast<float>(0.99 * kBytesASecond / static_cast<double>(nOnTheLink)));
    ASSERT_NO_FATAL_FAILURE(StartWith(16));
    Write(camera::address::kAcquisitionStart, 1);
    const auto objStart = std::chrono::steady_clock::now();
    const ACQUIRED objAcquired = Acquire(kFrames);
    const std::chrono::duration<double> objElapsed = std::chrono::steady_clock::now() - objStart;
    std::printf("%zu images in %.1f s, %.3f of the link\n", objAcquired.Frames, objElapsed.count(),
                static_cast<double>(objAcquired.Frames * nOnTheLink) / objElapsed.count() / kBytesASecond);
    EXPECT_EQ(objAcquired.Frames, kFrames);
    EXPECT_EQ(objAcquired.Incomplete, 0u);
    EXPECT_EQ(objAcquired.Wrong, 0u);
    EXPECT_EQ(StreamInfo<std::uint64_t>(STREAM_INFO_NUM_UNDERRUN), 0u);
    ASSERT_NO_FATAL_FAILURE(StopAndRevoke());
}

class ProducerStreamLosses : public ProducerStream, public testing::WithParamInterface<FAULTY_CASE> {};

// By hand, in release: scripts/stream_losses.sh. The first case is the measure of the others.
TEST_P(ProducerStreamLosses, DISABLED_CostNoRateAndNoFrameAndAreAllCounted) {
    constexpr std::uint32_t kFrames = 400;
    static double s_dLossless = 0;
    const FAULTY_CASE& objCase = GetParam();
    m_objFormat = {1280, 1024};
    ASSERT_NO_FATAL_FAILURE(Plug(objCase.Faults));
    StreamFeature("StreamPacketResendEnable").FromString(objCase.AllComplete ? "On" : "Off");
    SetRate(80);
    Write(camera::address::kAcquisitionMode, 1);
    Write(camera::address::kAcquisitionFrameCount, kFrames);
    ASSERT_NO_FATAL_FAILURE(StartWith(16));
    Write(camera::address::kAcquisitionStart, 1);
    const auto objStart = std::chrono::steady_clock::now();
    const ACQUIRED objAcquired = Acquire(kFrames);
    const std::chrono::duration<double> objElapsed = std::chrono::steady_clock::now() - objStart;
    const double dRate = static_cast<double>(objAcquired.Frames) / objElapsed.count();
    const std::uint64_t nRequests = StreamCount("StreamResendRequestCount");
    const std::uint64_t nMissing = StreamCount("StreamMissingPacketCount");
    if (s_dLossless == 0) {
        s_dLossless = dRate;
        std::printf("%-28s %8s %6s %9s %8s %5s %11s\n", "case", "frames/s", "ratio", "requests", "missing", "lost",
                    "incomplete");
    }
    const std::uint64_t nLost = StreamCount("StreamLostFrameCount");
    std::printf("%-28s %8.2f %6.3f %9ju %8ju %5ju %11zu\n", objCase.Name, dRate, dRate / s_dLossless,
                std::uintmax_t{nRequests}, std::uintmax_t{nMissing}, std::uintmax_t{nLost}, objAcquired.Incomplete);
    EXPECT_EQ(objAcquired.Frames + nLost, kFrames);
    EXPECT_EQ(objAcquired.Wrong, 0u);
    EXPECT_EQ(objAcquired.Incomplete == 0, objCase.AllComplete);
    EXPECT_GE(dRate, 0.9 * s_dLossless);
    const bool bLoses = objCase.Faults.Loss + objCase.Faults.LostLeaders + objCase.Faults.LostTrailers > 0;
    EXPECT_EQ(nRequests != 0, bLoses && objCase.AllComplete);
    EXPECT_EQ(nMissing != 0, !objCase.AllComplete);
    constexpr std::size_t kPayload = 1464;
    const std::size_t nPackets = (m_vecMemory.front().size() + kPayload - 1) / kPayload + 2;
    EXPECT_EQ(StreamCount("StreamReceivedPacketCount") + nMissing, kFrames * nPackets);
    ASSERT_NO_FATAL_FAILURE(StopAndRevoke());
}

INSTANTIATE_TEST_SUITE_P(Faults, ProducerStreamLosses,
                         testing::Values(FAULTY_CASE{"no losses", {}, true},
                                         FAULTY_CASE{"0.1 % lost", {.Loss = 0.1}, true},
                                         FAULTY_CASE{"1 % lost", {.Loss = 1}, true},
                                         FAULTY_CASE{"5 % lost", {.Loss = 5}, true},
                                         FAULTY_CASE{"1 % lost in bursts of 32", {.Loss = 1, .LossBurst = 32}, true},
                                         FAULTY_CASE{"5 % of the leaders lost", {.LostLeaders = 5}, true},
                                         FAULTY_CASE{"5 % of the trailers lost", {.LostTrailers = 5}, true},
                                         FAULTY_CASE{"shuffled in groups of 30", {.Reorder = 30}, true},
                                         FAULTY_CASE{"no resend, 0.1 % lost", {.Loss = 0.1}, false},
                                         FAULTY_CASE{"no resend, 1 % lost", {.Loss = 1}, false},
                                         FAULTY_CASE{"no resend, bursts of 32", {.Loss = 1, .LossBurst = 32}, false},
                                         FAULTY_CASE{"no resend, leaders lost", {.LostLeaders = 5}, false},
                                         FAULTY_CASE{"no resend, trailers lost", {.LostTrailers = 5}, false}));

TEST_F(ProducerStream, OfANumberOfImagesIsOverWithTheLastAndCanBeStartedAgain) {
    ASSERT_NO_FATAL_FAILURE(Plug({}));
    BUFFER_HANDLE hBuffer = nullptr;
    ASSERT_EQ(Lib().DSAllocAndAnnounceBuffer(m_hStream, Read(camera::address::kPayloadSize), nullptr, &hBuffer), 0);
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(Lib().DSQueueBuffer(m_hStream, hBuffer), GC_ERR_SUCCESS);
        ASSERT_EQ(Lib().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1), GC_ERR_SUCCESS) << LastError();
        EXPECT_EQ(Lib().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1), GC_ERR_RESOURCE_IN_USE);
        Write(camera::address::kAcquisitionStart, 1);
        EVENT_NEW_BUFFER_DATA objData{};
        size_t nSize = sizeof objData;
        ASSERT_EQ(Lib().EventGetData(m_hEvent, &objData, &nSize, kLongEnough), GC_ERR_SUCCESS) << LastError();
        EXPECT_EQ(StreamInfo<bool8_t>(STREAM_INFO_IS_GRABBING), 0);
        Write(camera::address::kAcquisitionStop, 1);
    }
}

TEST_F(ProducerStream, BuffersAreWhereTheQueueOperationsPutThem) {
    ASSERT_NO_FATAL_FAILURE(Plug({}));
    std::byte arrMemory[64];
    std::array<BUFFER_HANDLE, 2> arrBuffer{};
    ASSERT_EQ(Lib().DSAnnounceBuffer(m_hStream, arrMemory, 64, nullptr, &arrBuffer[0]), GC_ERR_SUCCESS);
    EXPECT_EQ(Lib().DSAnnounceBuffer(m_hStream, arrMemory, 64, nullptr, &arrBuffer[1]), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(Lib().DSAllocAndAnnounceBuffer(m_hStream, 64, arrMemory, &arrBuffer[1]), GC_ERR_SUCCESS);
    const struct {
        ACQ_QUEUE_TYPE Operation;
        std::size_t Queued;
        std::size_t Output;
    } arrStep[] = {{ACQ_QUEUE_UNQUEUED_TO_INPUT, 2, 0}, {ACQ_QUEUE_INPUT_TO_OUTPUT, 0, 2},
                   {ACQ_QUEUE_ALL_TO_INPUT, 2, 0},      {ACQ_QUEUE_INPUT_TO_OUTPUT, 0, 2},
                   {ACQ_QUEUE_OUTPUT_DISCARD, 0, 0},    {ACQ_QUEUE_ALL_TO_INPUT, 2, 0},
                   {ACQ_QUEUE_ALL_DISCARD, 0, 0}};
    for (const auto& objStep : arrStep) {
        EXPECT_EQ(Lib().DSFlushQueue(m_hStream, objStep.Operation), GC_ERR_SUCCESS);
        EXPECT_EQ(StreamInfo<std::size_t>(STREAM_INFO_NUM_QUEUED), objStep.Queued) << objStep.Operation;
        EXPECT_EQ(StreamInfo<std::size_t>(STREAM_INFO_NUM_AWAIT_DELIVERY), objStep.Output) << objStep.Operation;
    }
    EXPECT_EQ(Lib().DSQueueBuffer(m_hStream, arrBuffer[0]), GC_ERR_SUCCESS);
    EXPECT_EQ(Lib().DSQueueBuffer(m_hStream, arrBuffer[0]), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(Lib().DSRevokeBuffer(m_hStream, arrBuffer[0], nullptr, nullptr), GC_ERR_BUSY);
    void* pMemory = arrMemory;
    void* pUser = nullptr;
    EXPECT_EQ(Lib().DSRevokeBuffer(m_hStream, arrBuffer[1], &pMemory, &pUser), GC_ERR_SUCCESS);
    EXPECT_EQ(pMemory, nullptr) << "the producer's own memory";
    EXPECT_EQ(pUser, arrMemory);
    EXPECT_EQ(Lib().DSQueueBuffer(m_hStream, arrBuffer[1]), GC_ERR_INVALID_HANDLE);
}

TEST_F(ProducerStream, SettingsSayThatTheyAreSettingsAndLocked) {
    ASSERT_NO_FATAL_FAILURE(Plug({}));
    EXPECT_FALSE(StreamFeature("TLParamsLocked").GetNode()->IsStreamable());
    for (const char* pszName : {"StreamPacketSizeMode", "StreamReceiveBufferRequest", "StreamBlockTimeout"}) {
        EXPECT_TRUE(StreamFeature(pszName).GetNode()->IsStreamable()) << pszName;
        for (const char* pszLocked : {"1", "0"}) {
            StreamFeature("TLParamsLocked").FromString(pszLocked);
            EXPECT_EQ(GenApi_3_0::IsWritable(StreamFeature(pszName).GetAccessMode()), *pszLocked == '0') << pszName;
        }
    }
}

}  // namespace
