#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassInfo/CommonInformation.h"
#include "TLClass/TLClassInfo/GevInformation.h"
#include "tests/TLClass/TreeFixture.h"

namespace {

using ProducerDouble::Ipv4;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class FeatureRecords : public CTreeTest {
protected:
    ProducerDouble::IPortControl& Port() const { return Double().Interface("if-1").Port(); }
    /// The features of an adapter with so many cameras, as opened and updated by the producer's own calls alone.
    IFeatureControl* FeaturesOfAdapterWith(int nCameras) {
        for (int i = 1; i <= nCameras; ++i) {
            Double().Interface("if-1").Plug("cam-" + std::to_string(i)).UserId("user-" + std::to_string(i));
        }
        m_pInterface = m_objTree.AddInterface("if-1");
        UpdateDevices(*m_pInterface);
        return m_pInterface->GetFeatureControl();
    }
    /// Which of these features of a port the consumer has read since the records were cleared, in its order.
    std::vector<std::string> OrderOfReading(const ProducerDouble::IPortControl& objPort,
                                            const std::vector<std::string>& vecFeature) const {
        std::vector<std::string> vecRead;
        for (const auto& objCall : Double().CallsOf("GCReadPort")) {
            for (const std::string& strFeature : vecFeature) {
                if (std::stoull(objCall.vecArgument.at(1), nullptr, 0) == objPort.AddressOf(strFeature)) {
                    vecRead.push_back(strFeature);
                }
            }
        }
        return vecRead;
    }

    boost::shared_ptr<CGevInterface> m_pInterface;
};

TEST_F(FeatureRecords, LeaveOutWhatAModuleDoesntOffer) {
    Double().AddInterface("if-1").Port().RemoveFeature("DeviceUserID").RemoveFeature("InterfaceDescription");
    Port().RemoveFeature("GevInterfaceMACAddress").AddText("GevInterfaceMACAddress", "no number");
    IFeatureControl* pFeatures = FeaturesOfAdapterWith(2);
    const auto vecCommon = CCommonInformation::ReadCommonDeviceInfoList(pFeatures);
    ASSERT_THAT(vecCommon, SizeIs(2));
    EXPECT_EQ(vecCommon[1].SerialNumber, "SN-cam-2");
    EXPECT_EQ(vecCommon[1].Version, "1.0.0");
    EXPECT_EQ(vecCommon[1].UserID, "");
    EXPECT_EQ(vecCommon[1].SerialNumberValid, 1);
    EXPECT_EQ(vecCommon[1].UserIDValid, 0);
    EXPECT_EQ(CCommonInformation::ReadCommonInterfaceInfo(pFeatures).DescriptionValid, 0);
    const GEV_IF_INFO objInterface = CGevInformation::ReadGevInterfaceInfo(pFeatures);
    EXPECT_EQ(objInterface.IPAddressValid, 1);
    EXPECT_EQ(objInterface.MACAddressValid, 0) << "a feature of another type";
}

TEST_F(FeatureRecords, GoOnBehindAFeatureThatCantBeRead) {
    Double().AddInterface("if-1");
    IFeatureControl* pFeatures = FeaturesOfAdapterWith(1);
    Double().On("GCReadPort").Address(Port().AddressOf("GevDeviceGateway")).Fail(GC_ERR_IO);
    const auto vecDevice = CGevInformation::ReadGevDeviceInfoList(pFeatures);
    ASSERT_THAT(vecDevice, SizeIs(1));
    EXPECT_EQ(vecDevice[0].GatewayValid, 0);
    EXPECT_EQ(vecDevice[0].IPAddress, Ipv4(192, 168, 1, 10));
    EXPECT_EQ(vecDevice[0].MACAddress, 0x021000010000);
    EXPECT_EQ(vecDevice[0].SubnetMask, Ipv4(255, 255, 255, 0));
    EXPECT_EQ(vecDevice[0].IPAddressValid + vecDevice[0].MACAddressValid + vecDevice[0].SubnetMaskValid, 3);
}

TEST_F(FeatureRecords, EndWhereTheSelectorRefuses) {
    Double().AddInterface("if-1");
    IFeatureControl* pFeatures = FeaturesOfAdapterWith(4);
    const std::uint64_t nSelector = Port().AddressOf("DeviceSelector");
    auto& objRule = Double().On("GCWritePort").Address(nSelector).Call(3).Fail(GC_ERR_ACCESS_DENIED);
    const auto vecCommon = CCommonInformation::ReadCommonDeviceInfoList(pFeatures);
    ASSERT_THAT(vecCommon, SizeIs(2));
    EXPECT_EQ(vecCommon[1].UserID, "user-2");
    objRule.Remove();

    EXPECT_THAT(CCommonInformation::ReadCommonDeviceInfoList(pFeatures), SizeIs(4));
    EXPECT_EQ(Port().Integer("DeviceSelector"), 3) << "the selector stays where the walk ended";
    Double().On("GCReadPort").Address(Port().AddressOf("DeviceSelectorMax")).Fail(GC_ERR_IO);
    EXPECT_THAT(CCommonInformation::ReadCommonDeviceInfoList(pFeatures), IsEmpty());
}

TEST_F(FeatureRecords, AreNoneWithoutASelectorOrWithNothingToSelect) {
    Double().AddInterface("if-1");
    IFeatureControl* pFeatures = FeaturesOfAdapterWith(0);
    const std::size_t nWrites = Port().Writes("DeviceSelector");
    EXPECT_THAT(CGevInformation::ReadGevDeviceInfoList(pFeatures), IsEmpty());
    for (const std::int64_t nMax : {std::int64_t{0xFFFFFFFF}, std::int64_t{0x7FFFFFFF}, INT64_MAX, INT64_MIN}) {
        Port().SetInteger("DeviceSelectorMax", nMax);
        EXPECT_THAT(CGevInformation::ReadGevDeviceInfoList(pFeatures), IsEmpty()) << nMax;
    }
    EXPECT_EQ(Port().Writes("DeviceSelector"), nWrites);
    EXPECT_THAT(CGevInformation::ReadGevInterfaceInfoList(pFeatures), IsEmpty()) << "that is the system's selector";
}

TEST_F(FeatureRecords, OfAnAdapterComeFromItsSubnetOrFromItsDefaultByTheRoad) {
    Double().AddInterface("if-1");
    IFeatureControl* pFeatures = FeaturesOfAdapterWith(0);
    Port().SetInteger("GevInterfaceSubnetIPAddress", Ipv4(10, 1, 1, 1));
    m_pInterface->GetNodeMap()->_InvalidateNodes();
    Double().ClearCalls();
    EXPECT_EQ(CGevInformation::ReadGevInterfaceInfo(pFeatures).IPAddress, Ipv4(10, 1, 1, 1));
    EXPECT_THAT(OrderOfReading(Port(), {"GevInterfaceMACAddress", "GevInterfaceSubnetIPAddress",
                                        "GevInterfaceSubnetMask", "GevInterfaceGateway"}),
                ElementsAre("GevInterfaceGateway", "GevInterfaceSubnetIPAddress", "GevInterfaceMACAddress",
                            "GevInterfaceSubnetMask"));

    Double().ClearCalls();
    const auto vecOfSystem = CGevInformation::ReadGevInterfaceInfoList(m_objTree.TL()->GetFeatureControl());
    ASSERT_THAT(vecOfSystem, SizeIs(1));
    EXPECT_EQ(vecOfSystem[0].IPAddress, Ipv4(192, 168, 1, 1));
    EXPECT_EQ(vecOfSystem[0].MACAddress, 0x020000000001);
    EXPECT_THAT(OrderOfReading(Double().Port(), {"GevInterfaceMACAddress", "GevInterfaceDefaultIPAddress",
                                                 "GevInterfaceDefaultSubnetMask", "GevInterfaceDefaultGateway"}),
                ElementsAre("GevInterfaceDefaultGateway", "GevInterfaceDefaultIPAddress",
                            "GevInterfaceDefaultSubnetMask", "GevInterfaceMACAddress"));
}

TEST_F(FeatureRecords, OfChildrenWithoutAnIDKeepTheirPlace) {
    Double().AddInterface("if-1");
    FeaturesOfAdapterWith(3);
    Double().On("IFGetDeviceID").Index(1).Fail(GC_ERR_IO);
    UpdateDevices(*m_pInterface);
    EXPECT_THAT(IDsOf(m_pInterface->GetDeviceList()), ElementsAre("cam-1", "", "cam-3"));
}

}  // namespace
