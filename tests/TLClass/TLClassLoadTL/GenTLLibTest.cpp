#include <memory>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "support/ZrException.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/TLClassLoadTL/StolenModule.h"
#include "tests/TLClass/TemporaryDirectory.h"

namespace {

using testing::Each;
using testing::ElementsAre;

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

std::vector<GC_ERROR> NumbersFrom(GC_ERROR nBase) {
    std::vector<GC_ERROR> vecNumber(kEntryNames.size());
    std::iota(vecNumber.begin(), vecNumber.end(), nBase);
    return vecNumber;
}

TEST(ProducerLibrary, EveryMemberReachesTheEntryOfItsName) {
    CCollectedLog objLog;
    const CGenTLLib objLib(NUMBERED_PRODUCER_1000);
    ASSERT_EQ(kEntryNames.size(), 56U);
    EXPECT_EQ(CallAllEntries(objLib), NumbersFrom(1000));
    EXPECT_TRUE(objLog.Take().empty());
}

TEST(ProducerLibrary, LibraryWithoutEntriesLoadsWithALineForEachAndAnswersMinusOne) {
    CCollectedLog objLog;
    const CGenTLLib objLib(NO_ENTRIES);
    std::vector<std::string> vecExpected = kEntryNames;
    for (std::string& strLine : vecExpected) {
        strLine.insert(0, "Failed to get ProcAddress ");
    }
    EXPECT_EQ(objLog.Take(), vecExpected);
    EXPECT_THAT(CallAllEntries(objLib), Each(-1));
    EXPECT_EQ(objLib.FindFunction("GCReadPort"), nullptr);
    EXPECT_TRUE(objLog.Take().empty());
}

TEST(ProducerLibrary, WhatIsNoLibraryIsThrownBackWithItsPath) {
    const CTemporaryDirectory objRoot;
    for (const std::string& strPath : {objRoot.MakeFile("text.cti", "no library"), objRoot.MakeFile("empty.cti"),
                                       objRoot.MakeDirectory("dir.cti"), objRoot.Path("missing.cti"), std::string()}) {
        try {
            const CGenTLLib objLib(strPath);
            ADD_FAILURE() << strPath;
        } catch (const CUnexpectedError& objError) {
            EXPECT_EQ(objError.GetErrorCode(), -1);
            EXPECT_EQ(objError.GetMessage(), "Failed to load file " + strPath + "\n");
            EXPECT_EQ(objError.GetFunction(), "CGenTLLib::CGenTLLib");
            EXPECT_EQ(objError.GetFile(), "..\\..\\..\\TLClass\\TLClassLoadTL\\GenTLLib");
            EXPECT_EQ(objError.GetLine(), 38);
        }
    }
}

TEST(ProducerLibrary, FindsFiveFunctionsByNameAndNoOther) {
    const CGenTLLib objLib(NUMBERED_PRODUCER_1000);
    std::vector<std::string> vecFound;
    for (const std::string& strName : kEntryNames) {
        if (objLib.FindFunction(strName) != nullptr) {
            vecFound.push_back(strName);
        }
    }
    EXPECT_THAT(vecFound,
                ElementsAre("GCGetLastError", "GCReadPort", "GCWritePort", "GCReadPortStacked", "GCWritePortStacked"));
    const auto pReadPort = reinterpret_cast<PGCReadPort>(objLib.FindFunction("GCReadPort"));
    EXPECT_EQ(pReadPort(nullptr, 0, nullptr, nullptr), objLib.GCReadPort(nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(objLib.FindFunction("gcreadport"), nullptr);
    EXPECT_EQ(objLib.FindFunction(""), nullptr);
}

TEST(ProducerLibrary, TwoProducersAtOnceKeepApartAndUnloadInEitherOrder) {
    for (const bool bFirstGoesFirst : {true, false}) {
        auto pFirst = std::make_unique<CGenTLLib>(NUMBERED_PRODUCER_1000);
        auto pSecond = std::make_unique<CGenTLLib>(NUMBERED_PRODUCER_2000);
        EXPECT_EQ(CallAllEntries(*pFirst), NumbersFrom(1000));
        EXPECT_EQ(CallAllEntries(*pSecond), NumbersFrom(2000));
        (bFirstGoesFirst ? pFirst : pSecond).reset();
        if (bFirstGoesFirst) {
            EXPECT_EQ(CallAllEntries(*pSecond), NumbersFrom(2000));
        } else {
            EXPECT_EQ(CallAllEntries(*pFirst), NumbersFrom(1000));
        }
    }
}

TEST(ProducerLibrary, MembersMayBeCalledFromManyThreads) {
    const CGenTLLib objLib(NUMBERED_PRODUCER_1000);
    std::vector<std::thread> vecThread(4);
    for (std::thread& objThread : vecThread) {
        objThread = std::thread([&objLib] { EXPECT_EQ(CallAllEntries(objLib), NumbersFrom(1000)); });
    }
    for (std::thread& objThread : vecThread) {
        objThread.join();
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

TEST(DynamicLibrary, AnswersBySayingWhatItHolds) {
    CDynamicLibrary objLibrary;
    CCollectedLog objLog;
    EXPECT_TRUE(objLibrary.Free());
    EXPECT_EQ(objLibrary.GetFunction("NotAnEntry"), nullptr);
    EXPECT_TRUE(objLog.Take().empty());

    EXPECT_FALSE(objLibrary.Load("/nowhere/a.cti"));
    EXPECT_TRUE(objLibrary.Load(NO_ENTRIES));
    EXPECT_FALSE(objLibrary.Load(NUMBERED_PRODUCER_1000));
    EXPECT_NE(objLibrary.GetFunction("NotAnEntry"), nullptr);
    EXPECT_EQ(objLibrary.GetFunction("TLOpen"), nullptr);
    EXPECT_THAT(objLog.Take(), ElementsAre("Failed to get ProcAddress TLOpen"));

    EXPECT_TRUE(objLibrary.Free());
    EXPECT_EQ(objLibrary.GetFunction("NotAnEntry"), nullptr);
    EXPECT_TRUE(objLibrary.Load(NUMBERED_PRODUCER_1000));
    EXPECT_NE(objLibrary.GetFunction("TLOpen"), nullptr);
}

}  // namespace
