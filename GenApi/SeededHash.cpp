#include "GenApi/SeededHash.h"

#include <cstddef>
#include <cstring>
#include <random>

namespace GenApi_3_0 {
namespace {

std::uint64_t Multiply(std::uint64_t a, std::uint64_t b) {
    __extension__ using Wide = unsigned __int128;
    const Wide nProduct = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(nProduct) ^ static_cast<std::uint64_t>(nProduct >> 64U);
}

std::uint64_t Chunk(const char* p, std::size_t nBytes) {
    std::uint64_t nChunk = 0;
    std::memcpy(&nChunk, p, nBytes);
    return nChunk;
}

}  // namespace

CSeededHash::CSeededHash() {
    std::random_device objRandom;
    m_nSeed = (std::uint64_t{objRandom()} << 32U) | objRandom();
}

// Sixteen bytes at a time; the last ones may overlap with those before.
std::uint64_t CSeededHash::operator()(std::string_view strText) const {
    constexpr std::uint64_t kFirst = 0xA0761D6478BD642F;
    constexpr std::uint64_t kSecond = 0xE7037ED1A0B428DB;
    const char* p = strText.data();
    const std::size_t n = strText.size();
    std::uint64_t nHash = m_nSeed ^ n;
    if (n < 8) {
        return Multiply(Chunk(p, n) ^ kFirst ^ nHash, kSecond ^ nHash);
    }
    for (std::size_t i = 0; i + 16 < n; i += 16) {
        nHash = Multiply(Chunk(p + i, 8) ^ kFirst ^ nHash, Chunk(p + i + 8, 8) ^ kSecond ^ nHash);
    }
    const std::size_t nLast = n < 16 ? 0 : n - 16;
    return Multiply(Chunk(p + nLast, 8) ^ kFirst ^ nHash, Chunk(p + n - 8, 8) ^ kSecond ^ nHash);
}

}  // namespace GenApi_3_0
