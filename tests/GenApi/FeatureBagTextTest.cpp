#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/FeatureBag.h"
#include "GenApi/GCException.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::RuntimeException;
using testing::ElementsAre;
using testing::IsEmpty;

using namespace std::string_literals;

const std::string kFirstLine = "# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n";
const std::string kHeader = kFirstLine + "# GenApi persistence file (version 3.0.0)\n# Camera\n";

std::vector<std::string> LinesOf(const CFeatureBag& objBag) {
    std::vector<std::string> vecLine;
    EXPECT_EQ(objBag.GetNames().size(), objBag.GetValues().size());
    for (std::size_t i = 0; i < objBag.GetNames().size(); ++i) {
        vecLine.push_back(objBag.GetNames()[i].str() + "=" + objBag.GetValues()[i].str());
    }
    return vecLine;
}

TEST(FeatureBagText, AnyBodyIsReadUpToWhereItStopsBeingOne) {
    const std::string strLongName(kMaxNameLength, 'n');
    const struct {
        const char* What;
        std::string Text;
        std::vector<std::string> Lines;
    } kCases[] = {
        {"nothing behind the comments", kHeader, {}},
        {"lines in their order, the same name twice",
         kHeader + "Sel\tA\nGain\t1\nSel\tB\nGain\t2\n",
         {"Sel=A", "Gain=1", "Sel=B", "Gain=2"}},
        {"tabs, blanks, hashes and carriage returns in a value", kHeader + "A\t\t x \t# y\r\n", {"A=\t x \t# y\r"}},
        {"an empty value, an empty name", kHeader + "A\t\n\tB\n", {"A=", "=B"}},
        {"a last value that isn't even empty", kHeader + "A\t1\nB\t", {"A=1"}},
        {"comments between the lines", kHeader + "A\t1\n# B\t2\n#\nC\t3\n", {"A=1", "C=3"}},
        {"the longest comment", kFirstLine + "#" + std::string(1022, 'c') + "\nA\t1\n", {"A=1"}},
        {"a comment whose rest is a line", kFirstLine + "#" + std::string(1023, 'c') + "A\t1\nB\t2\n", {"A=1", "B=2"}},
        {"a zero byte at the end", kHeader + "A\t1\n\0"s, {"A=1"}},
        {"zero bytes within", kHeader + "A\t1\0002\n"s, {"A=1\0002"s}},
        {"the longest name", kHeader + strLongName + "\t1\nB\t2\n", {strLongName + "=1", "B=2"}},
        {"a name that is too long", kHeader + "A\t1\nn" + strLongName + "\t1\nB\t2\n", {"A=1"}},
        {"a first line that is too long", "# {05D8C294-F295-4dfb-9D01-096BD04049F4}" + strLongName + "\nA\t1\n", {}},
    };
    for (const auto& objCase : kCases) {
        std::istringstream stream(objCase.Text);
        CFeatureBag objBag;
        stream >> objBag;
        EXPECT_EQ(LinesOf(objBag), objCase.Lines) << objCase.What;
    }
}

TEST(FeatureBagText, AValueMayBeOfAnyLength) {
    const std::string strValue(3U << 20U, 'v');
    std::istringstream stream(kHeader + "A\t" + strValue + "\nB\t2\n");
    CFeatureBag objBag;
    stream >> objBag;
    EXPECT_THAT(LinesOf(objBag), ElementsAre("A=" + strValue, "B=2"));
}

TEST(FeatureBagText, WhatIsNoPersistenceStreamIsRefusedWithItsText) {
    const std::string strNoGuid =
        "The stream is not a GenApi feature stream since it is missing the magic GUID in the first line";
    const struct {
        std::string Text;
        std::string Error;
    } kCases[] = {
        {"", "The stream is eof"},
        {"\n" + kHeader, strNoGuid},
        {"# {05d8c294-f295-4dfb-9d01-096bd04049f4}\nA\t1\n", strNoGuid},
        {std::string(1000, ' ') + kHeader, strNoGuid},
    };
    for (const auto& objCase : kCases) {
        std::istringstream objGood(kHeader + "Old\t1\n");
        CFeatureBag objBag;
        objGood >> objBag;
        std::istringstream stream(objCase.Text);
        try {
            stream >> objBag;
            ADD_FAILURE() << objCase.Text;
        } catch (const RuntimeException& objError) {
            EXPECT_EQ(objError.GetDescription(), objCase.Error);
        }
        EXPECT_EQ(objBag.GetNames().empty(), objCase.Error == strNoGuid)
            << "only a stream with content replaces the bag's";
    }
}

// Several bodies may follow each other in one stream, each appended when the one before has been read.
TEST(FeatureBagText, AReaderLeavesTheStreamWhereTheNextBodyIsAppended) {
    std::stringstream stream;
    CFeatureBag objBag;
    for (const std::string strValue : {"1", "2", "3"}) {
        stream.clear();
        stream << kHeader << "A\t" << strValue << "\n\n";
        stream >> objBag;
        EXPECT_THAT(LinesOf(objBag), ElementsAre("A=" + strValue));
    }
}

TEST(FeatureBagText, WritingGivesTheHeaderAndTheLinesThatWereRead) {
    std::istringstream stream(kHeader + "#\nA\t1\n# B\nSel\t \tx\r\n");
    CFeatureBag objBag;
    stream >> objBag;
    std::ostringstream objWritten;
    objWritten.width(100);
    objWritten << objBag;
    EXPECT_EQ(objWritten.str(), kFirstLine + "# GenApi persistence file (version 3.0.0)\n# \nA\t1\nSel\t \tx\r\n");
    EXPECT_THAT(objBag.GetBagName().str(), IsEmpty());
}

}  // namespace
}  // namespace GenApi_3_0
