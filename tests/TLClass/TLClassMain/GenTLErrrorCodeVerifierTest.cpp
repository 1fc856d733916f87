#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <typeinfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "support/ZrException.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/producer_double/ProducerLibrary.h"

namespace {

using ProducerDouble::ANSWER;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNoDescription = "Failed to get last error description";

/// Everything that an exception of the family tells.
struct THROWN {
    std::string strClass;
    std::string strMessage;
    std::string strFile;
    int nLine = 0;
    std::string strFunction;
    std::optional<std::int32_t> nErrorCode;

    bool operator==(const THROWN&) const = default;
};

std::ostream& operator<<(std::ostream& objStream, const THROWN& objThrown) {
    objStream << objThrown.strClass << " '" << objThrown.strMessage << "' " << objThrown.strFile << "("
              << objThrown.nLine << ") " << objThrown.strFunction;
    return objThrown.nErrorCode ? objStream << " code " << *objThrown.nErrorCode : objStream;
}

/// What checking a result at one place, caller.cpp(7) in Caller::Call, throws.
THROWN Check(GC_ERROR nCode, CGenTLLib& objLib) {
    try {
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nCode, &objLib, "caller.cpp", 7, "Caller::Call");
    } catch (const CZrException& objError) {
        const auto* const pUnexpected = dynamic_cast<const CUnexpectedError*>(&objError);
        return {typeid(objError).name(),
                objError.GetMessage(),
                objError.GetFile(),
                objError.GetLine(),
                objError.GetFunction(),
                pUnexpected == nullptr ? std::nullopt : std::optional(pUnexpected->GetErrorCode())};
    }
    return {};
}

template <typename CLASS>
THROWN FromCaller(const std::string& strMessage, std::optional<std::int32_t> nErrorCode = std::nullopt) {
    return {typeid(CLASS).name(), strMessage, "caller.cpp", 7, "Caller::Call", nErrorCode};
}

template <typename CLASS>
THROWN FromVerifier(const std::string& strMessage, int nLine) {
    return {typeid(CLASS).name(),
            strMessage,
            "GenTLErrrorCodeVerifier",
            nLine,
            "CGenTLErrorCodeVerifier::ThrowExceptionIfFailed",
            std::nullopt};
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
    struct ROW {
        GC_ERROR nCode;
        THROWN objThrown;
    };
    const GC_ERROR nLowest = std::numeric_limits<GC_ERROR>::min();
    const ROW arrRow[] = {
        {-1005, FromVerifier<CInvalidAccessError>("Access denied:busy", 100)},
        {-10000, FromVerifier<CDeviceOfflineError>("busy", 105)},
        {-1011, FromCaller<CTimeoutError>("busy")},
        {-1009, FromVerifier<CInvalidParameterError>("busy", 115)},
        {-1003, FromVerifier<CNotImplementedError>("busy", 120)},
        {-1001, FromCaller<CUnexpectedError>("busy", -1001)},
        {-10001, FromCaller<CUnexpectedError>("busy", -10001)},
        {nLowest, FromCaller<CUnexpectedError>("busy", nLowest)},
    };
    for (const ROW& objRow : arrRow) {
        ASSERT_EQ(FailCall(objRow.nCode, "busy"), objRow.nCode);
        EXPECT_EQ(Check(objRow.nCode, m_objLib), objRow.objThrown) << objRow.nCode;
    }
}

TEST_F(ResultChecking, SuccessAndAMissingEntryAskTheProducerForNothing) {
    EXPECT_EQ(Check(0, m_objLib), THROWN{});
    EXPECT_EQ(Check(-1, m_objLib), FromCaller<CUnexpectedError>("The TL library is not complete", -1));
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
    CGenTLLib objLib(PRODUCER_DOUBLE_WITHOUT_LAST_ERROR);
    EXPECT_EQ(Check(GC_ERR_ACCESS_DENIED, objLib),
              FromVerifier<CInvalidAccessError>(std::string("Access denied:") + kNoDescription, 100));
    EXPECT_EQ(Check(GC_ERR_IO, objLib), FromCaller<CUnexpectedError>(kNoDescription, GC_ERR_IO));
}

}  // namespace
