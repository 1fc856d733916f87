#include <atomic>
#include <stdexcept>
#include <system_error>
#include <thread>

#include <pthread.h>
#include <sched.h>

#include <gtest/gtest.h>

#include "support/Event.h"
#include "support/Thread.h"

namespace {

/// A body that stays until it is let out.
struct Guest {
    std::uint32_t Stay() {
        nThreadId = CThread::GetCurrentThreadId();
        objCame.Signal();
        objLetOut.Wait(kInfinite);
        objLeft.Signal();
        return 0;
    }
    static std::uint32_t Body(void* pArg) { return static_cast<Guest*>(pArg)->Stay(); }

    CEvent objCame;
    CEvent objLetOut;
    CEvent objLeft;
    std::atomic<std::uint32_t> nThreadId{0};
};

std::uint32_t ReturnAtOnce(void*) {
    return 1;
}

void WaitForEnd(const CThread& objThread) {
    while (objThread.IsRunning()) {
        std::this_thread::yield();
    }
}

TEST(Thread, RunsUntilItsBodyReturnsAndIsKnownUntilJoined) {
    Guest objGuest;
    CThread objThread;
    EXPECT_FALSE(objThread.IsRunning());
    EXPECT_EQ(objThread.GetThreadId(), 0U);
    objThread.Join();

    ASSERT_TRUE(objThread.Start(&objGuest, Guest::Body, kPriorityNormal));
    EXPECT_TRUE(objThread.IsRunning());
    objGuest.objCame.Wait(kInfinite);
    const std::uint32_t nThreadId = objGuest.nThreadId;
    EXPECT_EQ(objThread.GetThreadId(), nThreadId);
    EXPECT_NE(nThreadId, CThread::GetCurrentThreadId());

    EXPECT_FALSE(objThread.Start(&objGuest, nullptr, kPriorityNormal));
    EXPECT_TRUE(objThread.IsRunning());
    EXPECT_EQ(objThread.GetThreadId(), nThreadId);

    objGuest.objLetOut.Signal();
    WaitForEnd(objThread);
    EXPECT_EQ(objThread.GetThreadId(), nThreadId);

    objThread.Join();
    EXPECT_EQ(objThread.GetThreadId(), 0U);
    objThread.Join();

    ASSERT_TRUE(objThread.Start(nullptr, ReturnAtOnce, kPriorityTimeCritical));
    WaitForEnd(objThread);
    EXPECT_TRUE(objThread.Start(nullptr, ReturnAtOnce, kPriorityTimeCritical)) << "without a join";
}

struct Seen {
    CThread objThread;
    bool bKnown = false;
    int nPolicy = -1;
    int nPriority = -1;

    static std::uint32_t Look(void* pArg) {
        auto& objSeen = *static_cast<Seen*>(pArg);
        objSeen.bKnown =
            objSeen.objThread.IsRunning() && objSeen.objThread.GetThreadId() == CThread::GetCurrentThreadId();
        sched_param objParameter{};
        pthread_getschedparam(pthread_self(), &objSeen.nPolicy, &objParameter);
        objSeen.nPriority = objParameter.sched_priority;
        return 0;
    }
};

TEST(Thread, BodyFindsItselfKnownAndAtItsPriority) {
    // The maker takes the real-time policy too if it may: it isn't to be inherited.
    std::thread([] {
        sched_param objParameter{};
        objParameter.sched_priority = sched_get_priority_min(SCHED_RR);
        const bool bMayBeRealTime = pthread_setschedparam(pthread_self(), SCHED_RR, &objParameter) == 0;
        struct Case {
            int nPriority;
            int nPolicy;
        };
        const Case arrCases[] = {{kPriorityNormal, SCHED_OTHER},
                                 {kPriorityTimeCritical, bMayBeRealTime ? SCHED_RR : SCHED_OTHER},
                                 {1, SCHED_OTHER}};
        for (const auto& objCase : arrCases) {
            Seen objSeen;
            ASSERT_TRUE(objSeen.objThread.Start(&objSeen, Seen::Look, objCase.nPriority));
            objSeen.objThread.Join();
            EXPECT_TRUE(objSeen.bKnown);
            EXPECT_EQ(objSeen.nPolicy, objCase.nPolicy) << objCase.nPriority;
            EXPECT_EQ(objSeen.nPriority, objCase.nPolicy == SCHED_RR ? objParameter.sched_priority : 0);
        }
    }).join();
}

TEST(Thread, StartLetsTheEarlierThreadRunOn) {
    static Guest& objFirst = *new Guest;  // never destroyed: the lost thread may still be leaving its last call
    Guest objSecond;
    CThread objThread;
    ASSERT_TRUE(objThread.Start(&objFirst, Guest::Body, kPriorityNormal));
    ASSERT_TRUE(objThread.Start(&objSecond, Guest::Body, kPriorityNormal));
    objSecond.objCame.Wait(kInfinite);
    EXPECT_EQ(objThread.GetThreadId(), objSecond.nThreadId);

    objSecond.objLetOut.Signal();
    objThread.Join();  // must not wait for the first
    EXPECT_FALSE(objThread.IsRunning());
    objFirst.objLetOut.Signal();
    EXPECT_TRUE(objFirst.objLeft.Wait(kInfinite));
}

TEST(Thread, FailingStartLosesTheEarlierThread) {
    CThread objThread;
    ASSERT_TRUE(objThread.Start(nullptr, ReturnAtOnce, kPriorityNormal));
    pthread_attr_t objBefore;
    pthread_getattr_default_np(&objBefore);
    pthread_attr_t objImpossible = objBefore;
    pthread_attr_setstacksize(&objImpossible, std::size_t{1} << 50);
    pthread_setattr_default_np(&objImpossible);
    EXPECT_FALSE(objThread.Start(nullptr, ReturnAtOnce, kPriorityNormal));
    pthread_setattr_default_np(&objBefore);
    pthread_attr_destroy(&objBefore);

    EXPECT_FALSE(objThread.IsRunning());
    EXPECT_EQ(objThread.GetThreadId(), 0U);
}

TEST(Thread, RefusesToWaitForItself) {
    CThread objThread;
    const auto JoinItself = [](void* pArg) -> std::uint32_t {
        EXPECT_THROW(static_cast<CThread*>(pArg)->Join(), std::system_error);
        return 0;
    };
    ASSERT_TRUE(objThread.Start(&objThread, JoinItself, kPriorityNormal));
    WaitForEnd(objThread);
    EXPECT_NE(objThread.GetThreadId(), 0U);
}

TEST(Thread, TwoWhoJoinBothSeeTheEnd) {
    for (int i = 0; i < 50; ++i) {
        Guest objGuest;
        CThread objThread;
        ASSERT_TRUE(objThread.Start(&objGuest, Guest::Body, kPriorityNormal));
        const auto Join = [&] {
            objThread.Join();
            EXPECT_EQ(objGuest.objLeft.GetSignalCount(), 1U);
        };
        std::thread objOther(Join);
        objGuest.objLetOut.Signal();
        Join();
        objOther.join();
    }
}

TEST(ThreadDeathTest, ExceptionThatLeavesTheBodyEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto StartThrower = [] {
        CThread objThread;
        objThread.Start(
            nullptr, [](void*) -> std::uint32_t { throw std::runtime_error("left the body"); }, kPriorityNormal);
        objThread.Join();
    };
    EXPECT_DEATH(StartThrower(), "left the body");
}

}  // namespace
