#include "TLClass/TLClassXML/XMLUrl.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>
#include <string_view>
#include <system_error>
#include <vector>

#include "support/Text.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kSourceFile = "..\\..\\..\\TLClass\\TLClassXML\\XMLLoader";

constexpr std::string_view kFile = "FILE:";
constexpr std::string_view kFileSlashes = "FILE:///";
constexpr std::string_view kLocal = "LOCAL:";
constexpr std::string_view kLocalSlashes = "LOCAL:///";

constexpr std::size_t kLocalFields = 3;  // name, address, length

/// @throws std::out_of_range  there are fewer characters
std::string LastOf(const std::string& strText, std::size_t nCount) {
    return strText.substr(strText.size() - nCount);
}

/// The first piece of a split, or nothing where the text is made of separators.
std::string FirstPiece(const std::string& strText, const std::string& strSeparator) {
    const std::vector<std::string> vecPieces = Split(strText, strSeparator);
    return vecPieces.empty() ? std::string() : vecPieces.front();
}

bool IsLocalUrlValid(const std::string& strFields) {
    const std::vector<std::string> vecFields = Split(strFields, ";");
    if (vecFields.size() != kLocalFields) {
        return false;
    }
    const std::string strExtension = LastOf(vecFields[0], 4);
    return strExtension == ".XML" || strExtension == ".ZIP";
}

/// @param strUrl  in upper case
bool IsUrlValid(const std::string& strUrl) {
    if (strUrl.starts_with(kFile)) {
        const std::string strEnd = LastOf(strUrl, 5);
        return strEnd == ".XML?" || strEnd == ".ZIP?";
    }
    // Both cuts leave the last character of the prefix, so that a name without any character of its own has one.
    if (strUrl.starts_with(kLocalSlashes)) {
        return IsLocalUrlValid(strUrl.substr(kLocalSlashes.size() - 1));
    }
    if (strUrl.starts_with(kLocal)) {
        return IsLocalUrlValid(strUrl.substr(kLocal.size() - 1));
    }
    return false;
}

/// Reads a number like the C library does in base 16, but without its locale: white space, a sign, 0x and digits. One
/// that is too large becomes the largest.
std::uint64_t ReadHexadecimal(std::string_view strText) {
    constexpr std::string_view kSpace = " \t\n\v\f\r";
    constexpr std::string_view kDigits = "0123456789ABCDEFabcdef";
    strText.remove_prefix(std::min(strText.find_first_not_of(kSpace), strText.size()));
    const bool bNegative = strText.starts_with('-');
    if (bNegative || strText.starts_with('+')) {
        strText.remove_prefix(1);
    }
    if ((strText.starts_with("0x") || strText.starts_with("0X")) && strText.size() > 2 &&
        kDigits.find(strText[2]) != std::string_view::npos) {
        strText.remove_prefix(2);
    }
    std::uint64_t nValue = 0;
    const auto objResult = std::from_chars(strText.data(), strText.data() + strText.size(), nValue, 16);
    if (objResult.ec == std::errc::result_out_of_range) {
        return std::numeric_limits<std::uint64_t>::max();
    }
    return bNegative ? 0 - nValue : nValue;
}

XML_FILE_INFO ParseFileUrl(const std::string& strUpper, const std::string& strUrl) {
    const bool bSlashes = strUpper.find(kFileSlashes) != std::string::npos;
    const std::size_t nStart = bSlashes ? kFileSlashes.size() : kFile.size();
    XML_FILE_INFO objFile;
    objFile.Name = FirstPiece(strUpper.substr(nStart), "?");
    // The last of the three slashes is also the first of an absolute path.
    objFile.Path = (bSlashes ? "/" : "") + FirstPiece(strUrl.substr(nStart), "?");
    return objFile;
}

XML_LOCAL_INFO ParseLocalUrl(const std::string& strUpper) {
    const bool bSlashes = strUpper.find(kLocalSlashes) != std::string::npos;
    std::vector<std::string> vecFields = Split(strUpper.substr(bSlashes ? kLocalSlashes.size() : kLocal.size()), ";");
    vecFields.resize(kLocalFields);
    XML_LOCAL_INFO objLocal;
    objLocal.Name = vecFields[0];
    objLocal.Address = ReadHexadecimal(vecFields[1]);
    objLocal.Length = ReadHexadecimal(FirstPiece(vecFields[2], "?"));
    return objLocal;
}

}  // namespace

XML_URL_INFO AnalyzeXMLUrl(const std::string& strUrl) {
    const std::string strUpper = ToUpperAscii(strUrl);
    if (!IsUrlValid(strUpper)) {
        throw CUnexpectedError(-1, Format("XML format error: %s", strUrl.c_str()), kSourceFile, __LINE__,
                               "CXMLLoader::__AnalyzeUrl");
    }
    XML_URL_INFO objInfo;
    if (strUpper.starts_with(kFile)) {
        objInfo.Type = EXMLUrlType::File;
        objInfo.File = ParseFileUrl(strUpper, strUrl);
    } else {
        objInfo.Type = EXMLUrlType::Local;
        objInfo.Local = ParseLocalUrl(strUpper);
    }
    return objInfo;
}
