#include "gev/GvcpMemory.h"

#include <algorithm>

#include "gev/BigEndian.h"

namespace gev {

namespace {

constexpr std::size_t kReadMemSize = 8;
constexpr std::size_t kCountOffset = 6;
constexpr std::size_t kDataOffset = 4;  // of WRITEMEM_CMD and READMEM_ACK
constexpr std::size_t kWriteMemAckSize = 4;
constexpr std::size_t kIndexOffset = 2;

EGvcpStatus CheckBlock(std::uint32_t nAddress, std::size_t nCount) {
    if (nAddress % 4 != 0 || nCount % 4 != 0) {
        return EGvcpStatus::BadAlignment;
    }
    if (nCount == 0 || nCount > kLongestMemoryBlock) {
        return EGvcpStatus::InvalidParameter;
    }
    constexpr std::uint64_t kAddressSpace = 0x1'0000'0000;
    return nAddress + std::uint64_t{nCount} > kAddressSpace ? EGvcpStatus::InvalidAddress : EGvcpStatus::Success;
}

/// Address and data behind the header; the datagram has room for them.
void PutBlock(std::span<std::byte> arrDatagram, const MEMORY_BLOCK& objBlock) {
    Put32(arrDatagram, kGvcpHeaderSize, objBlock.Address);
    std::ranges::copy(objBlock.Data, arrDatagram.subspan(kGvcpHeaderSize + kDataOffset).begin());
}

}  // namespace

std::span<std::byte> EncodeReadMem(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                   const READMEM_COMMAND& objCommand) {
    const auto arrDatagram =
        EncodeCommand(arrBuffer, EGvcpCommand::ReadMem, kGvcpFlagAcknowledge, nRequestID, kReadMemSize);
    if (!arrDatagram.empty()) {
        Put32(arrDatagram, kGvcpHeaderSize, objCommand.Address);
        Put16(arrDatagram, kGvcpHeaderSize + kCountOffset, objCommand.Count);
    }
    return arrDatagram;
}

EGvcpStatus DecodeReadMem(std::span<const std::byte> arrPayload, READMEM_COMMAND& objCommand) {
    if (arrPayload.size() != kReadMemSize) {
        return EGvcpStatus::InvalidHeader;
    }
    const READMEM_COMMAND objRead{Get32(arrPayload, 0), Get16(arrPayload, kCountOffset)};
    const EGvcpStatus nStatus = CheckBlock(objRead.Address, objRead.Count);
    if (nStatus == EGvcpStatus::Success) {
        objCommand = objRead;
    }
    return nStatus;
}

std::span<std::byte> EncodeReadMemAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID,
                                      const MEMORY_BLOCK& objBlock) {
    if (objBlock.Data.size() > kLongestMemoryBlock) {
        return {};
    }
    const auto arrDatagram = EncodeAcknowledge(arrBuffer, EGvcpCommand::ReadMem, nAckID, EGvcpStatus::Success,
                                               kDataOffset + objBlock.Data.size());
    if (!arrDatagram.empty()) {
        PutBlock(arrDatagram, objBlock);
    }
    return arrDatagram;
}

EGvcpStatus DecodeReadMemAck(std::span<const std::byte> arrPayload, const READMEM_COMMAND& objCommand,
                             std::span<const std::byte>& arrData) {
    if (arrPayload.size() != kDataOffset + objCommand.Count || Get32(arrPayload, 0) != objCommand.Address) {
        return EGvcpStatus::InvalidHeader;
    }
    arrData = arrPayload.subspan(kDataOffset);
    return EGvcpStatus::Success;
}

std::span<std::byte> EncodeWriteMem(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                    const MEMORY_BLOCK& objBlock) {
    if (objBlock.Data.size() > kLongestMemoryBlock) {
        return {};
    }
    const auto arrDatagram = EncodeCommand(arrBuffer, EGvcpCommand::WriteMem, kGvcpFlagAcknowledge, nRequestID,
                                           kDataOffset + objBlock.Data.size());
    if (!arrDatagram.empty()) {
        PutBlock(arrDatagram, objBlock);
    }
    return arrDatagram;
}

EGvcpStatus DecodeWriteMem(std::span<const std::byte> arrPayload, MEMORY_BLOCK& objBlock) {
    if (arrPayload.size() <= kDataOffset) {
        return EGvcpStatus::InvalidHeader;
    }
    const MEMORY_BLOCK objWrite{Get32(arrPayload, 0), arrPayload.subspan(kDataOffset)};
    const EGvcpStatus nStatus = CheckBlock(objWrite.Address, objWrite.Data.size());
    if (nStatus == EGvcpStatus::Success) {
        objBlock = objWrite;
    }
    return nStatus;
}

std::span<std::byte> EncodeWriteMemAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID, std::uint16_t nIndex) {
    const auto arrDatagram =
        EncodeAcknowledge(arrBuffer, EGvcpCommand::WriteMem, nAckID, EGvcpStatus::Success, kWriteMemAckSize);
    if (!arrDatagram.empty()) {
        Put16(arrDatagram, kGvcpHeaderSize + kIndexOffset, nIndex);
    }
    return arrDatagram;
}

EGvcpStatus DecodeWriteMemAck(std::span<const std::byte> arrPayload, std::uint16_t& nIndex) {
    if (arrPayload.size() != kWriteMemAckSize) {
        return EGvcpStatus::InvalidHeader;
    }
    nIndex = Get16(arrPayload, kIndexOffset);
    return EGvcpStatus::Success;
}

}  // namespace gev
