#include "app/RecoveryPackets.h"

#include <cstdlib>
#include <cstring>

#include <QByteArray>
#include <QStringList>

namespace {

constexpr std::size_t kMACOffset = 10;
constexpr std::size_t kAddressOffset = 32;
constexpr qsizetype kAddressParts = 4;

// The bytes of a template that the user's texts replace reach the wire where a text leaves them alone.
// clang-format off
constexpr std::array<std::uint8_t, 84> kForceIPExTemplate = {
    0x42,                                // 0: GVCP key
    0x11,                                // 1: flags, acknowledge wanted and broadcast acknowledge allowed
    0x90, 0x00,                          // 2: command, of the range left to devices
    0x00, 0x4C,                          // 4: payload length
    0xEC, 0xD2,                          // 6: request ID, the same in every packet
    0, 0,                                // 8: reserved
    0x02, 0x7A, 0x41, 0x02, 0xE7, 0x4F,  // 10: MAC of the camera
    0, 0, 0,                             // 16: reserved
    0x05,                                // 19: the firmware's own, as are the bytes at 69, 72, 73 and 76
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  // 20: reserved
    0xC0, 0xA8, 0x2A, 0x0B,              // 32: new address, four bytes later than in FORCEIP_CMD
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  // 36: reserved
    0xFF, 0xFF, 0xFF, 0x00,              // 48: subnet mask, four bytes later as well
    0, 0, 0, 0, 0, 0, 0, 0, 0,           // 52: reserved
    0, 0, 0, 0, 0, 0, 0, 0,              // 61: reserved
    0x03,                                // 69
    0, 0,                                // 70: reserved
    0x83, 0x01,                          // 72
    0, 0,                                // 74: reserved
    0x02,                                // 76
    0, 0, 0, 0, 0, 0, 0,                 // 77: reserved
};

constexpr std::array<std::uint8_t, 64> kForceIPTemplate = {
    0x42,                                // 0: GVCP key
    0x01,                                // 1: flags, acknowledge wanted
    0x00, 0x04,                          // 2: FORCEIP_CMD
    0x00, 0x38,                          // 4: payload length
    0x22, 0x8D,                          // 6: request ID, the same in every packet
    0, 0,                                // 8: reserved
    0x02, 0x5E, 0x17, 0x00, 0xAD, 0xEA,  // 10: MAC of the camera
    // Behind it all is 0: the address at 28, the subnet mask at 44 and the gateway at 60 are 0.0.0.0.
};
// clang-format on

bool IsUsableAddress(const QString& strIP) {
    std::array<int, 4> arrOctets{};
    __UintToIPOctets(__IPStringToUint(strIP.toLatin1().constData()), arrOctets);
    return arrOctets[0] >= 1 && arrOctets[0] <= 255 && strIP.split(QLatin1Char('.')).size() == kAddressParts;
}

std::uint8_t LowByte(const QString& strNumber, int nBase) {
    return static_cast<std::uint8_t>(strNumber.toInt(nullptr, nBase));
}

template <std::size_t N>
void StoreMAC(std::array<std::uint8_t, N>& arrPacket, const QStringList& listParts) {
    std::size_t nOffset = kMACOffset;
    for (const QString& strPart : listParts) {
        if (nOffset == N) {
            return;
        }
        arrPacket[nOffset++] = LowByte(strPart, 16);
    }
}

}  // namespace

std::optional<RECOVERY_PACKETS> FillRecoveryPackets(const QString& strMAC, const QString& strIP) {
    if (!IsUsableAddress(strIP)) {
        return std::nullopt;
    }
    RECOVERY_PACKETS objPackets{kForceIPExTemplate, kForceIPTemplate};

    std::size_t nOffset = kAddressOffset;
    for (const QString& strPart : strIP.split(QLatin1Char('.'))) {
        objPackets.ForceIPEx[nOffset++] = LowByte(strPart, 10);
    }

    // After the address: a MAC text with more than 22 parts writes over it.
    const QStringList listParts = strMAC.split(QLatin1Char('-'));
    StoreMAC(objPackets.ForceIPEx, listParts);
    StoreMAC(objPackets.ForceIP, listParts);
    return objPackets;
}

std::uint32_t __IPStringToUint(const char* pText) {
    constexpr std::size_t kLongestPart = 3;
    const std::size_t nLength = std::strlen(pText);
    std::uint32_t nAddress = 0;
    unsigned nShift = 32;
    for (std::size_t nPosition = 0; nPosition < nLength; ++nPosition) {
        std::array<char, 16> arrPart{};
        for (std::size_t i = 0; nPosition < nLength && pText[nPosition] != '.'; ++nPosition) {
            if (i == kLongestPart) {
                return 0;
            }
            arrPart[i++] = pText[nPosition];
        }
        nShift -= 8;
        nAddress += static_cast<std::uint32_t>(std::strtol(arrPart.data(), nullptr, 10)) << (nShift % 32);
    }
    return nAddress;
}

void __UintToIPOctets(std::uint32_t nAddress, std::array<int, 4>& arrOctets) {
    for (int& nOctet : arrOctets) {
        nOctet = static_cast<int>(nAddress >> 24);
        nAddress <<= 8;
    }
}
