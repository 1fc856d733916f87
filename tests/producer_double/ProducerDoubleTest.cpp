// Of the double only what the tests above it would pass without: lies that must be those scripted, conditions that must
// hit no other call, handles that must not outlive their module.

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/producer_double/ProducerLibrary.h"

namespace ProducerDouble {
namespace {

class ProducerDoubleTest : public testing::Test {
protected:
    ProducerDoubleTest() {
#define FETCH(name, parameters) name = m_objLibrary.Entry<P##name>(#name);
        GENTL_ENTRIES(FETCH)
#undef FETCH
    }

    IProducerControl& Producer() {
        return *m_objLibrary;
    }

    /// Two cameras, "cam-1" and "cam-2", on an interface that is open and up to date.
    IF_HANDLE OpenInterface() {
        Producer().AddInterface("if-1").Plug("cam-1");
        Producer().Interface("if-1").Plug("cam-2");
        TL_HANDLE hTL = nullptr;
        IF_HANDLE hInterface = nullptr;
        EXPECT_EQ(GCInitLib(), GC_ERR_SUCCESS);
        EXPECT_EQ(TLOpen(&hTL), GC_ERR_SUCCESS);
        EXPECT_EQ(TLUpdateInterfaceList(hTL, nullptr, 0), GC_ERR_SUCCESS);
        EXPECT_EQ(TLOpenInterface(hTL, "if-1", &hInterface), GC_ERR_SUCCESS);
        EXPECT_EQ(IFUpdateDeviceList(hInterface, nullptr, 0), GC_ERR_SUCCESS);
        return hInterface;
    }

    CProducerLibrary m_objLibrary{PRODUCER_DOUBLE};
#define MEMBER(name, parameters) P##name name = nullptr;
    GENTL_ENTRIES(MEMBER)
#undef MEMBER
};

TEST_F(ProducerDoubleTest, AnswersFollowTheSizeProtocolOrLieAboutItAsScripted) {
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
        Producer().SetInfo(TL_INFO_VENDOR, objCase.objAnswer);
        std::size_t nSize = 99;
        EXPECT_EQ(GCGetInfo(TL_INFO_VENDOR, nullptr, nullptr, &nSize), objCase.nAskResult);
        EXPECT_EQ(nSize, objCase.nAsked);
        std::string strBuffer = "####";
        nSize = strBuffer.size();
        EXPECT_EQ(GCGetInfo(TL_INFO_VENDOR, nullptr, strBuffer.data(), &nSize), objCase.nGiveResult);
        EXPECT_EQ(nSize, objCase.nGiven);
        EXPECT_EQ(strBuffer, objCase.strBuffer);
    }
}

TEST_F(ProducerDoubleTest, RulesChangeExactlyTheCallsThatTheirConditionsName) {
    const IF_HANDLE hInterface = OpenInterface();
    Producer().On("IFOpenDevice").For("cam-1").Call(2).Fail(GC_ERR_ACCESS_DENIED);
    Producer().ClearCalls();
    std::vector<GC_ERROR> vecResult;
    for (const char* pszId : {"cam-2", "cam-1", "cam-1", "cam-1"}) {
        DEV_HANDLE hDevice = nullptr;
        vecResult.push_back(IFOpenDevice(hInterface, pszId, DEVICE_ACCESS_CONTROL, &hDevice));
        if (vecResult.back() == GC_ERR_SUCCESS) {
            EXPECT_EQ(DevClose(hDevice), GC_ERR_SUCCESS);
            EXPECT_EQ(DevClose(hDevice), GC_ERR_INVALID_HANDLE) << "no handle is given out twice";
        }
    }
    EXPECT_THAT(vecResult, testing::ElementsAre(GC_ERR_SUCCESS, GC_ERR_SUCCESS, GC_ERR_ACCESS_DENIED, GC_ERR_SUCCESS));
    EXPECT_EQ(Producer().CallsOf("IFOpenDevice").at(2).Text(), "IFOpenDevice(if-1, cam-1, 3)");
    EXPECT_THROW(Producer().On("TLOpne"), std::invalid_argument);
}

TEST_F(ProducerDoubleTest, ResetEndsWhatIsUnderWay) {
    DEV_HANDLE hDevice = nullptr;
    EVENT_HANDLE hEvent = nullptr;
    ASSERT_EQ(IFOpenDevice(OpenInterface(), "cam-1", DEVICE_ACCESS_CONTROL, &hDevice), GC_ERR_SUCCESS);
    ASSERT_EQ(GCRegisterEvent(hDevice, EVENT_REMOTE_DEVICE, &hEvent), GC_ERR_SUCCESS);
    auto& objBlock = Producer().On("DevGetInfo").Block();
    std::thread objHeld([&] { DevGetInfo(hDevice, DEVICE_INFO_ID, nullptr, nullptr, nullptr); });
    std::thread objWaiting([&] {
        std::size_t nSize = 0;
        EXPECT_EQ(EventGetData(hEvent, nullptr, &nSize, GENTL_INFINITE), GC_ERR_ABORT);
    });
    EXPECT_TRUE(objBlock.WaitUntilBlocked());
    EXPECT_TRUE(Producer().WaitForEventWaiters("cam-1!4", 1));
    Producer().Reset();
    objHeld.join();
    objWaiting.join();
    EXPECT_THAT(Producer().OpenModules(), testing::IsEmpty());
}

}  // namespace
}  // namespace ProducerDouble
