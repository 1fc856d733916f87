#include "producer/stream/Reassembly.h"

#include <algorithm>
#include <new>

#include "gev/GvspAllIn.h"

namespace producer {

using gev::EGvcpStatus;
using gev::EGvspFormat;
using gev::GVSP_HEADER;

namespace {

constexpr std::uint16_t kErrorBit = 0x8000;  // of a status
constexpr std::uint32_t kMostLate = 2;       // packets in a row that a leader behind them isn't late after
constexpr std::uint32_t kAsksWithHope = 2;   // for a packet, until others aren't held back for it where memory is short

/// How far a block lies behind the newest, in the numbering that skips 0.
std::uint64_t GetDistance(std::uint64_t nFrom, std::uint64_t nTo, bool bExtendedIDs) {
    return bExtendedIDs ? nTo - nFrom : (nTo + gev::kGvspHighestBlockID - nFrom) % gev::kGvspHighestBlockID;
}

/// Distances beyond this one are backwards.
std::uint64_t GetHalf(bool bExtendedIDs) {
    return bExtendedIDs ? std::uint64_t{1} << 63 : gev::kGvspHighestBlockID / 2;
}

/// Whether a packet can only be the answer to a request. Of a block that isn't under way it comes too late, and tells
/// nothing about where the camera's numbering is.
bool IsAnswerOnly(const GVSP_HEADER& objHeader) {
    switch (objHeader.Status) {
        case EGvcpStatus::PacketUnavailable:
        case EGvcpStatus::PacketRemoved:
        case EGvcpStatus::PacketAndPreviousRemoved:
        case EGvcpStatus::PacketNotYetAvailable:
        case EGvcpStatus::PacketTemporarilyUnavailable:
            return true;
        default:
            return objHeader.IsResent();
    }
}

/// Whether a packet says that what was asked for doesn't come, now or ever.
bool IsRefusal(const GVSP_HEADER& objHeader) {
    return (static_cast<std::uint16_t>(objHeader.Status) & kErrorBit) != 0 && IsAnswerOnly(objHeader);
}

/// Whether the camera has begun to number anew while the last block of that number was still under way: the same number
/// at another moment.
bool BeginsAnew(const CBlock& objBlock, const GVSP_HEADER& objHeader, std::span<const std::byte> arrBody) {
    gev::GVSP_LEADER objLeader;
    return objHeader.Format == EGvspFormat::Leader && !IsAnswerOnly(objHeader) && objBlock.GetTimestamp() != 0 &&
           gev::DecodeLeader(arrBody, objLeader) && objLeader.Timestamp != objBlock.GetTimestamp();
}

}  // namespace

CReassembly::CReassembly(IBlockSink& objSink, const REASSEMBLY_SETTINGS& objSettings)
    : m_objSink(objSink), m_objSettings(objSettings) {
    m_vecBlock.reserve(kMostBlocks);
    for (std::size_t i = 0; i < kMostBlocks; ++i) {
        m_vecBlock.push_back(std::make_unique<CBlock>());
    }
}

void CReassembly::TakePacket(std::span<const std::byte> arrPacket, TimePoint objNow) {
    GVSP_HEADER objHeader;
    std::span<const std::byte> arrBody;
    if (!gev::DecodeGvspHeader(arrPacket, objHeader, arrBody) || objHeader.BlockID == gev::kGvspTestBlockID) {
        ++m_objStatistics.PacketsRefused;
        return;
    }
    if (IsAnswerOnly(objHeader)) {
        m_nUnanswered = 0;
    }
    CBlock* pBlock = m_pCurrent != nullptr && m_pCurrent->GetBlockID() == objHeader.BlockID &&
                             m_bExtendedIDs == objHeader.ExtendedIDs
                         ? m_pCurrent
                         : FindBlock(objHeader, arrBody, objNow);
    if (pBlock == nullptr) {
        return;
    }
    if (!pBlock->HasMemory() && IsRefusal(objHeader)) {
        TakeRefusal(*pBlock, objHeader, objNow);
        return;
    }
    if (BeginsAnew(*pBlock, objHeader, arrBody)) {
        pBlock = Restart(objHeader, objNow);
    }
    if (!Provide(*pBlock, objHeader, arrBody)) {
        return;
    }
    m_pCurrent = pBlock;
    const std::uint32_t nNextID = pBlock->GetNextID();
    const PACKET_EFFECT eEffect = Place(*pBlock, objHeader, arrBody, objNow);
    Count(eEffect, objHeader);
    if (eEffect == PACKET_EFFECT::Placed) {
        ++m_nClock;
        m_nLate = 0;
        m_nUnanswered = objHeader.PacketID < nNextID ? 0 : m_nUnanswered;
        pBlock->m_objLastArrival = objNow;
        pBlock->m_bTailProbed = pBlock->m_bTailProbed || (pBlock->m_bTailNoticed && objHeader.IsResent() &&
                                                          objHeader.PacketID >= pBlock->GetTailID());
        // Packets of another size can't be had by asking again.
        if (pBlock->IsSettled() || (pBlock->HasTrailer() && pBlock->HasOtherSizes())) {
            pBlock->m_bDone = true;
            DeliverDone();
        }
    }
}

/// The block of a packet; null when it is of no use any more, which is counted here.
CBlock* CReassembly::FindBlock(const GVSP_HEADER& objHeader, std::span<const std::byte> arrBody, TimePoint objNow) {
    const bool bOtherIDs = m_bStarted && m_bExtendedIDs != objHeader.ExtendedIDs;
    if (!m_bStarted || (bOtherIDs && !IsAnswerOnly(objHeader))) {
        return Restart(objHeader, objNow);
    }
    for (std::size_t i = bOtherIDs ? 0 : m_nUnderWay; i-- > 0;) {
        if (m_vecBlock[i]->GetBlockID() == objHeader.BlockID) {
            return m_vecBlock[i].get();
        }
    }
    if (IsAnswerOnly(objHeader)) {
        ++m_objStatistics.PacketsDuplicate;
        return nullptr;
    }
    const std::uint64_t nLeap = GetDistance(m_nNewestID, objHeader.BlockID, m_bExtendedIDs);
    if (nLeap == 0 || nLeap > GetHalf(m_bExtendedIDs)) {
        return FindOlder(objHeader, arrBody, GetDistance(objHeader.BlockID, m_nNewestID, m_bExtendedIDs), objNow);
    }
    return nLeap > kLargestLeap ? Restart(objHeader, objNow) : BeginNewest(objHeader, nLeap, objNow);
}

/// A packet behind the newest block, of none that is under way: late, or the first after the camera began anew.
CBlock* CReassembly::FindOlder(const GVSP_HEADER& objHeader, std::span<const std::byte> arrBody, std::uint64_t nBack,
                               TimePoint objNow) {
    const bool bOnlyLate = m_nLate++ < kMostLate;
    const bool bLeader = objHeader.Format == EGvspFormat::Leader || objHeader.Format == EGvspFormat::AllIn;
    if (nBack >= kRemembered) {
        // A camera that numbers anew sends leaders too; what it sends again may bear no mark.
        m_objStatistics.PacketsDuplicate += bLeader ? 0 : 1;
        return bLeader ? Restart(objHeader, objNow) : nullptr;
    }
    const REMEMBERED* const pRemembered = FindRemembered(m_nNewestSerial - nBack);
    gev::GVSP_LEADER objLeader;
    if (bLeader && gev::DecodeLeader(arrBody, objLeader)) {
        // The same number, another moment: acquisition was started again on the camera's side. A camera without a clock
        // is believed when its last block was a known one too.
        const std::uint64_t nKnown = pRemembered == nullptr ? 0 : pRemembered->Timestamp;
        const bool bOther = nKnown != 0 ? objLeader.Timestamp != nKnown : objLeader.Timestamp == 0 && !bOnlyLate;
        if (pRemembered == nullptr || bOther) {
            return Restart(objHeader, objNow);
        }
    }
    m_objStatistics.PacketsDuplicate += pRemembered != nullptr && pRemembered->Dropped ? 0 : 1;
    return nullptr;
}

CBlock* CReassembly::Restart(const GVSP_HEADER& objHeader, TimePoint objNow) {
    Finish(true);
    if (!m_bStarted || m_bExtendedIDs != objHeader.ExtendedIDs) {
        m_nPayload =
            std::max<std::size_t>(gev::GetPayloadPerPacket(m_objSettings.PacketSize, objHeader.ExtendedIDs), 1);
        m_nPredictedTrailerID = 0;
    }
    m_bStarted = true;
    m_bExtendedIDs = objHeader.ExtendedIDs;
    m_arrRemembered.fill({});
    m_nNewestID = objHeader.BlockID;
    m_nNewestSerial = kRemembered;  // so that what lies before it has serials too
    return &Insert(m_nNewestID, m_nNewestSerial, objNow);
}

/// A block ahead of all others. Those that were left out between get their places too: their packets may be under way.
CBlock* CReassembly::BeginNewest(const GVSP_HEADER& objHeader, std::uint64_t nLeap, TimePoint objNow) {
    if (nLeap > kMostBlocks) {
        const std::uint64_t nLost = nLeap - 1;
        m_objStatistics.BlocksLost += nLost;
        for (std::uint64_t i = nLost - std::min(nLost, kRemembered); i < nLost; ++i) {
            Remember({m_nNewestSerial + 1 + i, 0, false});
        }
        m_nNewestSerial += nLeap;
        m_nNewestID = objHeader.BlockID;
        return &Insert(m_nNewestID, m_nNewestSerial, objNow);
    }
    while (m_nNewestID != objHeader.BlockID) {
        m_nNewestID = gev::NextBlockID(m_nNewestID, m_bExtendedIDs);
        Insert(m_nNewestID, ++m_nNewestSerial, objNow);
    }
    return m_vecBlock[m_nUnderWay - 1].get();
}

CBlock& CReassembly::Insert(std::uint64_t nBlockID, std::uint64_t nSerial, TimePoint objNow) {
    if (m_nUnderWay == kMostBlocks) {
        DeliverOldest(true);
    }
    CBlock& objBlock = *m_vecBlock[m_nUnderWay++];
    objBlock.Begin(nBlockID, nSerial, m_nPayload, m_nPredictedTrailerID > 2, objNow);
    return objBlock;
}

/// @return false without memory for the block, be it for its data or for what is known of it
bool CReassembly::SetMemory(CBlock& objBlock) {
    const BLOCK_MEMORY objMemory = m_objSink.TakeMemory();
    if (objMemory.Owner != nullptr) {
        try {
            objBlock.SetMemory(objMemory);
            return true;
        } catch (const std::bad_alloc&) {
            m_objSink.ReturnMemory(objMemory);
        }
    }
    if (!objMemory.IsThrough) {
        ++m_objStatistics.BlocksUnderrun;
        LetGoOfHeldBack(objBlock);
    }
    return false;
}

/// Without memory left, nothing waits any longer for older blocks of which nothing came, or which were asked for in
/// vain: the complete ones behind them are what the consumer can hand back.
/// @param objWanting  the block that there is no memory for
void CReassembly::LetGoOfHeldBack(const CBlock& objWanting) {
    const auto itEnd = m_vecBlock.begin() + static_cast<std::ptrdiff_t>(m_nUnderWay);
    const auto itDone = std::find_if(m_vecBlock.begin(), itEnd,
                                     [&](const auto& pBlock) { return pBlock->m_bDone && pBlock->HasMemory(); });
    const auto IsHopeless = [&](const auto& pBlock) {
        const auto IsAskedInVain = [](const PACKET_GAP& objGap) { return objGap.Asks >= kAsksWithHope; };
        return pBlock.get() != &objWanting &&
               (!pBlock->HasMemory() || std::ranges::any_of(pBlock->GetGaps(), IsAskedInVain));
    };
    if (itDone != itEnd && std::all_of(m_vecBlock.begin(), itDone, IsHopeless)) {
        std::for_each(m_vecBlock.begin(), itDone, [](const auto& pBlock) { pBlock->m_bDone = true; });
        DeliverDone();
    }
}

/// Gets memory for a block of which the first packet has come. Without any, the block is dropped.
bool CReassembly::Provide(CBlock& objBlock, const GVSP_HEADER& objHeader, std::span<const std::byte> arrBody) {
    if (objBlock.HasMemory()) {
        return true;
    }
    if (!objBlock.m_bDone) {
        if (SetMemory(objBlock)) {
            return true;
        }
        objBlock.m_bDropped = objBlock.m_bDone = true;
        if (gev::GVSP_LEADER objLeader;
            objHeader.Format == EGvspFormat::Leader && gev::DecodeLeader(arrBody, objLeader)) {
            objBlock.TakeLeader(objLeader);  // by its time the block is known again
        }
    }
    DeliverDone();
    return false;
}

/// The camera answers for a block of which nothing has come. No memory is taken for what will never come.
void CReassembly::TakeRefusal(CBlock& objBlock, const GVSP_HEADER& objHeader, TimePoint objNow) {
    if (objHeader.Status == EGvcpStatus::PacketNotYetAvailable ||
        objHeader.Status == EGvcpStatus::PacketTemporarilyUnavailable) {
        Postpone(objBlock, objHeader.PacketID, objNow);
        return;
    }
    ++m_objStatistics.PacketsUnavailable;
    // A refusal of a later packet may only say that the block is shorter than the one before.
    if (objHeader.PacketID == gev::kGvspLeaderPacketID || objHeader.Status == EGvcpStatus::PacketAndPreviousRemoved) {
        objBlock.m_bDone = true;
        DeliverDone();
    }
}

PACKET_EFFECT CReassembly::Place(CBlock& objBlock, const GVSP_HEADER& objHeader, std::span<const std::byte> arrBody,
                                 TimePoint objNow) {
    if ((static_cast<std::uint16_t>(objHeader.Status) & kErrorBit) != 0) {
        bool bWithData = false;
        const PACKET_EFFECT eEffect = TakeStatus(objBlock, objHeader, arrBody, bWithData, objNow);
        if (!bWithData) {
            return eEffect;
        }
    }
    if (objHeader.PacketID > objBlock.GetNextID()) {
        objBlock.PassOver(objHeader.PacketID, m_nClock, objNow + m_objSettings.ReorderTime);
    }
    switch (objHeader.Format) {
        case EGvspFormat::Leader: {
            gev::GVSP_LEADER objLeader;
            return objHeader.PacketID == gev::kGvspLeaderPacketID && gev::DecodeLeader(arrBody, objLeader)
                       ? objBlock.TakeLeader(objLeader)
                       : PACKET_EFFECT::Refused;
        }
        case EGvspFormat::Trailer: {
            gev::GVSP_TRAILER objTrailer;
            return gev::DecodeTrailer(arrBody, objTrailer) ? objBlock.TakeTrailer(objHeader.PacketID, objTrailer)
                                                           : PACKET_EFFECT::Refused;
        }
        case EGvspFormat::AllIn: {
            gev::GVSP_ALL_IN objAllIn;
            return gev::DecodeAllIn(arrBody, objAllIn)
                       ? objBlock.TakeAllIn(objAllIn.Leader, objAllIn.Trailer, objAllIn.Data)
                       : PACKET_EFFECT::Refused;
        }
        default:
            // Formats that aren't known are delivered as they came, one packet behind the other.
            return objBlock.TakePayload(objHeader.PacketID, arrBody);
    }
}

/// A packet that carries a failure, most often the answer to a request that can't be met.
PACKET_EFFECT CReassembly::TakeStatus(CBlock& objBlock, const GVSP_HEADER& objHeader,
                                      std::span<const std::byte> arrBody, bool& bWithData, TimePoint objNow) {
    switch (objHeader.Status) {
        case EGvcpStatus::PacketUnavailable:
        case EGvcpStatus::PacketRemoved:
            return objBlock.TakeUnavailable(objHeader.PacketID, m_nPredictedTrailerID);
        case EGvcpStatus::PacketAndPreviousRemoved: {
            const PACKET_EFFECT eEffect = objBlock.TakeUnavailable(objHeader.PacketID, m_nPredictedTrailerID);
            for (PACKET_GAP& objGap : objBlock.GetGaps()) {
                const std::uint32_t nEnd = std::min(objGap.Last + 1, objHeader.PacketID);
                for (; objGap.First < nEnd; ++objGap.First) {  // which so costs once, however often it is said
                    objBlock.TakeUnavailable(objGap.First, 0);
                }
            }
            return eEffect;
        }
        case EGvcpStatus::PacketNotYetAvailable:
        case EGvcpStatus::PacketTemporarilyUnavailable:
            Postpone(objBlock, objHeader.PacketID, objNow);
            return PACKET_EFFECT::Duplicate;
        default:
            if (arrBody.empty()) {
                Postpone(objBlock, objHeader.PacketID, objNow);
                return PACKET_EFFECT::Duplicate;
            }
            objBlock.SetFlawed();
            bWithData = true;
            return PACKET_EFFECT::Refused;
    }
}

/// The camera can't send a packet now.
void CReassembly::Postpone(CBlock& objBlock, std::uint32_t nPacketID, TimePoint objNow) {
    for (PACKET_GAP& objGap : objBlock.GetGaps()) {
        if (objGap.First <= nPacketID && nPacketID <= objGap.Last) {
            objGap.Due = std::max(objGap.Due, objNow + m_objSettings.ResendTimeout);
        }
    }
}

void CReassembly::Count(PACKET_EFFECT eEffect, const GVSP_HEADER& objHeader) {
    const bool bError = (static_cast<std::uint16_t>(objHeader.Status) & kErrorBit) != 0;
    if (eEffect == PACKET_EFFECT::Placed && bError) {
        ++m_objStatistics.PacketsUnavailable;
    } else if (eEffect == PACKET_EFFECT::Placed) {
        ++m_objStatistics.Packets;
        m_objStatistics.PacketsResent += objHeader.IsResent() ? 1 : 0;
    } else if (eEffect == PACKET_EFFECT::Duplicate) {
        m_objStatistics.PacketsDuplicate += bError ? 0 : 1;
    } else {
        ++m_objStatistics.PacketsRefused;
    }
}

void CReassembly::Finish(bool bDeliver) {
    while (m_nUnderWay != 0) {
        DeliverOldest(bDeliver);
    }
}

void CReassembly::DeliverDone() {
    while (m_nUnderWay != 0 && m_vecBlock.front()->m_bDone) {
        DeliverOldest(true);
    }
}

void CReassembly::DeliverOldest(bool bDeliver) {
    CBlock& objBlock = *m_vecBlock.front();
    if (m_pCurrent == &objBlock) {
        m_pCurrent = nullptr;
    }
    const FINISHED_BLOCK objResult = objBlock.GetResult(m_nPredictedTrailerID);
    if (!objBlock.HasMemory()) {
        m_objStatistics.BlocksLost += objBlock.m_bDropped ? 0 : 1;
        m_objStatistics.PacketsMissing += objBlock.m_bDropped ? 0 : objResult.PacketsMissing;
    } else if (!bDeliver) {
        m_objSink.ReturnMemory(objBlock.GetMemory());
    } else {
        ++m_objStatistics.BlocksDelivered;
        m_objStatistics.BlocksIncomplete += objResult.IsIncomplete ? 1 : 0;
        m_objStatistics.PacketsMissing += objResult.PacketsMissing;
        m_objSink.DeliverBlock(objResult);
    }
    if (!objResult.IsIncomplete && objBlock.HasMemory()) {
        m_nPredictedTrailerID = objBlock.GetTrailerID(0);
        m_nPayload = m_nPredictedTrailerID > 2 ? objBlock.GetPayload() : m_nPayload;
    } else if (objBlock.HasOtherSizes()) {
        m_nPredictedTrailerID = 0;  // the packet size was changed meanwhile: the next block is learnt from
    }
    Remember({objBlock.GetSerial(), objResult.HasLeader ? objResult.Leader.Timestamp : 0, objBlock.m_bDropped});
    std::rotate(m_vecBlock.begin(), m_vecBlock.begin() + 1,
                m_vecBlock.begin() + static_cast<std::ptrdiff_t>(m_nUnderWay));
    --m_nUnderWay;
}

const CReassembly::REMEMBERED* CReassembly::FindRemembered(std::uint64_t nSerial) const {
    const REMEMBERED& objRemembered = m_arrRemembered[nSerial % kRemembered];
    return objRemembered.Serial == nSerial ? &objRemembered : nullptr;
}

}  // namespace producer
