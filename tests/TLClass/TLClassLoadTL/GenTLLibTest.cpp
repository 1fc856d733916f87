#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/TLClassLoadTL/StolenModule.h"
#include "tests/TLClass/TemporaryDirectory.h"
#include "tests/TLClass/Thrown.h"
#include "tests/producer_double/ProducerLibrary.h"

namespace {

using ProducerDouble::CProducerLibrary;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const std::vector<std::string> kEntryNames = {
#define ENTRY_NAME(NAME, PARAMETERS) #NAME,
    GENTL_ENTRIES(ENTRY_NAME)
#undef ENTRY_NAME
};

template <typename... ARGUMENTS>
GC_ERROR CallWithZeros(const CGenTLEntry<GC_ERROR (*)(ARGUMENTS...)>& fnEntry) {
    return fnEntry(ARGUMENTS{}...);
}

/// What all 56 members answer, in the order of the table.
std::vector<GC_ERROR> CallAllEntries(const CGenTLLib& objLib) {
    return {
#define CALL_ENTRY(NAME, PARAMETERS) CallWithZeros(objLib.NAME),
        GENTL_ENTRIES(CALL_ENTRY)
#undef CALL_ENTRY
    };
}

std::vector<std::string> EntriesCalled(const CProducerLibrary& objDouble) {
    std::vector<std::string> vecName;
    for (const ProducerDouble::CALL& objCall : objDouble->Calls()) {
        vecName.push_back(objCall.strEntry);
    }
    return vecName;
}

TEST(ProducerLibrary, EveryMemberReachesTheEntryOfItsName) {
    const CProducerLibrary objDouble(PRODUCER_DOUBLE);
    CCollectedLog objLog;
    const CGenTLLib objLib(PRODUCER_DOUBLE);
    ASSERT_EQ(kEntryNames.size(), 56U);
    EXPECT_THAT(CallAllEntries(objLib), Not(Contains(-1)));
    EXPECT_EQ(EntriesCalled(objDouble), kEntryNames);
    EXPECT_THAT(objLog.Take(), IsEmpty());
}

TEST(ProducerLibrary, LibraryWithoutEntriesLoadsWithALineForEachAndAnswersMinusOne) {
    CCollectedLog objLog;
    const CGenTLLib objLib(PRODUCER_DOUBLE_WITHOUT_EXPORTS);
    std::vector<std::string> vecExpected = kEntryNames;
    for (std::string& strLine : vecExpected) {
        strLine.insert(0, "Failed to get ProcAddress ");
    }
    EXPECT_EQ(objLog.Take(), vecExpected);
    EXPECT_THAT(CallAllEntries(objLib), Each(-1));
    EXPECT_EQ(objLib.FindFunction("GCReadPort"), nullptr);
    EXPECT_THAT(objLog.Take(), IsEmpty());
}

TEST(ProducerLibrary, WhatIsNoLibraryIsThrownBackWithItsPath) {
    const CTemporaryDirectory objRoot;
    for (const std::string& strPath : {std::string(PRODUCER_DOUBLE_NO_LIBRARY), objRoot.MakeFile("empty.cti"),
                                       objRoot.MakeDirectory("dir.cti"), objRoot.Path("missing.cti"), std::string()}) {
        EXPECT_EQ(ThrownBy<CUnexpectedError>([&] { const CGenTLLib objLib(strPath); }),
                  "Failed to load file " + strPath +
                      "\n, ..\\..\\..\\TLClass\\TLClassLoadTL\\GenTLLib(38) CGenTLLib::CGenTLLib, -1");
    }
}

TEST(ProducerLibrary, FindsFiveFunctionsByNameAndNoOther) {
    const std::vector<std::string> vecName = {"GCGetLastError", "GCReadPort", "GCWritePort", "GCReadPortStacked",
                                              "GCWritePortStacked"};
    const CProducerLibrary objDouble(PRODUCER_DOUBLE);
    const CGenTLLib objLib(PRODUCER_DOUBLE);
    std::vector<std::string> vecFound;
    std::copy_if(kEntryNames.begin(), kEntryNames.end(), std::back_inserter(vecFound),
                 [&](const std::string& strName) { return objLib.FindFunction(strName) != nullptr; });
    EXPECT_EQ(vecFound, vecName);
    for (const std::string& strName : vecName) {
        const auto pExpected = objDouble.Entry<CDynamicLibrary::FUNCTION>(strName.c_str());
        EXPECT_EQ(objLib.FindFunction(strName), pExpected) << strName;
    }
    EXPECT_EQ(objLib.FindFunction("gcreadport"), nullptr);
}

TEST(ProducerLibrary, TwoProducersAtOnceKeepApartAndUnloadInEitherOrder) {
    for (const bool bFirstGoesFirst : {true, false}) {
        std::unique_ptr<CGenTLLib> arrLib[] = {std::make_unique<CGenTLLib>(PRODUCER_DOUBLE),
                                               std::make_unique<CGenTLLib>(PRODUCER_DOUBLE_SECOND)};
        const char* const arrFile[] = {PRODUCER_DOUBLE, PRODUCER_DOUBLE_SECOND};
        // One is initialised and the other isn't, although both have the same code.
        EXPECT_EQ(arrLib[0]->GCInitLib(), GC_ERR_SUCCESS);
        TL_HANDLE hTL = nullptr;
        EXPECT_EQ(arrLib[1]->TLOpen(&hTL), GC_ERR_NOT_INITIALIZED);
        EXPECT_EQ(arrLib[0]->TLOpen(&hTL), GC_ERR_SUCCESS);
        EXPECT_EQ(arrLib[0]->TLClose(hTL), GC_ERR_SUCCESS);
        EXPECT_EQ(arrLib[0]->GCCloseLib(), GC_ERR_SUCCESS);

        const int nFirst = bFirstGoesFirst ? 0 : 1;
        arrLib[nFirst].reset();
        EXPECT_FALSE(CProducerLibrary::IsLoaded(arrFile[nFirst]));
        EXPECT_EQ(arrLib[1 - nFirst]->GCInitLib(), GC_ERR_SUCCESS);
        EXPECT_EQ(arrLib[1 - nFirst]->GCCloseLib(), GC_ERR_SUCCESS);
        arrLib[1 - nFirst].reset();
        EXPECT_FALSE(CProducerLibrary::IsLoaded(arrFile[1 - nFirst]));
    }
}

TEST(ProducerLibrary, FailedUnloadIsOneLineInTheLog) {
    CCollectedLog objLog;
    {
        const CGenTLLib objLib(LINKED_LIBRARY);
        CloseBehindTheBackOfItsOwner(LINKED_LIBRARY);
        objLog.Take();
    }
    EXPECT_THAT(objLog.Take(), ElementsAre("FreeLibrary failed"));
}

}  // namespace
