#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/Integer.h"
#include "GenApi/Node.h"
#include "GenApi/NodeCallback.h"
#include "TLClass/TLClassEvent/RemoteDeviceEvent.h"
#include "support/Event.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/TLClassMain/CameraOnDouble.h"

namespace {

using ProducerDouble::ANSWER;
using ProducerDouble::BYTES;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t kLongMs = 10000;
constexpr const char* kEvent = "cam-1!4";
constexpr std::uint64_t kExposureEnd = 0x9001;
constexpr const char* kDescription = R"(<RegisterDescription ModelName="M" VendorName="V" SchemaMajorVersion="1"
    SchemaMinorVersion="1" SchemaSubMinorVersion="0">
  <Port Name="Device"/><Port Name="ExposureEndPort"><EventID>9001</EventID></Port>
  <IntReg Name="EventExposureEndFrameID"><Address>0</Address><Length>1</Length><AccessMode>RO</AccessMode>
    <pPort>ExposureEndPort</pPort><Endianess>BigEndian</Endianess></IntReg>
</RegisterDescription>)";

class RemoteDeviceEvent : public CCameraOnDouble {
protected:
    RemoteDeviceEvent() {
        Camera().Remote().Describe(kDescription);
        Open();
        m_pNode = m_pDevice->GetRemoteNodeMap()->_GetNode("EventExposureEndFrameID");
        GenApi_3_0::Register(m_pNode, *this, &RemoteDeviceEvent::OnChanged);
    }

    void OnChanged(GenApi_3_0::INode* pNode) {
        if (pNode->GetAccessMode() != GenApi_3_0::RO) {
            return;  // the stop has taken the event's data away
        }
        m_nFrameID = dynamic_cast<GenApi_3_0::IInteger&>(*pNode).GetValue();
        m_objChanged.Signal();
        m_fnChanged();
    }
    /// Sends the event and waits for it to arrive.
    void Send(std::uint8_t nFrameID) {
        EXPECT_TRUE(Camera().PushEvent(kExposureEnd, {std::byte{nFrameID}}));
        EXPECT_TRUE(m_objChanged.Wait(kLongMs));
        EXPECT_EQ(m_nFrameID, nFrameID);
    }
    void ExpectStopped() const {
        EXPECT_EQ(m_pDevice->GetRemoteDeviceEventThreadId(), 0U);
        EXPECT_THAT(Double().RegisteredEvents(), IsEmpty());
    }

    GenApi_3_0::INode* m_pNode = nullptr;
    std::atomic<std::int64_t> m_nFrameID = 0;  // of the event that came last
    CEvent m_objChanged;
    std::function<void()> m_fnChanged = [] {};
};

TEST_F(RemoteDeviceEvent, ReachesTheNodeMapAndItsCallbacks) {
    CCollectedLog objLog;
    EXPECT_EQ(m_pDevice->GetEventNumInQueue(), 0U);
    EXPECT_NO_THROW(m_pDevice->FlushRemoteDeviceEvent());
    m_pDevice->StartRemoteDeviceEvent();
    m_pDevice->StartRemoteDeviceEvent();
    Send(5);
    Send(6);
    EXPECT_TRUE(Double().WaitForEventWaiters(kEvent, 1));
    m_pDevice->DoCloseDevice();
    ExpectStopped();
    EXPECT_EQ(m_pDevice->GetEventNumInQueue(), 0U);
    EXPECT_THAT(objLog.Take(), IsEmpty());
}

TEST_F(RemoteDeviceEvent, CallbackCantCloseTheDevice) {
    m_pDevice->StartRemoteDeviceEvent();
    int nRefused = 0;
    m_fnChanged = [&] {
        EXPECT_THROW(m_pDevice->DoCloseDevice(), CInvalidCallError);
        ++nRefused;
    };
    Send(1);  // and the callback asks while the device is being closed
    m_pDevice->DoCloseDevice();
    EXPECT_EQ(nRefused, 1);
    ExpectStopped();
}

TEST_F(RemoteDeviceEvent, EndsBeforeTheNodeMapOfADeviceThatIsLetGoOpen) {
    m_pDevice->DoCloseDevice();
    Double().On("DevGetNumDataStreams").Count(0);  // streams would hold the device
    Adapter().Unplug("cam-1");
    UpdateDevices(*m_pInterface);
    Adapter().Plug("cam-1");
    UpdateDevices(*m_pInterface);  // lists another object
    Open();
    m_pDevice->StartRemoteDeviceEvent();
    EXPECT_TRUE(Double().WaitForEventWaiters(kEvent, 1));
    m_pDevice.reset();
    EXPECT_THAT(Double().RegisteredEvents(), IsEmpty());
}

