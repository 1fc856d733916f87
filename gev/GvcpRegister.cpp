#include "gev/GvcpRegister.h"

namespace gev {

namespace {

constexpr std::size_t kIndexOffset = 2;  // in WRITEREG_ACK
constexpr std::size_t kWriteRegAckSize = 4;

bool IsAligned(std::uint32_t nAddress) {
    return nAddress % 4 == 0;
}

void PutNumbers(std::span<std::byte> arrDatagram, std::span<const std::uint32_t> arrNumbers) {
    std::size_t nOffset = kGvcpHeaderSize;
    for (const std::uint32_t nNumber : arrNumbers) {
        Put32(arrDatagram, nOffset, nNumber);
        nOffset += 4;
    }
}

}  // namespace

std::span<std::byte> EncodeReadReg(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                   std::span<const std::uint32_t> arrAddresses) {
    if (arrAddresses.empty() || arrAddresses.size() > kMostRegistersRead) {
        return {};
    }
    const auto arrDatagram =
        EncodeCommand(arrBuffer, EGvcpCommand::ReadReg, kGvcpFlagAcknowledge, nRequestID, 4 * arrAddresses.size());
    if (!arrDatagram.empty()) {
        PutNumbers(arrDatagram, arrAddresses);
    }
    return arrDatagram;
}

EGvcpStatus DecodeReadReg(std::span<const std::byte> arrPayload, CNumberView& objAddresses) {
    if (arrPayload.empty() || arrPayload.size() % 4 != 0 || arrPayload.size() > kGvcpLongestPayload) {
        return EGvcpStatus::InvalidHeader;
    }
    const CNumberView objView(arrPayload);
    for (std::size_t i = 0; i < objView.GetCount(); ++i) {
        if (!IsAligned(objView.Get(i))) {
            return EGvcpStatus::BadAlignment;
        }
    }
    objAddresses = objView;
    return EGvcpStatus::Success;
}

std::span<std::byte> EncodeReadRegAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID,
                                      std::span<const std::uint32_t> arrValues) {
    if (arrValues.size() > kMostRegistersRead) {
        return {};
    }
    const auto arrDatagram =
        EncodeAcknowledge(arrBuffer, EGvcpCommand::ReadReg, nAckID, EGvcpStatus::Success, 4 * arrValues.size());
    if (!arrDatagram.empty()) {
        PutNumbers(arrDatagram, arrValues);
    }
    return arrDatagram;
}

EGvcpStatus DecodeReadRegAck(std::span<const std::byte> arrPayload, std::size_t nCount, CNumberView& objValues) {
    if (nCount > kMostRegistersRead || arrPayload.size() != 4 * nCount) {
        return EGvcpStatus::InvalidHeader;
    }
    objValues = CNumberView(arrPayload);
    return EGvcpStatus::Success;
}

std::span<std::byte> EncodeWriteReg(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                    std::span<const REGISTER_WRITE> arrWrites) {
    if (arrWrites.empty() || arrWrites.size() > kMostRegistersWritten) {
        return {};
    }
    const auto arrDatagram =
        EncodeCommand(arrBuffer, EGvcpCommand::WriteReg, kGvcpFlagAcknowledge, nRequestID, 8 * arrWrites.size());
    if (arrDatagram.empty()) {
        return {};
    }
    std::size_t nOffset = kGvcpHeaderSize;
    for (const REGISTER_WRITE& objWrite : arrWrites) {
        Put32(arrDatagram, nOffset, objWrite.Address);
        Put32(arrDatagram, nOffset + 4, objWrite.Value);
        nOffset += 8;
    }
    return arrDatagram;
}

EGvcpStatus DecodeWriteReg(std::span<const std::byte> arrPayload, CRegisterWriteView& objWrites) {
    if (arrPayload.empty() || arrPayload.size() % 8 != 0 || arrPayload.size() > kGvcpLongestPayload) {
        return EGvcpStatus::InvalidHeader;
    }
    const CRegisterWriteView objView(arrPayload);
    for (std::size_t i = 0; i < objView.GetCount(); ++i) {
        if (!IsAligned(objView.Get(i).Address)) {
            return EGvcpStatus::BadAlignment;
        }
    }
    objWrites = objView;
    return EGvcpStatus::Success;
}

std::span<std::byte> EncodeWriteRegAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID, std::uint16_t nIndex) {
    const auto arrDatagram =
        EncodeAcknowledge(arrBuffer, EGvcpCommand::WriteReg, nAckID, EGvcpStatus::Success, kWriteRegAckSize);
    if (!arrDatagram.empty()) {
        Put16(arrDatagram, kGvcpHeaderSize + kIndexOffset, nIndex);
    }
    return arrDatagram;
}

EGvcpStatus DecodeWriteRegAck(std::span<const std::byte> arrPayload, std::uint16_t& nIndex) {
    if (arrPayload.size() != kWriteRegAckSize) {
        return EGvcpStatus::InvalidHeader;
    }
    nIndex = Get16(arrPayload, kIndexOffset);
    return EGvcpStatus::Success;
}

}  // namespace gev
