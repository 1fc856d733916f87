#pragma once

#include <string>
#include <string_view>

/// What a GenICam description says of the module that it describes.
struct DESCRIPTION_HEAD {
    std::string_view Model;  ///< a name for programs: letters and digits alone
    std::string_view ToolTip;
    std::string_view ProductGuid;  ///< names the kind of module for good
    std::string_view VersionGuid;  ///< a program may keep what it parsed under it
};

/// The text of a GenICam description as it grows, node by node. The caller keeps to the order of elements that the
/// schema wants. Every content may hold any character: those that XML takes for its own are written as it wants them.
///
/// Not for two threads at once.
/// Source: GenICam GenApi schema 1.1.
class CDescriptionText {
public:
    void Open(std::string_view strElement, std::string_view strName, std::string_view strNameSpace = "Standard");
    void Close(std::string_view strElement);
    void Element(std::string_view strElement, std::string_view strContent);
    /// An element with one attribute.
    void Element(std::string_view strElement, std::string_view strAttribute, std::string_view strValue,
                 std::string_view strContent);

    /// The nodes that were written.
    [[nodiscard]] const std::string& GetNodes() const { return m_strNodes; }
    /// The whole document.
    [[nodiscard]] std::string MakeDocument(const DESCRIPTION_HEAD& objHead) const;

private:
    std::string m_strNodes;
};
