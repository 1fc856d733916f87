#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Event.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/FunctionCallback.h"
#include "tests/TLClass/TLClassMain/CameraOnDouble.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t kLongMs = 10000;
constexpr const char* kEvent = "cam-1:remote!1000";

class COtherCallback : public IEventCallback {
    IEventCallback* Clone() override { return new COtherCallback; }
};

class CUncloneable : public IEventCallback {
    IEventCallback* Clone() override { throw std::runtime_error("no clone"); }
};

class DeviceOfflineEvent : public CCameraOnDouble {
protected:
    DeviceOfflineEvent() { Open(); }

    IDeviceOfflineCallback* Register(std::function<void()> fnOffline) {
        COfflineFunction objCallback(std::move(fnOffline));
        return m_pDevice->RegisterDeviceOfflineCallback(&objCallback);
    }
    IDeviceOfflineCallback* Note(const std::string& strWho) {
        return Register([=, this] { m_vecCalled.push_back(strWho); });
    }
    void Unplug() {
        EXPECT_TRUE(Double().WaitForEventWaiters(kEvent, 1));
        Adapter().Unplug("cam-1");
    }
    /// Behind all others: when it is called, they have been.
    void NoteEnd() {
        Register([this] { m_objEnd.Signal(); });
    }

    std::vector<std::string> m_vecCalled;  // by the event's thread, read behind m_objEnd or the close
    CEvent m_objEnd;
};

TEST_F(DeviceOfflineEvent, RaisesItsFlagThenCallsInOrderOnce) {
    for (int nTurn = 0; nTurn < 2; ++nTurn) {
        m_vecCalled.clear();
        bool bOffline = false;
        Register([&] { bOffline = m_pDevice->IsDeviceOffline(); });
        Note("first");
        m_pDevice->UnregisterDeviceOfflineCallback(Note("gone"));
        m_pDevice->UnregisterDeviceOfflineCallback(nullptr);
        COtherCallback objOther;
        EXPECT_EQ(m_pDevice->RegisterDeviceOfflineCallback(&objOther), nullptr);
        Note("second");
        NoteEnd();
        EXPECT_FALSE(m_pDevice->IsDeviceOffline());
        Unplug();
        EXPECT_TRUE(m_objEnd.Wait(kLongMs));
        m_pDevice->DoCloseDevice();
        EXPECT_TRUE(bOffline);
        EXPECT_THAT(m_vecCalled, ElementsAre("first", "second"));
        EXPECT_FALSE(m_pDevice->IsDeviceOffline());
        EXPECT_THAT(Double().RegisteredEvents(), IsEmpty());

        Adapter().Plug("cam-1");
        UpdateDevices(*m_pInterface);
        Open();
    }
}

TEST_F(DeviceOfflineEvent, CallbackThatThrowsEndsTheWalk) {
    CCollectedLog objLog;
    CEvent objThrowing;
    Register([&] {
        objThrowing.Signal();
        throw std::runtime_error("first");
    });
    Note("second");
    Unplug();
    EXPECT_TRUE(objThrowing.Wait(kLongMs));
    EXPECT_TRUE(m_pDevice->IsDeviceOffline());
    m_pDevice->DoCloseDevice();
    EXPECT_THAT(m_vecCalled, IsEmpty());
    EXPECT_THAT(objLog.Take(), testing::Contains("first"));
}

TEST_F(DeviceOfflineEvent, CallbacksMayChangeTheListThatIsWalked) {
    IDeviceOfflineCallback* pSelf = nullptr;
    IDeviceOfflineCallback* pNext = nullptr;
    pSelf = Register([&, pAlive = std::make_shared<std::string>("self")] {
        m_pDevice->UnregisterDeviceOfflineCallback(pSelf);
        m_pDevice->UnregisterDeviceOfflineCallback(pNext);
        Note("too late");
        m_vecCalled.push_back(*pAlive);
    });
    pNext = Note("next");
    Note("last");
    NoteEnd();
    Unplug();
    EXPECT_TRUE(m_objEnd.Wait(kLongMs));
    m_pDevice->DoCloseDevice();
    EXPECT_THAT(m_vecCalled, ElementsAre("self", "last"));
}

TEST_F(DeviceOfflineEvent, CallbackCantCloseTheDevice) {
    Register([this] {
        EXPECT_THROW(m_pDevice->DoCloseDevice(), CInvalidCallError);
        EXPECT_TRUE(m_pDevice->IsOpened());
        EXPECT_THAT(m_pDevice->GetDataStreamList(), SizeIs(1));
    });
    NoteEnd();
    Unplug();
    EXPECT_TRUE(m_objEnd.Wait(kLongMs));
    m_pDevice->DoCloseDevice();
}

TEST_F(DeviceOfflineEvent, ProducerWithoutItGetsALineAndNoThread) {
    for (const GC_ERROR nError : {GC_ERR_NOT_IMPLEMENTED, GC_ERR_ERROR}) {
        auto& objRule = Double().On("GCRegisterEvent").Fail(nError, "no such event");
        CCollectedLog objLog;
        EXPECT_NE(Note("nobody"), nullptr);
        EXPECT_THAT(objLog.Take(), SizeIs(1));
        EXPECT_EQ(m_pDevice->GetDeviceOfflineEventThreadId(), 0U);
        EXPECT_FALSE(m_pDevice->IsDeviceOffline());
        objRule.Remove();
        m_pDevice->DoCloseDevice();
        Open();
    }
}

TEST_F(DeviceOfflineEvent, RegistrationThatFailsLeavesTheNextOneAWorkingEvent) {
    CUncloneable objUncloneable;
    EXPECT_THROW(m_pDevice->RegisterDeviceOfflineCallback(&objUncloneable), std::runtime_error);
    EXPECT_THAT(Double().RegisteredEvents(), IsEmpty());
    NoteEnd();
    Unplug();
    EXPECT_TRUE(m_objEnd.Wait(kLongMs));
    m_pDevice->DoCloseDevice();
}

TEST_F(DeviceOfflineEvent, RegisteringWhileTheDeviceClosesLeavesNothingBehind) {
    auto& objRule = Double().On("DevClose").Block();
    std::thread objClosing([this] { m_pDevice->DoCloseDevice(); });
    EXPECT_TRUE(objRule.WaitUntilBlocked());
    Note("early");
    objRule.Release();
    objClosing.join();
    EXPECT_THAT(Double().RegisteredEvents(), IsEmpty());
    EXPECT_EQ(m_pDevice->GetDeviceOfflineEventThreadId(), 0U);

    Open();
    NoteEnd();
    Unplug();
    EXPECT_TRUE(m_objEnd.Wait(kLongMs));
    m_pDevice->DoCloseDevice();
    EXPECT_THAT(m_vecCalled, ElementsAre("early"));
}

}  // namespace
