#include "camera/ImageStream.h"

#include <algorithm>
#include <exception>

#include "camera/StreamSocket.h"
#include "gev/GvspHeader.h"

namespace camera {
namespace {

using gev::EGvcpStatus;
using namespace std::chrono_literals;

// The kernel wakes a thread so much too late that the rest of a wait is waited out awake.
constexpr auto kAwake = 60us;
constexpr auto kMostBehind = 100ms;  // beyond that frames are left out
constexpr std::uint32_t kMostTriggers = 1000;
constexpr std::uint32_t kPatterns = 4;

}  // namespace

CImageStream::CImageStream(IPacketOutlet& objOutlet, IStreamNews& objNews)
    : m_objOutlet(objOutlet), m_objNews(objNews), m_objFaulty(objOutlet), m_objThread([this] { Run(); }) {}

CImageStream::~CImageStream() {
    Order([this](ORDERS& objOrders) {
        objOrders.Quit = true;
        m_bHurry = true;
    });
    m_objThread.join();
}

template <class Function>
void CImageStream::Order(Function funChange) {
    {
        const std::scoped_lock lock(m_mtxOrders);
        funChange(m_objOrders);
        m_bOrders = true;
    }
    m_cvOrders.notify_one();
}

void CImageStream::Open() {
    Order([](ORDERS& objOrders) { objOrders.Open = true; });
}

void CImageStream::Close() {
    Order([this](ORDERS& objOrders) {
        m_bHurry = true;
        objOrders.Close = true;
        objOrders.Open = false;
        objOrders.Start.reset();
        objOrders.Change.reset();
        objOrders.TestPacket.reset();
        objOrders.ResendCount = 0;
    });
}

void CImageStream::Start(const STREAM_SETTINGS& objSettings) {
    Order([&](ORDERS& objOrders) {
        objOrders.Start = objSettings;
        objOrders.Change.reset();
        objOrders.Triggers = {};
    });
}

void CImageStream::Stop() {
    Order([](ORDERS& objOrders) {
        objOrders.Stop = true;
        objOrders.Start.reset();
    });
}

void CImageStream::Change(const STREAM_SETTINGS& objSettings) {
    Order([&](ORDERS& objOrders) { objOrders.Change = objSettings; });
}

void CImageStream::Trigger(std::size_t nTrigger) {
    Order([&](ORDERS& objOrders) { ++objOrders.Triggers.at(nTrigger); });
}

void CImageStream::SendTestPacket(const STREAM_SETTINGS& objSettings) {
    Order([&](ORDERS& objOrders) { objOrders.TestPacket = objSettings; });
}

void CImageStream::Resend(const gev::RESEND_COMMAND& objCommand) {
    Order([&](ORDERS& objOrders) {
        if (objOrders.ResendCount < objOrders.Resend.size()) {
            objOrders.Resend[objOrders.ResendCount++] = objCommand;
        }
    });
}

void CImageStream::SetFaults(const STREAM_FAULTS& objFaults) {
    Order([&](ORDERS& objOrders) { objOrders.Faults = objFaults; });
}

void CImageStream::Run() {
    SharpenTimers();
    while (!m_bQuit) {
        WaitForOrders(std::nullopt);
        TakeOrders();
        while (m_objNext && !m_bQuit) {
            const STREAM_SETTINGS objSettings = *m_objNext;
            m_objNext.reset();
            Acquire(objSettings);
        }
    }
}

void CImageStream::WaitForOrders(std::optional<TIME> tEnd) {
    std::unique_lock lock(m_mtxOrders);
    const auto haveCome = [this] { return m_bOrders.load(); };
    if (tEnd) {
        m_cvOrders.wait_until(lock, *tEnd, haveCome);
    } else {
        m_cvOrders.wait(lock, haveCome);
    }
}

void CImageStream::TakeOrders() {
    if (!m_bOrders) {
        return;
    }
    std::optional<STREAM_FAULTS> objFaults;
    std::optional<STREAM_SETTINGS> objTestPacket;
    std::size_t nResends = 0;
    bool bElsewhere = false;
    bool bNowhere = false;
    {
        const std::scoped_lock lock(m_mtxOrders);
        ORDERS& objOrders = m_objOrders;
        m_bOrders = false;
        m_bHurry = false;
        m_bQuit = objOrders.Quit;
        if (objOrders.Close || objOrders.Open) {
            m_bAborted = true;
            m_objNext.reset();
            m_objBlocks.Clear();
            m_objFaulty.Drop();
            bNowhere = true;
        }
        if (objOrders.Stop) {
            m_bStopped = true;
            m_objNext.reset();
        }
        if (objOrders.Start) {
            m_objNext = objOrders.Start;
            m_arrTrigger = {};
        }
        if (objOrders.Change) {
            STREAM_SETTINGS& objSettings = m_objNext ? *m_objNext : m_objSettings;
            bElsewhere = !m_objNext && objSettings.Channel != objOrders.Change->Channel;
            objSettings.Frame = objOrders.Change->Frame;
            objSettings.Channel = objOrders.Change->Channel;
        }
        for (std::size_t i = 0; i < m_arrTrigger.size(); ++i) {
            m_arrTrigger[i] = std::min(m_arrTrigger[i] + objOrders.Triggers[i], kMostTriggers);
        }
        objFaults = objOrders.Faults;
        objTestPacket = objOrders.TestPacket;
        nResends = objOrders.ResendCount;
        std::copy_n(objOrders.Resend.begin(), nResends, m_arrResend.begin());
        objOrders.Close = objOrders.Open = objOrders.Stop = false;
        objOrders.Start.reset();
        objOrders.Change.reset();
        objOrders.Faults.reset();
        objOrders.TestPacket.reset();
        objOrders.Triggers = {};
        objOrders.ResendCount = 0;
    }
    if (objFaults) {
        m_objFaulty.SetFaults(*objFaults);
    }
    if (bNowhere) {
        // Or what is asked for again before the next start would go where the last images went.
        m_objOutlet.SetDestination({}, false);
    } else if (bElsewhere) {
        m_objOutlet.SetDestination(m_objSettings.Channel, m_objSettings.DoNotFragment);
    }
    if (objTestPacket) {
        FireTestPacket(*objTestPacket);
    }
    for (std::size_t i = 0; i < nResends && !m_bHurry; ++i) {
        SendAgain(m_arrResend[i]);
    }
}

void CImageStream::Acquire(const STREAM_SETTINGS& objSettings) {
    m_objSettings = objSettings;
    m_bAborted = false;
    m_bStopped = false;
    if (!Prepare() || !AwaitTrigger(kTriggerAcquisitionStart)) {
        return;
    }
    m_tNextFrame = std::chrono::steady_clock::now();
    for (std::uint32_t i = 1; AwaitFrame() && TakeFrame(i == objSettings.FrameCount) && i != objSettings.FrameCount;
         ++i) {
    }
}

bool CImageStream::Prepare() {
    IMAGE_FORMAT objImage = m_objSettings.Format.Image;
    if (!IsPossible(objImage) ||
        gev::GetPayloadPerPacket(m_objSettings.Format.PacketSize, m_objSettings.Format.ExtendedIDs) == 0) {
        return false;
    }
    m_objBlocks.SetFormat(m_objSettings.Format);
    m_objOutlet.SetDestination(m_objSettings.Channel, m_objSettings.DoNotFragment);
    m_vecImage.clear();
    for (std::uint32_t i = 0; i < kPatterns; ++i) {
        objImage.Pattern = static_cast<ETestPattern>(i);
        m_vecImage.emplace_back(objImage);
    }
    return true;
}

bool CImageStream::AwaitTrigger(std::size_t nTrigger) {
    TakeOrders();
    while (IsWanted() && m_objSettings.Frame.Trigger[nTrigger]) {
        if (m_arrTrigger[nTrigger] > 0) {
            --m_arrTrigger[nTrigger];
            break;
        }
        WaitForOrders(std::nullopt);
        TakeOrders();
    }
    return IsWanted();
}

bool CImageStream::AwaitFrame() {
    const FRAME_SETTINGS& objFrame = m_objSettings.Frame;
    while (true) {
        const bool bTriggered = objFrame.Trigger[kTriggerFrameStart];
        if (!AwaitTrigger(kTriggerFrameStart)) {
            return false;
        }
        const TIME tNow = std::chrono::steady_clock::now();
        if (bTriggered) {
            m_nExposure = objFrame.Exposure;
            m_tFrame = m_tNextFrame = tNow;
            return true;
        }
        if (m_tNextFrame - tNow <= kAwake) {
            const auto nPeriod =
                std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(1 / objFrame.Rate));
            m_nExposure = std::min(objFrame.Exposure, nPeriod);
            // The sensor keeps its beat while images wait to be sent, so a frame may have begun in the past.
            m_tFrame = tNow - m_tNextFrame > kMostBehind ? tNow - m_nExposure : m_tNextFrame;
            m_tNextFrame = m_tFrame + nPeriod;
            return true;
        }
        WaitForOrders(m_tNextFrame - kAwake);
    }
}

