#include <chrono>
#include <functional>
#include <future>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/GenericUpdateAgency.h"
#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/IFUpdater.h"
#include "tests/TLClass/TreeOnDouble.h"

namespace {

using testing::SizeIs;

struct BODY {
    int nRounds;
    std::function<void()> fnRound;
};

/// Runs bodies at once, each on a thread of its own and for its own number of rounds. None runs until another has
/// finished: on a busy machine those that only take a lock and give it back would starve the others.
void RunTogether(const std::vector<BODY>& vecBody) {
    std::latch objStart(static_cast<std::ptrdiff_t>(vecBody.size()));
    std::vector<std::thread> vecThread;
    vecThread.reserve(vecBody.size());
    for (const BODY& objBody : vecBody) {
        vecThread.emplace_back([&objStart, &objBody] {
            objStart.arrive_and_wait();
            for (int i = 0; i < objBody.nRounds; ++i) {
                objBody.fnRound();
            }
        });
    }
    for (std::thread& objThread : vecThread) {
        objThread.join();
    }
}

void ReadEverything() {
    for (const auto& pTL : GetTLManager()->GetTLList()) {
        static_cast<void>(pTL->GetTLInformation().Name.size());
        static_cast<void>(pTL->GetRemovedInterfaceList());
        static_cast<void>(boost::dynamic_pointer_cast<CGevTL>(pTL)->GetInterfaceSpecialInfo());
        for (const auto& pInterface : pTL->GetInterfaceList()) {
            static_cast<void>(pInterface->GetInterfaceInformation());
            static_cast<void>(pInterface->GetCommonInformation());
            static_cast<void>(pInterface->GetXML().size());
            static_cast<void>(pInterface->GetRemovedDeviceList());
            for (const auto& pDevice : pInterface->GetDeviceList()) {
                static_cast<void>(pDevice->GetDeviceInformation());
                static_cast<void>(pDevice->GetCommonInformation());
                static_cast<void>(pDevice->GetSpecialDeviceIP());
                static_cast<void>(boost::dynamic_pointer_cast<CGevDevice>(pDevice)->GetGevDevInfo());
            }
        }
    }
}

void StopEverything() {
    for (const auto& pInterface : CTreeOnDouble::TL()->GetInterfaceList()) {
        CIFUpdater(pInterface).DoStopUpdate();
    }
}

void AskSpecialDevices() {
    CTreeOnDouble::Interface("if-2")->DoUpdateAllSpecialDevices();
}

TEST(ListUpdateThreads, TwoAgenciesReadersAndStopsDontDisturbEachOther) {
    const CTreeOnDouble objTree;
    objTree.Init();
    for (int nInterface = 1; nInterface <= 3; ++nInterface) {
        auto& objInterface = objTree.Double().AddInterface("if-" + std::to_string(nInterface));
        for (int nCamera = 1; nCamera <= 3; ++nCamera) {
            objInterface.Plug("cam-" + std::to_string(nInterface) + "-" + std::to_string(nCamera));
        }
    }
    objTree.UpdateInterfaces();
    objTree.Double().RecordCalls(false);
    ASSERT_TRUE(objTree.Interface("if-2")->DoCreateSpecialDevice("192.168.2.11"));
    objTree.Double().Interface("if-1").WaitWholeWindow();
    int nPlugged = 0;
    const auto GevUpdate = [] {
        bool bChanged = false;
        CGevUpdateAgency({CTreeOnDouble::TL()}).DoLimitedBroadcastUpdate(3, 1, &bChanged);
    };
    const auto GenericUpdate = [] {
        bool bChanged = false;
        CGenericUpdateAgency({CTreeOnDouble::TL()}).DoUpdate(3, 0, &bChanged);
    };
    const auto ChangeTheWorld = [&] {
        objTree.Double().Unplug("cam-2-1");
        objTree.Double().Interface("if-3").Plug("cam-new-" + std::to_string(nPlugged++ % 20));
        objTree.Double().Plug("cam-2-1");
    };
    RunTogether({{10, GevUpdate},
                 {10, GevUpdate},
                 {10, GenericUpdate},
                 {100, ReadEverything},
                 {30, StopEverything},
                 {30, AskSpecialDevices},
                 {100, ChangeTheWorld}});
    objTree.Double().Interface("if-1").WaitWholeWindow(false);
    bool bChanged = false;
    CGevUpdateAgency({CTreeOnDouble::TL()}).DoUpdate(0, 0, &bChanged);
    EXPECT_THAT(objTree.Interface("if-1")->GetDeviceList(), SizeIs(3));
    EXPECT_THAT(objTree.Interface("if-2")->GetDeviceList(), SizeIs(3 + 1));
}

TEST(ListUpdateThreads, ClosingWaitsForAnUpdateThatIsUnderWay) {
    const struct {
        const char* pszHeld;  // an entry that the update calls behind the producer's own search
        std::function<void()> fnUpdate;
        std::function<void()> fnClose;
    } arrCase[] = {
        {"IFGetNumDevices", [] { UpdateDevices(*CTreeOnDouble::Interface("if-1")); },
         [] { CTreeOnDouble::Interface("if-1")->DoCloseInterface(); }},
        {"TLGetNumInterfaces", [] { CTreeOnDouble::UpdateInterfaces(); }, [] { CTreeOnDouble::TL()->DoCloseTL(); }},
    };
    for (const auto& objCase : arrCase) {
        SCOPED_TRACE(objCase.pszHeld);
        const CTreeOnDouble objTree;
        objTree.Init();
        objTree.AddInterface("if-1");
        auto& objBlock = objTree.Double().On(objCase.pszHeld).Block();
        auto futUpdate = std::async(std::launch::async, objCase.fnUpdate);
        ASSERT_TRUE(objBlock.WaitUntilBlocked());
        auto futClose = std::async(std::launch::async, objCase.fnClose);
        // However long this waits, it can only miss a fault, never report one that isn't there.
        EXPECT_EQ(futClose.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
        EXPECT_EQ(objTree.Double().Count("IFClose"), 0U);
        objBlock.Release();
        futUpdate.get();
        futClose.get();
        EXPECT_EQ(objTree.Double().Count("IFClose"), 1U);
    }
}

}  // namespace
