#include "producer/stream/Block.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace producer {

namespace {

constexpr std::size_t kBitsPerWord = 64;
constexpr std::uint32_t kMostPackets = std::numeric_limits<std::uint32_t>::max() - 2;

std::uint64_t BitOf(std::uint32_t nPacketID) {
    return std::uint64_t{1} << nPacketID % kBitsPerWord;
}

/// Payload packets that so many bytes take, at most what leaves room for a leader and a trailer.
std::uint32_t CountPackets(std::uint64_t nBytes, std::size_t nPayload) {
    const std::uint64_t nCount = nPayload == 0 ? 0 : nBytes / nPayload + (nBytes % nPayload != 0 ? 1 : 0);
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(nCount, kMostPackets));
}

}  // namespace

CBlock::CBlock() : m_vecSettled(1), m_vecUnavailable(1) {
    m_vecGap.reserve(kMostGaps);
}

void CBlock::Begin(std::uint64_t nBlockID, std::uint64_t nSerial, std::size_t nPayload, bool bSure,
                   StreamClock::time_point objNow) {
    m_objLastArrival = m_objTailAsked = objNow;
    m_bOvertaken = m_bDropped = m_bTailNoticed = m_bTailProbed = m_bDone = false;
    m_objMemory = {};
    m_nBlockID = nBlockID;
    m_nSerial = nSerial;
    m_objLeader = {};
    m_objTrailer = {};
    m_bLeader = m_bTrailer = m_bTrailerSettled = m_bFlawed = m_bLarger = false;
    m_bPayloadFixed = m_bSure = bSure;
    m_nPayload = m_nExpected = nPayload;
    m_bLearnt = false;
    m_nShortID = m_nHighestID = m_nTrailerID = m_nNextID = m_nSettled = m_nUnavailable = m_nOtherSizes = 0;
    m_nTailID = m_nNoticedID = 0;
    m_nBytes = m_nFilled = 0;
    m_nBits = 1;
    std::ranges::fill(m_vecSettled, 0);
    m_vecGap.clear();
}

void CBlock::SetMemory(const BLOCK_MEMORY& objMemory) {
    const std::size_t nLeast = std::clamp<std::size_t>(m_nPayload, 1, kLeastPayload);
    const std::size_t nWords = (CountPackets(objMemory.Memory.size(), nLeast) + std::size_t{1}) / kBitsPerWord + 1;
    if (nWords > m_vecSettled.size()) {
        m_vecUnavailable.resize(nWords);
        m_vecSettled.resize(nWords);  // last, as its size tells that of both
    }
    m_objMemory = objMemory;
    m_nBits = CountPackets(objMemory.Memory.size(), m_nPayload) + 1;
}

/// How many packets before the trailer are waited for: those beyond the memory aren't.
std::uint32_t CBlock::GetTracked(std::uint32_t nTrailerID) const {
    return std::min(nTrailerID, m_nBits);
}

bool CBlock::IsSettled(std::uint32_t nPacketID) const {
    if (m_bTrailerSettled && nPacketID >= m_nTrailerID) {
        return true;
    }
    if (nPacketID < m_nBits) {
        return (m_vecSettled[nPacketID / kBitsPerWord] & BitOf(nPacketID)) != 0;
    }
    // Beyond the memory only the trailer is of use: the packet that the leader tells, or any behind the last.
    const std::uint32_t nTrailerID = GetTrailerID(0);
    return nTrailerID > m_nNextID || (nTrailerID == m_nNextID && nPacketID > nTrailerID) ? nPacketID != nTrailerID
                                                                                         : nPacketID < m_nNextID;
}

bool CBlock::SettlePacket(std::uint32_t nPacketID) {
    std::uint64_t& nWord = m_vecSettled[nPacketID / kBitsPerWord];
    if ((nWord & BitOf(nPacketID)) != 0) {
        return false;
    }
    nWord |= BitOf(nPacketID);
    ++m_nSettled;
    m_nNextID = std::max(m_nNextID, nPacketID + 1);
    return true;
}

/// A packet of which the camera had said that it won't come.
bool CBlock::HasComeAfterAll(std::uint32_t nPacketID) {
    if (m_nUnavailable == 0 || (m_vecUnavailable[nPacketID / kBitsPerWord] & BitOf(nPacketID)) == 0) {
        return false;
    }
    m_vecUnavailable[nPacketID / kBitsPerWord] &= ~BitOf(nPacketID);
    --m_nUnavailable;
    return true;
}