// Within a frame: what was asked for meanwhile is done.
bool CImageStream::WaitUntil(TIME tEnd) {
    while (IsAlive()) {
        const TIME tNow = std::chrono::steady_clock::now();
        if (tNow >= tEnd) {
            return true;
        }
        if (tEnd - tNow > kAwake) {
            WaitForOrders(tEnd - kAwake);
        }
        TakeOrders();
    }
    return false;
}

bool CImageStream::TakeFrame(bool bLast) {
    const auto arrImage = m_objBlocks.Begin();
    const auto nPattern = static_cast<std::size_t>(m_objSettings.Frame.Pattern);
    m_vecImage[std::min<std::size_t>(nPattern, kPatterns - 1)].Draw(m_objBlocks.GetFrame(), arrImage);
    if (!WaitUntil(m_tFrame)) {
        return false;
    }
    Tell(kEventFrameTrigger, m_tFrame);
    const TIME tEnd = m_tFrame + m_nExposure;
    if (!WaitUntil(tEnd)) {
        return false;
    }
    Tell(kEventExposureEnd, tEnd);
    BLOCK_FACTS objFacts;
    objFacts.Timestamp = GetTicks(m_tFrame);
    objFacts.ExposureUs = std::chrono::duration_cast<std::chrono::duration<float, std::micro>>(m_nExposure).count();
    m_objBlocks.Finish(objFacts);
    return SendBlock(bLast);
}

