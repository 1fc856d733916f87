#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/InterfaceFactory.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/Thrown.h"
#include "tests/TLClass/TreeFixture.h"

namespace {

using ProducerDouble::Ipv4;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

class TransportLayer : public CTreeTest {
protected:
    static std::vector<std::string> Listed() { return IDsOf(CTreeOnDouble::TL()->GetInterfaceList()); }
    static std::vector<std::string> Removed() { return IDsOf(CTreeOnDouble::TL()->GetRemovedInterfaceList()); }
};

TEST_F(TransportLayer, OpensEveryInterfaceThatAnUpdateFinds) {
    Double().AddInterface("if-1").Plug("cam-1");
    Double().AddInterface("if-2");
    EXPECT_TRUE(m_objTree.UpdateInterfaces());
    EXPECT_THAT(Listed(), ElementsAre("if-1", "if-2"));
    const auto pInterface = m_objTree.Interface("if-1");
    EXPECT_TRUE(pInterface->IsOpened());
    EXPECT_NE(pInterface->GetHandle(), nullptr);
    EXPECT_EQ(pInterface->GetTL(), m_objTree.TL());
    EXPECT_EQ(pInterface->GetCommonInformation().Description, "Adapter if-1");
    EXPECT_EQ(pInterface->GetInterfaceInformation().pSpecialInfo, nullptr);
    EXPECT_THAT(pInterface->GetDeviceList(), IsEmpty());
    EXPECT_THAT(Double().OpenModules(), ElementsAre("tl", "if-1", "if-2"));
}

TEST_F(TransportLayer, KeepsTheObjectsOfInterfacesThroughChangesOfTheList) {
    const auto pFirst = m_objTree.AddInterface("if-1");
    const auto pSecond = m_objTree.AddInterface("if-2");
    const IF_HANDLE hFirst = pFirst->GetHandle();
    const struct {
        const char* pszWhat;
        std::vector<std::string> vecInWorld;
        std::vector<boost::shared_ptr<IInterface>> vecListed;
        std::vector<boost::shared_ptr<IInterface>> vecRemoved;
        bool bChanged;
    } arrStep[] = {
        {"nothing changes", {"if-1", "if-2"}, {pFirst, pSecond}, {}, false},
        {"they change places", {"if-2", "if-1"}, {pSecond, pFirst}, {}, true},
        {"one goes", {"if-2"}, {pSecond}, {pFirst}, true},
        {"it stays away", {"if-2"}, {pSecond}, {pFirst}, false},
        {"the other goes too", {}, {}, {pSecond, pFirst}, true},
        {"both come back", {"if-1", "if-2"}, {pFirst, pSecond}, {}, true},
        {"one is listed twice", {"if-1", "if-1"}, {pFirst, pFirst}, {pSecond}, true},
        {"once again", {"if-1", "if-2"}, {pFirst, pSecond}, {}, true},
    };
    for (const auto& objStep : arrStep) {
        SCOPED_TRACE(objStep.pszWhat);
        Double().Lists(objStep.vecInWorld);
        EXPECT_EQ(m_objTree.UpdateInterfaces(), objStep.bChanged);
        EXPECT_EQ(m_objTree.TL()->GetInterfaceList(), objStep.vecListed);
        EXPECT_EQ(m_objTree.TL()->GetRemovedInterfaceList(), objStep.vecRemoved);
    }
    EXPECT_EQ(pFirst->GetHandle(), hFirst);
    EXPECT_EQ(Double().Count("TLOpenInterface"), 2U);
    EXPECT_EQ(Double().Count("IFClose"), 0U);
}

TEST_F(TransportLayer, RefreshesTheRecordsOfAKnownInterface) {
    const auto pInterface = m_objTree.AddInterface("if-1");
    Double().Interface("if-1").SetInfo(INTERFACE_INFO_DISPLAYNAME, ProducerDouble::ANSWER::Text("Renamed"));
    Double().Interface("if-1").Address({Ipv4(10, 0, 0, 7), Ipv4(255, 0, 0, 0), Ipv4(10, 0, 0, 1), 0x0200AABBCCDD});
    m_objTree.UpdateInterfaces();
    EXPECT_EQ(pInterface->GetInterfaceInformation().DisplayName, "Renamed");
    EXPECT_EQ(pInterface->GetInterfaceInformation().pSpecialInfo, nullptr);
    const GEV_IF_INFO objInfo = pInterface->GetGevIfInfo();
    EXPECT_EQ(objInfo.IPAddress, Ipv4(10, 0, 0, 7));
    EXPECT_EQ(objInfo.SubnetMask, Ipv4(255, 0, 0, 0));
    EXPECT_EQ(objInfo.Gateway, Ipv4(10, 0, 0, 1));
    EXPECT_EQ(objInfo.MACAddress, 0x0200AABBCCDD);
    EXPECT_THAT(m_objTree.TL()->GetInterfaceSpecialInfo(), SizeIs(1));
}

TEST_F(TransportLayer, KeepsItsListWhenTheProducerRefusesToUpdate) {
    m_objTree.AddInterface("if-1");
    Double().AddInterface("if-2");
    for (const GC_ERROR nCode : {GC_ERROR{GC_ERR_TIMEOUT}, GC_ERROR{GC_ERR_IO}}) {
        CCollectedLog objLog;
        auto& objRule = Double().On("TLUpdateInterfaceList").FailAfterwards(nCode, "not now");
        objRule.Count(0xFF);  // a flag that is neither true nor false
        EXPECT_TRUE(m_objTree.UpdateInterfaces()) << "the flag is what the producer left";
        objRule.Remove();
        EXPECT_THAT(Listed(), ElementsAre("if-1"));
        EXPECT_THAT(objLog.Take(), ElementsAre(HasSubstr("'CTL::DoUpdateInterfaceList':not now")));
    }
}

TEST_F(TransportLayer, FailsAnUpdateWhoseListsDontMatchAndKeepsWhatItHad) {
    const auto pInterface = m_objTree.AddInterface("if-1");
    Double().AddInterface("if-2");
    for (const std::int64_t nMax : {std::int64_t{-1}, std::int64_t{0}, std::int64_t{2}, INT64_MAX, INT64_MIN}) {
        Double().SelectorMax(nMax);
        EXPECT_THAT(ThrownBy<CUnexpectedError>([this] { m_objTree.UpdateInterfaces(); }),
                    MatchesRegex("The two interface information vectors have different size, .*, -1"))
            << nMax;
        EXPECT_THAT(m_objTree.TL()->GetInterfaceList(), ElementsAre(pInterface));
        EXPECT_THAT(m_objTree.TL()->GetInterfaceSpecialInfo(), IsEmpty());
    }
    Double().SelectorMax({});
    m_objTree.UpdateInterfaces();
    EXPECT_THAT(Listed(), ElementsAre("if-1", "if-2"));
}

TEST_F(TransportLayer, PassesOnWhatFailsBehindTheProducersUpdate) {
    const auto pFirst = m_objTree.AddInterface("if-1");
    Double().AddInterface("if-2");
    Double().Lists({{"if-2"}});
    for (const char* pszEntry : {"TLGetNumInterfaces", "TLOpenInterface", "GCGetNumPortURLs"}) {
        auto& objRule = Double().On(pszEntry).Fail(GC_ERR_ACCESS_DENIED);
        EXPECT_THROW(m_objTree.UpdateInterfaces(), CInvalidAccessError) << pszEntry;
        objRule.Remove();
        EXPECT_THAT(m_objTree.TL()->GetInterfaceList(), ElementsAre(pFirst)) << pszEntry;
    }
    EXPECT_EQ(Double().Count("IFClose"), 1U) << "an interface without a description is closed again";
    EXPECT_THAT(Removed(), ElementsAre("if-1")) << "whoever vanishes is set aside before anything is opened";
    m_objTree.UpdateInterfaces();
    EXPECT_THAT(Listed(), ElementsAre("if-2"));
    EXPECT_THAT(Removed(), ElementsAre("if-1"));
}

TEST_F(TransportLayer, TakesBackWhatAnUpdateHasOpenedThatFailsHalfWay) {
    const auto pAway = m_objTree.AddInterface("if-1");
    Double().Lists(std::vector<std::string>{});
    m_objTree.UpdateInterfaces();
    Double().AddInterface("if-2");
    Double().AddInterface("if-3");
    Double().Lists({{"if-1", "if-2", "if-3"}});
    Double().On("TLOpenInterface").For("if-3").Call(1).Fail(GC_ERR_IO);
    EXPECT_THROW(m_objTree.UpdateInterfaces(), CUnexpectedError);
    EXPECT_THAT(Double().OpenModules(), ElementsAre("tl", "if-1"));
    EXPECT_THAT(Removed(), ElementsAre("if-1")) << "one that came back isn't lost";
    m_objTree.UpdateInterfaces();
    EXPECT_THAT(Listed(), ElementsAre("if-1", "if-2", "if-3"));
    EXPECT_EQ(m_objTree.Interface("if-1"), pAway);
}

TEST_F(TransportLayer, OpensAnInterfaceOnceThatIsListedTwiceFromTheStart) {
    Double().AddInterface("if-1");
    Double().Lists({{"if-1", "if-1"}});
    m_objTree.UpdateInterfaces();
    const auto pInterface = m_objTree.Interface("if-1");
    EXPECT_THAT(m_objTree.TL()->GetInterfaceList(), ElementsAre(pInterface, pInterface));
}

TEST_F(TransportLayer, DoesNothingWhileClosed) {
    const auto pTL = m_objTree.TL();
    pTL->DoOpenTL();  // is open
    EXPECT_EQ(Double().Count("TLOpen"), 1U);
    pTL->DoCloseTL();
    Double().ClearCalls();
    bool bChanged = true;
    pTL->DoUpdateInterfaceList(0, &bChanged);
    EXPECT_FALSE(bChanged);
    pTL->DoCloseTL();
    EXPECT_THAT(Double().Calls(), IsEmpty());
}

TEST_F(TransportLayer, ClosesListedAndRemovedInterfacesWithItself) {
    const auto pListed = m_objTree.AddInterface("if-1");
    const auto pGone = m_objTree.AddInterface("if-2");
    Double().RemoveInterface("if-2");
    m_objTree.UpdateInterfaces();
    const auto pTL = m_objTree.TL();
    CCollectedLog objLog;
    Double().On("TLClose").Fail(GC_ERR_IO, "stuck");
    Double().On("IFClose").For("if-1").Fail(GC_ERR_IO, "stuck too");
    pTL->DoCloseTL();
    EXPECT_THAT(objLog.Take(), ElementsAre(HasSubstr("'CInterface::DoCloseInterface':stuck too"),
                                           HasSubstr("'CTL::DoCloseTL':stuck")));
    EXPECT_FALSE(pListed->IsOpened());
    EXPECT_FALSE(pGone->IsOpened());
    EXPECT_FALSE(pTL->IsOpened());
    EXPECT_EQ(pTL->GetHandle(), nullptr);
    EXPECT_EQ(pTL->GetNodeMap(), nullptr);
    EXPECT_EQ(pTL->GetTLInformation().TLType, "");
    EXPECT_FALSE(pTL->GetGevTLInfo().VersionMajorValid);
    EXPECT_THAT(pTL->GetInterfaceList(), IsEmpty());
    EXPECT_THAT(pTL->GetRemovedInterfaceList(), IsEmpty());
    EXPECT_EQ(pListed->GetGevIfInfo().IPAddress, 0);
    EXPECT_EQ(pListed->GetCommonInformation().Description, "");
}

TEST_F(TransportLayer, ChoosesTheClassOfAnInterfaceByItsTypeToTheLetter) {
    for (const char* pszType : {"GEV", "gev", "GEV ", ""}) {
        IF_MODULE_INFO objRecord;
        objRecord.TLType = pszType;
        const boost::shared_ptr<IInterface> pInterface(
            CInterfaceFactory::CreateInterface(nullptr, m_objTree.TL(), nullptr, objRecord));
        EXPECT_EQ(dynamic_cast<CGevInterface*>(pInterface.get()) != nullptr, std::string(pszType) == "GEV") << pszType;
    }
}

TEST_F(TransportLayer, LeavesAChildOfAnotherKindOutOfItsList) {
    const auto pInterface = m_objTree.AddInterface("if-1");
    Double().Interface("if-1").Plug("cam-1");
    UpdateDevices(*pInterface);
    const CGcObjectPointer pDevice = pInterface->GetDeviceList().at(0);
    CCollectedLog objLog;
    m_objTree.TL()->AddGcObject(pDevice);
    EXPECT_THAT(Listed(), ElementsAre("if-1"));
    EXPECT_THAT(objLog.Take(), ElementsAre(HasSubstr("'CGcObject::_GetGcObjectList':Invalid CGcObject type")));
    EXPECT_EQ(m_objTree.TL()->FindGcObject(pDevice.get()), pDevice);

    m_objTree.TL()->AddGcObject(pDevice);
    m_objTree.TL()->RemoveGcObject(pDevice);  // every one of it
    EXPECT_FALSE(m_objTree.TL()->FindGcObject(pDevice.get()));
    m_objTree.TL()->RemoveGcObject(pDevice);
    EXPECT_THAT(Listed(), ElementsAre("if-1"));
    EXPECT_THAT(objLog.Take(), IsEmpty());
}

}  // namespace
