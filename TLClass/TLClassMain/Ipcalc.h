#pragma once

#include <cstdint>

/// A calculator for IPv4 addresses and masks in terms of classes.
///
/// No state; any thread. Addresses and masks have the first octet highest. Sums and differences wrap at 32 bits, and 2
/// to a negative power is 0: what no subnet has gives a senseless number and no fault.
class Cipcalc {
public:
    virtual ~Cipcalc() = default;

    /// Four decimal numbers parted by dots, added up as octets. Nothing is tested but that no piece is longer than
    /// three characters: a fifth number is added to the first octet again, one over 255 reaches into the octet above.
    /// @return 0 for a longer piece and for null
    std::uint32_t StringToIp(const char* pszText) const;
    /// @param pOut  16 bytes are enough
    /// @return true
    bool IpToString(std::uint32_t nIp, char* pOut) const;

    /// @param n  1 for the first octet to 4 for the last; 0 comes back for any other
    int GetOctet(std::uint32_t nIp, int n) const;
    void SplitIp(std::uint32_t nIp, int (&arrOctet)[4]) const;
    /// The low 8 bits of each count.
    std::uint32_t JoinIp(const int (&arrOctet)[4]) const;

    /// 'A' to 'E'.
    char GetIpClass(std::uint32_t nIp) const;
    int CountMaskBits(std::uint32_t nMask) const;
    /// The bits of a mask beyond those of the address's class; -1 for the classes D and E.
    int GetSubnetBits(std::uint32_t nIp, std::uint32_t nMask) const;
    /// Without the subnets of all zeros and all ones, but 1 if the class isn't divided.
    std::uint32_t GetSubnetCount(std::uint32_t nIp, std::uint32_t nMask) const;
    /// In one subnet; 0xFFFFFFFF for the classes D and E.
    std::uint32_t GetHostCount(std::uint32_t nIp, std::uint32_t nMask) const;

    std::uint32_t GetNetworkAddress(std::uint32_t nIp, std::uint32_t nMask) const;
    std::uint32_t GetBroadcastAddress(std::uint32_t nIp, std::uint32_t nMask) const;
    /// The first and the last host address, reckoned in the last octet alone.
    /// @param nPrefixLength  0 to 32; what lies beyond counts as the nearest of the two
    void GetSubnetRange(std::uint32_t nIp, int nPrefixLength, int (&arrFirst)[4], int (&arrLast)[4]) const;
    bool IsSameSubnet(std::uint32_t nIp1, std::uint32_t nIp2, std::uint32_t nMask) const;
    bool IsHostAddress(std::uint32_t nIp, std::uint32_t nMask) const;

    /// At most four numbers of at most three digits, none over 255, a fourth not 255, the first not 0. Fewer than four
    /// pass.
    bool IsValidIpAddress(const char* pszText) const;
    /// The ones without a gap and at the top, at least one of the first octet's bits, and not all of the 32.
    bool IsValidSubnetMask(const char* pszText) const;
    /// As an address, but 0 passes.
    bool IsValidGateway(const char* pszText) const;
    /// Refuses a mask that leaves fewer than two host bits, and one that borrows a single bit from the address's class.
    bool IsMaskValidForIp(std::uint32_t nIp, std::uint32_t nMask) const;

    // Four groups of eight binary digits, parted by blanks.
    /// @param pOut  36 bytes
    void OctetsToBinaryString(const int (&arrOctet)[4], char* pOut) const;
    /// @param pOut  36 bytes
    void IpToBinaryString(std::uint32_t nIp, char* pOut) const;
};
