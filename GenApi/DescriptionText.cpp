#include "GenApi/DescriptionText.h"

#include <algorithm>
#include <cstdint>
#include <functional>

#include "GenApi/GCException.h"
#include "GenApi/NodeMapLimits.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

enum class EEncoding { Utf8, Utf16BigEndian, Utf16LittleEndian, Latin1 };

constexpr char32_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& strOut, char32_t c) {
    const auto AppendByte = [&strOut](char32_t nByte) { strOut += static_cast<char>(nByte); };
    if (c < 0x80) {
        AppendByte(c);
    } else if (c < 0x800) {
        AppendByte(0xC0 | (c >> 6U));
        AppendByte(0x80 | (c & 0x3FU));
    } else if (c < 0x10000) {
        AppendByte(0xE0 | (c >> 12U));
        AppendByte(0x80 | ((c >> 6U) & 0x3FU));
        AppendByte(0x80 | (c & 0x3FU));
    } else {
        AppendByte(0xF0 | (c >> 18U));
        AppendByte(0x80 | ((c >> 12U) & 0x3FU));
        AppendByte(0x80 | ((c >> 6U) & 0x3FU));
        AppendByte(0x80 | (c & 0x3FU));
    }
}

bool ContainsInAnyCase(std::string_view strText, std::string_view strLower) {
    const auto Same = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? static_cast<char>(a + 32) : a) == b; };
    return std::search(strText.begin(), strText.end(), strLower.begin(), strLower.end(), Same) != strText.end();
}

// Only what an XML declaration may say; everything else is told by its first bytes.
EEncoding DeclaredEncoding(std::string_view strText) {
    if (!strText.starts_with("<?xml")) {
        return EEncoding::Utf8;
    }
    const std::string_view strDeclaration = strText.substr(0, strText.find("?>"));
    if (ContainsInAnyCase(strDeclaration, "iso-8859-1") || ContainsInAnyCase(strDeclaration, "latin1") ||
        ContainsInAnyCase(strDeclaration, "windows-1252")) {
        return EEncoding::Latin1;
    }
    return EEncoding::Utf8;
}

EEncoding TakeEncoding(std::string_view& strText) {
    if (strText.starts_with("\xEF\xBB\xBF")) {
        strText.remove_prefix(3);
        return EEncoding::Utf8;
    }
    const bool bMark = strText.starts_with("\xFF\xFE") || strText.starts_with("\xFE\xFF");
    const bool bLittle = strText.starts_with("\xFF\xFE") || strText.starts_with(std::string_view("<\0", 2));
    const bool bBig = strText.starts_with("\xFE\xFF") || strText.starts_with(std::string_view("\0<", 2));
    if (bMark) {
        strText.remove_prefix(2);
    }
    if (bLittle) {
        return EEncoding::Utf16LittleEndian;
    }
    return bBig ? EEncoding::Utf16BigEndian : DeclaredEncoding(strText);
}

std::string FromLatin1(std::string_view strText) {
    std::string strOut;
    strOut.reserve(strText.size() + strText.size() / 16);
    for (const char c : strText) {
        AppendUtf8(strOut, static_cast<unsigned char>(c));
    }
    return strOut;
}

std::string FromUtf16(std::string_view strText, bool bBigEndian) {
    const auto UnitAt = [strText, bBigEndian](std::size_t i) -> char32_t {
        const auto nFirst = static_cast<unsigned char>(strText[i]);
        const auto nSecond = static_cast<unsigned char>(strText[i + 1]);
        return bBigEndian ? (static_cast<char32_t>(nFirst) << 8U | nSecond)
                          : (static_cast<char32_t>(nSecond) << 8U | nFirst);
    };
    std::string strOut;
    strOut.reserve(strText.size() / 2);
    for (std::size_t i = 0; i + 1 < strText.size(); i += 2) {
        char32_t c = UnitAt(i);
        const bool bHigh = c >= 0xD800 && c < 0xDC00;
        if (bHigh && i + 3 < strText.size() && UnitAt(i + 2) >= 0xDC00 && UnitAt(i + 2) < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10U) + (UnitAt(i + 2) - 0xDC00);
            i += 2;
        } else if (c >= 0xD800 && c < 0xE000) {
            c = kReplacement;
        }
        AppendUtf8(strOut, c);
    }
    return strOut;
}

std::string ToUtf8(std::string_view strText) {
    switch (TakeEncoding(strText)) {
        case EEncoding::Latin1:
            return FromLatin1(strText);
        case EEncoding::Utf16BigEndian:
            return FromUtf16(strText, true);
        case EEncoding::Utf16LittleEndian:
            return FromUtf16(strText, false);
        case EEncoding::Utf8:
            break;
    }
    return std::string(strText);
}

void CheckTagCount(std::string_view strText) {
    // No tag is shorter than <a/>, so that most texts need no count.
    if (strText.size() / 4 <= kMaxTags) {
        return;
    }
    if (std::count(strText.begin(), strText.end(), '<') > static_cast<std::ptrdiff_t>(kMaxTags)) {
        Throw<RuntimeException>("The description has more than " + std::to_string(kMaxTags) + " tags");
    }
}

}  // namespace

CDescriptionText::CDescriptionText(std::string_view strText) {
    if (strText.size() > kMaxDescriptionSize) {
        Throw<RuntimeException>("The description has " + std::to_string(strText.size()) + " bytes, more than the " +
                                std::to_string(kMaxDescriptionSize) + " that are allowed");
    }
    m_strBuffer = ToUtf8(strText);
    CheckTagCount(m_strBuffer);
}

bool CDescriptionText::Holds(std::string_view strPart) const {
    const char* pBegin = m_strBuffer.data();
    const std::less_equal<const char*> NotAfter;
    return NotAfter(pBegin, strPart.data()) && NotAfter(strPart.data(), pBegin + m_strBuffer.size());
}

TEXT_POSITION FindPosition(std::string_view strText, std::size_t nOffset) {
    const std::string strBefore = ToUtf8(strText).substr(0, nOffset);
    const auto nLines = std::count(strBefore.begin(), strBefore.end(), '\n');
    const std::size_t nLastBreak = strBefore.rfind('\n');
    const std::size_t nLineStart = nLastBreak == std::string::npos ? 0 : nLastBreak + 1;
    return {static_cast<std::size_t>(nLines) + 1, strBefore.size() - nLineStart + 1};
}

}  // namespace GenApi_3_0
