#include <array>
#include <atomic>
#include <cstdlib>
#include <future>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/producer_double/Consumer.h"

// The double promises a path without allocations; what it allocates comes through here, since a library that is loaded
// later uses the program's own operator new.
static std::atomic<std::size_t> g_nAllocations{0};

// Not inlined, since the compiler would take the free below for a mistake.
[[gnu::noinline]] void* operator new(std::size_t nSize) {
    ++g_nAllocations;
    if (void* p = std::malloc(nSize == 0 ? 1 : nSize))
        return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* p) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

namespace ProducerDouble {
namespace {

using testing::IsEmpty;

// Events.

TEST(ProducerDoubleEvents, EndWaitsWhenTheyAreKilledOrUnregistered) {
    CConsumer objConsumer;
    const DEV_HANDLE hDevice = objConsumer.OpenCamera();
    const EVENT_HANDLE hEvent = objConsumer.Register(hDevice, EVENT_REMOTE_DEVICE);
    const auto StartWait = [&](std::size_t nWaiters) {
        auto objWait = std::async(std::launch::async, [&] { return objConsumer.WaitFor(hEvent, GENTL_INFINITE); });
        EXPECT_TRUE(objConsumer.Producer().WaitForEventWaiters("cam-1!4", nWaiters));
        return objWait;
    };
    auto objWait = StartWait(1);
    EXPECT_EQ(objConsumer.EventKill(hEvent), GC_ERR_SUCCESS);
    EXPECT_EQ(objWait.get(), GC_ERR_ABORT);
    EXPECT_EQ(objConsumer.WaitFor(hEvent, 0), GC_ERR_TIMEOUT) << "a kill that found a waiter isn't kept";

    EXPECT_EQ(objConsumer.EventKill(hEvent), GC_ERR_SUCCESS);
    EXPECT_EQ(objConsumer.WaitFor(hEvent, 0), GC_ERR_ABORT);
    EXPECT_EQ(objConsumer.WaitFor(hEvent, 0), GC_ERR_TIMEOUT) << "one that found none is kept for one wait";

    objWait = StartWait(1);
    EXPECT_EQ(objConsumer.GCUnregisterEvent(hDevice, EVENT_REMOTE_DEVICE), GC_ERR_SUCCESS);
    EXPECT_EQ(objWait.get(), GC_ERR_ABORT);
    EXPECT_EQ(objConsumer.WaitFor(hEvent, 0), GC_ERR_INVALID_HANDLE);
    EVENT_HANDLE hNone = nullptr;
    EXPECT_EQ(objConsumer.GCRegisterEvent(hDevice, EVENT_FEATURE_CHANGE, &hNone), GC_ERR_NOT_IMPLEMENTED);
}

TEST(ProducerDoubleEvents, CarryTheCamerasOwnEvents) {
    CConsumer objConsumer;
    const DEV_HANDLE hDevice = objConsumer.OpenCamera();
    auto& objCamera = objConsumer.Producer().Device("cam-1");
    EXPECT_FALSE(objCamera.PushEvent(0x9001, {}));
    const EVENT_HANDLE hEvent = objConsumer.Register(hDevice, EVENT_REMOTE_DEVICE);
    objCamera.DeclareEventSizes(32, 4);
    EXPECT_TRUE(objCamera.PushEvent(0x9001, BytesOf("value")));
    std::array<char, 32> arrEvent{};
    std::size_t nSize = 4;
    EXPECT_EQ(objConsumer.EventGetData(hEvent, arrEvent.data(), &nSize, 0), GC_ERR_BUFFER_TOO_SMALL);
    nSize = arrEvent.size();
    ASSERT_EQ(objConsumer.EventGetData(hEvent, arrEvent.data(), &nSize, 0), GC_ERR_SUCCESS);

    std::uint64_t nId = 0;
    std::size_t nIdSize = sizeof(nId);
    EXPECT_EQ(objConsumer.EventGetDataInfo(hEvent, arrEvent.data(), nSize, EVENT_DATA_NUMID, nullptr, &nId, &nIdSize),
              0);
    EXPECT_EQ(nId, 0x9001u);
    std::array<char, 8> arrValue{};
    std::size_t nValueSize = 4;  // as declared, which is less than what came
    EXPECT_EQ(objConsumer.EventGetDataInfo(hEvent, arrEvent.data(), nSize, EVENT_DATA_VALUE, nullptr, arrValue.data(),
                                           &nValueSize),
              GC_ERR_BUFFER_TOO_SMALL);
    nValueSize = arrValue.size();
    EXPECT_EQ(objConsumer.EventGetDataInfo(hEvent, arrEvent.data(), nSize, EVENT_DATA_VALUE, nullptr, arrValue.data(),
                                           &nValueSize),
              GC_ERR_SUCCESS);
    EXPECT_EQ(std::string(arrValue.data(), nValueSize), "value");
}

// Acquisition.

class ProducerDoubleStream : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(m_objConsumer.DevOpenDataStream(m_objConsumer.OpenCamera(), "stream-0", &m_hStream), GC_ERR_SUCCESS);
        m_hEvent = m_objConsumer.Register(m_hStream, EVENT_NEW_BUFFER);
        for (std::size_t i = 0; i < m_arrMemory.size(); ++i)
            m_objConsumer.DSAnnounceBuffer(m_hStream, m_arrMemory[i].data(), m_arrMemory[i].size(), &m_arrMemory[i],
                                           &m_arrBuffer[i]);
    }

