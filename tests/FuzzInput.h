#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string>

/// What a fuzz target takes for true of every input.
inline void Require(bool bHolds) {
    if (!bHolds) {
        std::abort();
    }
}

/// Takes an input apart from its start. Past its end everything is 0 and empty.
class CFuzzInput {
public:
    CFuzzInput(const std::uint8_t* pData, std::size_t nSize) : m_arrRest(std::as_bytes(std::span(pData, nSize))) {}

    bool IsEmpty() const { return m_arrRest.empty(); }

    std::span<const std::byte> TakeBytes(std::size_t nCount) {
        const auto arrTaken = m_arrRest.first(std::min(nCount, m_arrRest.size()));
        m_arrRest = m_arrRest.subspan(arrTaken.size());
        return arrTaken;
    }
    /// All that is left, in memory of exactly its size, so that a sanitizer sees each byte beyond.
    std::span<std::byte> TakeRest(std::unique_ptr<std::byte[]>& pMemory) {
        const auto arrTaken = TakeBytes(m_arrRest.size());
        pMemory = std::make_unique<std::byte[]>(arrTaken.size());
        std::ranges::copy(arrTaken, pMemory.get());
        return {pMemory.get(), arrTaken.size()};
    }
    /// A number or a record, in the machine's byte order.
    template <class T>
    T Take() {
        T objTaken{};
        const auto arrTaken = TakeBytes(sizeof(T));
        if (!arrTaken.empty()) {
            std::memcpy(&objTaken, arrTaken.data(), arrTaken.size());
        }
        return objTaken;
    }
    /// Up to the next zero byte, which goes too.
    std::string TakeText() {
        const auto itEnd = std::ranges::find(m_arrRest, std::byte{0});
        const auto arrTaken = TakeBytes(static_cast<std::size_t>(itEnd - m_arrRest.begin()));
        TakeBytes(1);
        return {reinterpret_cast<const char*>(arrTaken.data()), arrTaken.size()};
    }

private:
    std::span<const std::byte> m_arrRest;
};
