#include "producer/modules/RemoteUrl.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

namespace producer {

namespace {

constexpr std::uint64_t kEndOfMemory = std::uint64_t{1} << 32;

char LowerAscii(char nChar) {
    return nChar >= 'A' && nChar <= 'Z' ? static_cast<char>(nChar - 'A' + 'a') : nChar;
}

bool StartsWith(std::string_view strText, std::string_view strLowerPrefix) {
    return strText.size() >= strLowerPrefix.size() &&
           std::equal(strLowerPrefix.begin(), strLowerPrefix.end(), strText.begin(),
                      [](char nWanted, char nChar) { return LowerAscii(nChar) == nWanted; });
}

bool EndsWith(std::string_view strText, std::string_view strLowerEnd) {
    return strText.size() >= strLowerEnd.size() &&
           StartsWith(strText.substr(strText.size() - strLowerEnd.size()), strLowerEnd);
}

std::string_view Trim(std::string_view strText) {
    const std::size_t nFirst = strText.find_first_not_of(' ');
    return nFirst == std::string_view::npos ? std::string_view()
                                            : strText.substr(nFirst, strText.find_last_not_of(' ') - nFirst + 1);
}

std::optional<std::uint64_t> ReadHexadecimal(std::string_view strText) {
    strText = Trim(strText);
    if (StartsWith(strText, "0x")) {
        strText.remove_prefix(2);
    }
    std::uint64_t nValue = 0;
    const char* pEnd = strText.data() + strText.size();
    const auto [pBehind, eError] = std::from_chars(strText.data(), pEnd, nValue, 16);
    return eError == std::errc() && pBehind == pEnd ? std::optional(nValue) : std::nullopt;
}

/// Cuts off and gives what stands before the separator; all of it where there is none.
std::string_view CutAt(std::string_view& strRest, char nSeparator) {
    const std::size_t nEnd = std::min(strRest.find(nSeparator), strRest.size());
    const std::string_view strPart = strRest.substr(0, nEnd);
    strRest.remove_prefix(std::min(nEnd + 1, strRest.size()));
    return strPart;
}

/// Takes the version out of "SchemaVersion=1.1.0", where there is one that makes sense.
void ReadSchemaVersion(std::string_view strQuery, URL_FACTS& objUrl) {
    constexpr std::string_view kKey = "schemaversion=";
    if (!StartsWith(strQuery, kKey)) {
        return;
    }
    strQuery.remove_prefix(kKey.size());
    std::int32_t nMajor = 0;
    std::int32_t nMinor = 0;
    const char* pEnd = strQuery.data() + strQuery.size();
    const auto objMajor = std::from_chars(strQuery.data(), pEnd, nMajor);
    if (objMajor.ec != std::errc() || objMajor.ptr == pEnd || *objMajor.ptr != '.') {
        return;
    }
    if (std::from_chars(objMajor.ptr + 1, pEnd, nMinor).ec == std::errc() && nMajor >= 0 && nMinor >= 0) {
        objUrl.SchemaMajor = nMajor;
        objUrl.SchemaMinor = nMinor;
    }
}

std::optional<URL_FACTS> ReadLocalUrl(std::string_view strRest, std::string& strWhy) {
    std::string_view strName = CutAt(strRest, ';');
    strName = Trim(strName.substr(strName.find_last_of("/\\") + 1));  // a name, whatever path it comes with
    const std::string_view strAddress = CutAt(strRest, ';');
    const std::string_view strLength = CutAt(strRest, '?');
    const std::optional<std::uint64_t> nAddress = ReadHexadecimal(strAddress);
    const std::optional<std::uint64_t> nSize = ReadHexadecimal(strLength);
    URL_FACTS objUrl;
    ReadSchemaVersion(strRest, objUrl);
    if (!EndsWith(strName, ".xml") && !EndsWith(strName, ".zip")) {
        strWhy = "names neither an .xml nor a .zip file";
    } else if (!nAddress || !nSize) {
        strWhy = "has no hexadecimal address and length";
    } else if (*nSize == 0 || *nSize > kLargestDescription) {
        strWhy = "claims a description of " + std::to_string(*nSize) + " bytes";
    } else if (*nAddress > kEndOfMemory - *nSize) {
        strWhy = "lies beyond the camera's memory";
    } else {
        objUrl.FileName = strName;
        objUrl.Address = *nAddress;
        objUrl.Size = *nSize;
        objUrl.Url = WriteLocalUrl(objUrl);
        return objUrl;
    }
    return std::nullopt;
}

}  // namespace

std::optional<URL_FACTS> ReadCameraUrl(std::span<const std::byte> spanRegister, std::string& strWhy) {
    const std::string_view strField(reinterpret_cast<const char*>(spanRegister.data()), spanRegister.size());
    const std::string_view strUrl = Trim(strField.substr(0, strField.find('\0')));
    if (strUrl.empty()) {
        strWhy = "is empty";
        return std::nullopt;
    }
    if (!std::all_of(strUrl.begin(), strUrl.end(), [](char nChar) { return nChar >= ' ' && nChar <= '~'; })) {
        strWhy = "holds what is no text";
        return std::nullopt;
    }
    if (StartsWith(strUrl, "local:")) {
        return ReadLocalUrl(strUrl.substr(6), strWhy);
    }
    if (StartsWith(strUrl, "http:") || StartsWith(strUrl, "https:")) {
        URL_FACTS objUrl;
        objUrl.Url = strUrl;
        objUrl.FileName = strUrl.substr(strUrl.rfind('/') + 1);
        objUrl.Scheme = URL_SCHEME_HTTP;
        return objUrl;
    }
    strWhy = StartsWith(strUrl, "file:") ? "names a file of this machine" : "is of no known kind";
    return std::nullopt;
}

}  // namespace producer
