#include <functional>
#include <string>

#include <boost/pointer_cast.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/DeviceFactory.h"
#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/Interface.h"
#include "tests/TLClass/Thrown.h"

namespace {

/// Special data of a kind that no class here knows.
struct OTHER_INFO : SPECIAL_INFO {};

boost::shared_ptr<IInterface> MakeInterface() {
    return boost::shared_ptr<IInterface>(new CInterface(nullptr, nullptr, nullptr, {}));
}

struct RECORDS {
    DEV_MODULE_INFO objRecord;
    COMMON_DEVICE_INFO objCommonInfo;
    GEV_DEV_INFO objGevInfo;

    explicit RECORDS(const std::string& strName) {
        objRecord.ID = strName;
        objRecord.TLType = "GEV";
        objRecord.pCommonInfo = &objCommonInfo;
        objRecord.pSpecialInfo = &objGevInfo;
        objCommonInfo.SerialNumber = "SN-" + strName;
        objGevInfo.IPAddress = static_cast<std::int64_t>(strName.size());
    }
};

boost::shared_ptr<IDevice> Create(const DEV_MODULE_INFO& objRecord) {
    return boost::shared_ptr<IDevice>(CDeviceFactory::CreateDevice(nullptr, MakeInterface(), nullptr, objRecord));
}

TEST(Device, GetsItsClassFromTheTypeToTheLetter) {
    for (const char* pszType : {"GEV", "gev", "GEV ", "U3V", ""}) {
        RECORDS objRecords("cam");
        objRecords.objRecord.TLType = pszType;
        const auto pDevice = Create(objRecords.objRecord);
        EXPECT_EQ(dynamic_cast<CGevDevice*>(pDevice.get()) != nullptr, std::string(pszType) == "GEV") << pszType;
        EXPECT_EQ(pDevice->GetCommonInformation().SerialNumber, "SN-cam");
        EXPECT_EQ(pDevice->GetDeviceInformation().pCommonInfo, nullptr);
        EXPECT_EQ(pDevice->GetDeviceInformation().pSpecialInfo, nullptr);
    }
}

TEST(Device, IsntMadeOfHalfARecord) {
    OTHER_INFO objOther;
    const struct {
        const char* pszWhat;
        std::function<void(DEV_MODULE_INFO&)> fnSpoil;
    } arrCase[] = {
        {"no common record", [](DEV_MODULE_INFO& objRecord) { objRecord.pCommonInfo = nullptr; }},
        {"no special record", [](DEV_MODULE_INFO& objRecord) { objRecord.pSpecialInfo = nullptr; }},
        {"another special record", [&](DEV_MODULE_INFO& objRecord) { objRecord.pSpecialInfo = &objOther; }},
    };
    for (const auto& objCase : arrCase) {
        RECORDS objRecords("cam");
        objCase.fnSpoil(objRecords.objRecord);
        EXPECT_THAT(ThrownBy<CUnexpectedError>([&] { Create(objRecords.objRecord); }),
                    testing::MatchesRegex("Invalid parameter, .* CDeviceFactory::CreateDevice, -1"))
            << objCase.pszWhat;
    }
    EXPECT_THROW(CDevice(nullptr, nullptr, nullptr, {}, {}), CInvalidParameterError);
}

TEST(Device, TakesOverWhatAnUpdateHasAndKeepsTheRest) {
    const auto pDevice = boost::dynamic_pointer_cast<CGevDevice>(Create(RECORDS("cam").objRecord));
    RECORDS objNew("other");
    pDevice->UpdateInformation(objNew.objRecord);
    EXPECT_EQ(pDevice->GetDeviceInformation().ID, "other");
    EXPECT_EQ(pDevice->GetDeviceInformation().pCommonInfo, nullptr);
    EXPECT_EQ(pDevice->GetDeviceInformation().pSpecialInfo, nullptr);
    EXPECT_EQ(pDevice->GetCommonInformation().SerialNumber, "SN-other");
    EXPECT_EQ(pDevice->GetGevDevInfo().IPAddress, 5);

    OTHER_INFO objOther;
    DEV_MODULE_INFO objBare;
    objBare.pSpecialInfo = &objOther;
    pDevice->UpdateInformation(objBare);
    EXPECT_EQ(pDevice->GetDeviceInformation().ID, "");
    EXPECT_EQ(pDevice->GetDeviceInformation().pSpecialInfo, nullptr);
    EXPECT_EQ(pDevice->GetCommonInformation().SerialNumber, "SN-other");
    EXPECT_EQ(pDevice->GetGevDevInfo().IPAddress, 5);
    pDevice->SetGevIP(0xC0A80001);
    EXPECT_EQ(pDevice->GetGevDevInfo().IPAddress, 0xC0A80001);
}

}  // namespace