PACKET_EFFECT CBlock::TakeLeader(const gev::GVSP_LEADER& objLeader) {
    if (!SettlePacket(gev::kGvspLeaderPacketID) && !HasComeAfterAll(gev::kGvspLeaderPacketID)) {
        return PACKET_EFFECT::Duplicate;
    }
    m_objLeader = objLeader;
    m_bLeader = true;
    if (m_nShortID != 0 && IsCut(m_nShortID, m_nShortSize)) {
        TakeBackShort();
    }
    return PACKET_EFFECT::Placed;
}

/// Payload packets that the leader announces; 0 when it doesn't tell, or hasn't come.
std::uint32_t CBlock::GetPacketCount() const {
    const gev::EPayloadType nType = m_objLeader.PayloadType;
    const bool bSaysSize = m_bLeader && (nType == gev::EPayloadType::Image || nType == gev::EPayloadType::RawData ||
                                         nType == gev::EPayloadType::File);
    return bSaysSize ? CountPackets(GetMeantSize(), m_nPayload) : 0;
}

/// Whether it is the last packet by what the leader and the trailer tell, and holds less than the rest. An image may be
/// lower than its leader tells, so that the trailer has the last word.
bool CBlock::IsCut(std::uint32_t nPacketID, std::size_t nSize) const {
    const std::uint32_t nCount = m_bTrailer || !gev::IsImage(m_objLeader.PayloadType) ? GetPacketCount() : 0;
    return nCount != 0 && nPacketID == nCount && nSize < GetMeantSize() - (nCount - std::uint64_t{1}) * m_nPayload;
}

/// Whether a packet that isn't full can be the last, by what has come so far.
bool CBlock::CanBeLast(std::uint32_t nPacketID, std::size_t nSize) const {
    if (nPacketID < m_nHighestID || (m_nShortID != 0 && nPacketID != m_nShortID) || IsCut(nPacketID, nSize)) {
        return false;
    }
    if (m_bTrailer) {
        return nPacketID + 1 == m_nTrailerID;
    }
    return gev::IsImage(m_objLeader.PayloadType) || nPacketID >= GetPacketCount();
}

/// Whether a packet of this size can have this ID. Settles how long a full packet of the block is, at the first.
bool CBlock::FitsPayload(std::uint32_t nPacketID, std::size_t nSize) {
    if (!m_bPayloadFixed) {
        // A packet that is longer than expected is full, and so is the first, which may be the last as well.
        if (nSize > m_nPayload || nPacketID == 1) {
            m_bLearnt = nSize != m_nExpected;
            m_nPayload = nSize;
        }
        SizeBits();
        m_bPayloadFixed = true;
    } else if (m_bLearnt && nSize != m_nPayload) {
        if (nSize == m_nExpected && nPacketID != m_nHighestID && m_nBytes == m_nPayload) {
            TakeBackFirst();
        }
        m_bLearnt = false;
    }
    if (nSize <= m_nPayload && m_nShortID != 0 && nPacketID > m_nShortID) {
        TakeBackShort();
        if (!m_bSure && nSize == m_nShortSize && m_nBytes == 0) {
            // Two of them, and nothing longer: the camera's full packets are shorter than its register tells.
            m_nPayload = nSize;
            m_nFilled = 0;
            SizeBits();
        }
    }
    return nSize == m_nPayload || (nSize < m_nPayload && CanBeLast(nPacketID, nSize));
}

void CBlock::SizeBits() {
    m_nBits = std::min(CountPackets(m_objMemory.Memory.size(), m_nPayload) + 1,
                       static_cast<std::uint32_t>(m_vecSettled.size() * kBitsPerWord));
    m_nNoticedID = 0;  // it was reckoned with another size
}

/// The second packet is as was expected: the first, which wasn't, has a wrong size, and is missing.
void CBlock::TakeBackFirst() {
    m_vecSettled[m_nHighestID / kBitsPerWord] &= ~BitOf(m_nHighestID);
    --m_nSettled;
    AddGap({m_nHighestID, m_nHighestID, 0, {}, 0});
    m_nBytes = m_nFilled = m_nHighestID = 0;
    m_bLarger = false;
    m_nPayload = m_nExpected;
    SizeBits();
}

/// A packet that was taken for the last, as it wasn't full, isn't: it was cut, and is missing.
void CBlock::TakeBackShort() {
    m_vecSettled[m_nShortID / kBitsPerWord] &= ~BitOf(m_nShortID);
    --m_nSettled;
    m_nBytes -= m_nShortSize;
    ++m_nOtherSizes;
    AddGap({m_nShortID, m_nShortID, 0, {}, 0});
    m_nShortID = 0;
}

/// What the camera was asked for behind its trailer, and refused, doesn't belong to the block.
void CBlock::TakeBackUnavailable(std::uint32_t nFirst) {
    for (std::uint32_t nID = nFirst; m_nUnavailable != 0 && nID < std::min(m_nNextID, m_nBits); ++nID) {
        if (HasComeAfterAll(nID)) {
            m_vecSettled[nID / kBitsPerWord] &= ~BitOf(nID);
            --m_nSettled;
        }
    }
}

