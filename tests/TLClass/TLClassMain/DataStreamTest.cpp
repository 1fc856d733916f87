#include <atomic>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/Buffer.h"
#include "TLClass/TLClassMain/BufferInitInfo.h"
#include "support/Event.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/FunctionCallback.h"
#include "tests/TLClass/TLClassMain/CameraOnDouble.h"
#include "tests/TLClass/Thrown.h"

namespace {

using ProducerDouble::ANSWER;
using ProducerDouble::BytesOf;
using ProducerDouble::FRAME;
using testing::ElementsAre;
using testing::IsEmpty;

class DataStream : public CCameraOnDouble {
protected:
    DataStream() { m_objInfo.SetPayloadSize(64); }

    void Start(const boost::shared_ptr<IDataStream>& pStream) { pStream->DoStartDataStreamAcqusition(&m_objInfo); }
    static void Stop(const boost::shared_ptr<IDataStream>& pStream) {
        pStream->StopGetNewBuffer();
        pStream->StopTLAcquisition();
    }
    static FRAME Frame(std::uint64_t nID, const std::string& strData) {
        FRAME objFrame;
        objFrame.nFrameId = nID;
        objFrame.nWidth = strData.size();
        objFrame.nHeight = 1;
        objFrame.vecData = BytesOf(strData);
        return objFrame;
    }

