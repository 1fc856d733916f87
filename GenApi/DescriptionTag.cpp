#include "GenApi/DescriptionTag.h"

#include <array>
#include <cstddef>

namespace GenApi_3_0 {
namespace {

// In the order of ETag, Unknown being the empty one.
constexpr auto kNames = std::to_array<std::string_view>({
    "",
    "Group",
    "RegisterDescription",
    "Category",
    "Node",
    "Integer",
    "IntReg",
    "MaskedIntReg",
    "StructReg",
    "StructEntry",
    "Boolean",
    "Command",
    "Enumeration",
    "EnumEntry",
    "Float",
    "FloatReg",
    "String",
    "StringReg",
    "Register",
    "Converter",
    "IntConverter",
    "SwissKnife",
    "IntSwissKnife",
    "Port",
    "IntKey",
    "TextDesc",
    "ConfRom",
    "DcamLock",
    "AdvFeatureLock",
    "SmartFeature",
    "ToolTip",
    "Description",
    "DisplayName",
    "Visibility",
    "DocuURL",
    "IsDeprecated",
    "EventID",
    "Streamable",
    "ImposedAccessMode",
    "ImposedVisibility",
    "pIsImplemented",
    "pIsAvailable",
    "pIsLocked",
    "pAlias",
    "pCastAlias",
    "pError",
    "pBlockPolling",
    "pSelected",
    "pInvalidator",
    "PollingTime",
    "Cachable",
    "AccessMode",
    "Value",
    "pValue",
    "pValueCopy",
    "pIndex",
    "ValueIndexed",
    "pValueIndexed",
    "ValueDefault",
    "pValueDefault",
    "Min",
    "Max",
    "Inc",
    "pMin",
    "pMax",
    "pInc",
    "ValidValueSet",
    "Unit",
    "Representation",
    "DisplayNotation",
    "DisplayPrecision",
    "Address",
    "pAddress",
    "Length",
    "pLength",
    "pPort",
    "Sign",
    "Endianess",
    "LSB",
    "MSB",
    "Bit",
    "Formula",
    "FormulaTo",
    "FormulaFrom",
    "pVariable",
    "Constant",
    "Expression",
    "Slope",
    "IsLinear",
    "OnValue",
    "OffValue",
    "CommandValue",
    "pCommandValue",
    "NumericValue",
    "Symbolic",
    "IsSelfClearing",
    "pFeature",
    "ChunkID",
    "pChunkID",
    "SwapEndianess",
    "CacheChunkData",
});
static_assert(kNames.size() == static_cast<std::size_t>(ETag::kCount));

// Descriptions have a hundred thousand elements, so their names are found through a table made while compiling.
constexpr std::size_t kSlots = 1024;

constexpr std::size_t Slot(std::string_view strName) {
    const auto At = [strName](std::size_t i) {
        return static_cast<std::size_t>(static_cast<unsigned char>(strName[i]));
    };
    const std::size_t n = strName.size();
    return (n * 37 + At(0) * 5 + At(n / 2) * 67 + At(n - 1) * 131 + At(n / 4) * 11) % kSlots;
}

constexpr std::array<ETag, kSlots> MakeTable() {
    std::array<ETag, kSlots> table{};
    for (std::size_t i = 1; i < kNames.size(); ++i) {
        std::size_t nSlot = Slot(kNames[i]);
        while (table[nSlot] != ETag::Unknown) {
            nSlot = (nSlot + 1) % kSlots;
        }
        table[nSlot] = static_cast<ETag>(i);
    }
    return table;
}

constexpr std::array<ETag, kSlots> kTable = MakeTable();

}  // namespace

ETag FindTag(std::string_view strName) {
    if (strName.empty()) {
        return ETag::Unknown;
    }
    for (std::size_t nSlot = Slot(strName); kTable[nSlot] != ETag::Unknown; nSlot = (nSlot + 1) % kSlots) {
        if (TagName(kTable[nSlot]) == strName) {
            return kTable[nSlot];
        }
    }
    return ETag::Unknown;
}

std::string_view TagName(ETag eTag) {
    return kNames[static_cast<std::size_t>(eTag)];
}

}  // namespace GenApi_3_0
