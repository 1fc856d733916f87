#include "gev/GvcpHeader.h"

#include <algorithm>

#include "gev/BigEndian.h"

namespace gev {

namespace {

constexpr std::size_t kPendingAckSize = 4;

/// Whether what stands behind a header is as long as the header says, and no longer than any may be.
bool HoldsPayload(std::span<const std::byte> arrDatagram, std::uint16_t nLength) {
    return arrDatagram.size() == kGvcpHeaderSize + nLength && nLength <= kGvcpLongestPayload;
}

/// The start of the buffer as a datagram with a payload of zeros; empty when it has no room.
std::span<std::byte> Begin(std::span<std::byte> arrBuffer, std::size_t nLength) {
    if (nLength > kGvcpLongestPayload || arrBuffer.size() < kGvcpHeaderSize + nLength) {
        return {};
    }
    const auto arrDatagram = arrBuffer.first(kGvcpHeaderSize + nLength);
    std::ranges::fill(arrDatagram.subspan(kGvcpHeaderSize), std::byte{0});
    return arrDatagram;
}

constexpr std::uint16_t kAcknowledgeBit = 0x0001;  // of a command code

}  // namespace

std::string_view GetText(EGvcpCommand nCommand) {
    switch (nCommand) {
        case EGvcpCommand::Discovery:
            return "DISCOVERY";
        case EGvcpCommand::ForceIP:
            return "FORCEIP";
        case EGvcpCommand::PacketResend:
            return "PACKETRESEND";
        case EGvcpCommand::ReadReg:
            return "READREG";
        case EGvcpCommand::WriteReg:
            return "WRITEREG";
        case EGvcpCommand::ReadMem:
            return "READMEM";
        case EGvcpCommand::WriteMem:
            return "WRITEMEM";
        case EGvcpCommand::Pending:
            return "PENDING";
        case EGvcpCommand::Event:
            return "EVENT";
        case EGvcpCommand::EventData:
            return "EVENTDATA";
        case EGvcpCommand::Action:
            return "ACTION";
        case EGvcpCommand::ForceIPEx:
            return "vendor command 0x9000";
    }
    return "unknown command";
}

EGvcpStatus DecodeCommand(std::span<const std::byte> arrDatagram, GVCP_COMMAND_HEADER& objHeader,
                          std::span<const std::byte>& arrPayload) {
    objHeader = {};
    if (arrDatagram.size() < kGvcpHeaderSize || arrDatagram[0] != std::byte{kGvcpKey}) {
        return EGvcpStatus::InvalidHeader;
    }
    objHeader.Flags = std::to_integer<std::uint8_t>(arrDatagram[1]);
    objHeader.Command = static_cast<EGvcpCommand>(Get16(arrDatagram, 2));
    objHeader.Length = Get16(arrDatagram, 4);
    objHeader.RequestID = Get16(arrDatagram, 6);
    if (objHeader.RequestID == 0 || !HoldsPayload(arrDatagram, objHeader.Length)) {
        return EGvcpStatus::InvalidHeader;
    }
    arrPayload = arrDatagram.subspan(kGvcpHeaderSize);
    return EGvcpStatus::Success;
}

EGvcpStatus DecodeAcknowledge(std::span<const std::byte> arrDatagram, GVCP_ACKNOWLEDGE_HEADER& objHeader,
                              std::span<const std::byte>& arrPayload) {
    if (arrDatagram.size() < kGvcpHeaderSize) {
        return EGvcpStatus::InvalidHeader;
    }
    const std::uint16_t nCode = Get16(arrDatagram, 2);
    const std::uint16_t nLength = Get16(arrDatagram, 4);
    const std::uint16_t nAckID = Get16(arrDatagram, 6);
    // A socket that broadcasts on port 3956 hears its own commands: their codes are even.
    if ((nCode & kAcknowledgeBit) == 0 || nAckID == 0 || !HoldsPayload(arrDatagram, nLength)) {
        return EGvcpStatus::InvalidHeader;
    }
    objHeader = {static_cast<EGvcpStatus>(Get16(arrDatagram, 0)), static_cast<EGvcpCommand>(nCode - kAcknowledgeBit),
                 nLength, nAckID};
    arrPayload = arrDatagram.subspan(kGvcpHeaderSize);
    return EGvcpStatus::Success;
}

std::span<std::byte> EncodeCommand(std::span<std::byte> arrBuffer, EGvcpCommand nCommand, std::uint8_t nFlags,
                                   std::uint16_t nRequestID, std::size_t nLength) {
    const auto arrDatagram = Begin(arrBuffer, nLength);
    if (!arrDatagram.empty()) {
        arrDatagram[0] = std::byte{kGvcpKey};
        arrDatagram[1] = std::byte{nFlags};
        Put16(arrDatagram, 2, static_cast<std::uint16_t>(nCommand));
        Put16(arrDatagram, 4, static_cast<std::uint16_t>(nLength));
        Put16(arrDatagram, 6, nRequestID);
    }
    return arrDatagram;
}

std::span<std::byte> EncodeAcknowledge(std::span<std::byte> arrBuffer, EGvcpCommand nCommand, std::uint16_t nAckID,
                                       EGvcpStatus nStatus, std::size_t nLength) {
    const auto arrDatagram = Begin(arrBuffer, nLength);
    if (!arrDatagram.empty()) {
        Put16(arrDatagram, 0, static_cast<std::uint16_t>(nStatus));
        Put16(arrDatagram, 2, static_cast<std::uint16_t>(static_cast<std::uint16_t>(nCommand) | kAcknowledgeBit));
        Put16(arrDatagram, 4, static_cast<std::uint16_t>(nLength));
        Put16(arrDatagram, 6, nAckID);
    }
    return arrDatagram;
}

std::span<std::byte> EncodePendingAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID,
                                      std::uint16_t nTimeToCompletionMs) {
    const auto arrDatagram =
        EncodeAcknowledge(arrBuffer, EGvcpCommand::Pending, nAckID, EGvcpStatus::Success, kPendingAckSize);
    if (!arrDatagram.empty()) {
        Put16(arrDatagram, kGvcpHeaderSize + 2, nTimeToCompletionMs);
    }
    return arrDatagram;
}

EGvcpStatus DecodePendingAck(std::span<const std::byte> arrPayload, std::uint16_t& nTimeToCompletionMs) {
    if (arrPayload.size() != kPendingAckSize) {
        return EGvcpStatus::InvalidHeader;
    }
    nTimeToCompletionMs = Get16(arrPayload, 2);
    return EGvcpStatus::Success;
}

}  // namespace gev
