#include <limits>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/Thrown.h"
#include "tests/producer_double/ProducerLibrary.h"

namespace {

using ProducerDouble::ANSWER;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNoDescription = "Failed to get last error description";

/// What checking a result at one place, caller.cpp(7) in Caller::Call, throws.
template <class TError>
std::string Check(GC_ERROR nCode, CGenTLLib& objLib) {
    return ThrownBy<TError>(
        [&] { CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nCode, &objLib, "caller.cpp", 7, "Caller::Call"); });
}

std::string FromCaller(const std::string& strMessage) {
    return strMessage + ", caller.cpp(7) Caller::Call";
}

std::string FromVerifier(const std::string& strMessage, int nLine) {
    return strMessage + ", GenTLErrrorCodeVerifier(" + std::to_string(nLine) +
           ") CGenTLErrorCodeVerifier::ThrowExceptionIfFailed";
}

class ResultChecking : public testing::Test {
protected:
    /// Lets a call fail in the producer, and hands on what it answered.
    GC_ERROR FailCall(GC_ERROR nCode, const std::string& strText) {
        auto& objRule = m_objDouble->On("TLOpen").Fail(nCode, strText);
        TL_HANDLE hTL = nullptr;
        const GC_ERROR nResult = m_objLib.TLOpen(&hTL);
        objRule.Remove();
        return nResult;
    }

    ProducerDouble::CProducerLibrary m_objDouble{PRODUCER_DOUBLE};
    CGenTLLib m_objLib{PRODUCER_DOUBLE};
};

TEST_F(ResultChecking, EveryCodeHasItsClassItsTextAndItsSite) {
    const auto Expect = [this]<class TError>(GC_ERROR nCode, const std::string& strThrown) {
        ASSERT_EQ(FailCall(nCode, "busy"), nCode);
        EXPECT_EQ(Check<TError>(nCode, m_objLib), strThrown) << nCode;
    };
    Expect.operator()<CInvalidAccessError>(-1005, FromVerifier("Access denied:busy", 100));
    Expect.operator()<CDeviceOfflineError>(-10000, FromVerifier("busy", 105));
    Expect.operator()<CTimeoutError>(-1011, FromCaller("busy"));
    Expect.operator()<CInvalidParameterError>(-1009, FromVerifier("busy", 115));
    Expect.operator()<CNotImplementedError>(-1003, FromVerifier("busy", 120));
    for (const GC_ERROR nCode : {-1001, -10001, std::numeric_limits<GC_ERROR>::min()}) {
        Expect.operator()<CUnexpectedError>(nCode, FromCaller("busy") + ", " + std::to_string(nCode));
    }
}

TEST_F(ResultChecking, SuccessAndAMissingEntryAskTheProducerForNothing) {
    EXPECT_EQ(Check<CUnexpectedError>(0, m_objLib), "nothing was thrown");
    EXPECT_EQ(Check<CUnexpectedError>(-1, m_objLib), FromCaller("The TL library is not complete") + ", -1");
    CCollectedLog objLog;
    CGenTLErrorCodeVerifier::LogIfFailed(0, &m_objLib, "caller.cpp", 7, "Caller::Call");
    EXPECT_THAT(objLog.Take(), IsEmpty());
    CGenTLErrorCodeVerifier::LogIfFailed(-1, &m_objLib, "caller.cpp", 7, "Caller::Call");
    EXPECT_THAT(objLog.Take(), ElementsAre("caller.cpp(7):'Caller::Call':The TL library is not complete"));
    EXPECT_EQ(m_objDouble->Count("GCGetLastError"), 0U);

    FailCall(GC_ERR_ACCESS_DENIED, "busy");
    CGenTLErrorCodeVerifier::LogIfFailed(GC_ERR_ACCESS_DENIED, &m_objLib, "caller.cpp", 7, "Caller::Call");
    EXPECT_THAT(objLog.Take(), ElementsAre("caller.cpp(7):'Caller::Call':busy"));
}

TEST_F(ResultChecking, LastErrorIsThatOfTheAskingThread) {
    FailCall(GC_ERR_BUSY, "of this thread");
    std::thread([this] { FailCall(GC_ERR_BUSY, "of the other thread"); }).join();
    EXPECT_EQ(GetLastErrorDescription(&m_objLib), "of this thread");
}

TEST_F(ResultChecking, UnreadableDescriptionIsReplaced) {
    for (const ANSWER& objAnswer : {ANSWER::Text("busy").AskingFor(~std::size_t{0}), ANSWER::Absent(GC_ERR_NO_DATA)}) {
        auto& objRule = m_objDouble->On("GCGetLastError").Answer(objAnswer);
        EXPECT_EQ(GetLastErrorDescription(&m_objLib), kNoDescription);
        objRule.Remove();
    }
}

TEST(ResultCheckingWithoutLastError, KeepsTheClassOfTheCode) {
    CGenTLLib objLib(PRODUCER_DOUBLE_WITHOUT_EXPORTS);
    EXPECT_EQ(Check<CInvalidAccessError>(GC_ERR_ACCESS_DENIED, objLib),
              FromVerifier(std::string("Access denied:") + kNoDescription, 100));
    EXPECT_EQ(Check<CUnexpectedError>(GC_ERR_IO, objLib),
              FromCaller(kNoDescription) + ", " + std::to_string(GC_ERR_IO));
}

}  // namespace
