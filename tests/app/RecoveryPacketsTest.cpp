#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/RecoveryPackets.h"

namespace {

using Bytes = std::vector<int>;

RECOVERY_PACKETS Fill(const char* pMAC, const char* pIP = "192.168.42.83") {
    const auto objPackets = FillRecoveryPackets(QString::fromUtf8(pMAC), QString::fromUtf8(pIP));
    EXPECT_TRUE(objPackets.has_value()) << pMAC << " " << pIP;
    return objPackets.value_or(RECOVERY_PACKETS{});
}

template <std::size_t N>
Bytes Cut(const std::array<std::uint8_t, N>& arrPacket, std::size_t nFrom, std::size_t nCount) {
    return {arrPacket.begin() + static_cast<std::ptrdiff_t>(nFrom),
            arrPacket.begin() + static_cast<std::ptrdiff_t>(nFrom + nCount)};
}

TEST(RecoveryPackets, EveryByteOfThePairStandsAtItsPlace) {
    const auto objPackets = Fill("02-5E-17-00-AD-EA");

    std::array<std::uint8_t, 84> arrForceIPEx{};
    const std::vector<std::pair<std::size_t, Bytes>> vecFields = {
        {0, {0x42, 0x11, 0x90, 0x00, 0x00, 0x4C, 0xEC, 0xD2}},
        {10, {0x02, 0x5E, 0x17, 0x00, 0xAD, 0xEA}},
        {19, {0x05}},
        {32, {192, 168, 42, 83}},
        {48, {0xFF, 0xFF, 0xFF, 0x00}},
        {69, {0x03}},
        {72, {0x83, 0x01}},
        {76, {0x02}},
    };
    for (const auto& [nOffset, vecBytes] : vecFields) {
        std::copy(vecBytes.begin(), vecBytes.end(), arrForceIPEx.begin() + static_cast<std::ptrdiff_t>(nOffset));
    }
    EXPECT_EQ(objPackets.ForceIPEx, arrForceIPEx);

    const std::array<std::uint8_t, 64> arrForceIP = {0x42, 0x01, 0x00, 0x04, 0x00, 0x38, 0x22, 0x8D,
                                                     0x00, 0x00, 0x02, 0x5E, 0x17, 0x00, 0xAD, 0xEA};
    EXPECT_EQ(objPackets.ForceIP, arrForceIP);
}

TEST(RecoveryPackets, AddressPartsBecomeBytes) {
    struct Case {
        const char* pIP;
        Bytes vecBytes;
    };
    const Case arrCases[] = {
        {"10.1..7", {10, 1, 0, 7}},    {"10.x.2.3", {10, 0, 2, 3}}, {"300.1.1.1", {44, 1, 1, 1}},
        {"0.256.1.1", {0, 0, 1, 1}},  // the second part carries into the first octet, which is what is tested
        {" 9.08. 7.6 ", {9, 8, 7, 6}},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_EQ(Cut(Fill("00", objCase.pIP).ForceIPEx, 32, 4), objCase.vecBytes) << objCase.pIP;
    }
}

TEST(RecoveryPackets, UnusableAddressGivesNoPacket) {
    for (const char* pIP : {"", ".", "...", "0.1.2.3", "10.1.2", "10.1.2.3.4", "256.1.2.3", "1921.68.42.83",
                            "10.1.2.3456", "a.b.c.d", "10,1,2,3", "１０.1.2.3"}) {
        EXPECT_FALSE(FillRecoveryPackets("02-5E-17-00-AD-EA", QString::fromUtf8(pIP)).has_value()) << pIP;
    }
}

TEST(RecoveryPackets, MACPartsRunOnFromTheirPlaceWhateverTheyAre) {
    struct Case {
        const char* pMAC;
        Bytes vecForceIPEx;  // from offset 10
        Bytes vecForceIP;    // from offset 10
    };
    const Case arrCases[] = {
        {"", {0, 0x7A, 0x41, 0x02, 0xE7, 0x4F, 0}, {0, 0x5E, 0x17, 0x00, 0xAD, 0xEA, 0}},
        {"02:11:22:33:44:55", {0, 0x7A, 0x41, 0x02, 0xE7, 0x4F, 0}, {0, 0x5E, 0x17, 0x00, 0xAD, 0xEA, 0}},
        {"AA-BB-CC", {0xAA, 0xBB, 0xCC, 0x02, 0xE7, 0x4F, 0}, {0xAA, 0xBB, 0xCC, 0x00, 0xAD, 0xEA, 0}},
        {"1-2--4-5-6", {1, 2, 0, 4, 5, 6, 0}, {1, 2, 0, 4, 5, 6, 0}},
        {"1FF-zz-100000000-0x1F- 3 -6", {0xFF, 0, 0, 0x1F, 3, 6, 0}, {0xFF, 0, 0, 0x1F, 3, 6, 0}},
        {"1-2-3-4-5-6-7-8-9-A", {1, 2, 3, 4, 5, 6, 7, 8, 9, 0xA, 0}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0xA, 0}},
    };
    for (const auto& objCase : arrCases) {
        const auto objPackets = Fill(objCase.pMAC);
        EXPECT_EQ(Cut(objPackets.ForceIPEx, 10, objCase.vecForceIPEx.size()), objCase.vecForceIPEx) << objCase.pMAC;
        EXPECT_EQ(Cut(objPackets.ForceIP, 10, objCase.vecForceIP.size()), objCase.vecForceIP) << objCase.pMAC;
    }
}

TEST(RecoveryPackets, MACPartsBehindTheEndOfAPacketAreDropped) {
    const auto objPackets = Fill(QString("EE-").repeated(100).toUtf8().constData());

    // 101 parts: 54 fit behind offset 10 of the shorter packet and 74 of the longer.
    EXPECT_THAT(Cut(objPackets.ForceIP, 10, 54), testing::Each(0xEE));
    EXPECT_THAT(Cut(objPackets.ForceIPEx, 10, 74), testing::Each(0xEE));
}

TEST(RecoveryPackets, AddressParserTestsNeitherCountNorRange) {
    struct Case {
        const char* pText;
        std::uint32_t nAddress;
    };
    const Case arrCases[] = {
        {"", 0},           {"1.2", 0x01020000}, {"1.2.3.4.5", 0x06020304}, {"1.2.3.999", 0x010206E7},
        {"1.1.1.1234", 0}, {"..7", 0x00000700}, {"-1.0.0.0", 0xFF000000},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_EQ(__IPStringToUint(objCase.pText), objCase.nAddress) << objCase.pText;
    }
}

}  // namespace
