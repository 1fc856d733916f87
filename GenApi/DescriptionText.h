#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace GenApi_3_0 {

/// Where something stands in a description, counted from 1, columns in bytes.
struct TEXT_POSITION {
    std::size_t Line = 0;
    std::size_t Column = 0;
};

/// The bytes of a description as UTF-8, without byte-order mark, in a buffer that the parser may change in place: what
/// the nodes keep of the text are views into it.
class CDescriptionText {
public:
    /// @throws RuntimeException  the text is beyond a limit or in an encoding that isn't known
    explicit CDescriptionText(std::string_view strText);

    std::string& Buffer() { return m_strBuffer; }
    const std::string& Buffer() const { return m_strBuffer; }

    /// Whether the text lies in Buffer.
    bool Holds(std::string_view strPart) const;

private:
    std::string m_strBuffer;
};

/// @param strText  the text that a CDescriptionText was made from: the parser has written over the buffer's copy
/// @param nOffset  in the buffer
TEXT_POSITION FindPosition(std::string_view strText, std::size_t nOffset);

}  // namespace GenApi_3_0
