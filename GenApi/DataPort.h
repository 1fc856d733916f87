#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "GenApi/Port.h"

namespace GenApi_3_0 {

/// A block of bytes in memory as registers from address 0 that can only be read. What reaches out of the block is an
/// exception. The bytes are the owner's; everything runs with the lock of the node map that reads them.
class CDataPort : public IPort {
public:
    /// @param strSubject  what holds the bytes, to begin a message with
    explicit CDataPort(std::string strSubject) : m_strSubject(std::move(strSubject)) {}

    void SetData(std::span<const std::uint8_t> spanData) { m_spanData = spanData; }

    EAccessMode GetAccessMode() const override { return RO; }
    void Read(void* pBuffer, std::int64_t Address, std::int64_t Length) override;
    void Write(const void* pBuffer, std::int64_t Address, std::int64_t Length) override;

private:
    std::string m_strSubject;
    std::span<const std::uint8_t> m_spanData;
};

}  // namespace GenApi_3_0
