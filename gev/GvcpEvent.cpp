#include "gev/GvcpEvent.h"

#include <algorithm>
#include <utility>

#include "gev/BigEndian.h"

namespace gev {

namespace {

// Offsets into an entry. With extended IDs the field of the short block ID is reserved, and the long one stands between
// it and the timestamp.
constexpr std::size_t kEventSizeOffset = 0;  // EVENTDATA with extended IDs: bytes of the entry and its data
constexpr std::size_t kEventIDOffset = 2;
constexpr std::size_t kStreamChannelOffset = 4;
constexpr std::size_t kBlockIDOffset = 6;
constexpr std::size_t kTimestampOffset = 8;
constexpr std::size_t kExtendedBlockIDOffset = 8;
constexpr std::size_t kExtendedTimestampOffset = 16;

std::size_t GetEntrySize(bool bExtendedIDs) {
    return bExtendedIDs ? 24 : 16;
}

bool HasExtendedIDs(const GVCP_COMMAND_HEADER& objHeader) {
    return (objHeader.Flags & kGvcpFlagExtendedIDs) != 0;
}

std::uint8_t MakeFlags(bool bExtendedIDs, bool bAcknowledge) {
    return static_cast<std::uint8_t>((bExtendedIDs ? kGvcpFlagExtendedIDs : 0) |
                                     (bAcknowledge ? kGvcpFlagAcknowledge : 0));
}

void PutEntry(std::span<std::byte> arrEntry, const EVENT_ENTRY& objEvent, bool bExtendedIDs) {
    Put16(arrEntry, kEventIDOffset, objEvent.EventID);
    Put16(arrEntry, kStreamChannelOffset, objEvent.StreamChannel);
    if (bExtendedIDs) {
        Put64(arrEntry, kExtendedBlockIDOffset, objEvent.BlockID);
        Put64(arrEntry, kExtendedTimestampOffset, objEvent.Timestamp);
    } else {
        Put16(arrEntry, kBlockIDOffset, static_cast<std::uint16_t>(objEvent.BlockID));
        Put64(arrEntry, kTimestampOffset, objEvent.Timestamp);
    }
}

EVENT_ENTRY GetEntry(std::span<const std::byte> arrEntry, bool bExtendedIDs) {
    return {Get16(arrEntry, kEventIDOffset), Get16(arrEntry, kStreamChannelOffset),
            bExtendedIDs ? Get64(arrEntry, kExtendedBlockIDOffset) : Get16(arrEntry, kBlockIDOffset),
            Get64(arrEntry, bExtendedIDs ? kExtendedTimestampOffset : kTimestampOffset)};
}

}  // namespace

std::size_t CEventView::GetCount() const {
    return m_arrPayload.size() / GetEntrySize(m_bExtendedIDs);
}

EVENT_ENTRY CEventView::Get(std::size_t i) const {
    return GetEntry(m_arrPayload.subspan(i * GetEntrySize(m_bExtendedIDs)), m_bExtendedIDs);
}

std::optional<EVENT_DATA> CEventDataWalk::GetNext() {
    const std::span<const std::byte> arrLeft = std::exchange(m_arrRest, {});
    const std::size_t nEntrySize = GetEntrySize(m_bExtendedIDs);
    if (arrLeft.size() < nEntrySize) {
        return std::nullopt;
    }
    // Without extended IDs the field is reserved. A device that says nothing means all that there is; behind an event
    // that has told its size it is padding.
    const std::size_t nSaid = m_bExtendedIDs ? Get16(arrLeft, kEventSizeOffset) : 0;
    const std::size_t nSize = std::exchange(m_bFirst, false) && nSaid == 0 ? arrLeft.size() : nSaid;
    if (nSize < nEntrySize || nSize > arrLeft.size()) {
        return std::nullopt;
    }
    m_arrRest = arrLeft.subspan(nSize);
    return EVENT_DATA{GetEntry(arrLeft, m_bExtendedIDs), arrLeft.first(nSize).subspan(nEntrySize)};
}

std::span<std::byte> EncodeEvent(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                 std::span<const EVENT_ENTRY> arrEvents, bool bExtendedIDs, bool bAcknowledge) {
    const std::size_t nEntrySize = GetEntrySize(bExtendedIDs);
    if (arrEvents.empty() || arrEvents.size() > kGvcpLongestPayload / nEntrySize) {
        return {};
    }
    const auto arrDatagram = EncodeCommand(arrBuffer, EGvcpCommand::Event, MakeFlags(bExtendedIDs, bAcknowledge),
                                           nRequestID, arrEvents.size() * nEntrySize);
    if (arrDatagram.empty()) {
        return {};
    }
    std::size_t nOffset = kGvcpHeaderSize;
    for (const EVENT_ENTRY& objEvent : arrEvents) {
        PutEntry(arrDatagram.subspan(nOffset, nEntrySize), objEvent, bExtendedIDs);
        nOffset += nEntrySize;
    }
    return arrDatagram;
}

EGvcpStatus DecodeEvent(const GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> arrPayload,
                        CEventView& objEvents) {
    const bool bExtendedIDs = HasExtendedIDs(objHeader);
    if (arrPayload.empty() || arrPayload.size() % GetEntrySize(bExtendedIDs) != 0) {
        return EGvcpStatus::InvalidHeader;
    }
    objEvents = CEventView(arrPayload, bExtendedIDs);
    return EGvcpStatus::Success;
}

std::span<std::byte> EncodeEventData(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                     const EVENT_ENTRY& objEvent, std::span<const std::byte> arrData, bool bExtendedIDs,
                                     bool bAcknowledge) {
    const std::size_t nEntrySize = GetEntrySize(bExtendedIDs);
    if (arrData.size() % 4 != 0 || arrData.size() > kGvcpLongestPayload - nEntrySize) {
        return {};
    }
    const auto arrDatagram = EncodeCommand(arrBuffer, EGvcpCommand::EventData, MakeFlags(bExtendedIDs, bAcknowledge),
                                           nRequestID, nEntrySize + arrData.size());
    if (!arrDatagram.empty()) {
        if (bExtendedIDs) {
            Put16(arrDatagram, kGvcpHeaderSize + kEventSizeOffset,
                  static_cast<std::uint16_t>(nEntrySize + arrData.size()));
        }
        PutEntry(arrDatagram.subspan(kGvcpHeaderSize, nEntrySize), objEvent, bExtendedIDs);
        std::ranges::copy(arrData, arrDatagram.subspan(kGvcpHeaderSize + nEntrySize).begin());
    }
    return arrDatagram;
}

EGvcpStatus DecodeEventData(const GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> arrPayload,
                            CEventDataWalk& objEvents) {
    const CEventDataWalk objWalk(arrPayload, HasExtendedIDs(objHeader));
    if (!CEventDataWalk(objWalk).GetNext()) {
        return EGvcpStatus::InvalidHeader;
    }
    objEvents = objWalk;
    return EGvcpStatus::Success;
}

}  // namespace gev