    TLClass::CBufferInitInfo m_objInfo;
};

TEST_F(DataStream, OpensOrLeavesNothingWhicheverCallFails) {
    Open();
    const auto pStream = m_pDevice->GetDataStreamList().at(0);
    const auto setTolerated =
        FailAtEachStep([&] { pStream->DoOpenDataStream(); }, [&] { pStream->DoCloseDataStream(); },
                       [&] {
                           EXPECT_FALSE(pStream->IsOpened());
                           EXPECT_EQ(pStream->GetHandle(), nullptr);
                           EXPECT_EQ(pStream->GetFeatureControl(), nullptr);
                           EXPECT_EQ(pStream->GetNodeMap(), nullptr);
                           EXPECT_THAT(Double().OpenModules(), ElementsAre("tl", "if-1", "cam-1"));
                           EXPECT_THAT(Double().RegisteredEvents(), IsEmpty());
                       });
    EXPECT_THAT(setTolerated, IsEmpty());
}

TEST_F(DataStream, StartsOrTakesBackAllOfItWhicheverCallFails) {
    const auto pStream = OpenStream();
    pStream->SetAcqusitionBufferNumber(3);
    CFrameFunction objCallback([](const BUFFER_MODULE_INFO&) {});
    pStream->RegisterNewBufferCallback(&objCallback);
    const auto nThreads = Threads();
    const auto setTolerated = FailAtEachStep([&] { Start(pStream); }, [&] { Stop(pStream); },
                                             [&] {
                                                 EXPECT_FALSE(pStream->IsAcqusition());
                                                 EXPECT_TRUE(ComesDownTo(nThreads));
                                                 EXPECT_EQ(Wire().Announced(), 0U);
                                                 EXPECT_EQ(Wire().Port().Integer("TLParamsLocked"), 0);
                                             });
    EXPECT_THAT(setTolerated, ElementsAre("DSGetInfo"));
}

TEST_F(DataStream, UnwindsAFailedStartInReverseOrder) {
    const auto pStream = OpenStream();
    pStream->SetAcqusitionBufferNumber(1);
    Double().On("DSStartAcquisition").Fail(GC_ERR_IO);
    Double().ClearCalls();
    EXPECT_THROW(Start(pStream), CUnexpectedError);
    EXPECT_THAT(CallsOf({"DSAnnounceBuffer", "DSFlushQueue", "DSRevokeBuffer", "EventKill", "GCWritePort"}),
                ElementsAre(testing::StartsWith("GCWritePort(cam-1:stream-0"), "DSAnnounceBuffer(cam-1:stream-0, 64)",
                            "DSFlushQueue(cam-1:stream-0, 2)", "DSFlushQueue(cam-1:stream-0, 4)",
                            testing::StartsWith("DSRevokeBuffer"), testing::StartsWith("EventKill"),
                            testing::StartsWith("GCWritePort(cam-1:stream-0")));
}

TEST_F(DataStream, GoesDownWhateverANodesCallbackThrows) {
    const auto pStream = OpenStream();
    CFeatureFunction objThrowing([] { throw 3; });  // what no handler of exceptions catches, as a client may
    Start(pStream);
    pStream->GetFeatureControl()->RegisterFeatureCallback("TLParamsLocked", &objThrowing);
    CCollectedLog objLog;
    Stop(pStream);
    EXPECT_THAT(objLog.Take(), ElementsAre(testing::HasSubstr("CDataStream::__StopTLAcquisition")));
    EXPECT_FALSE(pStream->IsAcqusition());
    EXPECT_EQ(Wire().Port().Integer("TLParamsLocked"), 0);
    EXPECT_EQ(Wire().Announced(), 0U);

    EXPECT_ANY_THROW(Start(pStream));
    EXPECT_FALSE(pStream->IsAcqusition());
    EXPECT_EQ(Wire().Port().Integer("TLParamsLocked"), 0) << "was set before the callback threw";
}

TEST_F(DataStream, SizesItsBuffersByPayloadAndProducer) {
    constexpr std::size_t kNone = ~std::size_t{0};
    const struct {
        std::uint64_t nPayload;
        std::uint64_t nAsked;
        std::size_t nMin;
        std::size_t nMax;
        std::size_t nAlignment;
        std::size_t nNumber;
        std::uint64_t nSize;
    } arrCase[] = {
        {67650, 0, kNone, kNone, kNone, 124, 67650},
        {std::uint64_t{128} << 10, 0, kNone, kNone, 0, 64, std::uint64_t{128} << 10},
        {13421772, 0, 1, 1024, 1, 10, 13421772},
        {13421773, 0, 1, 1024, 1, 4, 13421773},
        {5000, 2, 1, 1024, 4096, 2, 8192},
        {5000, 20, 1, 12, 1, 12, 5000},
        {5000, 0, 130, 1024, 1, 130, 5000},
    };
    const auto pStream = OpenStream();
    const auto Answer = [&](STREAM_INFO_CMD nCommand, std::size_t nValue) {
        Wire().SetInfo(nCommand, nValue == kNone ? ANSWER::Absent() : ANSWER::Size(nValue));
    };
    for (const auto& objCase : arrCase) {
        SCOPED_TRACE(std::to_string(objCase.nPayload) + ", " + std::to_string(objCase.nAsked));
        Answer(STREAM_INFO_BUF_ANNOUNCE_MIN, kNone);
        pStream->SetAcqusitionBufferNumber(objCase.nAsked);
        Answer(STREAM_INFO_BUF_ANNOUNCE_MIN, objCase.nMin);
        Answer(STREAM_INFO_ZR_BUF_ANNOUNCE_MAX, objCase.nMax);
        Answer(STREAM_INFO_BUF_ALIGNMENT, objCase.nAlignment);
        m_objInfo.SetPayloadSize(objCase.nPayload);
        Double().ClearCalls();
        Start(pStream);
        Stop(pStream);
        const auto vecAnnounced = CallsOf({"DSAnnounceBuffer"});
        ASSERT_EQ(vecAnnounced.size(), objCase.nNumber);
        EXPECT_EQ(vecAnnounced.back(), "DSAnnounceBuffer(cam-1:stream-0, " + std::to_string(objCase.nSize) + ")");
    }
}

TEST_F(DataStream, SaysWhatIsWrong) {
    Open();
    const auto pStream = m_pDevice->GetDataStreamList().at(0);
    EXPECT_EQ(MessageOf<CUnexpectedError>([&] { Start(pStream); }), "Can not start stream acquisition before open it");
    EXPECT_EQ(MessageOf<CUnexpectedError>([&] { pStream->DoFlushAllToInput(); }), "The data stream is closed");
    EXPECT_THROW(pStream->DoGetOptimalPacketSize(), CZrException) << "the producer's answer to no handle";
    pStream->DoOpenDataStream();
    EXPECT_EQ(pStream->DoGetOptimalPacketSize(), 1500U);
    EXPECT_EQ(MessageOf<COutOfRangeError>([&] { pStream->SetAcqusitionBufferNumber(0); }),
              "Acquisition buffers is less than the minimum");
    m_objInfo.SetPayloadSize(0);
    EXPECT_EQ(MessageOf<CUnexpectedError>([&] { Start(pStream); }), "Current PayloadSize is 0");
    m_objInfo.SetPayloadSize(64);
    const std::pair<STREAM_INFO_CMD, std::size_t> arrLie[] = {{STREAM_INFO_BUF_ANNOUNCE_MIN, ~std::size_t{0}},
                                                              {STREAM_INFO_BUF_ALIGNMENT, ~std::size_t{0}}};
    for (const auto& [nCommand, nValue] : arrLie) {
        Wire().SetInfo(nCommand, ANSWER::Size(nValue));
        EXPECT_THROW(Start(pStream), CUnexpectedError) << nCommand;
        Wire().SetInfo(nCommand, ANSWER::Size(1));
    }
    EXPECT_EQ(Wire().Port().Integer("TLParamsLocked"), 0);
    Start(pStream);
    EXPECT_EQ(Wire().Port().Integer("TLParamsLocked"), 1);
    EXPECT_EQ(MessageOf<CInvalidCallError>([&] { pStream->DoGetOptimalPacketSize(); }),
              "Can't get the optimal packet size after start capture");
    Stop(pStream);
    Wire().Port().RemoveFeature("TLParamsLocked");
    pStream->DoCloseDataStream();
    pStream->DoOpenDataStream();
    Start(pStream);
    EXPECT_TRUE(pStream->IsAcqusition()) << "there is nothing to lock";
}

TEST_F(DataStream, GivesFramesToWhoPollsAndKeepsItsMemory) {
    const auto pStream = OpenStream();
    pStream->SetAcqusitionBufferNumber(1);
    m_objInfo.SetWidth(7);
    m_objInfo.SetOverride(1);
    std::set<void*> setBase;
    for (std::size_t nTurn = 1; nTurn <= 2; ++nTurn) {
        Start(pStream);
        Start(pStream);
        EXPECT_EQ(Double().Count("DSStartAcquisition"), nTurn);
        BUFFER_MODULE_INFO objInformation;
        EXPECT_EQ(pStream->GetBuffer(&objInformation, 0, false), nullptr);
        Wire().PushFrame(Frame(5, "pixel"));
        CBuffer* const pBuffer = pStream->GetBuffer(&objInformation, 10000, true);
        ASSERT_NE(pBuffer, nullptr);
        EXPECT_EQ(objInformation.FrameID, 5U);
        EXPECT_EQ(objInformation.Width, 7U) << "of the description, not of the frame";
        EXPECT_EQ(objInformation.InitPayloadSize, 64U);
        EXPECT_EQ(std::string(static_cast<const char*>(objInformation.Base), objInformation.SizeFilled), "pixel");
        setBase.insert(objInformation.Base);
        EXPECT_EQ(Wire().Queued(), 0U);
        pBuffer->QueueBuffer();
        EXPECT_EQ(Wire().Queued(), 1U);
        Stop(pStream);
        EXPECT_EQ(Wire().Announced(), 0U);
    }
    EXPECT_EQ(setBase.size(), 1U);
}

TEST_F(DataStream, WaitsForTheCallbackThatHasAFrameBeforeItStops) {
    const auto pStream = OpenStream();
    CEvent objInside;
    CEvent objGo;
    std::atomic<bool> bLeft = false;
    CFrameFunction objCallback([&](const BUFFER_MODULE_INFO&) {
        objInside.Signal();
        objGo.Wait(10000);
        bLeft = true;
    });
    pStream->RegisterNewBufferCallback(&objCallback);
    Start(pStream);
    Wire().PushFrame(Frame(1, "pixel"));
    ASSERT_TRUE(objInside.Wait(10000));
    // Left to themselves the two operations would be the wrong way round: the buffers must outlive the callback anyway.
    std::thread objStopping([&] { pStream->StopTLAcquisition(); });
    EXPECT_TRUE(Double().WaitForCalls("EventKill", 1));
    EXPECT_EQ(Double().Count("DSRevokeBuffer"), 0U);
    objGo.Signal();
    objStopping.join();
    EXPECT_TRUE(bLeft);
    EXPECT_EQ(Wire().Announced(), 0U);
    EXPECT_EQ(pStream->GetNewBufferThreadId(), 0U);
}

}  // namespace
