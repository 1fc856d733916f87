#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <stdexcept>
#include <vector>

#include "GenApi/Port.h"

/// Registers in memory that count how they are used. Whatever was never set reads as 0.
class CMemoryPort : public GenApi_3_0::IPort {
public:
    GenApi_3_0::EAccessMode GetAccessMode() const override { return m_eMode; }

    void Read(void* pBuffer, std::int64_t Address, std::int64_t Length) override {
        ++m_nReads;
        ++m_mapReadsAt[Address];
        ThrowIfFailing();
        auto* pBytes = static_cast<std::uint8_t*>(pBuffer);
        for (std::int64_t i = 0; i < Length; ++i) {
            const auto it = m_mapByte.find(Address + i);
            pBytes[i] = it == m_mapByte.end() ? std::uint8_t{0} : it->second;
        }
    }
    void Write(const void* pBuffer, std::int64_t Address, std::int64_t Length) override {
        ++m_nWrites;
        ThrowIfFailing();
        Put(Address, std::vector<std::uint8_t>(static_cast<const std::uint8_t*>(pBuffer),
                                               static_cast<const std::uint8_t*>(pBuffer) + Length));
    }

    void Put(std::int64_t nAddress, const std::vector<std::uint8_t>& vecByte) {
        for (std::size_t i = 0; i < vecByte.size(); ++i) {
            m_mapByte[nAddress + static_cast<std::int64_t>(i)] = vecByte[i];
        }
    }
    void PutText(std::int64_t nAddress, const char* pText) {
        Put(nAddress, std::vector<std::uint8_t>(pText, pText + std::strlen(pText) + 1));
    }
    /// A 4-byte number, least significant byte first.
    void PutNumber(std::int64_t nAddress, std::uint32_t n) {
        Put(nAddress, {static_cast<std::uint8_t>(n), static_cast<std::uint8_t>(n >> 8U),
                       static_cast<std::uint8_t>(n >> 16U), static_cast<std::uint8_t>(n >> 24U)});
    }
    std::uint32_t NumberAt(std::int64_t nAddress) {
        std::uint32_t n = 0;
        for (int i = 3; i >= 0; --i) {
            n = n << 8U | m_mapByte[nAddress + i];
        }
        return n;
    }
    std::vector<std::uint8_t> BytesAt(std::int64_t nAddress, int nLength) {
        std::vector<std::uint8_t> vecByte;
        vecByte.reserve(static_cast<std::size_t>(nLength));
        for (int i = 0; i < nLength; ++i) {
            vecByte.push_back(m_mapByte[nAddress + i]);
        }
        return vecByte;
    }

    void FailFromNowOn(bool bFail) { m_bFailing = bFail; }
    void SetAccessMode(GenApi_3_0::EAccessMode eMode) { m_eMode = eMode; }

    /// Reads since the last call.
    int TakeReads() { return Take(m_nReads); }
    int TakeWrites() { return Take(m_nWrites); }
    const std::map<std::int64_t, int>& ReadsAt() const { return m_mapReadsAt; }

private:
    static int Take(int& n) {
        const int nTaken = n;
        n = 0;
        return nTaken;
    }
    void ThrowIfFailing() const {
        if (m_bFailing) {
            throw std::runtime_error("the port fails");
        }
    }

    std::map<std::int64_t, std::uint8_t> m_mapByte;
    std::map<std::int64_t, int> m_mapReadsAt;
    GenApi_3_0::EAccessMode m_eMode = GenApi_3_0::RW;
    int m_nReads = 0;
    int m_nWrites = 0;
    bool m_bFailing = false;
};
