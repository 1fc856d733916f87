#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/NodeCallback.h"
#include "tests/GenApi/TestMap.h"

namespace {

using namespace GenApi_3_0;

/// Notes which nodes it was called for, and does what it is told each time.
class CListener {
public:
    void OnChanged(INode* pNode) {
        Called.push_back(pNode->GetName().str());
        if (Then) {
            Then();
        }
    }
    std::vector<std::string> Take() {
        std::vector<std::string> vecTaken;
        vecTaken.swap(Called);
        return vecTaken;
    }
    CallbackHandleType ListenTo(INode& objNode, ECallbackType eType = cbPostInsideLock) {
        return Register(&objNode, *this, &CListener::OnChanged, eType);
    }

    std::vector<std::string> Called;
    std::function<void()> Then;
};

using Names = std::vector<std::string>;

std::string Chain() {
    return Reg("R", 0) + Reg("Other", 4) + Reg("Copy", 8) +
           "<Integer Name='A'><pValue>R</pValue><pValueCopy>Copy</pValueCopy></Integer>"
           "<Integer Name='B'><pValue>A</pValue><pMax>Other</pMax></Integer>"
           "<IntSwissKnife Name='K'><pVariable Name='A'>A</pVariable><pVariable Name='R'>R</pVariable>"
           "<Formula>A + R</Formula></IntSwissKnife>"
           "<Integer Name='L'><Value>1</Value><pIsLocked>K</pIsLocked></Integer>";
}

TEST(Callbacks, FireOnceForEachNodeThatAChangeTouched) {
    CTestMap objMap(Chain());
    CListener objListener;
    for (const char* pName : {"R", "Other", "Copy", "A", "B", "K", "L"}) {
        objListener.ListenTo(objMap.Node(pName));
    }
    objMap.Integer("B").SetValue(0);
    EXPECT_EQ(objListener.Take(), (Names{"R", "Copy", "A", "B", "K", "L"}));
    objMap.Integer("Other").SetValue(1);
    EXPECT_EQ(objListener.Take(), (Names{"Other", "B"}));
    objMap.Integer("B").GetValue(false, true);
    EXPECT_EQ(objListener.Take(), Names{});
    objMap.Node("K").InvalidateNode();
    EXPECT_EQ(objListener.Take(), (Names{"K", "L"}));
    objMap.Node("L").ImposeAccessMode(RO);
    EXPECT_EQ(objListener.Take(), Names{"L"});
    EXPECT_THROW(objMap.Integer("B").SetValue(2), GenICam_3_0::OutOfRangeException);
    EXPECT_EQ(objListener.Take(), Names{}) << "nothing was written";
    objMap.Map._InvalidateNodes();
    EXPECT_EQ(objListener.Take().size(), 7u);
}

TEST(Callbacks, SeeTheNewValueWithTheLockOrWithoutIt) {
    CTestMap objMap(Chain());
    const auto IsLockFree = [&objMap] {
        bool bFree = false;
        std::thread([&] {
            bFree = objMap.Map._GetLock().TryLock();
            if (bFree) {
                objMap.Map._GetLock().Unlock();
            }
        }).join();
        return bFree;
    };
    std::vector<bool> vecFree;
    CListener objListener;
    objListener.Then = [&] {
        vecFree.push_back(IsLockFree());
        EXPECT_EQ(objMap.Integer("K").GetValue(), 10);
    };
    objListener.ListenTo(objMap.Node("K"), cbPostOutsideLock);
    objListener.ListenTo(objMap.Node("K"), cbPostInsideLock);
    objMap.Integer("A").SetValue(5);
    EXPECT_EQ(vecFree, (std::vector<bool>{false, true}));
}

TEST(Callbacks, CanBeDeregisteredFromInsideThemselvesAndEachOther) {
    for (const ECallbackType eType : {cbPostInsideLock, cbPostOutsideLock}) {
        CTestMap objMap(Chain());
        CListener objFirst;
        CListener objSecond;
        const CallbackHandleType hFirst = objFirst.ListenTo(objMap.Node("R"), eType);
        const CallbackHandleType hSecond = objSecond.ListenTo(objMap.Node("R"), eType);
        objFirst.Then = [&] {
            EXPECT_TRUE(Deregister(hFirst));
            EXPECT_TRUE(Deregister(hSecond));
        };
        objMap.Integer("R").SetValue(1);
        EXPECT_EQ(objFirst.Take(), Names{"R"});
        EXPECT_EQ(objSecond.Take(), Names{}) << "it was deregistered before its turn";
        objMap.Integer("R").SetValue(2);
        EXPECT_EQ(objFirst.Take(), Names{});
        EXPECT_FALSE(Deregister(hFirst));
    }
}

TEST(Callbacks, WithStaleHandlesAreNotFound) {
    CallbackHandleType hCallback = 0;
    CListener objListener;
    {
        CTestMap objMap(Chain());
        hCallback = objListener.ListenTo(objMap.Node("R"));
        EXPECT_FALSE(objMap.Node("A").DeregisterCallback(hCallback)) << "another node's";
    }
    EXPECT_FALSE(Deregister(hCallback));
    EXPECT_FALSE(Deregister(0));
    EXPECT_FALSE(Deregister(-1));
}

TEST(Callbacks, MayWriteThemselves) {
    CTestMap objMap(Chain());
    CListener objListener;
    CListener objOther;
    objListener.Then = [&] { objMap.Integer("Other").SetValue(9); };
    objListener.ListenTo(objMap.Node("R"));
    objOther.ListenTo(objMap.Node("Other"));
    objOther.ListenTo(objMap.Node("B"), cbPostOutsideLock);
    objMap.Integer("A").SetValue(5);
    EXPECT_EQ(objMap.Port.NumberAt(4), 9u);
    EXPECT_EQ(objOther.Take(), (Names{"Other", "B", "B"})) << "B was touched by both writes";

    objListener.Then = [&] { objMap.Integer("R").SetValue(1); };
    EXPECT_THROW(objMap.Integer("R").SetValue(2), GenICam_3_0::RuntimeException) << "an endless chain of writes ends";
    objListener.Then = nullptr;
    objListener.Take();
    objMap.Integer("R").SetValue(3);
    EXPECT_EQ(objListener.Take(), Names{"R"});
}

TEST(Callbacks, ThatThrowKeepNoOtherFromBeingCalled) {
    CTestMap objMap(Chain());
    CListener objThrowing;
    CListener objOther;
    objThrowing.Then = [] { throw std::domain_error("callback"); };
    objThrowing.ListenTo(objMap.Node("R"));
    objOther.ListenTo(objMap.Node("R"));
    objOther.ListenTo(objMap.Node("A"), cbPostOutsideLock);
    EXPECT_THROW(objMap.Integer("R").SetValue(1), std::domain_error);
    EXPECT_EQ(objOther.Take(), (Names{"R", "A"}));
    EXPECT_EQ(objMap.Port.NumberAt(0), 1u);
    EXPECT_TRUE(objMap.Map._GetLock().TryLock());
    objMap.Map._GetLock().Unlock();
}

}  // namespace
