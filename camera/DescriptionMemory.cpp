#include "camera/DescriptionMemory.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <mutex>
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

/// The last one is kept: packing takes longer than all the rest of a camera's start, and most cameras are of one model.
std::vector<std::byte> MakeArchive(std::string_view strModel, bool bHalf) {
    static std::mutex s_mtxLast;  // guards the three below
    static std::string s_strModel;
    static bool s_bHalf = false;
    static std::vector<std::byte> s_vecArchive;
    const std::scoped_lock lock(s_mtxLast);
    if (s_vecArchive.empty() || s_strModel != strModel || s_bHalf != bHalf) {
        std::string strXML = WriteDescription(strModel);
        strXML.resize(bHalf ? strXML.size() / 2 : strXML.size());
        s_vecArchive = MakeZipArchive(kEntryName, strXML);
        s_strModel = strModel;
        s_bHalf = bHalf;
    }
    return s_vecArchive;
}

std::vector<std::byte> MakeDescription(std::string_view strModel, EHostileDescription eHostile) {
    std::vector<std::byte> vecArchive = MakeArchive(strModel, eHostile == EHostileDescription::Xml);
    if (eHostile == EHostileDescription::Bomb) {
        std::fill_n(vecArchive.begin() + kZipUncompressedSizePlace, 4, std::byte{0xFF});
    } else if (eHostile == EHostileDescription::Zip) {
        const auto itData = vecArchive.begin() + static_cast<std::ptrdiff_t>(kZipNamePlace + kEntryName.size());
        std::fill_n(itData, 64, std::byte{0xFF});
    }
    return vecArchive;
}

}  // namespace

void PlaceDescription(CRegisterSpace& objRegisters, std::string_view strModel, EHostileDescription eHostile) {
    std::vector<std::byte> vecDescription = MakeDescription(strModel, eHostile);
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
