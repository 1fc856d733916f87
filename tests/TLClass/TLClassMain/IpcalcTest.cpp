#include <array>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "TLClass/TLClassMain/Ipcalc.h"

namespace {

constexpr std::uint32_t kAllOnes = 0xFFFFFFFF;

TEST(AddressCalculator, ReadsTextAsOctetsWithoutTestingThem) {
    const struct {
        const char* pszText;
        std::uint32_t nIp;
    } arrCase[] = {
        {"192.168.1.10", 0xC0A8010A},
        {"1.2", 0x01020000},
        {"", 0},
        {"1.2.3.4.5", 0x06020304},  // a fifth number lands in the first octet again
        {"0.0.0.999", 0x000003E7},  // too large a number reaches into the octet above
        {"300.0.0.0", 0x2C000000},  // or out of the address
        {"0.0.0.-1", 0xFFFFFFFF},
        {"1.2.3.0004", 0},  // four characters are too many
        {nullptr, 0},
    };
    for (const auto& objCase : arrCase) {
        EXPECT_EQ(Cipcalc().StringToIp(objCase.pszText), objCase.nIp)
            << (objCase.pszText == nullptr ? "null" : objCase.pszText);
    }
}

TEST(AddressCalculator, TakesAddressesApartAndPutsThemTogether) {
    const Cipcalc objCalc;
    char szText[16];
    EXPECT_TRUE(objCalc.IpToString(0xFFC80A01, szText));
    EXPECT_STREQ(szText, "255.200.10.1");
    EXPECT_EQ(objCalc.GetOctet(0x01020304, 1), 1);
    EXPECT_EQ(objCalc.GetOctet(0x01020304, 4), 4);
    EXPECT_EQ(objCalc.GetOctet(0x01020304, 0), 0);
    EXPECT_EQ(objCalc.GetOctet(0x01020304, 5), 0);
    int arrOctet[4];
    objCalc.SplitIp(0xFFFE0304, arrOctet);
    EXPECT_EQ(objCalc.JoinIp(arrOctet), 0xFFFE0304);
    EXPECT_EQ(objCalc.JoinIp({0x101, -1, 0, 0x1FF}), 0x01FF00FF);  // no octet touches its neighbour

    char szBinary[37];
    std::memset(szBinary, 'x', sizeof szBinary);
    objCalc.IpToBinaryString(0xC0A80A01, szBinary);
    EXPECT_STREQ(szBinary, "11000000 10101000 00001010 00000001");
    EXPECT_EQ(szBinary[36], 'x');
    objCalc.OctetsToBinaryString({192, 168, 10, 1}, szBinary);
    EXPECT_STREQ(szBinary, "11000000 10101000 00001010 00000001");
}

TEST(AddressCalculator, CountsSubnetsAndHostsByTheClassOfTheAddress) {
    const struct {
        std::uint32_t nIp;
        std::uint32_t nMask;
        char chClass;
        int nSubnetBits;
        std::uint32_t nSubnets;
        std::uint32_t nHosts;
    } arrCase[] = {
        {0x0A000001, 0xFF000000, 'A', 0, 1, 0xFFFFFE},
        {0x7FFFFFFF, 0xFFFF0000, 'A', 8, 254, 0xFFFE},
        {0xBFFFFFFF, 0xFFFF8000, 'B', 1, 0, 0x7FFE},  // one borrowed bit makes no subnet
        {0xC0A80001, 0xFFFFFFF0, 'C', 4, 14, 14},
        {0xDFFFFFFF, 0xFFFFFFFF, 'C', 8, 254, kAllOnes},  // no host: 1 less 2
        {0xC0A80001, 0xFFFF0000, 'C', -8, kAllOnes - 1, 0xFFFE},
        {0xE0000001, 0xFFFFFF00, 'D', -1, kAllOnes - 1, kAllOnes},
    };
    const Cipcalc objCalc;
    for (const auto& objCase : arrCase) {
        SCOPED_TRACE(testing::Message() << std::hex << objCase.nIp << "/" << objCase.nMask);
        EXPECT_EQ(objCalc.GetIpClass(objCase.nIp), objCase.chClass);
        EXPECT_EQ(objCalc.GetSubnetBits(objCase.nIp, objCase.nMask), objCase.nSubnetBits);
        EXPECT_EQ(objCalc.GetSubnetCount(objCase.nIp, objCase.nMask), objCase.nSubnets);
        EXPECT_EQ(objCalc.GetHostCount(objCase.nIp, objCase.nMask), objCase.nHosts);
    }
}

TEST(AddressCalculator, FindsTheEndsOfASubnet) {
    const Cipcalc objCalc;
    EXPECT_EQ(objCalc.GetNetworkAddress(0xC0A8010A, 0xFFFFFF00), 0xC0A80100);
    EXPECT_EQ(objCalc.GetBroadcastAddress(0xC0A8010A, 0xFFFFFF00), 0xC0A801FF);
    EXPECT_EQ(objCalc.GetBroadcastAddress(0xC0A8010A, 0), kAllOnes);
    EXPECT_TRUE(objCalc.IsSameSubnet(0xC0A80101, 0xC0A801FE, 0xFFFFFF00));
    EXPECT_FALSE(objCalc.IsSameSubnet(0xC0A80101, 0xC0A80201, 0xFFFFFF00));

    const struct {
        int nPrefixLength;
        std::array<int, 4> arrFirst;
        std::array<int, 4> arrLast;
    } arrCase[] = {
        {24, {192, 168, 1, 1}, {192, 168, 1, 254}}, {32, {192, 168, 1, 11}, {192, 168, 1, 9}},
        {0, {0, 0, 0, 1}, {255, 255, 255, 254}},    {-5, {0, 0, 0, 1}, {255, 255, 255, 254}},
        {99, {192, 168, 1, 11}, {192, 168, 1, 9}},
    };
    for (const auto& objCase : arrCase) {
        int arrFirst[4];
        int arrLast[4];
        objCalc.GetSubnetRange(0xC0A8010A, objCase.nPrefixLength, arrFirst, arrLast);
        EXPECT_EQ(std::to_array(arrFirst), objCase.arrFirst) << objCase.nPrefixLength;
        EXPECT_EQ(std::to_array(arrLast), objCase.arrLast) << objCase.nPrefixLength;
    }

    const struct {
        std::uint32_t nIp;
        bool bHost;
    } arrHost[] = {{0xC0A8010A, true}, {0xC0A80100, false}, {0xC0A801FF, false}, {0x00FFFFFE, false},
                   {0x01000001, true}, {0xFEFFFFFE, true},  {0xFF000001, false}};
    for (const auto& objHost : arrHost) {
        EXPECT_EQ(objCalc.IsHostAddress(objHost.nIp, 0xFFFFFF00), objHost.bHost) << std::hex << objHost.nIp;
    }
}

TEST(AddressCalculator, TellsAddressesMasksAndGatewaysApartByTheirText) {
    const struct {
        const char* pszText;
        bool bIp;
        bool bMask;
        bool bGateway;
    } arrCase[] = {
        {"192.168.1.10", true, false, true},
        {"1.2", true, false, true},  // fewer than four numbers pass
        {"255.255.255.255", false, false, false},
        {"1.2.3.255", false, false, false},  // not as the fourth
        {"255.255.255.0", true, true, true},
        {"255.0.255.0", true, false, true},
        {"128", true, true, true},
        {"0.0.0.0", false, false, true},
        {"0.255.0.0", false, false, true},
        {"256.1.1.1", false, false, false},
        {"1.2.3.4.5", false, false, false},
        {"1.2.3.", false, false, false},
        {"", false, false, false},
        {nullptr, false, false, false},
    };
    const Cipcalc objCalc;
    for (const auto& objCase : arrCase) {
        SCOPED_TRACE(objCase.pszText == nullptr ? "null" : objCase.pszText);
        EXPECT_EQ(objCalc.IsValidIpAddress(objCase.pszText), objCase.bIp);
        EXPECT_EQ(objCalc.IsValidSubnetMask(objCase.pszText), objCase.bMask);
        EXPECT_EQ(objCalc.IsValidGateway(objCase.pszText), objCase.bGateway);
    }
}

TEST(AddressCalculator, RefusesMasksThatBorrowASingleBit) {
    constexpr std::uint32_t kClassA = 0x0A000001;
    constexpr std::uint32_t kClassB = 0x80000001;
    constexpr std::uint32_t kClassC = 0xC0000001;
    constexpr std::uint32_t kClassD = 0xE0000001;
    const struct {
        std::uint32_t nIp;
        std::uint32_t nMask;
        bool bValid;
    } arrCase[] = {
        {kClassA, 0xFE000000, false}, {kClassA, 0xFF000000, true},  {kClassA, 0xFF800000, false},
        {kClassA, 0xFFC00000, true},  {kClassB, 0xFFC00000, false}, {kClassB, 0xFFFF0000, true},
        {kClassB, 0xFFFF8000, false}, {kClassB, 0xFFFFC000, true},  {kClassC, 0xFFFFC000, false},
        {kClassC, 0xFFFFFF00, true},  {kClassC, 0xFFFFFF80, false}, {kClassC, 0xFFFFFFC0, true},
        {kClassC, 0xFFFFFFFC, true},  {kClassC, 0xFFFFFFFE, false}, {kClassC, kAllOnes, false},
        {kClassD, 0x80000000, true},  {kClassD, 0, false},          {kClassD, 0xFF00FF00, false},
    };
    for (const auto& objCase : arrCase) {
        EXPECT_EQ(Cipcalc().IsMaskValidForIp(objCase.nIp, objCase.nMask), objCase.bValid)
            << std::hex << objCase.nIp << "/" << objCase.nMask;
    }
}

}  // namespace
