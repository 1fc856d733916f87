#include <chrono>
#include <cstddef>
#include <cstring>
#include <functional>
#include <future>
#include <stdexcept>
#include <thread>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/GCException.h"
#include "TLClass/TLClassEvent/EventLoop.h"
#include "TLClass/TLClassEvent/NativeNewBufferEvent.h"
#include "TLClass/TLClassMain/Buffer.h"
#include "TLClass/TLClassMain/BufferInitInfo.h"
#include "support/Event.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/FunctionCallback.h"
#include "tests/TLClass/TLClassMain/CameraOnDouble.h"

/// The door to the step that nobody calls yet.
class CNativeNewBufferEventInspection {
public:
    static void UpdateChunkData(CNativeNewBufferEvent& objEvent, CBuffer* pBuffer) {
        objEvent.__UpdateChunkData(pBuffer);
    }
};

namespace {

using namespace std::chrono_literals;
using ProducerDouble::ANSWER;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::uint32_t kLongMs = 10000;

class NewBufferEvent : public CCameraOnDouble {
protected:
    NewBufferEvent() : m_pStream(OpenStream()) { m_objInfo.SetPayloadSize(64); }

    void Start() { m_pStream->DoStartDataStreamAcqusition(&m_objInfo); }
    void Start(std::function<void()> fnFrame) {
        CFrameFunction objCallback([fnFrame = std::move(fnFrame)](const BUFFER_MODULE_INFO&) { fnFrame(); });
        m_pStream->RegisterNewBufferCallback(&objCallback);
        Start();
    }
    void Stop() {
        m_pStream->StopGetNewBuffer();
        m_pStream->StopTLAcquisition();
    }
    void PushFrame(std::vector<SINGLE_CHUNK_DATA> vecChunk = {}) {
        ProducerDouble::FRAME objFrame;
        objFrame.vecChunk = std::move(vecChunk);
        EXPECT_TRUE(Wire().PushFrame(objFrame));
    }
    std::string FailureOfGetBuffer(std::uint32_t nTimeoutMs) {
        try {
            m_pStream->GetBuffer(nullptr, nTimeoutMs, true);
        } catch (const CTimeoutError&) {
            return "time-out";
        } catch (const CUnexpectedError& objError) {
            return std::to_string(objError.GetErrorCode()) + " " + objError.GetMessage();
        }
        return "none";
    }

