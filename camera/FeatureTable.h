#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// The features of the camera: one table, of which its registers as well as its description are made, so that the two
/// can't disagree.
namespace camera {

enum class EKind : std::uint8_t { Integer, Float, Enumeration, Boolean, Command, Text };
enum class EAccess : std::uint8_t { ReadOnly, ReadWrite, WriteOnly };
enum class EVisibility : std::uint8_t { Beginner, Expert, Guru };
enum class ENotation : std::uint8_t { Number, IPv4Address, MACAddress, HexNumber };

struct ENTRY {
    std::string_view Name;
    std::uint32_t Value;
};

/// One feature and its register. Numbers are unsigned, big-endian; a Float is an IEEE number of 4 bytes.
struct FEATURE {
    std::string_view Name;
    std::string_view Category;
    std::string_view ToolTip;
    EKind Kind = EKind::Integer;
    EAccess Access = EAccess::ReadWrite;
    EVisibility Visibility = EVisibility::Beginner;
    ENotation Notation = ENotation::Number;
    std::uint32_t Address = 0;
    std::uint32_t Length = 4;  ///< bytes; 8 only for integers that can't be written
    double Min = 0;            ///< of Integer and Float
    double Max = 0xFFFFFFFF;
    double Step = 1;                ///< of Integer
    std::string_view MaxOf = {};    ///< a feature whose value is the largest in place of Max ...
    std::string_view MaxLess = {};  ///< ... less the value of this one
    double Default = 0;             ///< of Command: what is written to it, 1 if this is 0
    std::string_view Unit = {};
    std::span<const ENTRY> Entries = {};  ///< of Enumeration
    std::string_view Selector = {};       ///< there is one register for each value of it, one behind the other
    std::uint32_t SelectorCount = 1;      ///< values run from 0
    std::string_view Available = {};      ///< a Boolean without which it is not there
    bool Locked = false;    ///< not to be written while TLParamsLocked isn't 0, nor while images are taken
    bool Saved = false;     ///< part of the user sets and of feature files
    bool Volatile = false;  ///< changes by itself
    bool Slow = false;      ///< writing takes as many milliseconds as are written
    /// A Boolean that shows a bit, from 0 for the lowest, of a register of several; the register's limits and defaults
    /// are no matter of the feature then.
    std::int8_t Bit = -1;
    bool LowHalf = false;   ///< only the lower 16 bits of the register; the others are flags or another feature's
    bool HighHalf = false;  ///< only the higher 16 bits of the register, whose lower ones are another feature's
    bool Again = false;     ///< a further command on the register of another one
    bool Custom = false;    ///< no name of the standard's

    constexpr bool IsBit() const { return Bit >= 0; }
    /// Whether the register is another feature's as well, which stands for its limits and its default.
    constexpr bool IsPart() const { return IsBit() || HighHalf || Again; }
    constexpr std::uint32_t GetEnd() const { return Address + Length * SelectorCount; }
};

/// All features, those of one category in one row, in the order of their registers' meaning and not of addresses.
std::span<const FEATURE> ListFeatures();

/// The feature of this name, which the table must hold.
const FEATURE& FindFeature(std::string_view strName);

}  // namespace camera