bool CImageStream::SendBlock(bool bLast) {
    const std::uint32_t nCount = m_objBlocks.GetPacketCount();
    TIME tPacket = std::chrono::steady_clock::now();
    for (std::uint32_t nPacketID = 0; nPacketID < nCount;) {
        const auto nDelay = m_objSettings.Frame.PacketDelay;
        const std::uint32_t nMost = nDelay > 0ns ? 1 : std::uint32_t{kBatch};
        const std::uint32_t nBatch = std::min(nCount - nPacketID, nMost);
        for (std::uint32_t i = 0; i < nBatch; ++i) {
            m_arrBatch[i] = m_objBlocks.MakePacket(m_objBlocks.GetFrame(), nPacketID + i, false, m_arrHeader[i]);
        }
        nPacketID += nBatch;
        if (bLast && nPacketID == nCount) {
            m_objNews.AcquisitionEnded(m_objSettings.Acquisition);
        }
        // A late packet may make up for some of it, but never for so much that a burst comes of it.
        tPacket = std::max(tPacket, std::chrono::steady_clock::now() - nDelay / 4) + nDelay;
        m_objFaulty.Send(std::span(m_arrBatch).first(nBatch), nCount);
        m_objBlocks.SetSent(nPacketID);
        TakeOrders();
        if (!IsAlive() || (nDelay > 0ns && nPacketID < nCount && !WaitUntil(tPacket))) {
            return false;
        }
    }
    m_objFaulty.Flush();
    TellUnsent();
    return true;
}