TEST_F(RemoteDeviceEvent, OneThatIsBadDoesntEndTheThread) {
    Camera().DeclareEventSizes(64, 8);
    m_pDevice->StartRemoteDeviceEvent();
    const std::function<void()> tblBad[] = {
        [&] { Double().On("EventGetData").Call(1).Fail(GC_ERR_IO); },
        [&] { Double().On("EventGetDataInfo").Command(EVENT_DATA_NUMID).Call(1).Fail(GC_ERR_IO); },
        [&] { Double().On("EventGetDataInfo").Command(EVENT_DATA_VALUE).Call(1).Fail(GC_ERR_IO); },
        [&] { Camera().PushEvent(kExposureEnd, BYTES(9)); },  // more than was declared
        [&] { m_fnChanged = [this] { m_fnChanged = [] {}, throw std::runtime_error("callback"); }; },
    };
    for (const auto& fnBad : tblBad) {
        CCollectedLog objLog;
        EXPECT_TRUE(Double().WaitForEventWaiters(kEvent, 1));
        fnBad();
        Camera().PushEvent(kExposureEnd, {std::byte{1}});
        Camera().PushEvent(kExposureEnd, {std::byte{2}});
        while (m_objChanged.Wait(kLongMs) && m_nFrameID != 2) {
        }
        EXPECT_EQ(m_nFrameID, 2);
        m_nFrameID = 0;
        EXPECT_TRUE(Double().WaitForEventWaiters(kEvent, 1));
        EXPECT_THAT(objLog.Take(), SizeIs(testing::Ge(1U)));
    }
    // A producer that says more than there is room for is believed up to the room.
    auto& objLie = Double().On("EventGetData").Answer(ANSWER::Bytes(BYTES(9)).ReportingAs(1U << 30U));
    Camera().PushEvent(kExposureEnd, {});  // ends the wait that the rule came too late for
    EXPECT_TRUE(Double().WaitForCalls("EventGetDataInfo", Double().Count("EventGetDataInfo") + 2));
    objLie.Remove();
    m_pDevice->DoCloseDevice();
}

TEST_F(RemoteDeviceEvent, StartsOrLeavesNothing) {
    const auto Start = [this] { m_pDevice->StartRemoteDeviceEvent(); };
    const auto Undo = [this] {
        m_pDevice->DoCloseDevice();
        Open();
    };
    EXPECT_THAT(FailAtEachStep(Start, Undo, [this] { ExpectStopped(); }), IsEmpty());

    auto& objRule = Double().On("GCRegisterEvent").FailAfterwards(GC_ERR_IO);
    EXPECT_THROW(Start(), CUnexpectedError);
    ExpectStopped();
    objRule.Remove();

    Camera().DeclareEventSizes(CRemoteDeviceEvent::kMaxEventSize, CRemoteDeviceEvent::kMaxEventSize + 1);
    EXPECT_THROW(Start(), CUnexpectedError);
    ExpectStopped();

    CCollectedLog objLog;
    Double().On("GCRegisterEvent").Fail(GC_ERR_NOT_IMPLEMENTED, "no such event");
    m_pDevice->StartRemoteDeviceEvent();
    EXPECT_THAT(objLog.Take(), SizeIs(1));
    ExpectStopped();
    EXPECT_EQ(m_pDevice->GetEventNumInQueue(), 0U);
}

TEST_F(RemoteDeviceEvent, WaitingOnesAreCountedAndDropped) {
    m_pDevice->StartRemoteDeviceEvent();
    CEvent objGo;
    std::array<std::uint64_t, 2> arrWaiting{};
    m_fnChanged = [&] {  // a node's callback may ask, too
        EXPECT_TRUE(objGo.Wait(kLongMs));
        arrWaiting[0] = m_pDevice->GetEventNumInQueue();
        m_pDevice->FlushRemoteDeviceEvent();
        arrWaiting[1] = m_pDevice->GetEventNumInQueue();
    };
    Send(1);
    for (std::uint8_t nFrameID = 2; nFrameID < 5; ++nFrameID) {
        Camera().PushEvent(kExposureEnd, {std::byte{nFrameID}});
    }
    objGo.Signal();
    m_pDevice->DoCloseDevice();
    EXPECT_THAT(arrWaiting, testing::ElementsAre(3U, 0U));
    EXPECT_EQ(m_nFrameID, 1);
}

}  // namespace
