#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "gev/Bootstrap.h"
#include "gev/GvcpStatus.h"

namespace camera {

/// The memory of a camera as its control channel sees it: registers of 4 bytes, each with its own rights, and the
/// description further up. It knows nothing of what registers mean.
class CRegisterSpace {
public:
    static constexpr std::uint32_t kReadable = 1;
    static constexpr std::uint32_t kWritable = 2;

    /// Where the description lies. It can be read, and not be written.
    static constexpr std::uint32_t kDescriptionAddress = 0x00100000;

    CRegisterSpace();

    /// Gives registers their rights, beside those that they have. Both numbers are multiples of 4.
    void Allow(std::uint32_t nAddress, std::uint32_t nLength, std::uint32_t nRights);

    /// The description, to be read at once; its length need be no multiple of 4.
    void SetDescription(std::vector<std::byte> vecDescription);

    /// Whether another may read or write all of a block.
    /// @return InvalidAddress where there is no register, AccessDenied for reading what can only be written,
    ///         WriteProtect for the opposite, BadAlignment.
    [[nodiscard]] gev::EGvcpStatus CheckRead(std::uint32_t nAddress, std::size_t nLength) const;
    [[nodiscard]] gev::EGvcpStatus CheckWrite(std::uint32_t nAddress, std::size_t nLength) const;

    /// The bytes of a block that one of the checks has let pass, or that the table of features names.
    [[nodiscard]] std::span<const std::byte> View(std::uint32_t nAddress, std::size_t nLength) const;
    /// The same for change; not inside the description.
    [[nodiscard]] std::span<std::byte> Change(std::uint32_t nAddress, std::size_t nLength);

    [[nodiscard]] std::uint32_t Get(std::uint32_t nAddress) const;
    void Set(std::uint32_t nAddress, std::uint32_t nValue);
    [[nodiscard]] std::uint32_t Get(gev::bootstrap::REGISTER objRegister) const { return Get(objRegister.Address); }
    void Set(gev::bootstrap::REGISTER objRegister, std::uint32_t nValue) { Set(objRegister.Address, nValue); }
    /// An IEEE number of 4 bytes.
    [[nodiscard]] float GetFloat(std::uint32_t nAddress) const;
    void SetFloat(std::uint32_t nAddress, float nValue);
    /// @param strText  shorter than the register, which is zero behind it
    void SetText(gev::bootstrap::REGISTER objRegister, std::string_view strText);

private:
    [[nodiscard]] gev::EGvcpStatus Check(std::uint32_t nAddress, std::size_t nLength, std::uint32_t nRight,
                                         gev::EGvcpStatus nRefusal) const;

    std::vector<std::byte> m_vecBytes;        // of the registers, from address 0
    std::vector<std::uint8_t> m_vecRights;    // one for each 4 bytes of them
    std::vector<std::byte> m_vecDescription;  // filled up to a multiple of 4
};

}  // namespace camera