void CImageStream::Tell(std::size_t nEvent, TIME tWhen) {
    if (m_objSettings.Frame.Event[nEvent]) {
        m_objNews.Happened(
            {nEvent, m_objBlocks.HasExtendedIDs(), m_objBlocks.GetBlockID(), m_objBlocks.GetFrame(), GetTicks(tWhen)});
    }
}

void CImageStream::TellUnsent() {
    if (const UNSENT_PACKETS objUnsent = m_objOutlet.TakeUnsent(); objUnsent.Count > 0) {
        m_objNews.Unsent(m_objSettings.Acquisition, objUnsent);
    }
}

std::uint64_t CImageStream::GetTicks(TIME tWhen) const {
    const auto nTicks = std::chrono::duration_cast<std::chrono::nanoseconds>(tWhen - m_objSettings.Frame.ClockStart);
    return static_cast<std::uint64_t>(std::max(nTicks, 0ns).count());
}

void CImageStream::SendAgain(const gev::RESEND_COMMAND& objCommand) {
    if (objCommand.ExtendedIDs != m_objBlocks.HasExtendedIDs() || m_objFaulty.GetFaults().NoResend) {
        return;
    }
    std::uint64_t nFrame = 0;
    if (const EGvcpStatus nFound = m_objBlocks.Find(objCommand.BlockID, nFrame); nFound != EGvcpStatus::Success) {
        SendStatus(objCommand, objCommand.LastPacketID, nFound);
        return;
    }
    const std::uint32_t nCount = m_objBlocks.GetPacketCount();
    const std::uint32_t nEnd = objCommand.LastPacketID < nCount ? objCommand.LastPacketID + 1 : nCount;
    if (objCommand.FirstPacketID >= nEnd) {
        SendStatus(objCommand, objCommand.FirstPacketID, EGvcpStatus::PacketUnavailable);
        return;
    }
    // The batch of the block that is under way was sent, so its place is free.
    for (std::uint32_t nPacketID = objCommand.FirstPacketID; nPacketID < nEnd && !m_bHurry;) {
        std::uint32_t nBatch = 0;
        for (; nBatch < kBatch && nPacketID < nEnd && m_objBlocks.WasSent(nFrame, nPacketID); ++nBatch, ++nPacketID) {
            m_arrBatch[nBatch] = m_objBlocks.MakePacket(nFrame, nPacketID, true, m_arrHeader[nBatch]);
        }
        if (nBatch == 0) {
            SendStatus(objCommand, nPacketID, EGvcpStatus::PacketNotYetAvailable);
            return;
        }
        m_objFaulty.Send(std::span(m_arrBatch).first(nBatch), nCount);
    }
    m_objFaulty.Flush();
    TellUnsent();
}

void CImageStream::SendStatus(const gev::RESEND_COMMAND& objCommand, std::uint32_t nPacketID, EGvcpStatus nStatus) {
    gev::GVSP_HEADER objHeader;
    objHeader.Status = nStatus;
    objHeader.ExtendedIDs = objCommand.ExtendedIDs;
    objHeader.BlockID = objCommand.BlockID;
    objHeader.PacketID = nPacketID;
    GvspHeaderBuffer arrHeader;
    const STREAM_PACKET objPacket{gev::EncodeGvspHeader(arrHeader, objHeader), {}};
    m_objFaulty.Send({&objPacket, 1}, m_objBlocks.GetPacketCount());
    m_objFaulty.Flush();
}

void CImageStream::FireTestPacket(const STREAM_SETTINGS& objSettings) {
    TellUnsent();
    m_objOutlet.SetDestination(objSettings.Channel, objSettings.DoNotFragment);
    const STREAM_PACKET objPacket{
        gev::EncodeTestPacket(m_arrTestPacket, objSettings.Format.PacketSize, objSettings.Format.ExtendedIDs), {}};
    if (!objPacket.Header.empty()) {
        m_objFaulty.Send({&objPacket, 1}, 1);
        m_objFaulty.Flush();                          // the host waits for it alone
        static_cast<void>(m_objOutlet.TakeUnsent());  // it may be too long: that is what it is there to find out
    }
}

}  // namespace camera
