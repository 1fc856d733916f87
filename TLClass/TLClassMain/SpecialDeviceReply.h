#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "TLClass/TLClassInfo/CommonDeviceInfo.h"
#include "TLClass/TLClassInfo/DevModuleInfo.h"
#include "TLClass/TLClassInfo/GevDevInfo.h"

/// The discovery reply of one device that was asked for by its address, and the records that it makes.
///
/// A DISCOVERY_ACK from its 8-byte header on; numbers are in network order. It comes from the network: every field has
/// a fixed place and length within the reply's own memory, and a text without an end is cut at its field's. Source:
/// GigE Vision, DISCOVERY_ACK.
class CSpecialDeviceReply {
public:
    static constexpr std::size_t kSize = 256;

    /// Gets the reply. What a producer doesn't fill is 0.
    std::uint8_t* GetBuffer() { return m_arrBytes.data(); }

    /// @param strIP  the address that was asked for; the reply's own isn't looked at
    DEV_MODULE_INFO GetDeviceInfo(const std::string& strIP) const;
    COMMON_DEVICE_INFO GetCommonInfo() const;
    GEV_DEV_INFO GetGevInfo(const std::string& strIP) const;

private:
    std::string __GetText(std::size_t nOffset, std::size_t nLength) const;
    std::int64_t __GetNumber(std::size_t nOffset, std::size_t nLength) const;

    std::array<std::uint8_t, kSize> m_arrBytes{};
};