    TLClass::CBufferInitInfo m_objInfo;
    boost::shared_ptr<IDataStream> m_pStream;
};

TEST_F(NewBufferEvent, CallbackThatThrowsLosesNoBuffer) {
    CCollectedLog objLog;
    CEvent objDone;
    int nFrame = 0;
    Start([&] {
        switch (++nFrame) {
            case 1:
                throw std::runtime_error("first");
            case 2:
                GenICam_3_0::Throw<GenICam_3_0::RuntimeException>("second");
            case 3:
                throw 3;
            default:
                objDone.Signal();
        }
    });
    const std::size_t nQueued = Wire().Queued();
    for (int i = 0; i < 4; ++i) {
        PushFrame();
    }
    EXPECT_TRUE(objDone.Wait(kLongMs));
    m_pStream->StopGetNewBuffer();
    EXPECT_EQ(Wire().Queued(), nQueued);
    EXPECT_THAT(objLog.Take(), ElementsAre("first", "second", "An event's callback threw what isn't an exception"));
}

TEST_F(NewBufferEvent, CallbackMayTakeItselfAway) {
    CEvent objDone;
    // What the callback holds would be gone under its feet if it were deleted at once.
    Start([this, pDone = std::make_shared<CEvent*>(&objDone)] {
        m_pStream->UnregisterNewBufferCallback();
        (*pDone)->Signal();
    });
    PushFrame();
    EXPECT_TRUE(objDone.Wait(kLongMs));
    EXPECT_FALSE(m_pStream->IsNewBufferCallbackRegistered());
    Stop();
}

TEST_F(NewBufferEvent, StopLetsThoseOutWhoPoll) {
    Start();
    auto objFirst = std::async(std::launch::async, [this] { return FailureOfGetBuffer(kLongMs); });
    auto objSecond = std::async(std::launch::async, [this] { return FailureOfGetBuffer(kLongMs); });
    ASSERT_TRUE(Double().WaitForEventWaiters("cam-1:stream-0!1", 2));
    const auto tBegin = std::chrono::steady_clock::now();
    m_pStream->DoCloseDataStream();
    EXPECT_LT(std::chrono::steady_clock::now() - tBegin, 5s);
    EXPECT_THAT(objFirst.get(), HasSubstr("-1012"));
    EXPECT_THAT(objSecond.get(), HasSubstr("-1012"));
}

TEST_F(NewBufferEvent, StopWaitsForACallerThatReadsItsFrame) {
    Start();
    auto& objRule = Double().On("DSGetBufferInfo").Block();
    PushFrame();
    auto objCaller = std::async(std::launch::async, [this] { return FailureOfGetBuffer(kLongMs); });
    EXPECT_TRUE(objRule.WaitUntilBlocked());
    auto objStop = std::async(std::launch::async, [this] { m_pStream->StopGetNewBuffer(); });
    // The second kill is that of the stop that has found the caller inside.
    EXPECT_TRUE(Double().WaitForCalls("EventKill", 2));
    objRule.Release();
    EXPECT_EQ(objCaller.get(), "none");
    objStop.get();
    m_pStream->StopTLAcquisition();
}

TEST_F(NewBufferEvent, KillThatMetNobodyIsForgottenByTheNextStart) {
    Start();
    Stop();
    Start();
    EXPECT_EQ(FailureOfGetBuffer(0), "time-out");
    PushFrame();
    EXPECT_NE(m_pStream->GetBuffer(nullptr, kLongMs, true), nullptr);
    Stop();
}

TEST_F(NewBufferEvent, ProducerThatFailsAtOnceIsAskedEverMoreSeldom) {
    auto& objRule = Double().On("EventGetData").Fail(GC_ERR_IO);
    const auto tBegin = std::chrono::steady_clock::now();
    Start([] {});
    EXPECT_TRUE(Double().WaitForCalls("EventGetData", 5));
    EXPECT_GE(std::chrono::steady_clock::now() - tBegin, (1 + 2 + 4 + 8) * CFailurePause::kFirstMs * 1ms);
    Stop();
    objRule.Remove();
}

TEST_F(NewBufferEvent, FrameWithoutItsBufferIsRefused) {
    const auto Answer = [this](const void* pUserPointer) -> auto& {
        ProducerDouble::BYTES vecData(sizeof(EVENT_NEW_BUFFER_DATA));
        std::memcpy(vecData.data() + offsetof(EVENT_NEW_BUFFER_DATA, pUserPointer), &pUserPointer, sizeof(void*));
        return Double().On("EventGetData").Answer(ANSWER::Bytes(vecData));
    };
    Start();
    auto& objNull = Answer(nullptr);
    EXPECT_EQ(FailureOfGetBuffer(0), "-1 pUserPointer should not be NULL");
    objNull.Remove();
    auto& objStrange = Answer(this);
    EXPECT_EQ(FailureOfGetBuffer(0), "-1 pUserPointer is no buffer of the acquisition");
    objStrange.Remove();
    PushFrame();
    const CBuffer* const pBuffer = m_pStream->GetBuffer(nullptr, kLongMs, true);
    Stop();
    auto& objOld = Answer(pBuffer);
    EXPECT_EQ(FailureOfGetBuffer(0), "-1 pUserPointer is no buffer of the acquisition");
    objOld.Remove();
}

TEST_F(NewBufferEvent, ChunksAreAttachedAsTheFrameHasThem) {
    CNativeNewBufferEvent objNotStarted(m_pStream->GetLib());
    EXPECT_THROW(CNativeNewBufferEventInspection::UpdateChunkData(objNotStarted, nullptr), CUnexpectedError);

    Start();
    const struct {
        SINGLE_CHUNK_DATA objChunk;
        std::string strFailure;
    } tblFrame[] = {{{1, 0, 8}, ""}, {{1, 0, 8}, ""}, {{1, 60, 8}, "Invalid chunk data information"}, {{2, 8, 8}, ""}};
    for (const auto& objFrame : tblFrame) {
        PushFrame({objFrame.objChunk});
        CBuffer* const pBuffer = m_pStream->GetBuffer(nullptr, kLongMs, true);
        std::string strFailure;
        try {
            CNativeNewBufferEventInspection::UpdateChunkData(*m_pStream->GetNativeNewBufferEvent(), pBuffer);
        } catch (const CUnexpectedError& objError) {
            strFailure = objError.GetMessage();
        }
        EXPECT_EQ(strFailure, objFrame.strFailure);
    }
    Stop();
}

}  // namespace