PACKET_EFFECT CBlock::TakePayload(std::uint32_t nPacketID, std::span<const std::byte> arrData) {
    if (nPacketID == 0 || arrData.empty() || (m_bTrailer && nPacketID >= m_nTrailerID)) {
        return PACKET_EFFECT::Refused;
    }
    if ((arrData.size() != m_nPayload || !m_bPayloadFixed || m_nShortID != 0) &&
        !FitsPayload(nPacketID, arrData.size())) {
        ++m_nOtherSizes;
        return PACKET_EFFECT::Refused;
    }
    const std::uint64_t nOffset = (nPacketID - std::uint64_t{1}) * m_nPayload;
    if (nPacketID >= m_nBits || nOffset >= m_objMemory.Memory.size()) {
        m_bLarger = true;
        return PACKET_EFFECT::Refused;
    }
    const std::size_t nRoom = m_objMemory.Memory.size() - static_cast<std::size_t>(nOffset);
    const std::size_t nSize = std::min(arrData.size(), nRoom);
    if (!SettlePacket(nPacketID) && !HasComeAfterAll(nPacketID)) {
        // Of another image the camera has begun to number anew, unseen: one of the leaders was lost, or has no time.
        m_bFlawed = m_bFlawed || std::memcmp(m_objMemory.Memory.data() + nOffset, arrData.data(), nSize) != 0;
        return PACKET_EFFECT::Duplicate;
    }
    m_bLarger = m_bLarger || nSize < arrData.size();
    std::memcpy(m_objMemory.Memory.data() + nOffset, arrData.data(), nSize);
    if (arrData.size() < m_nPayload) {
        m_nShortID = nPacketID;
        m_nShortSize = arrData.size();
    }
    m_nHighestID = std::max(m_nHighestID, nPacketID);
    m_nBytes += arrData.size();
    m_nFilled = std::max(m_nFilled, nOffset + nSize);
    return PACKET_EFFECT::Placed;
}

PACKET_EFFECT CBlock::TakeTrailer(std::uint32_t nPacketID, const gev::GVSP_TRAILER& objTrailer) {
    if (m_bTrailer) {
        return PACKET_EFFECT::Duplicate;
    }
    if (nPacketID <= m_nHighestID || nPacketID == 0) {
        return PACKET_EFFECT::Refused;
    }
    m_objTrailer = objTrailer;
    m_nTrailerID = nPacketID;
    m_bTrailer = m_bTrailerSettled = true;
    TakeBackUnavailable(nPacketID);
    m_nNextID = nPacketID;
    if (m_nShortID != 0 && (m_nShortID + 1 != nPacketID || IsCut(m_nShortID, m_nShortSize))) {
        TakeBackShort();
    }
    return PACKET_EFFECT::Placed;
}

PACKET_EFFECT CBlock::TakeAllIn(const gev::GVSP_LEADER& objLeader, const gev::GVSP_TRAILER& objTrailer,
                                std::span<const std::byte> arrData) {
    if (m_nHighestID != 0 || TakeLeader(objLeader) != PACKET_EFFECT::Placed) {
        return PACKET_EFFECT::Duplicate;
    }
    if (!arrData.empty()) {
        TakePayload(1, arrData);
    }
    return TakeTrailer(m_nHighestID + 1, objTrailer);
}

PACKET_EFFECT CBlock::TakeUnavailable(std::uint32_t nPacketID, std::uint32_t nPredictedTrailerID) {
    const bool bPayload = nPacketID < m_nBits && !(m_bTrailerSettled && nPacketID >= m_nTrailerID);
    if (!m_bTrailerSettled && nPacketID != 0 && nPacketID == GetTrailerID(nPredictedTrailerID) &&
        (nPacketID >= m_nNextID || !bPayload)) {
        m_nTrailerID = nPacketID;
        m_bTrailerSettled = true;
        return PACKET_EFFECT::Placed;
    }
    if (!bPayload) {
        return PACKET_EFFECT::Refused;
    }
    if (!SettlePacket(nPacketID)) {
        return PACKET_EFFECT::Duplicate;
    }
    if (m_nUnavailable++ == 0) {
        std::ranges::fill(m_vecUnavailable, 0);
    }
    m_vecUnavailable[nPacketID / kBitsPerWord] |= BitOf(nPacketID);
    return PACKET_EFFECT::Placed;
}

