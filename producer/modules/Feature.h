#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace producer {

/// Bytes of every text register, with its terminating zero.
inline constexpr std::size_t kTextRegisterLength = 512;

/// Bytes of every other register; its number is signed and little-endian.
inline constexpr std::size_t kNumberRegisterLength = 8;

/// What executes a command when it is written.
inline constexpr std::int64_t kCommandValue = 1;

enum class FEATURE_KIND {
    Integer,
    Text,
    Enumeration,
    Command,   ///< executed by the write of kCommandValue; reads 0
    Duration,  ///< a float in the description, whole microseconds in its register
};

/// One feature of a module: what its description says of it, and what its register reads and writes.
///
/// Made by CRegisterMap, refined by the operations below in one expression, and read-only once the map is finished. The
/// functions are called on consumers' threads, several at a time, and throw CProducerError.
class CFeature {
public:
    using Number = std::int64_t;

    CFeature(FEATURE_KIND eKind, std::string strName, std::string strToolTip, std::string strCategory)
        : m_eKind(eKind),
          m_strName(std::move(strName)),
          m_strToolTip(std::move(strToolTip)),
          m_strCategory(std::move(strCategory)) {}

    /// A feature that no standard names.
    CFeature& Custom() { return m_bCustom = true, *this; }
    /// A value that never changes, so that node maps may keep it. Every other one is read anew each time.
    CFeature& Constant() { return m_bConstant = true, *this; }
    /// @param strVisibility  Beginner, unless told: Expert, Guru or Invisible
    CFeature& Visibility(std::string strVisibility) { return m_strVisibility = std::move(strVisibility), *this; }
    /// @param strRepresentation  IPV4Address, MACAddress, HexNumber ...
    CFeature& Shown(std::string strRepresentation) { return m_strRepresentation = std::move(strRepresentation), *this; }
    CFeature& Unit(std::string strUnit) { return m_strUnit = std::move(strUnit), *this; }
    /// The value belongs to what the integer feature of that name selects, and isn't available while nothing is listed.
    CFeature& SelectedBy(std::string strSelector) { return m_strSelector = std::move(strSelector), *this; }
    /// Can't be written while the integer feature of that name isn't 0, which Set is to check as well.
    CFeature& LockedBy(std::string strLock) { return m_strLock = std::move(strLock), *this; }
    /// A setting: feature files hold it.
    CFeature& Streamable() { return m_bStreamable = true, *this; }
    /// Makes the value writable.
    CFeature& Set(std::function<void(Number)> funSet) { return m_funSet = std::move(funSet), *this; }
    CFeature& Least(Number nMin) { return m_nMin = nMin, m_bHasMin = true, *this; }
    /// The largest value changes with the module, and has a register of its own. -1 says that nothing is listed.
    CFeature& Most(std::function<Number()> funMax) { return m_funMax = std::move(funMax), *this; }

    bool IsText() const { return m_eKind == FEATURE_KIND::Text; }
    bool IsWritable() const { return m_funSet != nullptr; }
    std::size_t GetLength() const { return IsText() ? kTextRegisterLength : kNumberRegisterLength; }

private:
    friend class CRegisterMap;
    friend class CDescriptionWriter;

    FEATURE_KIND m_eKind;
    std::string m_strName;
    std::string m_strToolTip;
    std::string m_strCategory;
    std::string m_strVisibility = "Beginner";
    std::string m_strRepresentation;
    std::string m_strUnit;
    std::string m_strSelector;
    std::string m_strLock;
    bool m_bStreamable = false;
    std::vector<std::pair<std::string, Number>> m_vecEntry;  // of an enumeration
    std::function<Number()> m_funGet;
    std::function<std::string()> m_funGetText;
    std::function<void(Number)> m_funSet;
    std::function<Number()> m_funMax;
    Number m_nMin = 0;
    bool m_bHasMin = false;
    bool m_bCustom = false;
    bool m_bConstant = false;

    // Given by the map.
    std::uint64_t m_nAddress = 0;
    std::uint64_t m_nMaxAddress = 0;     // 0 without m_funMax
    std::uint64_t m_nListedAddress = 0;  // whether there is anything to select; 0 without m_funMax
};

}  // namespace producer
