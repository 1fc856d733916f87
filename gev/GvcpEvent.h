#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "gev/GvcpHeader.h"

namespace gev {

// Event IDs of the standard; from kEventFirstOfDevice on they are the device's own.
constexpr std::uint16_t kEventTrigger = 0x0002;
constexpr std::uint16_t kEventStartOfExposure = 0x0003;
constexpr std::uint16_t kEventEndOfExposure = 0x0004;
constexpr std::uint16_t kEventStartOfTransfer = 0x0005;
constexpr std::uint16_t kEventEndOfTransfer = 0x0006;
constexpr std::uint16_t kEventFirstOfDevice = 0x9000;

constexpr std::uint16_t kEventNoStreamChannel = 0xFFFF;  ///< the event has to do with no stream channel

/// One event of a device, sent to the port of its message channel.
struct EVENT_ENTRY {
    std::uint16_t EventID = 0;
    std::uint16_t StreamChannel = kEventNoStreamChannel;
    std::uint64_t BlockID = 0;    ///< 16 bits, unless the command has extended IDs
    std::uint64_t Timestamp = 0;  ///< in ticks of the device
};

/// The entries of EVENT_CMD, read in place.
class CEventView {
public:
    CEventView() = default;
    CEventView(std::span<const std::byte> arrPayload, bool bExtendedIDs)
        : m_arrPayload(arrPayload), m_bExtendedIDs(bExtendedIDs) {}

    std::size_t GetCount() const;
    EVENT_ENTRY Get(std::size_t i) const;  ///< i under GetCount()

private:
    std::span<const std::byte> m_arrPayload;
    bool m_bExtendedIDs = false;
};

/// One event of EVENTDATA_CMD.
struct EVENT_DATA {
    EVENT_ENTRY Entry;
    std::span<const std::byte> Data;  ///< of the device's own, in the payload
};

/// Walks over the events of EVENTDATA_CMD. With extended IDs each tells its size, so that further ones may stand behind
/// it. Without them, or when the first doesn't tell its size, there is one event, with all the data.
/// Source: the public analyser's reading of the event's size.
class CEventDataWalk {
public:
    CEventDataWalk() = default;
    CEventDataWalk(std::span<const std::byte> arrPayload, bool bExtendedIDs)
        : m_arrRest(arrPayload), m_bExtendedIDs(bExtendedIDs) {}

    /// The next event; nothing at the end, and nothing more once an event isn't all there.
    std::optional<EVENT_DATA> GetNext();

private:
    std::span<const std::byte> m_arrRest;
    bool m_bExtendedIDs = false;
    bool m_bFirst = true;  // is the next
};

/// @param bExtendedIDs  block IDs of 64 bits; with 16 bits the higher ones are cut off
std::span<std::byte> EncodeEvent(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                 std::span<const EVENT_ENTRY> arrEvents, bool bExtendedIDs, bool bAcknowledge);
/// @param objHeader  of the command: its flags tell the width of the block IDs
/// @return InvalidHeader unless it holds whole entries, one at least.
EGvcpStatus DecodeEvent(const GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> arrPayload,
                        CEventView& objEvents);

/// One event with data of the device's own behind it.
/// @param arrData  a multiple of 4 bytes, and at most what fits behind the entry
std::span<std::byte> EncodeEventData(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                     const EVENT_ENTRY& objEvent, std::span<const std::byte> arrData, bool bExtendedIDs,
                                     bool bAcknowledge);
/// @param objEvents  to be walked from its first event
/// @return InvalidHeader when there isn't a whole first event.
EGvcpStatus DecodeEventData(const GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> arrPayload,
                            CEventDataWalk& objEvents);

}  // namespace gev
