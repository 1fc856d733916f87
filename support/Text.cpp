#include "support/Text.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t kFormatCapacity = 1024;  // the NUL at the end included
constexpr char32_t kReplacement = 0xFFFD;

/// What a first byte says of its sequence.
struct SEQUENCE {
    std::size_t Length;          // 0 for a byte that begins nothing
    char32_t Bits;               // of the first byte
    std::uint8_t LowestSecond;   // the second byte's range, which keeps out overlong forms, surrogates and what lies
    std::uint8_t HighestSecond;  // beyond U+10FFFF
};

SEQUENCE SequenceOf(std::uint8_t nFirst) {
    if (nFirst < 0x80) {
        return {1, nFirst, 0, 0};
    }
    if (nFirst >= 0xC2 && nFirst <= 0xDF) {
        return {2, nFirst & 0x1FU, 0x80, 0xBF};
    }
    if (nFirst >= 0xE0 && nFirst <= 0xEF) {
        const auto nLowest = static_cast<std::uint8_t>(nFirst == 0xE0 ? 0xA0 : 0x80);
        const auto nHighest = static_cast<std::uint8_t>(nFirst == 0xED ? 0x9F : 0xBF);
        return {3, nFirst & 0x0FU, nLowest, nHighest};
    }
    if (nFirst >= 0xF0 && nFirst <= 0xF4) {
        const auto nLowest = static_cast<std::uint8_t>(nFirst == 0xF0 ? 0x90 : 0x80);
        const auto nHighest = static_cast<std::uint8_t>(nFirst == 0xF4 ? 0x8F : 0xBF);
        return {4, nFirst & 0x07U, nLowest, nHighest};
    }
    return {0, 0, 0, 0};
}

/// Takes one character off the front of a text that isn't empty. Of a sequence that breaks off, the part that was good
/// so far is taken, and the byte that broke it stays.
char32_t TakeCharacter(std::string_view& strText) {
    const SEQUENCE objSequence = SequenceOf(static_cast<std::uint8_t>(strText[0]));
    char32_t nCharacter = objSequence.Bits;
    std::size_t nTaken = 1;
    for (; nTaken < objSequence.Length && nTaken < strText.size(); ++nTaken) {
        const auto nByte = static_cast<std::uint8_t>(strText[nTaken]);
        const std::uint8_t nLowest = nTaken == 1 ? objSequence.LowestSecond : 0x80;
        const std::uint8_t nHighest = nTaken == 1 ? objSequence.HighestSecond : 0xBF;
        if (nByte < nLowest || nByte > nHighest) {
            break;
        }
        nCharacter = nCharacter << 6 | (nByte & 0x3FU);
    }
    strText.remove_prefix(nTaken);
    return nTaken == objSequence.Length ? nCharacter : kReplacement;
}

void AppendCharacter(std::string& strText, char32_t nCharacter) {
    const auto Append = [&strText](char32_t nByte) { strText += static_cast<char>(nByte); };
    const auto AppendRest = [&](int nShift) { Append(0x80U | (nCharacter >> nShift & 0x3FU)); };
    if (nCharacter < 0x80) {
        Append(nCharacter);
    } else if (nCharacter < 0x800) {
        Append(0xC0U | nCharacter >> 6);
        AppendRest(0);
    } else if (nCharacter < 0x10000) {
        Append(0xE0U | nCharacter >> 12);
        AppendRest(6);
        AppendRest(0);
    } else {
        Append(0xF0U | nCharacter >> 18);
        AppendRest(12);
        AppendRest(6);
        AppendRest(0);
    }
}

bool IsCharacter(char32_t nCharacter) {
    return nCharacter <= 0x10FFFF && (nCharacter < 0xD800 || nCharacter > 0xDFFF);
}

}  // namespace

std::string Format(const char* pFormat, ...) {
    char arrBuffer[kFormatCapacity] = {};
    va_list pArguments;
    va_start(pArguments, pFormat);
    std::vsnprintf(arrBuffer, sizeof arrBuffer, pFormat, pArguments);
    va_end(pArguments);
    return arrBuffer;
}

std::string FormatFailure(const std::string& strFile, int nLine, const std::string& strFunction,
                          const std::string& strText) {
    return Format("%s(%d):'%s':%s", strFile.c_str(), nLine, strFunction.c_str(), strText.c_str());
}

std::vector<std::string> Split(const std::string& strText, const std::string& strSeparator) {
    if (strText.empty()) {
        return {};
    }
    if (strSeparator.empty()) {
        return {strText};
    }
    // With a separator behind it the last piece ends like the others.
    const std::string strEnded = strText + strSeparator;
    std::vector<std::string> vecPieces;
    std::size_t nFrom = 0;
    for (std::size_t nFound; (nFound = strEnded.find(strSeparator, nFrom)) != std::string::npos;) {
        if (nFound > nFrom) {
            vecPieces.push_back(strEnded.substr(nFrom, nFound - nFrom));
        }
        nFrom = nFound + strSeparator.size();
    }
    return vecPieces;
}

std::string ToUpperAscii(const std::string& strText) {
    std::string strUpper = strText;
    for (char& cCharacter : strUpper) {
        if (cCharacter >= 'a' && cCharacter <= 'z') {
            cCharacter = static_cast<char>(cCharacter - 'a' + 'A');
        }
    }
    return strUpper;
}

bool StringToWString(const std::string& strNarrow, std::wstring& strWide) {
    static_assert(sizeof(wchar_t) == sizeof(char32_t), "a wide character holds every character");
    if (strNarrow.empty()) {
        return false;
    }
    std::wstring strConverted(strNarrow.size(), L'\0');
    std::size_t nCount = 0;
    for (std::string_view strRest = strNarrow; !strRest.empty();) {
        strConverted[nCount++] = static_cast<wchar_t>(TakeCharacter(strRest));
    }
    strWide = std::move(strConverted);
    return true;
}

bool WStringToString(const wchar_t* pWide, std::string& strNarrow) {
    if (pWide == nullptr) {
        return false;
    }
    std::string strConverted;
    for (; *pWide != L'\0'; ++pWide) {
        const auto nCharacter = static_cast<char32_t>(*pWide);
        AppendCharacter(strConverted, IsCharacter(nCharacter) ? nCharacter : kReplacement);
    }
    strNarrow = std::move(strConverted);
    return true;
}
