// What a reassembly does by the clock: asks for what is missing, gives up what won't come.

#include <algorithm>

#include "producer/stream/Reassembly.h"

namespace producer {

void CReassembly::Service(TimePoint objNow, TimePoint objSeen) {
    TURN objTurn{objNow, objSeen};
    m_bMute = m_nUnanswered >= kMostUnanswered && objSeen - m_objUnanswered >= kLongestUnanswered;
    for (std::size_t i = 0; i < m_nUnderWay; ++i) {
        if (!m_vecBlock[i]->m_bDone) {
            ServiceBlock(*m_vecBlock[i], objTurn);
        }
    }
    DeliverDone();
}

void CReassembly::ServiceBlock(CBlock& objBlock, TURN& objTurn) {
    if (objTurn.Seen - objBlock.m_objLastArrival >= m_objSettings.BlockTimeout) {
        objBlock.m_bDone = true;
        return;
    }
    NoticeTail(objBlock, objTurn);
    std::vector<PACKET_GAP>& vecGap = objBlock.GetGaps();
    if (vecGap.empty()) {
        return;
    }
    bool bHope = false;
    std::size_t nKept = 0;
    for (PACKET_GAP& objGap : vecGap) {
        while (objGap.First <= objGap.Last && objBlock.IsSettled(objGap.First)) {
            ++objGap.First;
        }
        if (objGap.First <= objGap.Last) {
            bHope = ServiceGap(objBlock, objGap, objTurn) || bHope;
            vecGap[nKept++] = objGap;
        }
    }
    vecGap.resize(nKept);
    if (nKept == 0 && !objBlock.HasTrailer() && objBlock.m_bTailNoticed) {
        // What was asked for came, and the block goes on.
        objBlock.m_bTailNoticed = false;
    }
    const bool bWholeSent = objBlock.HasTrailer() || (IsOvertaken(objBlock) && objBlock.m_bTailNoticed);
    objBlock.m_bDone = objBlock.IsSettled() || (nKept != 0 && !bHope && bWholeSent);
}

/// How often a packet of the block is asked for.
std::uint32_t CReassembly::GetMostAsks(const CBlock& objBlock) const {
    const std::uint32_t nMost = m_bMute ? 1 : objBlock.HasMemory() ? m_objSettings.MostResends : kMostAsksOfNothing;
    return m_objSettings.Resend ? std::min(nMost, m_objSettings.MostResends) : 0;
}

/// Finds out that a block must have been sent to its end although its trailer hasn't come: the next one has begun, or
/// nothing comes any more. In silence the camera may only be slow, and is asked for a single packet first.
void CReassembly::NoticeTail(CBlock& objBlock, const TURN& objTurn) {
    if (objBlock.HasTrailer()) {
        return;
    }
    const TimePoint objLast = std::max(objBlock.m_objLastArrival, objBlock.m_objTailAsked);
    const bool bSilent = m_objSettings.Resend && objTurn.Seen - objLast >= m_objSettings.TailTime;
    const bool bOvertaken = IsOvertaken(objBlock);
    if (bOvertaken && !objBlock.m_bOvertaken) {
        objBlock.m_bOvertaken = true;
        objBlock.m_bTailNoticed = false;  // a probe that silence gave rise to is not enough any more
    }
    if (objBlock.m_bTailNoticed || !(bOvertaken || bSilent)) {
        return;
    }
    const bool bWhole = bOvertaken || objBlock.m_bTailProbed || objBlock.IsMemoryPassed();
    objBlock.m_objTailAsked = objTurn.Now;
    const std::uint32_t nLast = bWhole ? objBlock.GetTrailerID(m_nPredictedTrailerID) : objBlock.GetNextID();
    const bool bProbe = !bOvertaken && !objBlock.m_bTailProbed;
    objBlock.NoticeTail(nLast, bProbe, m_nClock, bOvertaken ? objTurn.Now + m_objSettings.ReorderTime : objTurn.Now);
}

/// Asks for what is due of a gap.
/// @return whether more of it may come
bool CReassembly::ServiceGap(CBlock& objBlock, PACKET_GAP& objGap, TURN& objTurn) {
    const bool bOutOfWindow = objGap.Asks == 0 && m_nClock - objGap.Noticed >= m_objSettings.ReorderWindow;
    if (!bOutOfWindow && objTurn.Seen < objGap.Due) {
        return true;
    }
    if (objGap.Asks >= GetMostAsks(objBlock)) {
        return false;
    }
    if (m_nUnanswered == 0) {
        m_objUnanswered = objTurn.Now;
    }
    if (objTurn.Requests < kMostRequests && AskFor(objBlock, objGap, objTurn.Requests)) {
        objGap.Due = objTurn.Now + m_objSettings.ResendTimeout * (1U << std::min<std::uint32_t>(objGap.Asks, 16));
        ++objGap.Asks;
    }
    return true;
}

/// One request for each run of packets of the gap that are still missing.
/// @return false if there were more of them than requests; the next turn goes on with the rest
bool CReassembly::AskFor(const CBlock& objBlock, PACKET_GAP& objGap, std::uint32_t& nRequests) {
    std::uint32_t nFirst = std::max(objGap.First, objGap.Next);
    while (nFirst <= objGap.Last && objBlock.IsSettled(nFirst)) {
        ++nFirst;
    }
    while (nFirst <= objGap.Last && nRequests < kMostRequests) {
        std::uint32_t nLast = nFirst;
        while (nLast < objGap.Last && !objBlock.IsSettled(nLast + 1)) {
            ++nLast;
        }
        m_objSink.RequestResend(objBlock.GetBlockID(), nFirst, nLast, m_bExtendedIDs);
        ++m_objStatistics.ResendRequests;
        m_nUnanswered += objGap.IsProbe ? 0 : 1;
        ++nRequests;
        nFirst = nLast + 1;
        while (nFirst <= objGap.Last && objBlock.IsSettled(nFirst)) {
            ++nFirst;
        }
    }
    const bool bWhole = nFirst > objGap.Last;
    objGap.Next = bWhole ? 0 : nFirst;
    return bWhole;
}

std::optional<CReassembly::TimePoint> CReassembly::GetNextDue() const {
    std::optional<TimePoint> objNext;
    for (std::size_t i = 0; i < m_nUnderWay; ++i) {
        CBlock& objBlock = *m_vecBlock[i];
        if (objBlock.m_bDone) {
            continue;
        }
        TimePoint objDue = objBlock.m_objLastArrival + m_objSettings.BlockTimeout;
        if (!objBlock.HasTrailer() && !objBlock.m_bTailNoticed && m_objSettings.Resend) {
            objDue =
                std::min(objDue, std::max(objBlock.m_objLastArrival, objBlock.m_objTailAsked) + m_objSettings.TailTime);
        }
        // The first gap that is to be asked for counts, or else the last that is still believed in.
        std::optional<TimePoint> objAsk;
        std::optional<TimePoint> objGivenUp;
        for (const PACKET_GAP& objGap : objBlock.GetGaps()) {
            if (objGap.Asks < GetMostAsks(objBlock)) {
                objAsk = std::min(objAsk.value_or(objGap.Due), objGap.Due);
            } else {
                objGivenUp = std::max(objGivenUp.value_or(objGap.Due), objGap.Due);
            }
        }
        if (objAsk) {
            objDue = std::min(objDue, *objAsk);
        } else if (objGivenUp && (objBlock.HasTrailer() || IsOvertaken(objBlock))) {
            objDue = std::min(objDue, *objGivenUp);
        }
        objNext = objNext ? std::min(*objNext, objDue) : objDue;
    }
    return objNext;
}

}  // namespace producer
