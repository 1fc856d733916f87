#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "gev/GvcpHeader.h"

namespace gev {

constexpr std::size_t kLongestMemoryBlock = 536;  ///< bytes of data that READMEM and WRITEMEM move at most

struct READMEM_COMMAND {
    std::uint32_t Address = 0;  ///< a multiple of 4
    std::uint16_t Count = 0;    ///< bytes: a multiple of 4, 4 to 536
};

/// A block of a device's memory: what WRITEMEM_CMD and READMEM_ACK carry.
struct MEMORY_BLOCK {
    std::uint32_t Address = 0;
    std::span<const std::byte> Data;  ///< 4 to 536 bytes, a multiple of 4
};

std::span<std::byte> EncodeReadMem(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                   const READMEM_COMMAND& objCommand);
/// @return InvalidHeader for a payload that isn't 8 bytes, BadAlignment for an address or a count that is no multiple
///         of 4, InvalidParameter for a count of 0 or over 536, InvalidAddress for a block that runs over the address
///         space.
EGvcpStatus DecodeReadMem(std::span<const std::byte> arrPayload, READMEM_COMMAND& objCommand);

std::span<std::byte> EncodeReadMemAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID,
                                      const MEMORY_BLOCK& objBlock);
/// @return InvalidHeader unless it holds exactly the block that the command asked for.
EGvcpStatus DecodeReadMemAck(std::span<const std::byte> arrPayload, const READMEM_COMMAND& objCommand,
                             std::span<const std::byte>& arrData);

std::span<std::byte> EncodeWriteMem(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                    const MEMORY_BLOCK& objBlock);
/// @return InvalidHeader for a payload without data, BadAlignment for an address or a size of the data that is no
///         multiple of 4, InvalidParameter for over 536 bytes, InvalidAddress for a block that runs over the address
///         space.
EGvcpStatus DecodeWriteMem(std::span<const std::byte> arrPayload, MEMORY_BLOCK& objBlock);

/// @param nIndex  how many bytes were written
std::span<std::byte> EncodeWriteMemAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID, std::uint16_t nIndex);
EGvcpStatus DecodeWriteMemAck(std::span<const std::byte> arrPayload, std::uint16_t& nIndex);

}  // namespace gev
