#include <atomic>
#include <chrono>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/NodeCallback.h"
#include "tests/GenApi/TestMap.h"

namespace {

using namespace GenApi_3_0;

class CCounter {
public:
    void OnChanged(INode* pNode) {
        dynamic_cast<IInteger*>(pNode)->GetValue();
        ++Calls;
    }
    std::atomic<int> Calls = 0;
};

constexpr int kRounds = 400;

TEST(NodeMapThreads, ReadersWritersAndCallbacksGoTogether) {
    CTestMap objMap(Reg("Low", 0) + Reg("High", 4, "<pInvalidator>Low</pInvalidator>") +
                    "<IntSwissKnife Name='Both'><pVariable Name='L'>Low</pVariable><pVariable Name='H'>High</pVariable>"
                    "<Formula>L - H</Formula></IntSwissKnife>"
                    "<Integer Name='Pair'><pValue>Low</pValue><pValueCopy>High</pValueCopy></Integer>");
    CCounter objInside;
    CCounter objOutside;
    const CallbackHandleType hInside = Register(&objMap.Node("Both"), objInside, &CCounter::OnChanged);
    const CallbackHandleType hOutside =
        Register(&objMap.Node("Both"), objOutside, &CCounter::OnChanged, cbPostOutsideLock);
    std::atomic<int> nTorn = 0;
    std::latch objStart(6);
    std::vector<std::thread> vecThread;
    for (int nWriter = 0; nWriter < 2; ++nWriter) {
        vecThread.emplace_back([&, nWriter] {
            objStart.arrive_and_wait();
            for (int i = 0; i < kRounds; ++i) {
                objMap.Integer("Pair").SetValue(i * 2 + nWriter);
            }
        });
    }
    for (int nReader = 0; nReader < 2; ++nReader) {
        vecThread.emplace_back([&] {
            objStart.arrive_and_wait();
            for (int i = 0; i < kRounds; ++i) {
                // Both registers are written by one operation, so that their difference is never seen.
                nTorn += objMap.Integer("Both").GetValue() != 0 ? 1 : 0;
                objMap.Node("Both").GetAccessMode();
            }
        });
    }
    vecThread.emplace_back([&] {
        objStart.arrive_and_wait();
        for (int i = 0; i < kRounds; ++i) {
            CCounter objShort;
            const CallbackHandleType hShort = Register(&objMap.Node("Low"), objShort, &CCounter::OnChanged,
                                                       i % 2 == 0 ? cbPostInsideLock : cbPostOutsideLock);
            objMap.Map._Poll(1);
            // Once it is deregistered, nobody may come back to the counter that ends here.
            EXPECT_TRUE(Deregister(hShort));
        }
    });
    vecThread.emplace_back([&] {
        objStart.arrive_and_wait();
        for (int i = 0; i < kRounds / 10; ++i) {
            objMap.Map._InvalidateNodes();
        }
    });
    for (std::thread& objThread : vecThread) {
        objThread.join();
    }
    EXPECT_EQ(nTorn, 0);
    EXPECT_GE(objInside.Calls, 2 * kRounds);
    EXPECT_EQ(objInside.Calls, objOutside.Calls);
    EXPECT_TRUE(Deregister(hInside));
    EXPECT_TRUE(Deregister(hOutside));
}

TEST(NodeMapThreads, DeregisteringWaitsForACallbackThatRunsElsewhere) {
    CTestMap objMap(Reg("R", 0));
    class CSlow {
    public:
        void OnChanged(INode* /*pNode*/) {
            Started.count_down();
            Deregistering.wait();
            // Long enough for an end that doesn't wait to be seen; whether it does wait never hangs on the time.
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            Done = true;
        }
        std::latch Started{1};
        std::latch Deregistering{1};
        std::atomic<bool> Done = false;
    } objSlow;
    const CallbackHandleType hCallback = Register(&objMap.Node("R"), objSlow, &CSlow::OnChanged, cbPostOutsideLock);
    std::thread objWriter([&objMap] { objMap.Integer("R").SetValue(1); });
    objSlow.Started.wait();
    objSlow.Deregistering.count_down();
    EXPECT_TRUE(Deregister(hCallback));
    EXPECT_TRUE(objSlow.Done);
    objWriter.join();
}

TEST(NodeMapThreads, CallbacksThatDeregisterEachOtherDontWaitForEver) {
    constexpr std::size_t kCount = 3;  // each the next one, the last the first
    CTestMap objMap(Reg("R0", 0) + Reg("R1", 4) + Reg("R2", 8));
    std::latch objAllRun(kCount);
    class COne {
    public:
        void OnChanged(INode* /*pNode*/) {
            pAllRun->arrive_and_wait();
            EXPECT_TRUE(Deregister(*pNext));
        }
        std::latch* pAllRun = nullptr;
        const CallbackHandleType* pNext = nullptr;
    } arrOne[kCount];
    CallbackHandleType arrHandle[kCount] = {};
    std::vector<std::thread> vecThread;
    for (std::size_t i = 0; i < kCount; ++i) {
        arrOne[i].pAllRun = &objAllRun;
        arrOne[i].pNext = &arrHandle[(i + 1) % kCount];
        arrHandle[i] =
            Register(&objMap.Node(("R" + std::to_string(i)).c_str()), arrOne[i], &COne::OnChanged, cbPostOutsideLock);
    }
    for (std::size_t i = 0; i < kCount; ++i) {
        vecThread.emplace_back([&, i] { objMap.Integer(("R" + std::to_string(i)).c_str()).SetValue(1); });
    }
    for (std::thread& objThread : vecThread) {
        objThread.join();
    }
}

}  // namespace
