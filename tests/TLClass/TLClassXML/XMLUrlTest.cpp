#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "TLClass/TLClassXML/XMLUrl.h"
#include "tests/TLClass/Thrown.h"

namespace {

constexpr std::uint64_t kMaxLength = std::numeric_limits<std::uint64_t>::max();

TEST(XMLUrl, RegisterUrlsGiveNameAddressAndLength) {
    const struct {
        const char* pUrl;
        const char* pName;
        std::uint64_t nAddress;
        std::uint64_t nLength;
    } arrCases[] = {
        {"Local:Camera_v1.xml;10000;2F", "CAMERA_V1.XML", 0x10000, 0x2F},
        {"local:///camera.zip;1F00A0;c0de", "CAMERA.ZIP", 0x1F00A0, 0xC0DE},
        {"LOCAL:///A.XML;0x10;0X20", "A.XML", 0x10, 0x20},
        {"Local:a.xml;10;20?SchemaVersion=1.1.0", "A.XML", 0x10, 0x20},
        {"Local:a.xml;;10;;20;", "A.XML", 0x10, 0x20},
        {"Local:a.xml; 10h; +20 ", "A.XML", 0x10, 0x20},
        {"Local:a.xml;xyz;0xyz", "A.XML", 0, 0},
        {"Local:a.xml;10;?", "A.XML", 0x10, 0},
        {"Local:a.xml;FFFFFFFFFFFFFFFF;10000000000000000", "A.XML", kMaxLength, kMaxLength},
        {"Local:a.xml;0;-1", "A.XML", 0, kMaxLength},
    };
    for (const auto& objCase : arrCases) {
        const XML_URL_INFO objUrl = AnalyzeXMLUrl(objCase.pUrl);
        EXPECT_EQ(objUrl.Type, EXMLUrlType::Local) << objCase.pUrl;
        EXPECT_EQ(objUrl.Local.Name, objCase.pName) << objCase.pUrl;
        EXPECT_EQ(objUrl.Local.Address, objCase.nAddress) << objCase.pUrl;
        EXPECT_EQ(objUrl.Local.Length, objCase.nLength) << objCase.pUrl;
        EXPECT_EQ(objUrl.File.Name + objUrl.File.Path, "") << objCase.pUrl;
    }
}

TEST(XMLUrl, FileUrlsGiveTheNameInUpperCaseAndThePathAsItWas) {
    const struct {
        const char* pUrl;
        const char* pName;
        const char* pPath;
    } arrCases[] = {
        {"File:///usr/share/Cam.xml?", "USR/SHARE/CAM.XML", "/usr/share/Cam.xml"},
        {"file:Cam.Zip?", "CAM.ZIP", "Cam.Zip"},
        {"FILE:///c:/a/b.xml?", "C:/A/B.XML", "/c:/a/b.xml"},
        {"file://tmp/x.xml?", "//TMP/X.XML", "//tmp/x.xml"},
        {"file:a?b.xml?", "A", "a"},
    };
    for (const auto& objCase : arrCases) {
        const XML_URL_INFO objUrl = AnalyzeXMLUrl(objCase.pUrl);
        EXPECT_EQ(objUrl.Type, EXMLUrlType::File) << objCase.pUrl;
        EXPECT_EQ(objUrl.File.Name, objCase.pName) << objCase.pUrl;
        EXPECT_EQ(objUrl.File.Path, objCase.pPath) << objCase.pUrl;
        EXPECT_EQ(objUrl.Local.Name, "") << objCase.pUrl;
    }
}

TEST(XMLUrl, OtherFormsAreRefusedWithTheUrlInItsOwnCase) {
    const char* const arrUrls[] = {
        "",
        "http://example.org/Cam.xml?",
        "Locale:a.xml;1;2",
        "File:///usr/Cam.xml",
        "File:///usr/Cam.xml?SchemaVersion=1.0.0",
        "File:///usr/Cam.txt?",
        "File:",
        "Local:Cam.xml;1",
        "Local:Cam.xml;1;2;3",
        "Local:Cam.txt;1;2",
        "Local:",
        ";;;",
    };
    for (const auto* pUrl : arrUrls) {
        EXPECT_EQ(MessageOf<CUnexpectedError>([&] { AnalyzeXMLUrl(pUrl); }), std::string("XML format error: ") + pUrl);
    }
}

TEST(XMLUrl, NameTooShortForAnExtensionIsAnErrorOfTheString) {
    EXPECT_THROW(AnalyzeXMLUrl("Local:a;1;2"), std::out_of_range);
    EXPECT_THROW(AnalyzeXMLUrl("Local:///ml;1;2"), std::out_of_range);
}

}  // namespace
