#include "producer/modules/StreamModule.h"

#include <span>
#include <utility>

#include "gev/Bootstrap.h"
#include "producer/ProducerError.h"

namespace producer {

namespace {

constexpr std::size_t kLeastBuffers = 1;
constexpr std::int64_t kLongestTimeout = 60'000'000;  // us

void Add(STREAM_STATISTICS& objSum, const STREAM_STATISTICS& objMore) {
    objSum.Packets += objMore.Packets;
    objSum.PacketsMissing += objMore.PacketsMissing;
    objSum.PacketsResent += objMore.PacketsResent;
    objSum.PacketsUnavailable += objMore.PacketsUnavailable;
    objSum.PacketsDuplicate += objMore.PacketsDuplicate;
    objSum.PacketsRefused += objMore.PacketsRefused;
    objSum.ResendRequests += objMore.ResendRequests;
    objSum.BlocksDelivered += objMore.BlocksDelivered;
    objSum.BlocksIncomplete += objMore.BlocksIncomplete;
    objSum.BlocksLost += objMore.BlocksLost;
    objSum.BlocksUnderrun += objMore.BlocksUnderrun;
}

std::int64_t RequireWithin(CFeature::Number nValue, std::int64_t nLeast, std::int64_t nMost) {
    if (nValue < nLeast || nValue > nMost) {
        throw CProducerError(GC_ERR_INVALID_VALUE, std::to_string(nValue) + " isn't from " + std::to_string(nLeast) +
                                                       " to " + std::to_string(nMost));
    }
    return nValue;
}

}  // namespace

CStreamModule::CStreamModule(std::shared_ptr<CRemotePort> pRemotePort, std::string strId,
                             std::function<void()> funClosed)
    : CModule("TLDataStream", std::move(strId),
              {"NorvikStream", "The data stream of one camera", "StreamPort", "6B1E3A52-0C3D-4E61-9A57-2F4D0B8C7E14"}),
      m_pRemotePort(std::move(pRemotePort)),
      m_funClosed(std::move(funClosed)),
      m_objPool(GetEvents()) {
    GetEvents().Offer(EVENT_NEW_BUFFER, sizeof(EVENT_NEW_BUFFER_DATA), CBufferPool::kMostBuffers);
    CRegisterMap& objMap = GetRegisters();
    objMap.Category("StreamInformation");
    objMap.Text("StreamID", "Identifies the data stream", [this] { return GetModuleId(); }).Constant();
    objMap.Enumeration("StreamType", "The transport layer of the data stream", {{"GigEVision", 1}}, [] { return 1; })
        .Constant();
    AddAcquisitionFeatures();
    AddLinkFeatures();
    AddStatisticsFeatures();
    objMap.Finish();
}

void CStreamModule::RequireUnlocked() const {
    if (m_bParamsLocked) {
        throw CProducerError(GC_ERR_ACCESS_DENIED, "the transport layer's parameters are locked: stop the acquisition");
    }
}

void CStreamModule::AddAcquisitionFeatures() {
    CRegisterMap& objMap = GetRegisters();
    objMap.Category("BufferHandlingControl");
    objMap
        .Integer("TLParamsLocked", "1 while an acquisition forbids changes of what it is built on",
                 [this] { return CFeature::Number{m_bParamsLocked}; })
        .Visibility("Invisible")
        .Set([this](CFeature::Number nValue) { m_bParamsLocked = RequireWithin(nValue, 0, 1) != 0; });
    objMap
        .Integer("StreamAnnouncedBufferCount", "Buffers that are announced",
                 [this] { return static_cast<CFeature::Number>(m_objPool.GetCounts().Announced); })
        .Visibility("Expert");
    objMap.Integer("StreamAnnounceBufferMinimum", "Buffers that an acquisition needs", [] { return kLeastBuffers; })
        .Visibility("Expert")
        .Constant();
    objMap
        .Enumeration("StreamPacketResendEnable", "Whether missing packets are asked for again", {{"Off", 0}, {"On", 1}},
                     [this] { return CFeature::Number{m_bResend}; })
        .Custom()
        .Streamable()
        .Set([this](CFeature::Number nValue) {
            m_bResend = RequireWithin(nValue, 0, 1) != 0;
            const std::lock_guard objLock(m_mtxRunning);
            if (m_pAcquisition) {
                m_pAcquisition->SetResend(m_bResend);
            }
        });
    const auto funTime = [&](const char* pszName, const char* pszToolTip, std::atomic<std::int64_t>& nTime) {
        objMap.Duration(pszName, pszToolTip, [&nTime] { return nTime.load(); })
            .Custom()
            .Visibility("Expert")
            .LockedBy("TLParamsLocked")
            .Streamable()
            .Set([this, &nTime](CFeature::Number nValue) {
                RequireUnlocked();
                nTime = RequireWithin(nValue, 1'000, kLongestTimeout);
            });
    };
    funTime("StreamResendTimeout",
            "How long a missing packet is waited for before it is asked for again, the first time", m_nResendTimeout);
    funTime("StreamBlockTimeout", "An image of which nothing came for so long is delivered as it is", m_nBlockTimeout);
}

void CStreamModule::AddLinkFeatures() {
    CRegisterMap& objMap = GetRegisters();
    const auto funFact = [&](const char* pszName, const char* pszToolTip,
                             auto ACQUISITION_FACTS::*pMember) -> CFeature& {
        return objMap
            .Integer(pszName, pszToolTip,
                     [this, pMember] {
                         const std::lock_guard objLock(m_mtxRunning);
                         return static_cast<CFeature::Number>(m_objFacts.*pMember);
                     })
            .Custom()
            .Visibility("Expert");
    };
    objMap.Category("StreamLink");
    objMap
        .Enumeration("StreamPacketSizeMode",
                     "Auto looks for the largest packets that come through before an acquisition, unless the camera's "
                     "packet size was written; Camera takes the camera's as it is",
                     {{"Camera", 0}, {"Auto", 1}}, [this] { return CFeature::Number{m_bProbe}; })
        .Custom()
        .LockedBy("TLParamsLocked")
        .Streamable()
        .Set([this](CFeature::Number nValue) {
            RequireUnlocked();
            m_bProbe = RequireWithin(nValue, 0, 1) != 0;
        });
    funFact("StreamPacketSize", "Of the last acquisition, with the headers of IP, UDP and GVSP",
            &ACQUISITION_FACTS::PacketSize)
        .Unit("B");
    objMap
        .Integer("StreamReceiveBufferRequest", "Receive buffer of the socket that the system is asked for",
                 [this] { return m_nReceiveBuffer.load(); })
        .Custom()
        .Visibility("Expert")
        .Unit("B")
        .LockedBy("TLParamsLocked")
        .Streamable()
        .Set([this](CFeature::Number nValue) {
            RequireUnlocked();
            m_nReceiveBuffer = RequireWithin(nValue, 4096, std::int64_t{1} << 30);
        });
    funFact("StreamReceiveBufferGranted",
            "Receive buffer that the system granted to the last acquisition; net.core.rmem_max limits it for users "
            "without the right to more, and Linux tells twice what it grants, for its bookkeeping",
            &ACQUISITION_FACTS::GrantedBuffer)
        .Unit("B");
    funFact("StreamPacketsJoined", "1 when the system joins packets of the last acquisition (UDP GRO)",
            &ACQUISITION_FACTS::IsJoining);
    funFact("StreamPacketResendSupported", "1 when the camera sends packets again", &ACQUISITION_FACTS::CanResend);
    funFact("StreamHostPort", "UDP port that the last acquisition received on", &ACQUISITION_FACTS::Port);
}

void CStreamModule::AddCount(const char* pszName, const char* pszToolTip, std::function<CFeature::Number()> funGet) {
    GetRegisters().Integer(pszName, pszToolTip, std::move(funGet)).Custom().Visibility("Expert");
}

void CStreamModule::AddStatisticsFeatures() {
    GetRegisters().Category("StreamStatistics");
    const auto funCount = [&](const char* pszName, const char* pszToolTip, std::uint64_t STREAM_STATISTICS::*pMember) {
        AddCount(pszName, pszToolTip,
                 [this, pMember] { return static_cast<CFeature::Number>(GetStatistics().*pMember); });
    };
    funCount("StreamDeliveredFrameCount", "Images delivered, incomplete ones among them",
             &STREAM_STATISTICS::BlocksDelivered);
    funCount("StreamIncompleteFrameCount", "Images delivered with data missing", &STREAM_STATISTICS::BlocksIncomplete);
    funCount("StreamLostFrameCount", "Images left out of the camera's numbering: nothing of them came",
             &STREAM_STATISTICS::BlocksLost);
    AddCount("StreamUnderrunFrameCount", "Images dropped since no buffer was queued",
             [this] { return static_cast<CFeature::Number>(m_objPool.GetCounts().Underruns); });
    funCount("StreamReceivedPacketCount", "Packets that found their place in an image", &STREAM_STATISTICS::Packets);
    funCount("StreamMissingPacketCount", "Packets that never came", &STREAM_STATISTICS::PacketsMissing);
    funCount("StreamResentPacketCount", "Packets that came since they were asked for again",
             &STREAM_STATISTICS::PacketsResent);
    funCount("StreamResendRequestCount", "Requests to send packets again", &STREAM_STATISTICS::ResendRequests);
    funCount("StreamUnavailablePacketCount", "Packets that the camera had no more when it was asked",
             &STREAM_STATISTICS::PacketsUnavailable);
    funCount("StreamDuplicatePacketCount", "Packets that came again or too late", &STREAM_STATISTICS::PacketsDuplicate);
    funCount("StreamRefusedPacketCount", "Packets that were malformed or out of range",
             &STREAM_STATISTICS::PacketsRefused);
    AddCount("StreamSystemDroppedPacketCount",
             "Packets that the system dropped: its receive buffer was full, or another host sent them",
             [this] { return static_cast<CFeature::Number>(GetDropped()); });
}

STREAM_STATISTICS CStreamModule::GetStatistics() const {
    const std::lock_guard objLock(m_mtxRunning);
    STREAM_STATISTICS objSum = m_objEarlier;
    if (m_pAcquisition) {
        Add(objSum, m_pAcquisition->GetStatistics());
    }
    return objSum;
}

std::uint64_t CStreamModule::GetDropped() const {
    const std::lock_guard objLock(m_mtxRunning);
    return m_nEarlierDropped + (m_pAcquisition ? m_pAcquisition->GetDropped() : 0);
}

CInfoValue CStreamModule::GetInfo(STREAM_INFO_CMD nCommand) {
    switch (nCommand) {
        case STREAM_INFO_ID:
            return CInfoValue::Text(GetModuleId());
        case STREAM_INFO_TLTYPE:
            return CInfoValue::Text("GEV");
        case STREAM_INFO_NUM_DELIVERED:
            return CInfoValue::Uint64(m_objPool.GetCounts().Delivered);
        case STREAM_INFO_NUM_UNDERRUN:
            return CInfoValue::Uint64(m_objPool.GetCounts().Underruns);
        case STREAM_INFO_NUM_STARTED:
            return CInfoValue::Uint64(m_objPool.GetCounts().Started);
        case STREAM_INFO_NUM_ANNOUNCED:
            return CInfoValue::Size(m_objPool.GetCounts().Announced);
        case STREAM_INFO_NUM_QUEUED:
            return CInfoValue::Size(m_objPool.GetCounts().Queued);
        case STREAM_INFO_NUM_AWAIT_DELIVERY:
            return CInfoValue::Size(m_objPool.GetCounts().AwaitDelivery);
        case STREAM_INFO_IS_GRABBING: {
            const std::lock_guard objLock(m_mtxRunning);
            return CInfoValue::Bool(m_pAcquisition != nullptr && !m_objPool.IsThrough());
        }
        case STREAM_INFO_DEFINES_PAYLOADSIZE:
            return CInfoValue::Bool(false);
        case STREAM_INFO_BUF_ANNOUNCE_MIN:
            return CInfoValue::Size(kLeastBuffers);
        case STREAM_INFO_BUF_ALIGNMENT:
            return CInfoValue::Size(1);
        case STREAM_INFO_ZR_BUF_ANNOUNCE_MAX:
            return CInfoValue::Size(CBufferPool::kMostBuffers);
        case STREAM_INFO_ZR_OPTIMAL_PACKET_SIZE:
            return CInfoValue::Uint32(GetPacketSize());
        default:
            throw CProducerError(GC_ERR_NOT_AVAILABLE,
                                 "nothing is known of a data stream for the info command " + std::to_string(nCommand));
    }
}

/// The size in use while images come, else the one found best now.
std::uint32_t CStreamModule::GetPacketSize() {
    const std::lock_guard objStart(m_mtxStart);
    RequireOpen();
    {
        const std::lock_guard objLock(m_mtxRunning);
        if (m_pAcquisition) {
            return m_objFacts.PacketSize;
        }
    }
    return AskPacketSize(m_pRemotePort->GetChannel());
}

void* CStreamModule::Announce(void* pMemory, std::size_t nSize, void* pUser) {
    if (nSize == 0) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, "a buffer of 0 bytes can't be announced");
    }
    const std::span arrMemory(static_cast<std::byte*>(pMemory), pMemory != nullptr ? nSize : 0);
    auto pBuffer = pMemory != nullptr ? std::make_shared<CStreamBuffer>(arrMemory, pUser)
                                      : std::make_shared<CStreamBuffer>(nSize, pUser);
    RequireOpen();
    return m_objPool.Announce(std::move(pBuffer));
}

