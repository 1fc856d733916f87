#include <future>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/GenericUpdateAgency.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/IFUpdater.h"
#include "TLClass/TLClassMain/TLUpdater.h"
#include "TLClass/TLClassMain/UpdaterList.h"
#include "support/ZrException.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/TreeFixture.h"

/// Runs the threads' functions as nothing else does: without an updater.
class CUpdaterInspection {
public:
    static void RunWithoutUpdater() {
        CTLUpdater::__OnThreadTLUpdate(nullptr);
        CIFUpdater::__OnThreadInterfaceUpdate(nullptr);
    }
};

namespace {

using ProducerDouble::ANSWER;
using ProducerDouble::CALL;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

constexpr std::uint64_t kForeverMs = 3'600'000;  // what no test waits for
constexpr const char* kMode = "DeviceUpdateListMode";
constexpr const char* kStop = "DeviceStopUpdateList";

class ListUpdate : public CTreeTest {
protected:
    ProducerDouble::IPortControl& Port(const std::string& strID) const { return Double().Interface(strID).Port(); }
    static CGevUpdateAgency Agency() { return CGevUpdateAgency({CTreeOnDouble::TL()}); }
    static bool LimitedUpdate(std::uint64_t nTimeoutMs = 0) {
        bool bChanged = false;
        Agency().DoLimitedBroadcastUpdate(nTimeoutMs, 1, &bChanged);
        return bChanged;
    }
    std::vector<std::string> DeviceUpdates() const {
        std::vector<std::string> vecText;
        for (const CALL& objCall : Double().CallsOf("IFUpdateDeviceList")) {
            vecText.push_back(objCall.Text());
        }
        return vecText;
    }
};

TEST_F(ListUpdate, RefreshesInterfacesThenAllTheirDevicesAtOnce) {
    Double().AddInterface("if-1").Plug("cam-1");
    Double().AddInterface("if-2").Plug("cam-2");
    EXPECT_TRUE(LimitedUpdate(500));
    EXPECT_THAT(IDsOf(m_objTree.Interface("if-1")->GetDeviceList()), ElementsAre("cam-1"));
    EXPECT_THAT(IDsOf(m_objTree.Interface("if-2")->GetDeviceList()), ElementsAre("cam-2"));
    ASSERT_THAT(Double().CallsOf("TLUpdateInterfaceList"), SizeIs(1));
    EXPECT_EQ(Double().CallsOf("TLUpdateInterfaceList")[0].Text(), "TLUpdateInterfaceList(tl, 0)");
    EXPECT_THAT(DeviceUpdates(),
                UnorderedElementsAre("IFUpdateDeviceList(if-1, 500)", "IFUpdateDeviceList(if-2, 500)"));
    for (const CALL& objCall : Double().CallsOf("IFUpdateDeviceList")) {
        EXPECT_NE(objCall.nThread, std::this_thread::get_id());
    }
}

TEST_F(ListUpdate, TellsEachInterfaceHowToBroadcast) {
    Double().AddInterface("if-1");
    Double().AddInterface("if-2");
    bool bChanged = false;
    Agency().DoLimitedBroadcastUpdate(0, 0, &bChanged);
    EXPECT_EQ(Port("if-1").Integer(kMode), 1);
    EXPECT_EQ(Port("if-2").Integer(kMode), 1);
    Agency().DoDirectedSubnetBroadcastUpdate(0, 0, &bChanged);
    EXPECT_EQ(Port("if-1").Integer(kMode), 0);
    Agency().DoLimitedBroadcastUpdate(0, 0, &bChanged);
    Agency().DoUpdate(0, 0, &bChanged);
    EXPECT_EQ(Port("if-2").Integer(kMode), 0) << "the directed one is the usual one";
}

TEST_F(ListUpdate, GoesOnWithoutTheModeAndWithoutTheStopCommand) {
    Double().AddInterface("if-1").Plug("cam-1");
    Double().Interface("if-1").SetInfo(INTERFACE_INFO_DISPLAYNAME, ANSWER::Text("The adapter"));
    Port("if-1").RemoveFeature(kMode).RemoveFeature(kStop);
    Double().AddInterface("if-2").Plug("cam-2");
    auto& objBlock = Double().On("IFUpdateDeviceList").For("if-1").Block();
    CCollectedLog objLog;
    auto futUpdate = std::async(std::launch::async, [&] { return LimitedUpdate(kForeverMs); });
    // The second interface has finished, and the update waits for the first, which can't be stopped.
    ASSERT_TRUE(objBlock.WaitUntilBlocked());
    ASSERT_TRUE(Double().WaitForCalls("IFUpdateDeviceList", 2));
    EXPECT_EQ(Port("if-2").Integer(kMode), 1);
    objBlock.Release();
    EXPECT_TRUE(futUpdate.get());
    EXPECT_THAT(IDsOf(m_objTree.Interface("if-1")->GetDeviceList()), ElementsAre("cam-1"));
    EXPECT_THAT(objLog.Take(),
                ElementsAre("Cannot find the feature \"DeviceUpdateListMode\" from the interface \"The adapter\""));
}

TEST_F(ListUpdate, IsOverBeforeAnyDeviceIsLookedForWhenAModeIsRefused) {
    Double().AddInterface("if-1");
    LimitedUpdate();
    Double().ClearCalls();
    auto& objRule = Double().On("GCWritePort").For("if-1").Fail(GC_ERR_ACCESS_DENIED);
    EXPECT_THROW(LimitedUpdate(), CZrException);
    objRule.Remove();
    Double().AddInterface("if-2").Port().RemoveFeature(kMode).AddEnumeration(kMode, 0, {{"Unicast", 0}});
    EXPECT_THROW(LimitedUpdate(), CInvalidParameterError) << "the adapter doesn't know the entry";
    EXPECT_THAT(DeviceUpdates(), IsEmpty());
    EXPECT_THAT(m_objTree.TL()->GetInterfaceList(), SizeIs(2)) << "the transport layers come first";
}

TEST_F(ListUpdate, ClearsTheListsOfInterfacesWithoutAnAddressOnTheCallersThread) {
    Double().AddInterface("if-1").Plug("cam-1");
    LimitedUpdate();
    Double().Interface("if-1").Address({}).Unplug("cam-1");
    Double().ClearCalls();
    EXPECT_FALSE(LimitedUpdate(500)) << "what happens to such an interface doesn't count";
    EXPECT_THAT(m_objTree.Interface("if-1")->GetDeviceList(), IsEmpty());
    EXPECT_THAT(DeviceUpdates(), ElementsAre("IFUpdateDeviceList(if-1, 0)"));
    EXPECT_EQ(Double().CallsOf("IFUpdateDeviceList")[0].nThread, std::this_thread::get_id());

    Double().AddInterface("if-2");
    EXPECT_TRUE(LimitedUpdate()) << "a new interface does";
}

TEST_F(ListUpdate, LeavesInterfacesOfAnotherKindAlone) {
    Double().AddInterface("if-1").SetInfo(INTERFACE_INFO_TLTYPE, ANSWER::Text("U3V"));
    LimitedUpdate();
    EXPECT_THAT(DeviceUpdates(), IsEmpty());
    bool bChanged = true;
    CGenericUpdateAgency({m_objTree.TL()}).DoUpdate(7, 0, &bChanged);
    EXPECT_THAT(DeviceUpdates(), ElementsAre("IFUpdateDeviceList(if-1, 7)")) << "the agency for all kinds doesn't";
    EXPECT_TRUE(bChanged);
    EXPECT_EQ(Port("if-1").Writes(kMode), 1U) << "and leaves the mode as it is";
}

TEST_F(ListUpdate, EndsForAllWhenTheFirstInterfaceHasFinished) {
    for (const char* pszID : {"if-1", "if-2", "if-3"}) {
        Double().AddInterface(pszID).Plug(std::string("cam-") + pszID);
    }
    Double().Interface("if-1").WaitWholeWindow();
    Double().Interface("if-3").WaitWholeWindow();
    auto& objBlock = Double().On("IFUpdateDeviceList").For("if-2").Block();
    auto futUpdate = std::async(std::launch::async, [&] { return LimitedUpdate(kForeverMs); });
    // All three are inside the producer before the second may finish.
    ASSERT_TRUE(objBlock.WaitUntilBlocked());
    ASSERT_TRUE(Double().WaitForCalls("IFUpdateDeviceList", 3));
    EXPECT_EQ(Port("if-1").Writes(kStop) + Port("if-3").Writes(kStop), 0U);
    objBlock.Release();
    EXPECT_TRUE(futUpdate.get());
    EXPECT_EQ(Port("if-1").Writes(kStop), 1U);
    EXPECT_EQ(Port("if-2").Writes(kStop), 0U);
    EXPECT_EQ(Port("if-3").Writes(kStop), 1U);
    for (const auto& pInterface : m_objTree.TL()->GetInterfaceList()) {
        EXPECT_THAT(pInterface->GetDeviceList(), SizeIs(1)) << "an update cut short drops no camera";
    }
}

TEST_F(ListUpdate, WaitsForItsThreadsAlsoWhenAStopIsRefused) {
    Double().AddInterface("if-1").Plug("cam-1");
    Double().AddInterface("if-2");
    LimitedUpdate();
    Double().ClearCalls();
    auto& objBlock = Double().On("IFUpdateDeviceList").For("if-1").Block();
    auto& objRefusal = Double().On("GCWritePort").Address(Port("if-1").AddressOf(kStop)).Block();
    objRefusal.Fail(GC_ERR_ACCESS_DENIED);
    auto futUpdate = std::async(std::launch::async, [&] { return LimitedUpdate(0); });
    ASSERT_TRUE(objBlock.WaitUntilBlocked());
    ASSERT_TRUE(objRefusal.WaitUntilBlocked());
    objRefusal.Release();
    objBlock.Release();
    EXPECT_THROW(futUpdate.get(), CZrException);
    EXPECT_THAT(IDsOf(m_objTree.Interface("if-1")->GetDeviceList()), ElementsAre("cam-1"));
}

// What a list update throws on a thread of its own is nobody's to catch.
TEST_F(ListUpdate, EndsTheProcessWhenAThreadOfItThrows) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Double().AddInterface("if-1").SelectorMax(5);
    EXPECT_DEATH(LimitedUpdate(), "The two device information vectors have different size");
}

