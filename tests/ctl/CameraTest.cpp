// How a user names a camera, and what a terminal may be shown of one.

#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ctl/AddressText.h"
#include "ctl/Camera.h"
#include "ctl/ExitCode.h"
#include "ctl/Table.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

CAMERA Camera(const std::string& strID, const std::string& strModel, const std::string& strSerial,
              const std::string& strName, std::uint64_t nMAC, std::uint32_t nAddress,
              const std::string& strAdapter = "eth1") {
    CAMERA objCamera;
    objCamera.objAdapter = {strAdapter + " (192.168.1.5)", "0", {}, 0xC0A80105, 0xFFFFFF00};
    objCamera.strID = strID;
    objCamera.strModel = strModel;
    objCamera.strSerialNumber = strSerial;
    objCamera.strUserName = strName;
    objCamera.nMAC = nMAC;
    objCamera.nAddress = nAddress;
    objCamera.nAccessStatus = 1;
    return objCamera;
}

/// Two of a model, one of them with the other's model for a name; one that two adapters see.
const std::vector<CAMERA> kCameras = {
    Camera("A-1(02-00-00-00-00-01)", "Area 100", "111", "left", 0x020000000001, 0xC0A80110),
    Camera("A-1(02-00-00-00-00-02)", "Area 100", "222", "Line 7", 0x020000000002, 0xC0A80111),
    Camera("L-7(02-00-00-00-00-03)", "Line 7", "333", "", 0x020000000003, 0x0A000001),
    Camera("T-9(02-00-00-00-00-04)", "Thermo", "444", "", 0x020000000004, 0xC0A80113),
    Camera("T-9(02-00-00-00-00-04)", "Thermo", "444", "", 0x020000000004, 0xC0A80113, "eth2"),
};

TEST(SelectCamera, FindsTheOneThatIsMeant) {
    const struct {
        const char* pName;
        const char* pAdapter;
        std::size_t nMeant;
        bool bSurely = false;  // so that no other camera need be waited for
    } arrCase[] = {
        {"A-1(02-00-00-00-00-02)", "", 1, true},
        {"02:00:00:00:00:01", "", 0, true},
        {"02-00-00-00-00-02", "", 1, true},
        {"333", "", 2},
        {"left", "", 0},
        {"192.168.1.17", "", 1, true},
        {"Line 7", "", 1},  // a name before a model
        {"line", "", 2},
        {"444", "eth2", 4},
        {"02-00-00-00-00-04", "eth2", 4, true},
    };
    for (const auto& objCase : arrCase) {
        EXPECT_EQ(&SelectCamera(kCameras, objCase.pName, objCase.pAdapter), &kCameras[objCase.nMeant]) << objCase.pName;
        EXPECT_EQ(IsSurelyFound(kCameras, objCase.pName, objCase.pAdapter), objCase.bSurely) << objCase.pName;
    }
    EXPECT_FALSE(IsSurelyFound(kCameras, "02-00-00-00-00-04", ""));  // on which adapter?
}

TEST(SelectCamera, ListsWhatThereIsWhenNoneOrSeveralAreMeant) {
    const auto TextFor = [](const std::vector<CAMERA>& vecCamera, const std::string& strName) {
        try {
            SelectCamera(vecCamera, strName, "");
        } catch (const CCommandError& objError) {
            EXPECT_EQ(objError.GetExitCode(), EXIT_CODE::NoSuchCamera);
            return std::string(objError.what());
        }
        return std::string("found");
    };
    EXPECT_THAT(TextFor(kCameras, "AREA"),
                AllOf(HasSubstr("more than one"), HasSubstr("111"), HasSubstr("222"), Not(HasSubstr("333"))));
    EXPECT_THAT(TextFor(kCameras, "444"), AllOf(HasSubstr("--adapter"), HasSubstr("eth1"), HasSubstr("eth2")));
    EXPECT_THAT(TextFor(kCameras, "nobody"), AllOf(HasSubstr("no camera is called"), HasSubstr("333")));
    EXPECT_THAT(TextFor(kCameras, ""), HasSubstr("no camera is called"));  // which is a part of every model
    EXPECT_THAT(TextFor({}, "left"), HasSubstr("no camera answered"));
}

TEST(GetStateText, TellsOfAnAddressThatDoesNotFitTheAdapter) {
    EXPECT_EQ(GetStateText(kCameras[0]), "ready");
    EXPECT_EQ(GetStateText(kCameras[2]), "other subnet");
}

TEST(ParseAddress, TakesWhatIsOneToTheLetter) {
    EXPECT_EQ(ParseAddress("192.168.1.20"), 0xC0A80114U);
    EXPECT_EQ(ParseAddress("010.001.002.003"), 0x0A010203U);
    for (const char* pText :
         {"", "1.2.3", "1.2.3.4.5", "1.2.3.256", "1.2.3.", "1.2.3.4 ", "1.2.3.-4", "1..2.3", "a.b.c.d"}) {
        EXPECT_EQ(ParseAddress(pText), std::nullopt) << pText;
    }
    EXPECT_EQ(ParseMAC("02-5E-17-00-AD-ea"), 0x025E1700ADEAU);
    for (const char* pText :
         {"", "02-5E-17-00-AD", "02-5E-17-00-AD-EA-00", "02-5E:17-00-AD-EA", "2-5E-17-00-AD-EA", "025E1700ADEA"}) {
        EXPECT_EQ(ParseMAC(pText), std::nullopt) << pText;
    }
}

TEST(Printable, LetsNothingDriveTheTerminal) {
    EXPECT_EQ(Printable("\x1B[2Jred\n\x7F"), "?[2Jred??");
    EXPECT_EQ(PrintableLines("one:\n\x1B[2J\n"), "one:\n?[2J\n");
    EXPECT_EQ(Printable("Kamera \xC3\xBC"), "Kamera \xC3\xBC");
    EXPECT_EQ(Printable("\xC2\x9B"
                        "1m\xC3"),
              "??1m?");  // a control character of two bytes, and half a letter
}

}  // namespace
