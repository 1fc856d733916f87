#include "camera/DescriptionMemory.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "camera/Description.h"
#include "camera/ZipArchive.h"
#include "gev/Bootstrap.h"

namespace camera {
namespace {

namespace boot = gev::bootstrap;

constexpr std::string_view kArchiveName = "Norvik_VirtualCamera.zip";
constexpr std::string_view kEntryName = "Norvik_VirtualCamera.xml";
constexpr std::uint64_t kClaimedLength = 0xFFFF'FFFC;  // of what there isn't
constexpr std::uint32_t kNowhere = 0x40000000;

std::string Hex(std::uint64_t nValue) {
    std::array<char, 16> arrText{};
    const auto objResult = std::to_chars(arrText.data(), arrText.data() + arrText.size(), nValue, 16);
    return {arrText.data(), objResult.ptr};
}

std::string MakeUrl(std::uint64_t nAddress, std::uint64_t nLength) {
    return "Local:" + std::string(kArchiveName) + ";" + Hex(nAddress) + ";" + Hex(nLength);
}

std::vector<std::byte> Spoil(std::vector<std::byte> vecArchive, std::string_view strModel,
                             EHostileDescription eHostile) {
    if (eHostile == EHostileDescription::Xml) {
        std::string strXML = WriteDescription(strModel);
        strXML.resize(strXML.size() / 2);
        vecArchive = MakeZipArchive(kEntryName, strXML);
    } else if (eHostile == EHostileDescription::Bomb) {
        std::fill_n(vecArchive.begin() + kZipUncompressedSizePlace, 4, std::byte{0xFF});
    } else if (eHostile == EHostileDescription::Zip) {
        const auto itData = vecArchive.begin() + static_cast<std::ptrdiff_t>(kZipNamePlace + kEntryName.size());
        std::fill_n(itData, 64, std::byte{0xFF});
    }
    return vecArchive;
}

}  // namespace

std::vector<std::byte> PackDescription(std::string_view strModel) {
    return MakeZipArchive(kEntryName, WriteDescription(strModel));
}

void PlaceDescription(CRegisterSpace& objRegisters, std::string_view strModel, const std::vector<std::byte>& vecPacked,
                      EHostileDescription eHostile) {
    std::vector<std::byte> vecDescription = Spoil(vecPacked, strModel, eHostile);
    std::string strUrl = MakeUrl(CRegisterSpace::kDescriptionAddress, vecDescription.size());
    switch (eHostile) {
        case EHostileDescription::Length:
            strUrl = MakeUrl(CRegisterSpace::kDescriptionAddress, kClaimedLength);
            break;
        case EHostileDescription::Unreadable:
            strUrl = MakeUrl(kNowhere, vecDescription.size());
            break;
        case EHostileDescription::Url:
            for (strUrl.clear(); strUrl.size() < boot::kFirstURL.Size;) {
                strUrl += "Local:;\xFF;%n;";
            }
            break;
        case EHostileDescription::No:
        case EHostileDescription::Bomb:
        case EHostileDescription::Zip:
        case EHostileDescription::Xml:
            break;
    }
    objRegisters.SetText(boot::kFirstURL, strUrl);
    objRegisters.SetText(boot::kSecondURL, strUrl);
    objRegisters.SetDescription(std::move(vecDescription));
}

}  // namespace camera
