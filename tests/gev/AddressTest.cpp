#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "gev/Address.h"
#include "gev/PixelFormat.h"

namespace {

TEST(Address, TextIsReadToTheLetterOrNotAtAll) {
    const struct {
        std::string_view strText;
        std::optional<std::uint32_t> nAddress;
    } arrIPv4[] = {
        {"192.168.42.83", 0xC0A82A53},
        {"0.0.0.0", 0},
        {"255.255.255.255", 0xFFFFFFFF},
        {"010.001.2.3", 0x0A010203},
        {"256.1.1.1", {}},
        {"1.2.3", {}},
        {"1.2.3.4.5", {}},
        {"1.2.3.", {}},
        {".1.2.3", {}},
        {"1.2.3.4 ", {}},
        {"1.2.3.+4", {}},
        {"1.2.3.-4", {}},
        {"1.2.3.0004", {}},
        {"1..2.3", {}},
        {"", {}},
        {"...", {}},
    };
    for (const auto& objCase : arrIPv4) {
        EXPECT_EQ(gev::ParseIPv4(objCase.strText), objCase.nAddress) << objCase.strText;
    }
    const struct {
        std::string_view strText;
        std::optional<std::uint64_t> nAddress;
    } arrMAC[] = {
        {"02-5E-17-00-AD-EA", 0x025E1700ADEA},
        {"02:5e:17:00:ad:ea", 0x025E1700ADEA},
        {"2-5-1-0-a-e", 0x020501000A0E},
        {"02-5E-17-00-AD", {}},
        {"02-5E-17-00-AD-EA-01", {}},
        {"02-5E-17-00-AD:EA", {}},
        {"025E1700ADEA", {}},
        {"02-5E-17-00-AD-EAA", {}},
        {"02-5E-17-00-AD-", {}},
        {"02-5E-17-00-AD-0x", {}},
        {"", {}},
    };
    for (const auto& objCase : arrMAC) {
        const auto objMAC = gev::ParseMAC(objCase.strText);
        EXPECT_EQ(objMAC ? std::optional(objMAC->GetValue()) : std::nullopt, objCase.nAddress) << objCase.strText;
    }
}

TEST(Address, TextComesBackAsItWas) {
    for (const std::string_view strText : {"0.0.0.0", "1.20.0.255", "255.255.255.255"}) {
        EXPECT_EQ(gev::FormatIPv4(gev::ParseIPv4(strText).value()).GetText(), strText);
    }
    for (const std::string_view strText : {"00-00-00-00-00-00", "FF-0A-B0-12-3C-D4"}) {
        EXPECT_EQ(gev::FormatMAC(gev::ParseMAC(strText).value()).GetText(), strText);
    }
}

TEST(PixelFormat, NameAndCodeLeadToEachOther) {
    EXPECT_EQ(gev::FindPixelFormat("BayerRG12"), gev::EPixelFormat::BayerRG12);
    EXPECT_EQ(gev::GetName(gev::EPixelFormat::Mono12Packed), "Mono12Packed");
    EXPECT_EQ(gev::GetBitsPerPixel(gev::EPixelFormat::Mono12Packed), 12U);
    EXPECT_EQ(gev::GetName(gev::EPixelFormat{0x02181234}), "");
    EXPECT_EQ(gev::GetBitsPerPixel(gev::EPixelFormat{0x02181234}), 24U);
    EXPECT_EQ(gev::FindPixelFormat("mono8"), std::nullopt);
}

}  // namespace
