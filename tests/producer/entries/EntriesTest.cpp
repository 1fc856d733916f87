// The library as any consumer of the C interface meets it: what it exports, its handles, its sizes, its errors.

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <future>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "tests/producer/entries/ProducerTest.h"

namespace {

TEST(ProducerLibrary, ExportsTheEntriesOfTheTableAndNothingElse) {
    std::set<std::string> setWanted;
#define NORVIK_NAME(name, parameters) setWanted.insert(#name);
    GENTL_ENTRIES(NORVIK_NAME)
#undef NORVIK_NAME
    ASSERT_EQ(setWanted.size(), 56u);
    const std::unique_ptr<FILE, int (*)(FILE*)> pOutput(popen("nm -D --defined-only " PRODUCER_CTI, "r"), pclose);
    ASSERT_TRUE(pOutput);
    std::set<std::string> setExported;
    std::array<char, 512> arrLine{};
    while (fgets(arrLine.data(), arrLine.size(), pOutput.get()) != nullptr) {
        std::string strLine(arrLine.data());
        strLine.erase(strLine.find_last_not_of('\n') + 1);
        setExported.insert(strLine.substr(strLine.rfind(' ') + 1));
    }
    EXPECT_EQ(setExported, setWanted);
}

class Entries : public ProducerTest {};

TEST_F(Entries, AreReadyBetweenInitAndClose) {
    TL_HANDLE hTL = nullptr;
    EXPECT_EQ(Lib().GCInitLib(), GC_ERR_RESOURCE_IN_USE);
    ASSERT_EQ(Lib().TLOpen(&hTL), GC_ERR_SUCCESS);
    TL_HANDLE hSecond = nullptr;
    EXPECT_EQ(Lib().TLOpen(&hSecond), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(Lib().GCCloseLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(Lib().TLOpen(&hTL), GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(LastError(), "-1002 TLOpen: GCInitLib wasn't called");
    EXPECT_EQ(Lib().GCCloseLib(), GC_ERR_NOT_INITIALIZED);
    size_t nSize = 0;
    EXPECT_EQ(Lib().GCGetInfo(TL_INFO_TLTYPE, nullptr, nullptr, &nSize), GC_ERR_SUCCESS) << "needs no GCInitLib";
    EXPECT_EQ(Lib().GCInitLib(), GC_ERR_SUCCESS);
    std::uint32_t nCount = 0;
    EXPECT_EQ(Lib().TLGetNumInterfaces(hTL, &nCount), GC_ERR_INVALID_HANDLE) << "closed with the library";
}

TEST_F(Entries, KeepTheLastErrorOfEachThread) {
    EXPECT_EQ(Lib().TLClose(nullptr), GC_ERR_INVALID_HANDLE);
    std::string strOther;
    std::thread([&] { strOther = LastError(); }).join();
    EXPECT_EQ(strOther, "0 No error");
    char szShort[4] = {};
    size_t nSize = sizeof(szShort);
    EXPECT_EQ(Lib().GCGetLastError(nullptr, szShort, &nSize), GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(LastError(), "-1006 TLClose: the handle is null") << "asking with too little room doesn't lose it";
}

TEST_F(Entries, KnowForeignClosedAndMismatchedHandles) {
    TL_HANDLE hTL = OpenSystem();
    IF_HANDLE hInterface = OpenInterface(hTL);
    EVENT_HANDLE hEvent = nullptr;
    EXPECT_EQ(Lib().GCRegisterEvent(hInterface, EVENT_NEW_BUFFER, &hEvent), GC_ERR_NOT_IMPLEMENTED);
    IF_HANDLE hClosed = OpenInterface(hTL, 1);
    ASSERT_EQ(Lib().IFClose(hClosed), GC_ERR_SUCCESS);
    IF_HANDLE hReopened = OpenInterface(hTL, 1);
    EXPECT_NE(hClosed, hReopened) << "a handle isn't used twice";
    int nLocal = 0;
    std::uint32_t nCount = 0;
    for (void* hWrong : {static_cast<void*>(nullptr), static_cast<void*>(&nLocal), reinterpret_cast<void*>(~0ull),
                         reinterpret_cast<void*>(1ull), hClosed, hTL}) {
        EXPECT_EQ(Lib().IFGetNumDevices(hWrong, &nCount), GC_ERR_INVALID_HANDLE);
        EXPECT_EQ(Lib().IFClose(hWrong), GC_ERR_INVALID_HANDLE);
        EXPECT_EQ(Lib().EventKill(hWrong), GC_ERR_INVALID_HANDLE);
        EXPECT_EQ(Lib().DSStartAcquisition(hWrong, 0, 1), GC_ERR_INVALID_HANDLE);
    }
    EXPECT_EQ(Lib().TLGetNumInterfaces(hTL, &nCount), GC_ERR_SUCCESS) << "closing it as an interface left it open";
    EXPECT_EQ(Lib().IFGetNumDevices(hReopened, nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(Lib().TLClose(hTL), GC_ERR_SUCCESS);
    EXPECT_EQ(Lib().IFGetNumDevices(hInterface, &nCount), GC_ERR_INVALID_HANDLE) << "closed with its parent";
}

TEST_F(Entries, HandOutEveryInfoByTheSizeProtocol) {
    TL_HANDLE hTL = OpenSystem();
    IF_HANDLE hInterface = OpenInterface(hTL);
    const std::string strId = InterfaceId(hTL, 0);
    using Ask = std::function<GC_ERROR(std::int32_t, INFO_DATATYPE*, void*, size_t*)>;
    const auto funIgnoreType = [](auto funAsk) {
        return [=](std::int32_t, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
            *pType = INFO_DATATYPE_STRING;
            return funAsk(static_cast<char*>(pBuffer), pSize);
        };
    };
    const std::vector<std::tuple<const char*, std::int32_t, Ask>> vecCase = {
        {"GCGetInfo", TL_INFO_GENTL_VER_MINOR, [&](auto... a) { return Lib().GCGetInfo(a...); }},
        {"TLGetInfo", TL_INFO_GENTL_VER_MINOR, [&](auto... a) { return Lib().TLGetInfo(hTL, a...); }},
        {"TLGetInterfaceInfo", INTERFACE_INFO_TLTYPE,
         [&](auto... a) { return Lib().TLGetInterfaceInfo(hTL, strId.c_str(), a...); }},
        {"IFGetInfo", INTERFACE_INFO_TLTYPE, [&](auto... a) { return Lib().IFGetInfo(hInterface, a...); }},
        {"GCGetPortInfo", PORT_INFO_PORTNAME, [&](auto... a) { return Lib().GCGetPortInfo(hInterface, a...); }},
        {"TLGetInterfaceID", 0, funIgnoreType([&](auto... a) { return Lib().TLGetInterfaceID(hTL, 0, a...); })},
        {"GCGetPortURL", 0, funIgnoreType([&](auto... a) { return Lib().GCGetPortURL(hTL, a...); })},
    };
    for (const auto& [pszEntry, nLastCommand, funAsk] : vecCase) {
        for (std::int32_t nCommand = 0; nCommand <= nLastCommand; ++nCommand) {
            SCOPED_TRACE(std::string(pszEntry) + " " + std::to_string(nCommand));
            INFO_DATATYPE nType = INFO_DATATYPE_UNKNOWN;
            size_t nNeeded = 0;
            ASSERT_EQ(funAsk(nCommand, &nType, nullptr, &nNeeded), GC_ERR_SUCCESS) << LastError();
            ASSERT_GT(nNeeded, 0u);
            EXPECT_NE(nType, INFO_DATATYPE_UNKNOWN);
            std::vector<char> vecBuffer(nNeeded + 8, '#');
            size_t nSize = nNeeded - 1;
            EXPECT_EQ(funAsk(nCommand, &nType, vecBuffer.data(), &nSize), GC_ERR_BUFFER_TOO_SMALL);
            EXPECT_EQ(vecBuffer, std::vector<char>(nNeeded + 8, '#')) << "nothing is written";
            nSize = vecBuffer.size();
            EXPECT_EQ(funAsk(nCommand, &nType, vecBuffer.data(), &nSize), GC_ERR_SUCCESS);
            EXPECT_EQ(nSize, nNeeded);
            EXPECT_TRUE(std::all_of(vecBuffer.begin() + static_cast<std::ptrdiff_t>(nNeeded), vecBuffer.end(),
                                    [](char nChar) { return nChar == '#'; }));
            if (nType == INFO_DATATYPE_STRING) {
                EXPECT_EQ(vecBuffer[nNeeded - 1], '\0');
            }
            EXPECT_EQ(funAsk(nCommand, &nType, vecBuffer.data(), nullptr), GC_ERR_INVALID_PARAMETER);
        }
    }
    std::array<char, 4096> arrPath{};
    size_t nSize = arrPath.size();
    ASSERT_EQ(Lib().TLGetInfo(hTL, TL_INFO_PATHNAME, nullptr, arrPath.data(), &nSize), GC_ERR_SUCCESS);
    EXPECT_EQ(arrPath[0], '/') << arrPath.data() << " is whole, also of a library loaded by a relative path";
    EXPECT_EQ(Lib().TLGetInfo(hTL, 999, nullptr, nullptr, &nSize), GC_ERR_NOT_AVAILABLE);
}

TEST_F(Entries, CloseEndsAnUpdateHoweverFarItIs) {
    TL_HANDLE hTL = OpenSystem();
    const auto tStart = std::chrono::steady_clock::now();
    constexpr int kRounds = 10;
    for (int nRound = 0; nRound < kRounds; ++nRound) {
        IF_HANDLE hInterface = OpenInterface(hTL);
        std::promise<void> objStarted;
        std::future<GC_ERROR> objUpdate = std::async(std::launch::async, [&] {
            objStarted.set_value();
            return Lib().IFUpdateDeviceList(hInterface, nullptr, 60'000);
        });
        objStarted.get_future().wait();
        EXPECT_EQ(nRound + 1 < kRounds ? Lib().IFClose(hInterface) : Lib().GCCloseLib(), GC_ERR_SUCCESS);
        const GC_ERROR nResult = objUpdate.get();
        EXPECT_TRUE(nResult == GC_ERR_ABORT || nResult == GC_ERR_INVALID_HANDLE || nResult == GC_ERR_NOT_INITIALIZED)
            << nResult;
    }
    EXPECT_LT(std::chrono::steady_clock::now() - tStart, std::chrono::seconds(kRounds) / 2) << "a whole one takes 1 s";
}

TEST_F(Entries, BearOpeningReadingAndClosingFromManyThreads) {
    TL_HANDLE hTL = OpenSystem();
    const std::string strId = InterfaceId(hTL, 0);
    std::vector<std::thread> vecThread;
    std::atomic<int> nOpened = 0;
    for (int i = 0; i < 4; ++i) {
        vecThread.emplace_back([&] {
            for (int nRound = 0; nRound < 200; ++nRound) {
                IF_HANDLE hInterface = nullptr;
                if (Lib().TLOpenInterface(hTL, strId.c_str(), &hInterface) != GC_ERR_SUCCESS) {
                    continue;
                }
                ++nOpened;
                std::array<char, 64> arrData{};
                size_t nSize = arrData.size();
                EXPECT_EQ(Lib().GCReadPort(hInterface, 0x1000, arrData.data(), &nSize), GC_ERR_SUCCESS) << LastError();
                bool8_t bChanged = 0;
                Lib().TLUpdateInterfaceList(hTL, &bChanged, 0);
                EXPECT_EQ(Lib().IFClose(hInterface), GC_ERR_SUCCESS) << LastError();
            }
        });
    }
    for (std::thread& objThread : vecThread) {
        objThread.join();
    }
    EXPECT_GT(nOpened, 0);
}

}  // namespace
