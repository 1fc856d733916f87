#include <cstdlib>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassLoadTL/CtiRetrival.h"
#include "support/Environment.h"
#include "tests/TLClass/TemporaryDirectory.h"
#include "tests/TLClass/Thrown.h"

namespace {

using testing::ElementsAre;

constexpr const char* kVariable = "GENICAM_GENTL64_PATH";

class ProducerSearch : public testing::Test {
protected:
    void TearDown() override { Unset(); }

    static void Unset() { unsetenv(kVariable); }  // NOLINT(concurrency-mt-unsafe): no other thread runs

    static void SearchIn(const std::string& strDirectories) { ASSERT_TRUE(SetEnvironment(kVariable, strDirectories)); }

    static void ExpectNothingIsFound(const std::vector<std::string>& vecFileName) {
        EXPECT_EQ(ThrownBy<CNotFoundTLError>([&] { CCtiRetrival::GetTLFilePaths(vecFileName); }),
                  "Not found TL library, ..\\..\\..\\TLClass\\TLClassLoadTL\\CtiRetrival(117) "
                  "CCtiRetrival::__GetFilePath");
    }

    CTemporaryDirectory m_objRoot;
};

TEST_F(ProducerSearch, UnsetVariableIsAnotherFailureThanAMissingProducer) {
    Unset();
    EXPECT_EQ(ThrownBy<CUnexpectedError>([] { CCtiRetrival::GetTLFilePaths({"a.cti"}); }),
              "Failed to get GenTL path, ..\\..\\..\\TLClass\\TLClassLoadTL\\CtiRetrival(58) "
              "CCtiRetrival::__GetTLDirectoryPath, -1");
}

TEST_F(ProducerSearch, NothingToSearchOrNothingToSeekFindsNothing) {
    m_objRoot.MakeFile("a.cti");
    for (const std::string& strDirectories :
         {std::string(), std::string(":"), std::string(":::"), m_objRoot.Path("missing"), " " + m_objRoot.Path("")}) {
        SearchIn(strDirectories);
        ExpectNothingIsFound({"a.cti"});
    }
    SearchIn(m_objRoot.Path(""));
    ExpectNothingIsFound({});
    ExpectNothingIsFound({"A.CTI", "b.cti"});
}

TEST_F(ProducerSearch, EarliestDirectoryWinsForEachNameByItself) {
    const std::string strFirst = m_objRoot.MakeDirectory("first");
    const std::string strSecond = m_objRoot.MakeDirectory("second");
    const std::string strThird = m_objRoot.MakeDirectory("third");
    for (const char* pFile : {"second/a.cti", "third/a.cti", "first/b.cti", "third/deeper"}) {
        m_objRoot.MakeFile(pFile);
    }
    m_objRoot.MakeDirectory("second/below");
    m_objRoot.MakeFile("second/below/c.cti");
    SearchIn(strFirst + ":" + m_objRoot.Path("missing") + "::" + strSecond + ":" + strThird + ":");

    // In the order of the names, not of the directories; what isn't there is passed over, also one directory deeper.
    EXPECT_THAT(CCtiRetrival::GetTLFilePaths({"a.cti", "c.cti", "b.cti"}),
                ElementsAre(strSecond + "/a.cti", strFirst + "/b.cti"));
    EXPECT_THAT(CCtiRetrival::GetTLFilePaths({"a.cti", "b.cti", "a.cti"}),
                ElementsAre(strSecond + "/a.cti", strFirst + "/b.cti", strSecond + "/a.cti"));
}

TEST_F(ProducerSearch, DirectoryOfTheNameSoughtCountsAsFound) {
    const std::string strFirst = m_objRoot.MakeDirectory("first");
    const std::string strSecond = m_objRoot.MakeDirectory("second");
    m_objRoot.MakeDirectory("first/a.cti");
    m_objRoot.MakeFile("second/a.cti");
    SearchIn(strFirst + ":" + strSecond);
    EXPECT_THAT(CCtiRetrival::GetTLFilePaths({"a.cti"}), ElementsAre(strFirst + "/a.cti"));
}

}  // namespace
