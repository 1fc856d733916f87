#include "camera/RegisterSpace.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "gev/BigEndian.h"

namespace camera {
namespace {

using gev::EGvcpStatus;

constexpr std::size_t kRegisterBytes = 0xB000;
constexpr std::size_t kWord = 4;

}  // namespace

CRegisterSpace::CRegisterSpace() : m_vecBytes(kRegisterBytes), m_vecRights(kRegisterBytes / kWord) {}

void CRegisterSpace::Allow(std::uint32_t nAddress, std::uint32_t nLength, std::uint32_t nRights) {
    for (std::uint32_t i = nAddress; i < nAddress + nLength; i += kWord) {
        std::uint8_t& nOld = m_vecRights.at(i / kWord);
        nOld = static_cast<std::uint8_t>(nOld | nRights);
    }
}

void CRegisterSpace::SetDescription(std::vector<std::byte> vecDescription) {
    m_vecDescription = std::move(vecDescription);
    m_vecDescription.resize((m_vecDescription.size() + kWord - 1) / kWord * kWord);
}

EGvcpStatus CRegisterSpace::Check(std::uint32_t nAddress, std::size_t nLength, std::uint32_t nRight,
                                  EGvcpStatus nRefusal) const {
    if (nAddress % kWord != 0 || nLength % kWord != 0) {
        return EGvcpStatus::BadAlignment;
    }
    if (nAddress >= kDescriptionAddress) {
        const std::size_t nOffset = nAddress - kDescriptionAddress;
        if (nOffset >= m_vecDescription.size() || nLength > m_vecDescription.size() - nOffset) {
            return EGvcpStatus::InvalidAddress;
        }
        return nRight == kReadable ? EGvcpStatus::Success : nRefusal;
    }
    if (nAddress >= kRegisterBytes || nLength > kRegisterBytes - nAddress) {
        return EGvcpStatus::InvalidAddress;
    }
    const auto arrRights = std::span(m_vecRights).subspan(nAddress / kWord, nLength / kWord);
    if (std::ranges::find(arrRights, 0) != arrRights.end()) {
        return EGvcpStatus::InvalidAddress;
    }
    const bool bAllowed = std::ranges::all_of(arrRights, [&](std::uint8_t nRights) { return (nRights & nRight) != 0; });
    return bAllowed ? EGvcpStatus::Success : nRefusal;
}

EGvcpStatus CRegisterSpace::CheckRead(std::uint32_t nAddress, std::size_t nLength) const {
    return Check(nAddress, nLength, kReadable, EGvcpStatus::AccessDenied);
}

EGvcpStatus CRegisterSpace::CheckWrite(std::uint32_t nAddress, std::size_t nLength) const {
    return Check(nAddress, nLength, kWritable, EGvcpStatus::WriteProtect);
}

std::span<const std::byte> CRegisterSpace::View(std::uint32_t nAddress, std::size_t nLength) const {
    if (nAddress >= kDescriptionAddress) {
        return std::span(m_vecDescription).subspan(nAddress - kDescriptionAddress, nLength);
    }
    return std::span(m_vecBytes).subspan(nAddress, nLength);
}

std::span<std::byte> CRegisterSpace::Change(std::uint32_t nAddress, std::size_t nLength) {
    return std::span(m_vecBytes).subspan(nAddress, nLength);
}

std::uint32_t CRegisterSpace::Get(std::uint32_t nAddress) const {
    return gev::Get32(View(nAddress, kWord), 0);
}

void CRegisterSpace::Set(std::uint32_t nAddress, std::uint32_t nValue) {
    gev::Put32(Change(nAddress, kWord), 0, nValue);
}

float CRegisterSpace::GetFloat(std::uint32_t nAddress) const {
    return std::bit_cast<float>(Get(nAddress));
}

void CRegisterSpace::SetFloat(std::uint32_t nAddress, float nValue) {
    Set(nAddress, std::bit_cast<std::uint32_t>(nValue));
}

void CRegisterSpace::SetText(gev::bootstrap::REGISTER objRegister, std::string_view strText) {
    const auto arrField = Change(objRegister.Address, objRegister.Size);
    std::ranges::fill(arrField, std::byte{0});
    std::ranges::transform(strText.substr(0, arrField.size()), arrField.begin(),
                           [](char nChar) { return static_cast<std::byte>(nChar); });
}

}  // namespace camera