TEST_F(ListUpdate, DropsASecondStartWhileTheFirstRuns) {
    const auto pInterface = m_objTree.AddInterface("if-1");
    auto& objBlock = Double().On("IFUpdateDeviceList").Block();
    CIFUpdater objUpdater(pInterface);
    EXPECT_TRUE(objUpdater.IsUpdateFinished());
    objUpdater.DoUpdate(5);
    ASSERT_TRUE(objBlock.WaitUntilBlocked());
    EXPECT_FALSE(objUpdater.IsUpdateFinished());
    objUpdater.DoUpdate(6);
    EXPECT_EQ(objUpdater.GetTimeout(), 5U);
    EXPECT_FALSE(WaitAllUpdatersFinished({boost::shared_ptr<IUpdater>(&objUpdater, [](IUpdater*) {})}, 1));
    EXPECT_FALSE(WaitAnyUpdaterFinished({boost::shared_ptr<IUpdater>(&objUpdater, [](IUpdater*) {})}, 1));
    objBlock.Release();
    EXPECT_TRUE(WaitAllUpdatersFinished({boost::shared_ptr<IUpdater>(&objUpdater, [](IUpdater*) {})}, kNoLimitMs));
    EXPECT_TRUE(objUpdater.IsChanged());
    EXPECT_THAT(DeviceUpdates(), ElementsAre("IFUpdateDeviceList(if-1, 5)"));
}

