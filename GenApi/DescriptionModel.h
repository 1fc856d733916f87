#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "GenApi/DescriptionTag.h"
#include "GenApi/DescriptionText.h"
#include "GenApi/Types.h"

namespace GenApi_3_0 {

/// No node.
inline constexpr std::uint32_t kNoNode = UINT32_MAX;

/// One child element of a node: its text without white space around it, and the one attribute that matters for its tag
/// (a variable's Name, an index, an offset).
struct PROPERTY {
    std::string_view Text;
    std::string_view Attribute;
    /// For an IntSwissKnife within a register: the node made of it.
    std::uint32_t Nested = kNoNode;
    ETag Tag = ETag::Unknown;
    /// The attribute names a node (pOffset) rather than being a number (Offset).
    bool AttributeIsReference = false;
};

/// One node as the description has it.
struct NODE_RECORD {
    std::string_view Name;
    std::uint32_t FirstProperty = 0;
    std::uint32_t PropertyCount = 0;
    /// The StructReg of a StructEntry, the Enumeration of an EnumEntry, the register of a nested IntSwissKnife.
    std::uint32_t Parent = kNoNode;
    ETag Kind = ETag::Unknown;
    ENameSpace NameSpace = Custom;
};

/// What a description says, as flat lists of views into its text: what is left of the parser's tree. A node's number is
/// its place in Nodes. Built once, then unchanged as long as the node map lives.
struct DESCRIPTION_MODEL {
    explicit DESCRIPTION_MODEL(std::string_view strText) : Text(strText) {}

    std::span<const PROPERTY> PropertiesOf(const NODE_RECORD& objNode) const {
        return std::span(Properties).subspan(objNode.FirstProperty, objNode.PropertyCount);
    }

    CDescriptionText Text;
    std::deque<std::string> MadeTexts;  ///< names and texts that don't stand in the description as one piece
    std::vector<NODE_RECORD> Nodes;
    std::vector<PROPERTY> Properties;

    std::string_view ModelName;
    std::string_view VendorName;
    std::string_view ToolTip;
    std::string_view StandardNameSpace;
    std::string_view ProductGuid;
    std::string_view VersionGuid;
    std::string SchemaVersion;
    std::string DeviceVersion;
};

}  // namespace GenApi_3_0
