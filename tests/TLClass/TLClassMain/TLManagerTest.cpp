#include <cstdlib>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Environment.h"
#include "tests/TLClass/Thrown.h"
#include "tests/TLClass/TreeOnDouble.h"

/// Reaches the one operation of the manager that nothing calls yet.
class CTLManagerInspection {
public:
    static void SetGenICamEnvironment(const char* pSource, const char* pTarget) {
        CTLManager::__SetGenICamEnvironment(pSource, pTarget);
    }
};

namespace {

using ProducerDouble::CProducerLibrary;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

constexpr const char* kCacheVariable = "GENICAM_CACHE_V3_0";

void Unset(const char* pName) {
    unsetenv(pName);  // NOLINT(concurrency-mt-unsafe): no other thread runs
}

TEST(Manager, BringsAProducerUpAndDownAgain) {
    const CTreeOnDouble objTree;
    EXPECT_EQ(GetTLManager(), &objTree.Manager());
    for (int nRound = 0; nRound < 2; ++nRound) {
        objTree.Init();
        ASSERT_THAT(GetTLManager()->GetTLList(), SizeIs(1));
        EXPECT_TRUE(objTree.Double().IsInitialised());
        EXPECT_TRUE(objTree.TL()->IsOpened());
        EXPECT_EQ(objTree.TL()->GetGevTLInfo().VersionMajor, 2);
        EXPECT_EQ(objTree.TL()->GetTLInformation().Name, "Double.cti");

        objTree.Double().ClearCalls();
        GetTLManager()->DoUninit();
        EXPECT_THAT(GetTLManager()->GetTLList(), IsEmpty());
        EXPECT_EQ(objTree.Double().Count("TLClose"), 1U);
        EXPECT_EQ(objTree.Double().Count("GCCloseLib"), 1U);
    }
    GetTLManager()->DoUninit();
    EXPECT_EQ(objTree.Double().Count("GCCloseLib"), 1U) << "a second DoUninit does nothing";
}

TEST(Manager, RefusesASecondInitAndKeepsWhatTheFirstLoaded) {
    const CTreeOnDouble objTree;
    objTree.Init();
    const auto pTL = objTree.TL();
    EXPECT_THAT(ThrownBy<CUnexpectedError>([&] { objTree.Init(); }),
                MatchesRegex("Can not initialize again without uninitialization, .* CTLManager::DoInit, -1"));
    EXPECT_EQ(objTree.TL(), pTL);
    EXPECT_TRUE(objTree.AddInterface("if-1"));
}

TEST(Manager, WithoutAnyProducerStaysEmpty) {
    const CTreeOnDouble objTree;
    EXPECT_THROW(objTree.Manager().DoInit({"Missing.cti"}), CNotFoundTLError);
    EXPECT_THAT(objTree.Manager().GetTLList(), IsEmpty());
    objTree.Init();  // which a flag left set would refuse
    EXPECT_THAT(objTree.Manager().GetTLList(), SizeIs(1));
}

TEST(Manager, KeepsTheProducersBeforeTheOneThatFailsAndUndoesThatOne) {
    const struct {
        const char* pszFile;
        const char* pszFailing;  // an entry of the second producer
        std::vector<std::string> vecUndone;
    } arrCase[] = {
        {"NoLibrary.cti", nullptr, {}},
        {"Second.cti", "GCInitLib", {}},
        {"Second.cti", "TLOpen", {"GCCloseLib"}},
        {"Second.cti", "GCGetNumPortURLs", {"TLClose", "GCCloseLib"}},
        {"Second.cti", "GCReadPort", {"TLClose", "GCCloseLib"}},
        {"Second.cti", "GCGetPortInfo", {"TLClose", "GCCloseLib"}},
    };
    for (const auto& objCase : arrCase) {
        SCOPED_TRACE(objCase.pszFailing == nullptr ? objCase.pszFile : objCase.pszFailing);
        const CTreeOnDouble objTree;
        const CProducerLibrary objSecond(PRODUCER_DOUBLE_SECOND);
        if (objCase.pszFailing != nullptr) {
            objSecond->On(objCase.pszFailing).Fail(GC_ERR_IO);
        }
        EXPECT_THROW(objTree.Manager().DoInit({"ZrGVTL.cti", objCase.pszFile}), CUnexpectedError);

        ASSERT_THAT(objTree.Manager().GetTLList(), SizeIs(1));
        EXPECT_TRUE(objTree.TL()->IsOpened());
        EXPECT_FALSE(objSecond->IsInitialised());
        EXPECT_THAT(objSecond->OpenModules(), IsEmpty());
        for (const std::string& strEntry : objCase.vecUndone) {
            EXPECT_EQ(objSecond->Count(strEntry), 1U) << strEntry;
        }
        objTree.Manager().DoUninit();  // isn't initialised, so what was loaded stays loaded
        EXPECT_THAT(objTree.Manager().GetTLList(), SizeIs(1));
        EXPECT_TRUE(objTree.Double().IsInitialised());
    }
}

TEST(Manager, ChoosesTheClassOfATransportLayerByItsTypeToTheLetter) {
    for (const char* pszType : {"GEV", "gev", "GEV ", "U3V", ""}) {
        const CTreeOnDouble objTree;
        objTree.Double().SetInfo(TL_INFO_TLTYPE, ProducerDouble::ANSWER::Text(pszType));
        objTree.Init();
        EXPECT_EQ(objTree.TL() != nullptr, std::string(pszType) == "GEV") << pszType;
    }
}

TEST(Manager, AddsAndRemovesSingleProducersAtTheEndOfItsList) {
    const CTreeOnDouble objTree;
    const CProducerLibrary objSecond(PRODUCER_DOUBLE_SECOND);
    objTree.Manager().DoInit({"ZrGVTL.cti"});
    objTree.Manager().AddTL("Second.cti");
    const auto vecTL = objTree.Manager().GetTLList();
    ASSERT_THAT(vecTL, SizeIs(2));
    EXPECT_TRUE(objSecond->IsInitialised());
    EXPECT_EQ(FindTL(vecTL[1].get()), vecTL[1]);

    objTree.Manager().RemoveLastTL();
    EXPECT_FALSE(objSecond->IsInitialised());
    EXPECT_TRUE(objTree.Double().IsInitialised());
    EXPECT_FALSE(FindTL(vecTL[1].get()));
    objTree.Manager().RemoveLastTL();
    objTree.Manager().RemoveLastTL();
    EXPECT_THAT(objTree.Manager().GetTLList(), IsEmpty());
}

TEST(Manager, GivesTheNodeMapsADirectoryForTheirCache) {
    const CTreeOnDouble objTree;
    const std::string strCache = objTree.Directory().Path("profile") + "/Orvane/xml/cache";
    SetEnvironment(kCacheVariable, "inherited");
    objTree.Init();
    EXPECT_EQ(ReadEnvironment(kCacheVariable), strCache);
    EXPECT_TRUE(PathExists(strCache));
    objTree.Manager().DoUninit();

    Unset("ALLUSERSPROFILE");
    SetEnvironment(kCacheVariable, "inherited");
    objTree.Init();
    EXPECT_EQ(ReadEnvironment(kCacheVariable), "inherited");
    objTree.Manager().DoUninit();

    objTree.Directory().MakeFile("file");
    SetEnvironment("ALLUSERSPROFILE", objTree.Directory().Path("file"));
    EXPECT_ANY_THROW(objTree.Init());
    EXPECT_THAT(objTree.Manager().GetTLList(), IsEmpty()) << "the refusal comes before the search";
}

TEST(Manager, CopiesAVariableOrSaysWhichHalfFailed) {
    SetEnvironment("NORVIK_TEST_SOURCE", "value");
    CTLManagerInspection::SetGenICamEnvironment("NORVIK_TEST_SOURCE", "NORVIK_TEST_TARGET");
    EXPECT_EQ(ReadEnvironment("NORVIK_TEST_TARGET"), "value");
    const auto Thrown = [](const char* pszSource, const char* pszTarget) {
        return ThrownBy<CUnexpectedError>([&] { CTLManagerInspection::SetGenICamEnvironment(pszSource, pszTarget); });
    };
    EXPECT_THAT(Thrown("NORVIK_TEST_MISSING", "NORVIK_TEST_TARGET"),
                MatchesRegex("Failed to get environment, .*.424. CTLManager::__SetGenICamEnvironment, .*"));
    EXPECT_THAT(Thrown("NORVIK_TEST_SOURCE", "A=B"),
                MatchesRegex("Failed to set environment, .*.430. CTLManager::__SetGenICamEnvironment, .*"));
}

}  // namespace
