// The door to the module tree, in front of a producer that the tests script.

#include <string>
#include <vector>

#include <boost/pointer_cast.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassMain/IInterface.h"
#include "app/EnumerationService.h"
#include "support/Environment.h"
#include "tests/producer_double/ProducerLibrary.h"

namespace {

using ProducerDouble::ANSWER;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Names(const std::vector<CGcObjectPointer>& vecObject) {
    std::vector<std::string> vecName;
    for (const CGcObjectPointer& pObject : vecObject) {
        if (const auto pInterface = boost::dynamic_pointer_cast<IInterface>(pObject)) {
            vecName.push_back(pInterface->GetInterfaceInformation().ID);
        } else if (const auto pDevice = boost::dynamic_pointer_cast<IDevice>(pObject)) {
            vecName.push_back(pDevice->GetDeviceInformation().ID);
        }
    }
    return vecName;
}

class EnumerationService : public testing::Test {
protected:
    void SetUp() override { SetEnvironment("GENICAM_GENTL64_PATH", PRODUCER_DOUBLE_DIRECTORY); }

    ProducerDouble::IProducerControl& Producer() { return *m_objProducer; }

    /// Two adapters; of the two cameras on the second, the first has neither vendor nor model.
    void CableUp() {
        Producer().AddInterface("if-1").Plug("cam-1");
        auto& objSecond = Producer().AddInterface("if-2");
        auto& objNameless = objSecond.Plug("cam-2");
        objNameless.SetInfo(DEVICE_INFO_VENDOR, ANSWER::Text(""));
        objNameless.SetInfo(DEVICE_INFO_MODEL, ANSWER::Text(""));
        objSecond.Plug("cam-3").SetInfo(DEVICE_INFO_MODEL, ANSWER::Text(""));
    }

    ProducerDouble::CProducerLibrary m_objProducer{PRODUCER_DOUBLE};
};

TEST_F(EnumerationService, FileNamesAreWhatStandsBetweenTheSeparators) {
    EXPECT_THAT(CEnumerationService::GetInstance()->GetTLFileNames(), ElementsAre("ZrGVTL.cti"));
    EXPECT_THAT(CEnumerationService("b.cti;a b.cti;").GetTLFileNames(), ElementsAre("b.cti", "a b.cti"));
    EXPECT_THAT(CEnumerationService(";;").GetTLFileNames(), IsEmpty());
}

TEST_F(EnumerationService, ObjectsAreTheInterfacesAndThenTheDevicesThatHaveAVendorOrAModel) {
    CableUp();
    CEnumerationService objService("ZrGVTL.cti");
    objService.Init();
    EXPECT_THAT(objService.GetAllObjects(), IsEmpty());
    EXPECT_EQ(objService.UpdateDeviceList(0), 0U);
    EXPECT_THAT(Names(objService.GetAllObjects()), ElementsAre("if-1", "if-2", "cam-1", "cam-3"));

    const boost::shared_ptr<ITL> pTL = objService.GetAllTLs().at(0);
    EXPECT_EQ(objService.GetObjectsOfTL(pTL), objService.GetAllObjects());
    const boost::shared_ptr<IInterface> pSecond = objService.GetInterfaces(pTL).at(1);
    EXPECT_THAT(Names(objService.GetNamedDevices(pSecond)), ElementsAre("cam-3"));
    EXPECT_EQ(objService.GetDevices(pSecond).size(), 2U);
    EXPECT_THAT(objService.GetObjectsOfTL({}), IsEmpty());
    EXPECT_THAT(objService.GetNamedDevices({}), IsEmpty());

    objService.Uninit();
    EXPECT_THAT(objService.GetAllTLs(), IsEmpty());
    EXPECT_THAT(Producer().OpenModules(), IsEmpty());
}

TEST_F(EnumerationService, ATransportLayerOfAnotherKindIsListedButNotUpdated) {
    CableUp();
    Producer().SetInfo(TL_INFO_TLTYPE, ANSWER::Text("U3V"));
    CEnumerationService objService("ZrGVTL.cti");
    objService.Init();
    EXPECT_EQ(objService.UpdateDeviceList(0), 0U);
    EXPECT_EQ(objService.GetAllTLs().size(), 1U);
    EXPECT_THAT(objService.GetGevTLs(), IsEmpty());
    EXPECT_EQ(Producer().Count("TLUpdateInterfaceList"), 0U);
    objService.Uninit();
}

TEST_F(EnumerationService, AStartThatFailedIsTriedAgainOnlyAfterAStop) {
    auto& objRefusal = Producer().On("GCInitLib").Fail(GC_ERR_ERROR, "no licence");
    CEnumerationService objService("ZrGVTL.cti");
    objService.Init();
    EXPECT_EQ(Producer().Count("GCInitLib"), 1U);
    EXPECT_THAT(objService.GetAllTLs(), IsEmpty());

    objRefusal.Remove();
    objService.Init();
    EXPECT_EQ(Producer().Count("GCInitLib"), 1U);

    objService.Uninit();
    objService.Init();
    EXPECT_EQ(objService.GetAllTLs().size(), 1U);
    objService.Init();  // once it runs, another start changes nothing
    EXPECT_EQ(Producer().Count("GCInitLib"), 2U);
    objService.Uninit();
    objService.Uninit();
    EXPECT_EQ(Producer().Count("GCCloseLib"), 1U);
}

}  // namespace