    IStreamControl& Stream() { return m_objConsumer.Producer().Device("cam-1").Stream(); }

    static FRAME Frame(std::string_view strData) {
        FRAME objFrame;
        objFrame.vecData = BytesOf(strData);
        objFrame.nFrameId = 41;
        objFrame.nWidth = 5;
        objFrame.vecChunk = {{7, 2, 3}};
        return objFrame;
    }

    EVENT_NEW_BUFFER_DATA Next(std::uint64_t nTimeoutMs = 0) {
        EVENT_NEW_BUFFER_DATA objData{};
        std::size_t nSize = sizeof(objData);
        EXPECT_EQ(m_objConsumer.EventGetData(m_hEvent, &objData, &nSize, nTimeoutMs), GC_ERR_SUCCESS)
            << m_objConsumer.LastError();
        return objData;
    }

    template <class TValue>
    TValue Info(BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD nCommand) {
        TValue nValue{};
        std::size_t nSize = sizeof(nValue);
        EXPECT_EQ(m_objConsumer.DSGetBufferInfo(m_hStream, hBuffer, nCommand, nullptr, &nValue, &nSize),
                  GC_ERR_SUCCESS);
        return nValue;
    }

    CConsumer m_objConsumer;
    DS_HANDLE m_hStream = nullptr;
    EVENT_HANDLE m_hEvent = nullptr;
    std::array<std::array<char, 8>, 2> m_arrMemory{};
    std::array<BUFFER_HANDLE, 2> m_arrBuffer{};
};

TEST_F(ProducerDoubleStream, FillsQueuedBuffersInOrderAndTellsWhatIsInThem) {
    EXPECT_FALSE(Stream().PushFrame(Frame("lost")));
    m_objConsumer.DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE);
    EXPECT_TRUE(Stream().PushFrame(Frame("first")));  // waits for a buffer
    EXPECT_TRUE(Stream().PushFrame(Frame("more than eight")));
    m_objConsumer.DSFlushQueue(m_hStream, ACQ_QUEUE_ALL_TO_INPUT);

    const auto objFirst = Next();
    EXPECT_EQ(objFirst.BufferHandle, m_arrBuffer[0]);
    EXPECT_EQ(objFirst.pUserPointer, &m_arrMemory[0]);
    EXPECT_STREQ(m_arrMemory[0].data(), "first");
    EXPECT_EQ(Info<std::size_t>(objFirst.BufferHandle, BUFFER_INFO_SIZE_FILLED), 5u);
    EXPECT_EQ(Info<std::uint64_t>(objFirst.BufferHandle, BUFFER_INFO_FRAMEID), 41u);
    EXPECT_EQ(Info<std::size_t>(objFirst.BufferHandle, BUFFER_INFO_WIDTH), 5u);
    EXPECT_EQ(Info<bool8_t>(objFirst.BufferHandle, BUFFER_INFO_IS_INCOMPLETE), 0);
    SINGLE_CHUNK_DATA objChunk{};
    std::size_t nChunks = 1;
    EXPECT_EQ(m_objConsumer.DSGetBufferChunkData(m_hStream, objFirst.BufferHandle, &objChunk, &nChunks),
              GC_ERR_SUCCESS);
    EXPECT_EQ(objChunk.ChunkLength + 0, 3u);

    const auto objSecond = Next();
    EXPECT_EQ(objSecond.BufferHandle, m_arrBuffer[1]);
    EXPECT_EQ(Info<bool8_t>(objSecond.BufferHandle, BUFFER_INFO_IS_INCOMPLETE), 1);
    EXPECT_EQ(std::string(m_arrMemory[1].data(), 8), "more tha");
    EXPECT_EQ(m_objConsumer.WaitFor(m_hEvent, 0), GC_ERR_TIMEOUT);
}

