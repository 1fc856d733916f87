#include <cctype>
#include <clocale>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "support/Address.h"
#include "support/LocalTimeText.h"
#include "support/Text.h"

namespace {

/// Runs a test in a foreign locale, as a window's start would have set it for the whole process.
class UnderLocale : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (std::setlocale(LC_ALL, GetParam()) == nullptr) {
            GTEST_SKIP() << "locale " << GetParam() << " isn't installed";
        }
    }
    void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

TEST_P(UnderLocale, TextsStayAsTheyAre) {
    char arrNumber[16];
    std::snprintf(arrNumber, sizeof arrNumber, "%.1f", 0.5);
    ASSERT_STREQ(arrNumber, "0,5") << "the locale doesn't bite";
    // Called where the compiler can't see what it is: it takes for granted that no result is a small letter.
    int (*volatile pToUpper)(int) = std::toupper;
    ASSERT_EQ(std::string(GetParam()).starts_with("tr") ? 'i' : 'I', pToUpper('i'));

    EXPECT_EQ(Format("%d %u %x %s", -1234567, 7654321U, 0xABCDEFU, "\xFF\xFEi"), "-1234567 7654321 abcdef \xFF\xFEi");
    EXPECT_EQ(ToUpperAscii("file:///i/\xC4\xB1\xC3\xA4.xml{|}"), "FILE:///I/\xC4\xB1\xC3\xA4.XML{|}");
    EXPECT_EQ(MACToString(0xABCDEF012345U), "AB-CD-EF-01-23-45");
    EXPECT_EQ(IPToString(3232246355U), "192.168.42.83");
    std::wstring strWide;
    std::string strNarrow;
    EXPECT_TRUE(StringToWString("\xC3\xA4", strWide) && WStringToString(strWide.c_str(), strNarrow));
    EXPECT_EQ(strNarrow, "\xC3\xA4");
    std::string strTime;
    CLocalTimeText().AppendTo(strTime);
    EXPECT_EQ(strTime.find_first_not_of("0123456789-:. "), std::string::npos) << strTime;
}

INSTANTIATE_TEST_SUITE_P(Text, UnderLocale, testing::Values("de_DE.UTF-8", "tr_TR.UTF-8"),
                         [](const auto& objInfo) { return std::string(objInfo.param, 2); });

}  // namespace
