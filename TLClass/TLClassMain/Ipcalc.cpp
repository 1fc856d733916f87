#include "TLClass/TLClassMain/Ipcalc.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>
#include <string_view>

#include "support/Address.h"

namespace {

constexpr std::uint32_t kAllOnes = 0xFFFFFFFF;
constexpr int kAddressBits = 32;

bool IsDigit(char chText) {
    return chText >= '0' && chText <= '9';
}

// As the C library reads a number: blanks, a sign, then digits up to the first that is none.
int ReadNumber(std::string_view strText) {
    strText.remove_prefix(std::min(strText.find_first_not_of(" \t\n\v\f\r"), strText.size()));
    const bool bNegative = strText.starts_with('-');
    if (bNegative || strText.starts_with('+')) {
        strText.remove_prefix(1);
    }
    int nNumber = 0;
    for (; !strText.empty() && IsDigit(strText.front()); strText.remove_prefix(1)) {
        nNumber = nNumber * 10 + (strText.front() - '0');
    }
    return bNegative ? -nNumber : nNumber;
}

/// What the three texts have in common: numbers of one to three digits up to 255, at most four, parted by dots.
bool IsWellFormed(const char* pszText, bool bLastMayBe255) {
    std::string strToken;
    int nOctets = 0;
    for (const char* pText = pszText;; ++pText) {
        if (IsDigit(*pText)) {
            strToken += *pText;
            if (strToken.size() > 3) {
                return false;
            }
            continue;
        }
        if (strToken.empty() || (*pText != '.' && *pText != '\0')) {
            return false;
        }
        const int nValue = ReadNumber(strToken);
        ++nOctets;
        if (nValue > 255 || nOctets > 4 || (nOctets == 4 && nValue == 255 && !bLastMayBe255)) {
            return false;
        }
        strToken.clear();
        if (*pText == '\0') {
            return true;
        }
    }
}

std::uint64_t PowerOfTwo(int nExponent) {
    return nExponent < 0 ? 0 : std::uint64_t{1} << nExponent;
}

bool AreOnesAtTop(std::uint32_t nMask) {
    return std::countl_one(nMask) == std::popcount(nMask);
}

std::uint32_t MaskOfLength(int nPrefixLength) {
    if (nPrefixLength <= 0) {
        return 0;
    }
    return nPrefixLength >= kAddressBits ? kAllOnes : kAllOnes << (kAddressBits - nPrefixLength);
}

int GetClassBits(char chClass) {
    return (chClass - 'A' + 1) * 8;
}

}  // namespace

std::uint32_t Cipcalc::StringToIp(const char* pszText) const {
    if (pszText == nullptr) {
        return 0;
    }
    std::string_view strRest = pszText;
    std::uint32_t nIp = 0;
    for (unsigned nShift = 24;; nShift = (nShift - 8) % kAddressBits) {
        const std::string_view strPiece = strRest.substr(0, strRest.find('.'));
        if (strPiece.size() > 3) {
            return 0;
        }
        nIp += static_cast<std::uint32_t>(ReadNumber(strPiece)) << nShift;
        if (strPiece.size() == strRest.size()) {
            return nIp;
        }
        strRest.remove_prefix(strPiece.size() + 1);
    }
}

bool Cipcalc::IpToString(std::uint32_t nIp, char* pOut) const {
    const std::string strText = IPToString(nIp);
    std::memcpy(pOut, strText.c_str(), strText.size() + 1);
    return true;
}

int Cipcalc::GetOctet(std::uint32_t nIp, int n) const {
    return n < 1 || n > 4 ? 0 : static_cast<int>((nIp >> (8 * (4 - n))) & 0xFF);
}

void Cipcalc::SplitIp(std::uint32_t nIp, int (&arrOctet)[4]) const {
    for (int n = 1; n <= 4; ++n) {
        arrOctet[n - 1] = GetOctet(nIp, n);
    }
}

std::uint32_t Cipcalc::JoinIp(const int (&arrOctet)[4]) const {
    std::uint32_t nIp = 0;
    for (const int nOctet : arrOctet) {
        nIp = nIp << 8 | (static_cast<std::uint32_t>(nOctet) & 0xFF);
    }
    return nIp;
}

char Cipcalc::GetIpClass(std::uint32_t nIp) const {
    return static_cast<char>('A' + std::min(std::countl_one(nIp), 4));
}

int Cipcalc::CountMaskBits(std::uint32_t nMask) const {
    return std::popcount(nMask);
}

