#include "TLClass/TLClassFeature/FeatureFileText.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace {

constexpr std::string_view kFrameBegin = "</";
constexpr std::string_view kFrameEnd = ">";
constexpr std::size_t kFrameDashes = 51;

[[noreturn]] void ThrowBadFrame(std::string_view strBefore) {
    const auto nLine = std::count(strBefore.begin(), strBefore.end(), '\n') + 1;
    throw std::runtime_error("Failed to parse the " + std::to_string(nLine) + "th line");
}

}  // namespace

std::string MakeFeatureFrameLine(std::string_view strTitle) {
    const std::string strDashes(kFrameDashes, '-');
    std::string strLine = "\n";
    strLine.append(kFrameBegin).append(strDashes).append(strTitle).append(strDashes).append(kFrameEnd);
    return strLine += '\n';
}

std::string WithoutFrames(std::string_view strSection, std::vector<std::string>& vecLeftOut) {
    std::string strKept;
    strKept.reserve(strSection.size());
    while (!strSection.empty()) {
        const std::string_view strLine =
            strSection.substr(0, std::min(strSection.find('\n'), strSection.size() - 1) + 1);
        if (strLine.find(kFrameBegin) == std::string_view::npos) {
            strKept.append(strLine);
        } else {
            vecLeftOut.emplace_back(strLine.substr(0, strLine.find('\t')));
        }
        strSection.remove_prefix(strLine.size());
    }
    return strKept;
}

std::vector<std::string_view> SplitFeatureSections(std::string_view strText) {
    std::vector<std::string_view> vecPiece;
    for (std::size_t nPosition = 0;;) {
        nPosition = strText.find_first_not_of("\r\n ", nPosition);
        if (nPosition == std::string_view::npos) {
            return vecPiece;
        }
        const std::size_t nFrame = strText.find(kFrameBegin, nPosition);
        if (nFrame != nPosition) {
            vecPiece.push_back(strText.substr(nPosition, nFrame - nPosition));
        }
        if (nFrame == std::string_view::npos) {
            return vecPiece;
        }
        const std::size_t nEnd = strText.find(kFrameEnd, nFrame);
        if (nEnd == std::string_view::npos) {
            ThrowBadFrame(strText.substr(0, nFrame));
        }
        nPosition = nEnd + kFrameEnd.size();
    }
}

std::string GetFeatureHeaderValue(std::string_view strText, std::string_view strKey) {
    const auto Fail = [&] { throw std::runtime_error("Can not find " + std::string(strKey)); };
    const std::size_t nKey = strText.find(strKey);
    const std::string_view strBehind =
        nKey == std::string_view::npos ? std::string_view() : strText.substr(nKey + strKey.size());
    // The first occurrence decides, also when it is a part of another word.
    if (strBehind.empty() || std::string_view(" \t:").find(strBehind.front()) == std::string_view::npos) {
        Fail();
    }
    const std::size_t nValue = strBehind.find_first_not_of(" :\t");
    if (nValue == std::string_view::npos) {
        Fail();
    }
    const std::size_t nEnd = std::min(strBehind.find_first_of("\n\t", nValue), strBehind.size());
    if (nEnd == nValue) {
        Fail();
    }
    return std::string(strBehind.substr(nValue, nEnd - nValue));
}
