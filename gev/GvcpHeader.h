#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "gev/GvcpStatus.h"

/// GVCP, the control protocol of GigE Vision: datagrams and their headers.
///
/// What holds for every encoder of this folder: it writes a whole datagram, header included, to the start of the
/// buffer that it is given, and returns what it wrote, ready to be sent; an empty span means that the buffer is too
/// small or that the message can't be said in one datagram (a buffer of kGvcpDatagramSize is always large enough).
/// Fields that the protocol reserves are zero.
///
/// What holds for every decoder: it gets the payload alone, reads nothing outside it, and fills its result only if it
/// answers Success. Results that are spans or views point into the payload. Reserved fields are not looked at.
namespace gev {

constexpr std::uint16_t kGvcpPort = 3956;  ///< of the device; UDP
constexpr std::uint8_t kGvcpKey = 0x42;    ///< first byte of every command
constexpr std::size_t kGvcpHeaderSize = 8;
constexpr std::size_t kGvcpLongestPayload = 540;  ///< 576 bytes without the headers of IP, UDP and GVCP
constexpr std::size_t kGvcpDatagramSize = kGvcpHeaderSize + kGvcpLongestPayload;

/// Room for any datagram.
using GvcpBuffer = std::array<std::byte, kGvcpDatagramSize>;

/// Commands. The code of an acknowledge is that of its command plus 1.
enum class EGvcpCommand : std::uint16_t {
    Discovery = 0x0002,
    ForceIP = 0x0004,
    PacketResend = 0x0040,
    ReadReg = 0x0080,
    WriteReg = 0x0082,
    ReadMem = 0x0084,
    WriteMem = 0x0086,
    Pending = 0x0088,  ///< only PENDING_ACK is ever sent
    Event = 0x00C0,
    EventData = 0x00C2,
    Action = 0x0100,
    ForceIPEx = 0x9000,  ///< vendor command of the recovery pair
};

/// "READREG" for ReadReg and so on, "unknown command" for a value without a name.
std::string_view GetText(EGvcpCommand nCommand);

// Flags of a command. The meaning of 0x10 depends on the command.
constexpr std::uint8_t kGvcpFlagAcknowledge = 0x01;           ///< the sender wants an acknowledge
constexpr std::uint8_t kGvcpFlagBroadcastAcknowledge = 0x10;  ///< DISCOVERY, FORCEIP: it may be a broadcast
constexpr std::uint8_t kGvcpFlagExtendedIDs = 0x10;           ///< PACKETRESEND, EVENT, EVENTDATA: 64-bit block IDs

struct GVCP_COMMAND_HEADER {
    EGvcpCommand Command{};
    std::uint8_t Flags = 0;
    std::uint16_t Length = 0;     ///< bytes of payload
    std::uint16_t RequestID = 0;  ///< never 0 in a good command

    constexpr bool WantsAcknowledge() const { return (Flags & kGvcpFlagAcknowledge) != 0; }
};

struct GVCP_ACKNOWLEDGE_HEADER {
    EGvcpStatus Status{};
    EGvcpCommand Command{};    ///< that was acknowledged
    std::uint16_t Length = 0;  ///< bytes of payload
    std::uint16_t AckID = 0;   ///< request ID of the command
};

/// The request ID behind this one: IDs run from 1 and skip 0.
constexpr std::uint16_t NextRequestID(std::uint16_t nRequestID) {
    return nRequestID == 0xFFFF ? std::uint16_t{1} : static_cast<std::uint16_t>(nRequestID + 1);
}

/// Takes a received command apart.
/// @param objHeader   always filled; a RequestID of 0 says that there is nobody to answer: the datagram is shorter than
///                    a header, isn't GVCP, or has no request ID. Any other refusal can be answered, if it is wanted.
/// @param arrPayload  what stands behind the header; set on Success only
/// @return InvalidHeader when the payload isn't exactly as long as the header says, or is longer than 540 bytes.
EGvcpStatus DecodeCommand(std::span<const std::byte> arrDatagram, GVCP_COMMAND_HEADER& objHeader,
                          std::span<const std::byte>& arrPayload);

/// Takes a received acknowledge apart, whatever its status.
/// @return InvalidHeader for what is to be ignored: a datagram that is shorter or longer than it says, longer than 548
///         bytes in all, has AckID 0, or is a command.
EGvcpStatus DecodeAcknowledge(std::span<const std::byte> arrDatagram, GVCP_ACKNOWLEDGE_HEADER& objHeader,
                              std::span<const std::byte>& arrPayload);

/// A command whose payload the caller fills: nLength zeros behind the header. Also DISCOVERY_CMD, which has no payload.
std::span<std::byte> EncodeCommand(std::span<std::byte> arrBuffer, EGvcpCommand nCommand, std::uint8_t nFlags,
                                   std::uint16_t nRequestID, std::size_t nLength = 0);

/// An acknowledge whose payload the caller fills: nLength zeros behind the header. Also every refusal and every
/// acknowledge without payload (FORCEIP_ACK, EVENT_ACK, EVENTDATA_ACK, ACTION_ACK).
std::span<std::byte> EncodeAcknowledge(std::span<std::byte> arrBuffer, EGvcpCommand nCommand, std::uint16_t nAckID,
                                       EGvcpStatus nStatus, std::size_t nLength = 0);

/// PENDING_ACK: the command with this ID is worked on.
/// @param nTimeToCompletionMs  the sender of the command waits so much longer
std::span<std::byte> EncodePendingAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID,
                                      std::uint16_t nTimeToCompletionMs);
EGvcpStatus DecodePendingAck(std::span<const std::byte> arrPayload, std::uint16_t& nTimeToCompletionMs);

}  // namespace gev
