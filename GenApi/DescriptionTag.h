#pragma once

#include <cstdint>
#include <string_view>

namespace GenApi_3_0 {

/// The elements of a description that take part. The order of the first group is used to tell nodes from properties.
enum class ETag : std::uint8_t {
    Unknown,
    // Structure and nodes
    Group,
    RegisterDescription,
    Category,
    Node,
    Integer,
    IntReg,
    MaskedIntReg,
    StructReg,
    StructEntry,
    Boolean,
    Command,
    Enumeration,
    EnumEntry,
    Float,
    FloatReg,
    String,
    StringReg,
    Register,
    Converter,
    IntConverter,
    SwissKnife,
    IntSwissKnife,
    Port,
    IntKey,
    TextDesc,
    ConfRom,
    DcamLock,
    AdvFeatureLock,
    SmartFeature,
    // Properties of any node
    ToolTip,
    Description,
    DisplayName,
    Visibility,
    DocuURL,
    IsDeprecated,
    EventID,
    Streamable,
    ImposedAccessMode,
    ImposedVisibility,
    pIsImplemented,
    pIsAvailable,
    pIsLocked,
    pAlias,
    pCastAlias,
    pError,
    pBlockPolling,
    pSelected,
    pInvalidator,
    PollingTime,
    Cachable,
    AccessMode,
    // Values
    Value,
    pValue,
    pValueCopy,
    pIndex,
    ValueIndexed,
    pValueIndexed,
    ValueDefault,
    pValueDefault,
    Min,
    Max,
    Inc,
    pMin,
    pMax,
    pInc,
    ValidValueSet,
    Unit,
    Representation,
    DisplayNotation,
    DisplayPrecision,
    // Registers
    Address,
    pAddress,
    Length,
    pLength,
    pPort,
    Sign,
    Endianess,
    LSB,
    MSB,
    Bit,
    // Formulas
    Formula,
    FormulaTo,
    FormulaFrom,
    pVariable,
    Constant,
    Expression,
    Slope,
    IsLinear,
    // Booleans, commands, entries, categories, ports
    OnValue,
    OffValue,
    CommandValue,
    pCommandValue,
    NumericValue,
    Symbolic,
    IsSelfClearing,
    pFeature,
    ChunkID,
    pChunkID,
    SwapEndianess,
    CacheChunkData,
    kCount
};

/// Whether the element is a node or holds nodes.
constexpr bool IsNodeTag(ETag eTag) {
    return eTag >= ETag::Category && eTag <= ETag::SmartFeature;
}

/// @return Unknown for a name that takes no part
ETag FindTag(std::string_view strName);

/// The name as it stands in a description.
std::string_view TagName(ETag eTag);

}  // namespace GenApi_3_0
