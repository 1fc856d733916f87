#include <atomic>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "support/Event.h"
#include "support/ScopedLock.h"

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

TEST(Event, HoldsOneSignalWhileItsCountRunsAhead) {
    CEvent objEvent;
    const auto objStart = Clock::now();
    EXPECT_FALSE(objEvent.Wait(20));
    EXPECT_GE(Clock::now() - objStart, milliseconds(20));
    for (int i = 0; i < 3; ++i) {
        objEvent.Signal();
    }
    EXPECT_TRUE(objEvent.Wait(0));
    EXPECT_EQ(objEvent.GetSignalCount(), 2U);
    EXPECT_FALSE(objEvent.Wait(0));
    EXPECT_EQ(objEvent.GetSignalCount(), 1U);
}

TEST(Event, ResetForgetsAllSignalsInItsTime) {
    CEvent objEvent;
    for (int i = 0; i < 3; ++i) {
        objEvent.Signal();
    }
    const auto objStart = Clock::now();
    objEvent.Reset();
    EXPECT_GE(Clock::now() - objStart, milliseconds(2));
    EXPECT_EQ(objEvent.GetSignalCount(), 0U);
    EXPECT_FALSE(objEvent.Wait(0));
}

TEST(Event, TwoSidesPassTheTurnWithoutLosingIt) {
    CEvent objPing;
    CEvent objPong;
    int nTurns = 0;  // belongs to whoever has the turn
    std::thread objOther([&] {
        for (int i = 0; i < 500; ++i) {
            objPing.Wait(kInfinite);
            ++nTurns;
            objPong.Signal();
        }
    });
    for (int i = 0; i < 500; ++i) {
        objPing.Signal();
        EXPECT_TRUE(objPong.Wait(kInfinite));
        ++nTurns;
    }
    objOther.join();
    EXPECT_EQ(nTurns, 1000);
}

TEST(Event, SignalsDuringResetsAreCountedOrForgottenWhole) {
    CEvent objEvent;
    std::thread objOther([&objEvent] {
        for (int i = 0; i < 50; ++i) {
            objEvent.Signal();
        }
    });
    for (int i = 0; i < 10; ++i) {
        objEvent.Reset();
    }
    objOther.join();
    const bool bCounted = objEvent.GetSignalCount() != 0;
    EXPECT_EQ(objEvent.Wait(0), bCounted);
}

TEST(CriticalSection, IsFreeWhenEachLockHadItsUnlock) {
    CCriticalSection csLock;
    const auto IsFree = [&csLock] {
        bool bTaken = false;
        std::thread([&] {
            bTaken = csLock.TryLock();
            if (bTaken) {
                csLock.Unlock();
            }
        }).join();
        return bTaken;
    };
    csLock.Lock();
    {
        const CScopedLock objLock(csLock);
        EXPECT_TRUE(csLock.TryLock());
        csLock.Unlock();
        EXPECT_FALSE(IsFree());
    }
    EXPECT_FALSE(IsFree());
    csLock.Unlock();
    EXPECT_TRUE(IsFree());
}

}  // namespace
