#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace gev {

/// A text of at most N bytes inside the object: no allocation, copied by value. As on the wire, a full field needs no
/// terminator, and what stands behind a terminator doesn't count.
template <std::size_t N>
class CFixedText {
public:
    static constexpr std::size_t kCapacity = N;

    constexpr CFixedText() = default;

    /// Cuts the text at its first terminator and at N bytes.
    constexpr explicit CFixedText(std::string_view strText) {
        strText = strText.substr(0, std::min(strText.find('\0'), N));
        std::copy(strText.begin(), strText.end(), m_arrText.begin());
    }

    /// Reads a text field of a packet or of the registers, N bytes long.
    explicit CFixedText(std::span<const std::byte, N> arrField) {
        const auto itEnd = std::find(arrField.begin(), arrField.end(), std::byte{0});
        std::transform(arrField.begin(), itEnd, m_arrText.begin(),
                       [](std::byte nByte) { return static_cast<char>(nByte); });
    }

    /// Good as long as the object; not terminated.
    constexpr std::string_view GetText() const {
        return std::string_view(m_arrText.data(), N).substr(0, std::string_view(m_arrText.data(), N).find('\0'));
    }

    /// Fills a field of N bytes, with zeros behind the text.
    void Put(std::span<std::byte, N> arrField) const {
        std::transform(m_arrText.begin(), m_arrText.end(), arrField.begin(),
                       [](char nChar) { return static_cast<std::byte>(nChar); });
    }

    friend constexpr bool operator==(const CFixedText&, const CFixedText&) = default;

private:
    std::array<char, N> m_arrText{};  // zero behind the text
};

}  // namespace gev