int Cipcalc::GetSubnetBits(std::uint32_t nIp, std::uint32_t nMask) const {
    const char chClass = GetIpClass(nIp);
    return chClass > 'C' ? -1 : CountMaskBits(nMask) - GetClassBits(chClass);
}

std::uint32_t Cipcalc::GetSubnetCount(std::uint32_t nIp, std::uint32_t nMask) const {
    const int nSubnetBits = GetSubnetBits(nIp, nMask);
    return nSubnetBits == 0 ? 1 : static_cast<std::uint32_t>(PowerOfTwo(nSubnetBits) - 2);
}

std::uint32_t Cipcalc::GetHostCount(std::uint32_t nIp, std::uint32_t nMask) const {
    const int nClassBits = GetClassBits(GetIpClass(nIp));
    if (nClassBits > 24) {
        return kAllOnes;
    }
    return static_cast<std::uint32_t>(PowerOfTwo(kAddressBits - nClassBits - GetSubnetBits(nIp, nMask)) - 2);
}

std::uint32_t Cipcalc::GetNetworkAddress(std::uint32_t nIp, std::uint32_t nMask) const {
    return nIp & nMask;
}

std::uint32_t Cipcalc::GetBroadcastAddress(std::uint32_t nIp, std::uint32_t nMask) const {
    return static_cast<std::uint32_t>(GetNetworkAddress(nIp, nMask) + PowerOfTwo(kAddressBits - CountMaskBits(nMask)) -
                                      1);
}

void Cipcalc::GetSubnetRange(std::uint32_t nIp, int nPrefixLength, int (&arrFirst)[4], int (&arrLast)[4]) const {
    const std::uint32_t nMask = MaskOfLength(nPrefixLength);
    SplitIp(GetNetworkAddress(nIp, nMask), arrFirst);
    ++arrFirst[3];
    SplitIp(GetBroadcastAddress(nIp, nMask), arrLast);
    --arrLast[3];
}

bool Cipcalc::IsSameSubnet(std::uint32_t nIp1, std::uint32_t nIp2, std::uint32_t nMask) const {
    return (nIp1 & nMask) == (nIp2 & nMask);
}

bool Cipcalc::IsHostAddress(std::uint32_t nIp, std::uint32_t nMask) const {
    return nIp > 0x00FFFFFF && nIp < 0xFF000001 && nIp != GetNetworkAddress(nIp, nMask) &&
           nIp != GetBroadcastAddress(nIp, nMask);
}

bool Cipcalc::IsValidIpAddress(const char* pszText) const {
    if (pszText == nullptr || !IsWellFormed(pszText, false)) {
        return false;
    }
    const std::uint32_t nIp = StringToIp(pszText);
    return nIp != 0 && nIp != kAllOnes && GetOctet(nIp, 1) != 0;
}

bool Cipcalc::IsValidSubnetMask(const char* pszText) const {
    if (pszText == nullptr || !IsWellFormed(pszText, true)) {
        return false;
    }
    const std::uint32_t nMask = StringToIp(pszText);
    return nMask != kAllOnes && GetOctet(nMask, 1) != 0 && AreOnesAtTop(nMask);
}

bool Cipcalc::IsValidGateway(const char* pszText) const {
    return pszText != nullptr && IsWellFormed(pszText, false) && StringToIp(pszText) < kAllOnes;
}

bool Cipcalc::IsMaskValidForIp(std::uint32_t nIp, std::uint32_t nMask) const {
    const int nBits = CountMaskBits(nMask);
    if (nMask == 0 || nBits > 30 || !AreOnesAtTop(nMask)) {
        return false;
    }
    const char chClass = GetIpClass(nIp);
    if (chClass > 'C') {
        return true;
    }
    const int nClassBits = GetClassBits(chClass);
    return nBits == nClassBits || nBits >= nClassBits + 2;
}

void Cipcalc::OctetsToBinaryString(const int (&arrOctet)[4], char* pOut) const {
    IpToBinaryString(JoinIp(arrOctet), pOut);
}

void Cipcalc::IpToBinaryString(std::uint32_t nIp, char* pOut) const {
    for (int nBit = kAddressBits - 1; nBit >= 0; --nBit) {
        *pOut++ = (nIp >> nBit & 1) != 0 ? '1' : '0';
        if (nBit % 8 == 0) {
            *pOut++ = nBit == 0 ? '\0' : ' ';
        }
    }
}
