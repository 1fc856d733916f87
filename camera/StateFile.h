#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace camera {

/// The file in which a camera keeps its state. Not for two threads at once, nor for two cameras.
///
/// Errors don't name the file: whoever reads what is in it has some of his own to tell.
class CStateFile {
public:
    static constexpr std::size_t kLongest = 65'536;  ///< bytes

    /// @throws CStateError  the file couldn't be written, or is no regular one
    explicit CStateFile(std::string strPath);

    /// @return nothing when there is no such file yet
    /// @throws CStateError  it can't be read, is no file or too long
    [[nodiscard]] std::optional<std::string> Read() const;

    /// Replaces the file as a whole, or leaves it as it is. Comes back when the disk has it.
    /// @throws CStateError
    void Write(std::string_view strText) const;

private:
    std::string m_strPath;
};

}  // namespace camera
