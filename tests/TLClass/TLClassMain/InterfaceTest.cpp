#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <boost/weak_ptr.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/Thrown.h"
#include "tests/TLClass/TreeFixture.h"

namespace {

using ProducerDouble::ANSWER;
using ProducerDouble::Ipv4;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

/// A device that does something else first when a list update asks for its ID.
class CDeviceAsked : public CGevDevice {
public:
    CDeviceAsked(const boost::shared_ptr<IInterface>& pInterface, std::function<void()> fnAsked)
        : CGevDevice(pInterface->GetLib(), pInterface, pInterface->GetHandle(), {}, {}, {}),
          m_fnAsked(std::move(fnAsked)) {}

    DEV_MODULE_INFO GetDeviceInformation() const override {
        if (const auto fnAsked = std::exchange(m_fnAsked, nullptr)) {
            fnAsked();
        }
        return CGevDevice::GetDeviceInformation();
    }

private:
    mutable std::function<void()> m_fnAsked;
};

class Interface : public CAdapterTest {
protected:
    std::vector<std::string> Listed() const { return IDsOf(m_pInterface->GetDeviceList()); }
    std::vector<std::string> Removed() const { return IDsOf(m_pInterface->GetRemovedDeviceList()); }
};

TEST_F(Interface, FillsTheRecordsOfADeviceFromTheCallsAndFromTheFeatures) {
    auto& objCamera = Adapter().Plug("cam-1");
    objCamera.Identity("Maker", "Eye", "SN-7").UserId("left");
    objCamera.Address({Ipv4(10, 0, 0, 9), Ipv4(255, 0, 0, 0), Ipv4(10, 0, 0, 1), 0x020A0B0C0D0E});
    EXPECT_TRUE(Update());
    const auto pDevice = Device(0);
    const DEV_MODULE_INFO objInfo = pDevice->GetDeviceInformation();
    EXPECT_EQ(objInfo.ID, "cam-1");
    EXPECT_EQ(objInfo.Vendor, "Maker");
    EXPECT_EQ(objInfo.pCommonInfo, nullptr);
    EXPECT_EQ(objInfo.pSpecialInfo, nullptr);
    EXPECT_EQ(pDevice->GetCommonInformation().SerialNumber, "SN-7");
    EXPECT_EQ(pDevice->GetCommonInformation().Version, "1.0.0");
    EXPECT_EQ(pDevice->GetCommonInformation().UserID, "left");
    EXPECT_EQ(pDevice->GetGevDevInfo().IPAddress, Ipv4(10, 0, 0, 9));
    EXPECT_EQ(pDevice->GetGevDevInfo().MACAddress, 0x020A0B0C0D0E);
    EXPECT_EQ(pDevice->GetInterface(), m_pInterface);
    EXPECT_FALSE(pDevice->IsOpened());
}

TEST_F(Interface, KeepsTheObjectsOfListedDevicesAndDropsTheClosedOnesThatVanish) {
    Adapter().Plug("cam-1");
    Adapter().Plug("cam-2");
    Update();
    const auto pFirst = Device(0);
    const boost::weak_ptr<CGevDevice> pSecond = Device(1);
    Double().On("IFUpdateDeviceList").Count(0);
    EXPECT_TRUE(Update()) << "an update that was carried out counts as a change, whatever the producer says";
    EXPECT_EQ(Device(0), pFirst);
    EXPECT_EQ(Device(1), pSecond.lock());

    Double().Device("cam-1").UserId("renamed");
    Double().Device("cam-1").SetInfo(DEVICE_INFO_DISPLAYNAME, ANSWER::Text("Renamed"));
    Adapter().Lists({{"cam-2", "cam-1"}});
    Update();
    EXPECT_EQ(Device(1), pFirst);
    EXPECT_EQ(pFirst->GetDeviceInformation().DisplayName, "Renamed");
    EXPECT_EQ(pFirst->GetCommonInformation().UserID, "renamed");

    Adapter().Lists({{"cam-1"}});
    Update();
    EXPECT_THAT(Listed(), ElementsAre("cam-1"));
    EXPECT_THAT(Removed(), IsEmpty());
    EXPECT_TRUE(pSecond.expired());

    Adapter().Lists({std::vector<std::string>{}});
    EXPECT_TRUE(Update());
    EXPECT_THAT(Listed(), IsEmpty());
    Adapter().Lists({});
    Update();
    EXPECT_NE(Device(0), pFirst) << "one that was let go isn't found again";
}

TEST_F(Interface, GivesEachRecordOfOneIDAnObjectOfItsOwn) {
    Adapter().Plug("cam-1");
    Update();
    const auto pKnown = Device(0);
    Adapter().Lists({{"cam-1", "cam-1"}});
    Update();
    ASSERT_THAT(Listed(), ElementsAre("cam-1", "cam-1"));
    EXPECT_EQ(Device(0), pKnown);
    const auto pDouble = Device(1);
    EXPECT_NE(pDouble, pKnown);
    Update();
    EXPECT_EQ(Device(0), pKnown);
    EXPECT_EQ(Device(1), pDouble);
    Adapter().Plug("CAM-1");
    Adapter().Lists({{"CAM-1"}});
    Update();
    EXPECT_NE(Device(0), pKnown) << "IDs that differ in case are two devices";
}

TEST_F(Interface, SetsAnOpenDeviceAsideUntilItComesBack) {
    Adapter().Plug("cam-1");
    Update();
    const auto pOpen = Device(0);
    pOpen->DoOpenDevice(DEVICE_ACCESS_CONTROL);
    const DEV_HANDLE hDevice = pOpen->GetHandle();
    Double().Device("cam-1").Identity("Renamed", "Eye", "SN-1");
    const struct {
        const char* pszWhat;
        bool bPlugged;
        std::vector<boost::shared_ptr<IDevice>> vecListed;
        std::vector<boost::shared_ptr<IDevice>> vecRemoved;
    } arrStep[] = {
        {"it is listed", true, {pOpen}, {}},   {"it goes", false, {}, {pOpen}},
        {"it stays away", false, {}, {pOpen}}, {"it comes back", true, {pOpen}, {}},
        {"it goes again", false, {}, {pOpen}},
    };
    for (const auto& objStep : arrStep) {
        SCOPED_TRACE(objStep.pszWhat);
        objStep.bPlugged ? static_cast<void>(Adapter().Plug("cam-1")) : static_cast<void>(Adapter().Unplug("cam-1"));
        Update();
        EXPECT_EQ(m_pInterface->GetDeviceList(), objStep.vecListed);
        EXPECT_EQ(m_pInterface->GetRemovedDeviceList(), objStep.vecRemoved);
    }
    EXPECT_EQ(pOpen->GetDeviceInformation().Vendor, "Renamed") << "its record was refreshed";
    EXPECT_EQ(pOpen->GetHandle(), hDevice);

    pOpen->DoCloseDevice();
    Update();
    EXPECT_THAT(Removed(), IsEmpty()) << "one that was closed meanwhile is dropped";
    Adapter().Plug("cam-1");
    Update();
    EXPECT_NE(Device(0), pOpen);
}

TEST_F(Interface, KeepsADeviceThatIsReachedWhileAnUpdateMergesItsList) {
    Adapter().Plug("cam-1").Hide();
    m_pInterface->AddGcObject(boost::shared_ptr<CDeviceAsked>(
        new CDeviceAsked(m_pInterface, [this] { m_pInterface->DoCreateSpecialDevice("192.168.1.10"); })));
    Update();
    EXPECT_THAT(Listed(), ElementsAre("Double(02-10-00-01-00-00)"));
}

TEST_F(Interface, KeepsItsListWhenTheProducerRefusesToUpdate) {
    Adapter().Plug("cam-1");
    Update();
    Adapter().Plug("cam-2");
    Double().Device("cam-1").SetInfo(DEVICE_INFO_DISPLAYNAME, ANSWER::Text("Renamed"));
    CCollectedLog objLog;
    Double().On("IFUpdateDeviceList").FailAfterwards(GC_ERR_TIMEOUT, "not now");
    EXPECT_FALSE(Update());
    EXPECT_THAT(Listed(), ElementsAre("cam-1"));
    EXPECT_EQ(Device(0)->GetDeviceInformation().DisplayName, "cam-1") << "not even records change";
    EXPECT_THAT(objLog.Take(), ElementsAre(HasSubstr("'CInterface::DoUpdateDeviceList':not now")));
}

TEST_F(Interface, FailsAnUpdateWhoseListsDontMatchAndKeepsWhatItHad) {
    Adapter().Plug("cam-1");
    Update();
    const auto pKnown = Device(0);
    Adapter().Plug("cam-2");
    for (const std::int64_t nMax : {std::int64_t{-1}, std::int64_t{0}, std::int64_t{2}, INT64_MAX}) {
        Adapter().SelectorMax(nMax);
        bool bChanged = true;
        EXPECT_THAT(ThrownBy<CUnexpectedError>([&] { m_pInterface->DoUpdateDeviceList(0, &bChanged); }),
                    MatchesRegex("The two device information vectors have different size, .*, -1"))
            << nMax;
        EXPECT_FALSE(bChanged);
        EXPECT_THAT(m_pInterface->GetDeviceList(), ElementsAre(pKnown));
    }
    Adapter().SelectorMax({});
    Double().On("IFGetNumDevices").Call(1).Fail(GC_ERR_INVALID_HANDLE);
    EXPECT_THROW(Update(), CUnexpectedError);
    EXPECT_THAT(m_pInterface->GetDeviceList(), ElementsAre(pKnown));
    Update();
    EXPECT_THAT(Listed(), ElementsAre("cam-1", "cam-2"));
}

TEST_F(Interface, MakesNoDevicesOnceItHasLeftItsOwnList) {
    Adapter().Plug("cam-1");
    Update();
    Double().RemoveInterface("if-1");
    m_objTree.UpdateInterfaces();
    EXPECT_TRUE(Update()) << "devices that are known need no parent";
    Adapter().Plug("cam-2");
    EXPECT_THAT(ThrownBy<CInvalidParameterError>([this] { Update(); }),
                MatchesRegex("Failed to create device object.This is an unknown exception., .* CDevice::CDevice"));
    EXPECT_THAT(Listed(), ElementsAre("cam-1"));
}

TEST_F(Interface, DoesNothingWhileClosed) {
    m_pInterface->DoOpenInterface();  // is open
    EXPECT_EQ(Double().Count("TLOpenInterface"), 1U);
    Adapter().Plug("cam-1");
    Update();
    const auto pDevice = Device(0);
    m_pInterface->DoCloseInterface();
    EXPECT_FALSE(pDevice->IsOpened());
    Double().ClearCalls();
    EXPECT_FALSE(Update());
    EXPECT_FALSE(m_pInterface->DoCreateSpecialDevice("192.168.1.10"));
    m_pInterface->DoCloseInterface();
    EXPECT_THAT(Double().Calls(), IsEmpty());
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_EQ(m_pInterface->GetHandle(), nullptr);
    EXPECT_EQ(m_pInterface->GetFeatureControl(), nullptr);
}

}  // namespace