TEST_F(ProducerDoubleStream, KeepsBuffersInItsQueuesUntilTheyAreFlushed) {
    m_objConsumer.DSFlushQueue(m_hStream, ACQ_QUEUE_ALL_TO_INPUT);
    EXPECT_EQ(m_objConsumer.DSQueueBuffer(m_hStream, m_arrBuffer[0]), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(m_objConsumer.DSRevokeBuffer(m_hStream, m_arrBuffer[0], nullptr, nullptr), GC_ERR_BUSY);
    m_objConsumer.DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1);
    EXPECT_TRUE(Stream().PushFrame(Frame("one")));
    EXPECT_FALSE(Stream().PushFrame(Frame("beyond the number asked for")));
    EXPECT_EQ(Stream().Queued(), 1u);
    EXPECT_EQ(m_objConsumer.DSStopAcquisition(m_hStream, ACQ_STOP_FLAGS_KILL), GC_ERR_RESOURCE_IN_USE);
    m_objConsumer.DSFlushQueue(m_hStream, ACQ_QUEUE_UNQUEUED_TO_INPUT);
    EXPECT_EQ(Stream().Queued(), 1u) << "the filled buffer isn't unqueued";
    m_objConsumer.DSFlushQueue(m_hStream, ACQ_QUEUE_ALL_TO_INPUT);
    EXPECT_EQ(Stream().Queued(), 2u);
    m_objConsumer.DSFlushQueue(m_hStream, ACQ_QUEUE_INPUT_TO_OUTPUT);
    EXPECT_EQ(Stream().Queued(), 0u);
    m_objConsumer.DSFlushQueue(m_hStream, ACQ_QUEUE_ALL_DISCARD);
    EXPECT_EQ(m_objConsumer.WaitFor(m_hEvent, 0), GC_ERR_TIMEOUT) << "the output queue was discarded too";
    void* pBase = nullptr;
    void* pUser = nullptr;
    EXPECT_EQ(m_objConsumer.DSRevokeBuffer(m_hStream, m_arrBuffer[0], &pBase, &pUser), GC_ERR_SUCCESS);
    EXPECT_EQ(pBase, m_arrMemory[0].data());
    EXPECT_EQ(pUser, &m_arrMemory[0]);
    EXPECT_EQ(m_objConsumer.DSQueueBuffer(m_hStream, m_arrBuffer[0]), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(Stream().Announced(), 1u);
}

TEST_F(ProducerDoubleStream, AllocatesNothingForAFlowingFrame) {
    m_objConsumer.Producer().RecordCalls(false);
    m_objConsumer.DSFlushQueue(m_hStream, ACQ_QUEUE_ALL_TO_INPUT);
    m_objConsumer.DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE);
    Stream().FlowFrames(Frame("flow"));
    for (int i = 0; i < 2; ++i)  // each buffer once: its layout takes over the chunks
        m_objConsumer.DSQueueBuffer(m_hStream, Next().BufferHandle);
    const std::size_t nBefore = g_nAllocations;
    for (std::uint64_t i = 0; i < 100; ++i) {
        const auto objData = Next(GENTL_INFINITE);
        ASSERT_EQ(Info<std::uint64_t>(objData.BufferHandle, BUFFER_INFO_FRAMEID), 43 + i);
        m_objConsumer.DSQueueBuffer(m_hStream, objData.BufferHandle);
    }
    EXPECT_EQ(g_nAllocations - nBefore, 0u);
}

// All at once.

TEST_F(ProducerDoubleStream, ServesManyThreadsAndResetsUnderThem) {
    auto& objProducer = m_objConsumer.Producer();
    objProducer.AddInterface("if-2").Plug("cam-9");
    auto& objBlock = objProducer.On("DevGetInfo").Block();
    m_objConsumer.DSFlushQueue(m_hStream, ACQ_QUEUE_ALL_TO_INPUT);
    m_objConsumer.DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE);
    std::vector<std::thread> vecThread;
    vecThread.emplace_back([&] {  // until the reset ends its wait or takes its handle
        EVENT_NEW_BUFFER_DATA objData{};
        std::size_t nSize = sizeof(objData);
        while (m_objConsumer.EventGetData(m_hEvent, &objData, &nSize, GENTL_INFINITE) == GC_ERR_SUCCESS)
            m_objConsumer.DSQueueBuffer(m_hStream, objData.BufferHandle);
    });
    vecThread.emplace_back([&] {
        std::size_t nSize = 0;
        m_objConsumer.DevGetInfo(nullptr, 0, nullptr, nullptr, &nSize);
    });
    vecThread.emplace_back([&] {
        for (int i = 0; i < 500; ++i) {
            std::size_t nSize = 0;
            m_objConsumer.GCGetInfo(TL_INFO_VENDOR, nullptr, nullptr, &nSize);
            m_objConsumer.TLClose(nullptr);
        }
    });
    ASSERT_TRUE(objBlock.WaitUntilBlocked());
    for (int i = 0; i < 200; ++i) {
        objProducer.Unplug("cam-9").Plug("cam-9");
        objProducer.SetInfo(TL_INFO_VENDOR, ANSWER::Text(std::to_string(i)));
        EXPECT_TRUE(Stream().PushFrame(Frame(std::to_string(i))));
    }
    EXPECT_TRUE(objProducer.WaitForCalls("DSQueueBuffer", 200));
    EXPECT_TRUE(objProducer.WaitForEventWaiters("cam-1:stream-0!1", 1));
    objProducer.Reset();
    for (std::thread& objThread : vecThread)
        objThread.join();
    EXPECT_THAT(objProducer.OpenModules(), IsEmpty());
    EXPECT_THROW(objProducer.Interface("if-1"), std::out_of_range);
}

}  // namespace
}  // namespace ProducerDouble
