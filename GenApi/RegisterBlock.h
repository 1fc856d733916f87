#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "GenApi/NodeImpl.h"
#include "GenApi/NumberRef.h"

namespace GenApi_3_0 {

class CPortNode;
struct REGISTER_PLACE;

/// The bytes that a register node stands on: where they lie, how many they are, and the cache between them and the
/// port. A part of its node; used with the lock held.
class CRegisterBlock {
public:
    explicit CRegisterBlock(CNodeImpl& objOwner) : m_objOwner(objOwner) {}

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader);
    /// Finds the cell. To be called once all properties are there.
    void Complete(CPropertyReader& objReader);

    EAccessMode PortAccessMode() const;
    std::int64_t Address(bool bIgnoreCache = false) const;
    /// In bytes, checked against what is allowed.
    std::int64_t Length() const;
    /// 0 if another node gives the length.
    std::int64_t ConstantLength() const { return m_objLength.Node() == nullptr ? m_objLength.Read(false) : 0; }
    bool IsBigEndian() const;

    /// @param buffer  of the register's length
    void Read(std::span<std::uint8_t> buffer, bool bIgnoreCache);
    /// What is there now, as far as it can be known, for a write that changes a part of it.
    void ReadForChange(std::span<std::uint8_t> buffer);
    void Write(std::span<const std::uint8_t> buffer);

    REGISTER_CELL* Cell() const { return m_pCell; }

private:
    struct TERM {
        CNodeImpl* pNode = nullptr;
        CNodeImpl* pFactor = nullptr;
        std::int64_t Factor = 1;
        bool FactorIsLength = false;
    };

    void AddIndex(const PROPERTY& objProperty, CPropertyReader& objReader);
    std::string Key() const;
    std::optional<REGISTER_PLACE> Place() const;
    bool CachedIn(std::span<std::uint8_t> buffer) const;
    void ReadPort(std::span<std::uint8_t> buffer, bool bIgnoreCache);
    /// Caches what the register has now.
    void Keep(std::span<const std::uint8_t> buffer);
    [[noreturn]] void ThrowBadPlace(const std::string& strWhat) const;

    CNodeImpl& m_objOwner;
    CPortNode* m_pPort = nullptr;
    REGISTER_CELL* m_pCell = nullptr;
    std::int64_t m_nAddress = 0;  // the sum of all that is constant
    std::vector<TERM> m_vecTerm;
    CNumberRef<std::int64_t> m_objLength;
    EEndianess m_eEndianess = LittleEndian;
};

}  // namespace GenApi_3_0
