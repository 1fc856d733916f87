#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/Address.h"
#include "support/Text.h"

namespace {

using Pieces = std::vector<std::string>;

TEST(Text, FormatCutsAt1023Bytes) {
    EXPECT_EQ(Format("%s|%d|%04x", "a", -5, 0xBEU), "a|-5|00be");
    EXPECT_EQ(Format("%s", std::string(1023, 'x').c_str()), std::string(1023, 'x'));
    EXPECT_EQ(Format("%sYZ", std::string(1022, 'x').c_str()), std::string(1022, 'x') + "Y");
    EXPECT_EQ(FormatFailure("Device.cpp", 9, "CDevice::DoClose", "100% busy"),
              "Device.cpp(9):'CDevice::DoClose':100% busy");
}

TEST(Text, SplitDropsEmptyPiecesAndPassesTheWholeSeparator) {
    struct Case {
        const char* pText;
        const char* pSeparator;
        Pieces vecPieces;
    };
    const Case arrCases[] = {
        {"a;;b", ";", {"a", "b"}},
        {";", ";", {}},
        {";a b; c ;", ";", {"a b", " c "}},
        {"a--b", "--", {"a", "b"}},
        {"a;b", "", {"a;b"}},
        // With the separator behind it, the text's own dash begins the separator found.
        {"a-", "--", {"a"}},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_EQ(Split(objCase.pText, objCase.pSeparator), objCase.vecPieces)
            << objCase.pText << " at " << objCase.pSeparator;
    }
}

TEST(Text, WideTextKeepsTheNarrowLength) {
    struct Case {
        std::string strNarrow;
        std::wstring strWide;  // without the NULs at its end
    };
    const Case arrCases[] = {
        {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
        {"枚举€é😀", L"枚举€é😀"},
        {"\xC3", L"\xFFFD"},        // breaks off
        {"\xE2\x82z", L"\xFFFDz"},  // the good beginning is one fault, the byte behind it is kept
        {"\xC0\xAF\x80\xFF", L"\xFFFD\xFFFD\xFFFD\xFFFD"},  // overlong, stray, never used
        // A surrogate, beyond the last character, overlong.
        {"\xED\xA0\x80\xF4\x90\x80\x80\xE0\x9F\x80\xF0\x8F\x80\x80", std::wstring(14, L'\xFFFD')},
    };
    for (const auto& objCase : arrCases) {
        std::wstring strExpected = objCase.strWide;
        strExpected.resize(objCase.strNarrow.size());
        std::wstring strWide;
        EXPECT_TRUE(StringToWString(objCase.strNarrow, strWide));
        EXPECT_EQ(strWide, strExpected) << objCase.strNarrow;
    }

    std::wstring strUntouched = L"before";
    EXPECT_FALSE(StringToWString("", strUntouched));
    EXPECT_EQ(strUntouched, L"before");
}

TEST(Text, NarrowTextIsUtf8) {
    std::string strNarrow = "before";
    EXPECT_FALSE(WStringToString(nullptr, strNarrow));
    EXPECT_EQ(strNarrow, "before");
    EXPECT_TRUE(WStringToString(L"\x7F\x80\x7FF\x800\xFFFF\x10000\x10FFFF", strNarrow));
    EXPECT_EQ(strNarrow,
              "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80"
              "\xF4\x8F\xBF\xBF");
    const wchar_t arrNoCharacters[] = {0xD800, 0xDFFF, 0x110000, -1, 0};
    EXPECT_TRUE(WStringToString(arrNoCharacters, strNarrow));
    EXPECT_EQ(strNarrow, "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Address, HighestOctetComesFirst) {
    EXPECT_EQ(IPToString(3232246355U), "192.168.42.83");
    EXPECT_EQ(MACToString(0xFFFF025E1700ADEAU), "02-5E-17-00-AD-EA");
    EXPECT_TRUE(IsLittleEndian() && !IsBigEndian());
}

}  // namespace
