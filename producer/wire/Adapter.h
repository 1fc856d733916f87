#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace producer {

/// One IPv4 address of an adapter. Addresses and masks are values with the first octet highest.
struct ADAPTER_ADDRESS {
    std::uint32_t Address = 0;
    std::uint32_t Mask = 0;
    std::uint32_t Broadcast = 0;  ///< of its subnet; 0 where a subnet of one or two addresses has none

    bool operator==(const ADAPTER_ADDRESS&) const = default;
};

/// A network adapter as it was at one moment. A plain value: the adapter itself may change or go at any time.
struct ADAPTER {
    std::string Name;           ///< the kernel's, as in "eth0"; unique at one moment, and what it is found by again
    std::uint32_t Index = 0;    ///< the kernel's number of it; another one after it was taken out and put in again
    std::uint64_t Mac = 0;      ///< first octet in bits 47 to 40; 0 where the adapter has none
    std::uint32_t Mtu = 0;      ///< longest IP packet in bytes
    std::uint32_t Gateway = 0;  ///< of the default route through it with the least metric; 0 without one
    bool HasLink = false;       ///< false while the cable or the other side is missing
    std::vector<ADAPTER_ADDRESS> Addresses;  ///< in the kernel's order; empty without IPv4

    bool operator==(const ADAPTER&) const = default;

    /// @return the first address; all 0 without one.
    [[nodiscard]] ADAPTER_ADDRESS GetDefaultAddress() const;

    /// @return whether one of its subnets holds the address, so that packets to it leave by this adapter undisturbed.
    [[nodiscard]] bool IsInside(std::uint32_t nAddress) const;

    /// @return whether a single camera may have the address: inside, neither a subnet's first nor last address nor one
    ///         of the adapter's own.
    [[nodiscard]] bool IsUsableForCamera(std::uint32_t nAddress) const;
};

}  // namespace producer
