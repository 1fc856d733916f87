// Of the double only what the tests above it would pass without: lies that must be those scripted.

#include <string>

#include <gtest/gtest.h>

#include "tests/producer_double/ProducerLibrary.h"

namespace ProducerDouble {
namespace {

TEST(ProducerDoubleTest, AnswersFollowTheSizeProtocolOrLieAboutItAsScripted) {
    const CProducerLibrary objDouble(PRODUCER_DOUBLE);
    const auto GetInfo = objDouble.Entry<PGCGetInfo>("GCGetInfo");
    struct CASE {
        const char* pszName;
        ANSWER objAnswer;
        GC_ERROR nAskResult;
        std::size_t nAsked;
        GC_ERROR nGiveResult;
        std::size_t nGiven;
        std::string strBuffer;  // four bytes, '#' where untouched
    };
    const CASE arrCase[] = {
        {"honest", ANSWER::Text("abc"), 0, 4, 0, 4, std::string("abc\0", 4)},
        {"too long", ANSWER::Text("abcdef"), 0, 7, GC_ERR_BUFFER_TOO_SMALL, 4, "####"},
        {"unterminated", ANSWER::Unterminated("abcd"), 0, 4, 0, 4, "abcd"},
        {"size 0", ANSWER::Text("a").AskingFor(0), 0, 0, 0, 2, std::string("a\0##", 4)},
        {"more than asked for", ANSWER::Text("abcdef").AskingFor(4), 0, 4, 0, 4, "abcd"},
        {"grown", ANSWER::Text("ab").ReportingAs(9999), 0, 3, 0, 9999, std::string("ab\0#", 4)},
        {"absent", ANSWER::Absent(), GC_ERR_NOT_AVAILABLE, 99, GC_ERR_NOT_AVAILABLE, 4, "####"},
    };
    for (const CASE& objCase : arrCase) {
        SCOPED_TRACE(objCase.pszName);
        objDouble->SetInfo(TL_INFO_VENDOR, objCase.objAnswer);
        std::size_t nSize = 99;
        EXPECT_EQ(GetInfo(TL_INFO_VENDOR, nullptr, nullptr, &nSize), objCase.nAskResult);
        EXPECT_EQ(nSize, objCase.nAsked);
        std::string strBuffer = "####";
        nSize = strBuffer.size();
        EXPECT_EQ(GetInfo(TL_INFO_VENDOR, nullptr, strBuffer.data(), &nSize), objCase.nGiveResult);
        EXPECT_EQ(nSize, objCase.nGiven);
        EXPECT_EQ(strBuffer, objCase.strBuffer);
    }
}

}  // namespace
}  // namespace ProducerDouble
