#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "gev/BigEndian.h"
#include "gev/GvcpHeader.h"

namespace gev {

constexpr std::size_t kMostRegistersRead = kGvcpLongestPayload / 4;     ///< in one READREG_CMD
constexpr std::size_t kMostRegistersWritten = kGvcpLongestPayload / 8;  ///< in one WRITEREG_CMD

struct REGISTER_WRITE {
    std::uint32_t Address = 0;  ///< a multiple of 4
    std::uint32_t Value = 0;
};

/// 32-bit numbers of a payload, read in place: the addresses of READREG_CMD, the values of READREG_ACK.
class CNumberView {
public:
    CNumberView() = default;
    explicit CNumberView(std::span<const std::byte> arrPayload) : m_arrPayload(arrPayload) {}

    std::size_t GetCount() const { return m_arrPayload.size() / 4; }
    std::uint32_t Get(std::size_t i) const { return Get32(m_arrPayload, 4 * i); }  ///< i under GetCount()

private:
    std::span<const std::byte> m_arrPayload;
};

/// The writes of WRITEREG_CMD, read in place.
class CRegisterWriteView {
public:
    CRegisterWriteView() = default;
    explicit CRegisterWriteView(std::span<const std::byte> arrPayload) : m_arrPayload(arrPayload) {}

    std::size_t GetCount() const { return m_arrPayload.size() / 8; }
    REGISTER_WRITE Get(std::size_t i) const {  ///< i under GetCount()
        return {Get32(m_arrPayload, 8 * i), Get32(m_arrPayload, 8 * i + 4)};
    }

private:
    std::span<const std::byte> m_arrPayload;
};

/// @param arrAddresses  1 to 135; more than one only for a device that knows concatenation
std::span<std::byte> EncodeReadReg(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                   std::span<const std::uint32_t> arrAddresses);
/// @return InvalidHeader unless it holds 1 to 135 whole addresses, BadAlignment when one is no multiple of 4.
EGvcpStatus DecodeReadReg(std::span<const std::byte> arrPayload, CNumberView& objAddresses);

/// @param arrValues  in the order of the command's addresses
std::span<std::byte> EncodeReadRegAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID,
                                      std::span<const std::uint32_t> arrValues);
/// @return InvalidHeader unless it holds exactly nCount values.
EGvcpStatus DecodeReadRegAck(std::span<const std::byte> arrPayload, std::size_t nCount, CNumberView& objValues);

/// @param arrWrites  1 to 67; more than one only for a device that knows concatenation
std::span<std::byte> EncodeWriteReg(std::span<std::byte> arrBuffer, std::uint16_t nRequestID,
                                    std::span<const REGISTER_WRITE> arrWrites);
/// @return InvalidHeader unless it holds 1 to 67 whole writes, BadAlignment when an address is no multiple of 4.
EGvcpStatus DecodeWriteReg(std::span<const std::byte> arrPayload, CRegisterWriteView& objWrites);

/// @param nIndex  how many writes were done
std::span<std::byte> EncodeWriteRegAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID, std::uint16_t nIndex);
EGvcpStatus DecodeWriteRegAck(std::span<const std::byte> arrPayload, std::uint16_t& nIndex);

}  // namespace gev