TEST_F(ListUpdate, PassesOverWhatIsMissing) {
    EXPECT_THAT(CreateTLUpdaters({nullptr, m_objTree.TL(), nullptr}), SizeIs(1));
    EXPECT_THAT(CreateIFUpdaters({nullptr}), IsEmpty());
    const UPDATER_LIST vecNone = {nullptr, nullptr};
    StartUpdaters(vecNone, kForeverMs, 1);
    StopUnfinishedUpdaters(vecNone);
    EXPECT_TRUE(AreAllUpdatersFinished(vecNone));
    EXPECT_FALSE(IsAnyUpdaterFinished(vecNone));
    EXPECT_TRUE(WaitAnyUpdaterFinished(vecNone, kNoLimitMs));
    EXPECT_FALSE(IsAnyUpdaterChanged(vecNone));

    const auto pInterface = m_objTree.AddInterface("if-1");
    pInterface->DoCloseInterface();
    CCollectedLog objLog;
    CIFUpdater(pInterface).DoStopUpdate();
    CUpdaterInspection::RunWithoutUpdater();
    EXPECT_THAT(objLog.Take(),
                ElementsAre(HasSubstr("'CIFUpdater::DoStopUpdate':Null IFeatureControl pointer"),
                            HasSubstr("'CTLUpdater::__OnThreadTLUpdate':Null CTLUpdater pointer"),
                            HasSubstr("'CIFUpdater::__OnThreadInterfaceUpdate':Null CIFUpdater pointer")));
}

}  // namespace