void CBlock::AddGap(const PACKET_GAP& objGap) {
    if (m_vecGap.size() < kMostGaps) {
        m_vecGap.push_back(objGap);
    } else if (objGap.First < m_nBits) {
        // What lies between has come and won't be asked for. A trailer that the leader claims far behind it waits until
        // there is room: nobody could walk there.
        m_vecGap.back().Last = std::max(m_vecGap.back().Last, objGap.Last);
    }
}

void CBlock::PassOver(std::uint32_t nPacketID, std::uint64_t nClock, StreamClock::time_point objDue) {
    for (PACKET_GAP& objGap : m_vecGap) {
        if (objGap.IsProbe) {  // it had only been asked for too early
            objGap = {objGap.First, objGap.Last, nClock, objDue, 0};
        }
    }
    const std::uint32_t nFirst = std::max(m_nNextID, m_nNoticedID);
    const std::uint32_t nEnd = std::min(nPacketID, m_nBits);
    if (nEnd > nFirst) {
        AddGap({nFirst, nEnd - 1, nClock, objDue, 0});
    }
    m_nNextID = std::max(m_nNextID, nEnd);
}

void CBlock::NoticeTail(std::uint32_t nLast, bool bProbe, std::uint64_t nClock, StreamClock::time_point objDue) {
    nLast = std::max(nLast, m_nNextID);
    // A leader may announce any number of packets: those between the memory's end and the trailer are of no use.
    const bool bBeyond = HasMemory() && nLast > m_nBits;
    const std::uint32_t nEnd = bBeyond ? m_nBits : nLast + 1;
    const std::uint32_t nFirst = std::max(m_nNextID, m_nNoticedID);
    if (nFirst < nEnd) {
        AddGap({nFirst, nEnd - 1, nClock, objDue, 0, bProbe});
    }
    if (bBeyond && nLast >= m_nNoticedID) {
        AddGap({nLast, nLast, nClock, objDue, 0, bProbe});
    }
    m_nTailID = m_nNextID;
    m_nNoticedID = std::max(m_nNoticedID, nLast + 1);
    m_bTailNoticed = true;
}

std::uint64_t CBlock::GetMeantSize() const {
    const gev::EPayloadType nType = m_objLeader.PayloadType;
    std::uint64_t nSize = 0;
    if (m_bLeader && gev::IsImage(nType)) {
        gev::GVSP_LEADER objLeader = m_objLeader;
        if (m_bTrailer && gev::IsImage(m_objTrailer.PayloadType)) {
            objLeader.SizeY = m_objTrailer.SizeY;
        }
        nSize = gev::GetImageSize(objLeader);
    } else if (m_bLeader) {
        nSize = m_objLeader.DataSize;
    }
    const std::uint64_t nChunks = m_bTrailer ? m_objTrailer.ChunkDataLength : 0;
    // Where the whole block is chunks the image is one of them. Behind an image some cameras count it too.
    const bool bIsChunks = nType == gev::EPayloadType::ChunkData || nType == gev::EPayloadType::ExtendedChunkData;
    if (bIsChunks || (nChunks > nSize && nChunks == m_nBytes)) {
        return std::max(nSize, nChunks);
    }
    return nSize > std::numeric_limits<std::uint64_t>::max() - nChunks ? nSize : nSize + nChunks;
}

std::uint32_t CBlock::GetTrailerID(std::uint32_t nPredicted) const {
    if (m_bTrailerSettled) {
        return m_nTrailerID;
    }
    const std::uint32_t nCount = GetPacketCount();
    return nCount != 0 ? nCount + 1 : nPredicted;
}

FINISHED_BLOCK CBlock::GetResult(std::uint32_t nPredictedTrailerID) const {
    FINISHED_BLOCK objResult{m_objMemory, m_nBlockID,   m_bLeader, m_bTrailer,
                             m_objLeader, m_objTrailer, m_nFilled, GetMeantSize()};
    // An expectation is worth something only while nothing that came contradicts it.
    const std::uint32_t nTrailerID = m_bTrailer ? m_nTrailerID : std::max(GetTrailerID(nPredictedTrailerID), m_nNextID);
    const std::uint64_t nCame = m_nSettled - m_nUnavailable;
    const std::uint64_t nMeant = HasMemory() ? GetTracked(nTrailerID) : nTrailerID;
    objResult.PacketsMissing = (nMeant > nCame ? nMeant - nCame : 0) + (m_bTrailer ? 0 : 1);
    objResult.IsLargerThanMemory = m_bLarger || (m_bTrailer && m_nTrailerID > m_nBits);
    objResult.DataSize = std::max(objResult.DataSize, m_nBytes);
    objResult.IsIncomplete =
        objResult.PacketsMissing != 0 || m_bFlawed || objResult.IsLargerThanMemory || m_nBytes < objResult.DataSize;
    return objResult;
}

}  // namespace producer
