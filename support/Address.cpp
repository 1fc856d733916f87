#include "support/Address.h"

#include "support/Text.h"

namespace {

constexpr char kByteOrder[] = "l??b";

unsigned Octet(std::uint64_t nAddress, int nIndexFromLow) {
    return static_cast<unsigned>(nAddress >> (8 * nIndexFromLow)) & 0xFFU;
}

}  // namespace

bool IsLittleEndian() {
    return kByteOrder[0] == 'l';
}

bool IsBigEndian() {
    return !IsLittleEndian();
}

std::string IPToString(std::uint32_t nAddress) {
    return Format("%u.%u.%u.%u", Octet(nAddress, 3), Octet(nAddress, 2), Octet(nAddress, 1), Octet(nAddress, 0));
}

std::string MACToString(std::uint64_t nAddress) {
    return ToUpperAscii(Format("%02x-%02x-%02x-%02x-%02x-%02x", Octet(nAddress, 5), Octet(nAddress, 4),
                               Octet(nAddress, 3), Octet(nAddress, 2), Octet(nAddress, 1), Octet(nAddress, 0)));
}