void CStreamModule::StartAcquisition(std::uint64_t nFrames) {
    if (nFrames == 0) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, "an acquisition of 0 images can't be started");
    }
    const std::lock_guard objStart(m_mtxStart);
    RequireOpen();
    if (m_pAcquisition && !m_objPool.IsThrough()) {  // changes under m_mtxStart alone
        throw CProducerError(GC_ERR_RESOURCE_IN_USE, "the acquisition runs already");
    }
    if (m_objPool.GetCounts().Announced < kLeastBuffers) {
        throw CProducerError(GC_ERR_INVALID_BUFFER, "no buffer is announced");
    }
    if (m_pAcquisition) {
        EndAcquisition(true);  // with its last image it was over for the consumer
    }
    ACQUISITION_SETTINGS objSettings;
    objSettings.ProbePacketSize = m_bProbe && !m_pRemotePort->HasWrittenPacketSize();
    objSettings.ReceiveBuffer = static_cast<std::size_t>(m_nReceiveBuffer.load());
    objSettings.Reassembly.Resend = m_bResend;
    objSettings.Reassembly.BlockTimeout = std::chrono::microseconds(m_nBlockTimeout);
    objSettings.Reassembly.ResendTimeout = std::chrono::microseconds(m_nResendTimeout);
    auto pAcquisition = std::make_unique<CAcquisition>(m_pRemotePort->GetChannel(), m_objPool, objSettings);
    m_objPool.Start(nFrames, pAcquisition->GetFacts().TickFrequency);
    pAcquisition->Run();
    const std::lock_guard objLock(m_mtxRunning);
    m_objFacts = pAcquisition->GetFacts();
    m_pAcquisition = std::move(pAcquisition);
    m_pAcquisition->SetResend(m_bResend);  // it may have been switched meanwhile
}

void CStreamModule::StopAcquisition(bool bKill) {
    const std::lock_guard objStart(m_mtxStart);
    if (!m_pAcquisition) {
        throw CProducerError(GC_ERR_RESOURCE_IN_USE, "no acquisition runs");
    }
    EndAcquisition(!bKill);
}

/// Called under m_mtxStart. The acquisition can be asked until it has ended.
void CStreamModule::EndAcquisition(bool bDeliver) noexcept {
    m_pAcquisition->Stop(bDeliver);
    const std::lock_guard objLock(m_mtxRunning);
    Add(m_objEarlier, m_pAcquisition->GetStatistics());
    m_nEarlierDropped += m_pAcquisition->GetDropped();
    m_pAcquisition.reset();
}

void CStreamModule::DoClose() noexcept {
    {
        const std::lock_guard objStart(m_mtxStart);
        if (m_pAcquisition) {
            EndAcquisition(false);
        }
    }
    m_objPool.RevokeAll();
    m_funClosed();
}

}  // namespace producer
