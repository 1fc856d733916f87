#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include <gtest/gtest.h>

#include "gev/GvcpAction.h"
#include "gev/GvcpDiscovery.h"
#include "gev/GvcpEvent.h"
#include "gev/GvcpForceIP.h"
#include "gev/GvcpMemory.h"
#include "gev/GvcpRegister.h"
#include "gev/GvcpResend.h"

namespace {

using gev::EGvcpCommand;
using gev::EGvcpStatus;
using Bytes = std::vector<std::byte>;

Bytes MakeBytes(std::initializer_list<int> arrValues, std::size_t nSize = 0) {
    Bytes vecBytes;
    for (const int nValue : arrValues) {
        vecBytes.push_back(static_cast<std::byte>(nValue));
    }
    vecBytes.resize(std::max(nSize, vecBytes.size()));
    return vecBytes;
}

TEST(GvcpHeader, CommandIsTakenOnlyAsLongAsItSays) {
    const struct {
        const char* pWhat;
        Bytes vecDatagram;
        EGvcpStatus nStatus;
        std::uint16_t nAnswerTo;
    } arrCases[] = {
        {"good", MakeBytes({0x42, 1, 0, 2, 0, 0, 0, 7}), EGvcpStatus::Success, 7},
        {"longest", MakeBytes({0x42, 1, 0, 0x86, 2, 0x1C, 0, 7}, 548), EGvcpStatus::Success, 7},
        {"empty", {}, EGvcpStatus::InvalidHeader, 0},
        {"half a header", MakeBytes({0x42, 1, 0, 2, 0, 0, 0}), EGvcpStatus::InvalidHeader, 0},
        {"another protocol", MakeBytes({0x41, 1, 0, 2, 0, 0, 0, 7}), EGvcpStatus::InvalidHeader, 0},
        {"no request ID", MakeBytes({0x42, 1, 0, 2, 0, 0, 0, 0}), EGvcpStatus::InvalidHeader, 0},
        {"payload missing", MakeBytes({0x42, 1, 0, 2, 0, 4, 0, 7}, 11), EGvcpStatus::InvalidHeader, 7},
        {"more than it says", MakeBytes({0x42, 1, 0, 2, 0, 0, 0, 7}, 9), EGvcpStatus::InvalidHeader, 7},
        {"over 540 bytes", MakeBytes({0x42, 1, 0, 0x86, 2, 0x20, 0, 7}, 552), EGvcpStatus::InvalidHeader, 7},
    };
    for (const auto& objCase : arrCases) {
        gev::GVCP_COMMAND_HEADER objHeader{EGvcpCommand::Action, 0, 0, 99};
        std::span<const std::byte> arrPayload;
        EXPECT_EQ(gev::DecodeCommand(objCase.vecDatagram, objHeader, arrPayload), objCase.nStatus) << objCase.pWhat;
        EXPECT_EQ(objHeader.RequestID, objCase.nAnswerTo) << objCase.pWhat;
    }
}

TEST(GvcpHeader, CommandAndAcknowledgeAreNeverTakenForEachOther) {
    gev::GvcpBuffer arrBuffer;
    gev::GVCP_ACKNOWLEDGE_HEADER objAcknowledge;
    gev::GVCP_COMMAND_HEADER objCommand;
    std::span<const std::byte> arrPayload;
    // A broadcast comes back to the socket that sent it.
    EXPECT_EQ(gev::DecodeAcknowledge(gev::EncodeCommand(arrBuffer, EGvcpCommand::Discovery, 0x11, 1), objAcknowledge,
                                     arrPayload),
              EGvcpStatus::InvalidHeader);
    const auto arrRefusal = gev::EncodeAcknowledge(arrBuffer, EGvcpCommand::ReadMem, 5, EGvcpStatus::AccessDenied);
    EXPECT_EQ(gev::DecodeCommand(arrRefusal, objCommand, arrPayload), EGvcpStatus::InvalidHeader);
    ASSERT_EQ(gev::DecodeAcknowledge(arrRefusal, objAcknowledge, arrPayload), EGvcpStatus::Success);
    EXPECT_EQ(objAcknowledge.Status, EGvcpStatus::AccessDenied);
    EXPECT_EQ(objAcknowledge.Command, EGvcpCommand::ReadMem);
    EXPECT_EQ(objAcknowledge.AckID, 5);
    for (const std::size_t nCut : {0U, 7U}) {
        EXPECT_EQ(gev::DecodeAcknowledge(arrRefusal.first(nCut), objAcknowledge, arrPayload),
                  EGvcpStatus::InvalidHeader);
    }
}

/// Decodes the payload as the command's, as a device does.
EGvcpStatus Decode(EGvcpCommand nCommand, std::uint8_t nFlags, std::span<const std::byte> arrPayload) {
    const gev::GVCP_COMMAND_HEADER objHeader{nCommand, nFlags, static_cast<std::uint16_t>(arrPayload.size()), 1};
    gev::CNumberView objNumbers;
    gev::CRegisterWriteView objWrites;
    gev::CEventView objEvents;
    gev::READMEM_COMMAND objRead;
    gev::MEMORY_BLOCK objBlock;
    gev::FORCEIP_COMMAND objForceIP;
    gev::FORCEIPEX_COMMAND objForceIPEx;
    gev::CEventDataWalk objEventData;
    gev::RESEND_COMMAND objResend;
    gev::ACTION_COMMAND objAction;
    switch (nCommand) {
        case EGvcpCommand::Discovery:
            return gev::DecodeDiscovery(arrPayload);
        case EGvcpCommand::ForceIP:
            return gev::DecodeForceIP(arrPayload, objForceIP);
        case EGvcpCommand::ForceIPEx:
            return gev::DecodeForceIPEx(arrPayload, objForceIPEx);
        case EGvcpCommand::ReadReg:
            return gev::DecodeReadReg(arrPayload, objNumbers);
        case EGvcpCommand::WriteReg:
            return gev::DecodeWriteReg(arrPayload, objWrites);
        case EGvcpCommand::ReadMem:
            return gev::DecodeReadMem(arrPayload, objRead);
        case EGvcpCommand::WriteMem:
            return gev::DecodeWriteMem(arrPayload, objBlock);
        case EGvcpCommand::Event:
            return gev::DecodeEvent(objHeader, arrPayload, objEvents);
        case EGvcpCommand::EventData:
            return gev::DecodeEventData(objHeader, arrPayload, objEventData);
        case EGvcpCommand::PacketResend:
            return gev::DecodeResend(objHeader, arrPayload, objResend);
        case EGvcpCommand::Action:
            return gev::DecodeAction(arrPayload, objAction);
        default:
            return EGvcpStatus::NotImplemented;
    }
}

TEST(GvcpCommand, IsRefusedWithTheStatusThatFits) {
    constexpr std::uint8_t kExtended = gev::kGvcpFlagExtendedIDs;
    const struct {
        EGvcpCommand nCommand;
        std::uint8_t nFlags;
        Bytes vecPayload;
        EGvcpStatus nStatus;
    } arrCases[] = {
        {EGvcpCommand::Discovery, 0, MakeBytes({0}), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::ForceIP, 0, MakeBytes({}, 55), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::ForceIP, 0, MakeBytes({}, 57), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::ForceIPEx, 0, MakeBytes({}, 56), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::ReadReg, 0, {}, EGvcpStatus::InvalidHeader},
        {EGvcpCommand::ReadReg, 0, MakeBytes({0, 0, 0, 4, 0}), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::ReadReg, 0, MakeBytes({0, 0, 0, 4, 0, 0, 0, 6}), EGvcpStatus::BadAlignment},
        {EGvcpCommand::WriteReg, 0, MakeBytes({}, 12), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::WriteReg, 0, MakeBytes({0, 0, 0x0A, 1}, 8), EGvcpStatus::BadAlignment},
        {EGvcpCommand::ReadMem, 0, MakeBytes({}, 7), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::ReadMem, 0, MakeBytes({0, 0, 0, 2, 0, 0, 0, 4}), EGvcpStatus::BadAlignment},
        {EGvcpCommand::ReadMem, 0, MakeBytes({0, 0, 0, 4, 0, 0, 0, 2}), EGvcpStatus::BadAlignment},
        {EGvcpCommand::ReadMem, 0, MakeBytes({0, 0, 0, 4, 0, 0, 0, 0}), EGvcpStatus::InvalidParameter},
        {EGvcpCommand::ReadMem, 0, MakeBytes({0, 0, 0, 4, 0, 0, 2, 0x1C}), EGvcpStatus::InvalidParameter},
        {EGvcpCommand::ReadMem, 0, MakeBytes({255, 255, 255, 252, 0, 0, 0, 8}), EGvcpStatus::InvalidAddress},
        {EGvcpCommand::ReadMem, 0, MakeBytes({255, 255, 255, 252, 0, 0, 0, 4}), EGvcpStatus::Success},
        {EGvcpCommand::ReadMem, 0, MakeBytes({0, 0, 2, 0, 0, 0, 2, 0x18}), EGvcpStatus::Success},
        {EGvcpCommand::WriteMem, 0, MakeBytes({}, 4), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::WriteMem, 0, MakeBytes({}, 10), EGvcpStatus::BadAlignment},
        {EGvcpCommand::WriteMem, 0, MakeBytes({255, 255, 255, 252}, 12), EGvcpStatus::InvalidAddress},
        {EGvcpCommand::WriteMem, 0, MakeBytes({}, 540), EGvcpStatus::Success},
        {EGvcpCommand::Event, 0, {}, EGvcpStatus::InvalidHeader},
        {EGvcpCommand::Event, 0, MakeBytes({}, 24), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::Event, kExtended, MakeBytes({}, 16), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::EventData, 0, MakeBytes({}, 15), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::EventData, kExtended, MakeBytes({}, 23), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::EventData, kExtended, MakeBytes({0, 23}, 24), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::EventData, kExtended, MakeBytes({0, 28}, 24), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::PacketResend, 0, MakeBytes({0, 0, 0, 1}, 20), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::PacketResend, kExtended, MakeBytes({}, 12), EGvcpStatus::InvalidHeader},
        {EGvcpCommand::PacketResend, 0, MakeBytes({}, 12), EGvcpStatus::InvalidParameter},
        {EGvcpCommand::PacketResend, 0, MakeBytes({0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 1}), EGvcpStatus::InvalidParameter},
        {EGvcpCommand::PacketResend, 0, MakeBytes({0, 0, 0, 1, 9, 0, 0, 1, 0, 0, 0, 1}), EGvcpStatus::Success},
        {EGvcpCommand::Action, 0, MakeBytes({}, 20), EGvcpStatus::InvalidHeader},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_EQ(Decode(objCase.nCommand, objCase.nFlags, objCase.vecPayload), objCase.nStatus)
            << gev::GetText(objCase.nCommand) << " case " << &objCase - arrCases;
    }
}

TEST(GvcpEncoder, SaysNothingWhereThereIsNoRoom) {
    std::array<std::byte, 12> arrShort{};
    gev::GvcpBuffer arrBuffer;
    const std::vector<std::uint32_t> vecAddresses(gev::kMostRegistersRead + 1);
    const Bytes vecData(gev::kLongestMemoryBlock + 4);
    EXPECT_EQ(gev::EncodeReadReg(arrBuffer, 1, std::span(vecAddresses).first(gev::kMostRegistersRead)).size(), 548U);
    EXPECT_TRUE(gev::EncodeReadReg(arrBuffer, 1, vecAddresses).empty());
    EXPECT_TRUE(gev::EncodeReadReg(arrBuffer, 1, {}).empty());
    EXPECT_TRUE(gev::EncodeReadReg(arrShort, 1, std::span(vecAddresses).first(2)).empty());
    EXPECT_EQ(gev::EncodeWriteMem(arrBuffer, 1, {0, std::span(vecData).first(536)}).size(), 548U);
    EXPECT_TRUE(gev::EncodeWriteMem(arrBuffer, 1, {0, vecData}).empty());
    EXPECT_TRUE(gev::EncodeDiscoveryAck(arrShort, 1, {}).empty());
    EXPECT_TRUE(gev::EncodeEventData(arrBuffer, 1, {}, vecData, false, true).empty());
    EXPECT_TRUE(gev::EncodeResend(arrBuffer, 1, {0, 0x10000, 1, 2, false}).empty());
    EXPECT_TRUE(gev::EncodeResend(arrBuffer, 1, {0, 1, 1, 0x1000000, false}).empty());
}

TEST(GvcpDiscovery, TextWithoutAnEndStopsAtTheEndOfItsField) {
    gev::GvcpBuffer arrBuffer;
    gev::DISCOVERY_RECORD objSent;
    objSent.ManufacturerName = gev::CFixedText<32>("a name that is as long as 32 byt");
    objSent.ModelName = gev::CFixedText<32>("model");
    objSent.UserDefinedName = gev::CFixedText<16>("more than sixteen bytes");
    const auto arrPayload = gev::EncodeDiscoveryAck(arrBuffer, 1, objSent).subspan(gev::kGvcpHeaderSize);
    arrPayload[0x68 + 6] = std::byte{'x'};  // behind the terminator of the model name

    gev::DISCOVERY_RECORD objReceived;
    ASSERT_EQ(gev::DecodeDiscoveryAck(arrPayload, objReceived), EGvcpStatus::Success);
    EXPECT_EQ(objReceived.ManufacturerName.GetText(), "a name that is as long as 32 byt");
    EXPECT_EQ(objReceived.UserDefinedName.GetText(), "more than sixtee");
    EXPECT_EQ(objReceived, objSent);
    EXPECT_EQ(gev::DecodeDiscoveryAck(arrPayload.first(247), objReceived), EGvcpStatus::InvalidHeader);
}

TEST(GvcpAcknowledge, BlockThatWasNotAskedForIsRefused) {
    gev::GvcpBuffer arrBuffer;
    const Bytes vecData(8, std::byte{0x5A});
    const auto arrPayload = gev::EncodeReadMemAck(arrBuffer, 1, {0x200, vecData}).subspan(gev::kGvcpHeaderSize);
    std::span<const std::byte> arrData;
    ASSERT_EQ(gev::DecodeReadMemAck(arrPayload, {0x200, 8}, arrData), EGvcpStatus::Success);
    EXPECT_TRUE(std::ranges::equal(arrData, vecData));
    EXPECT_EQ(gev::DecodeReadMemAck(arrPayload, {0x204, 8}, arrData), EGvcpStatus::InvalidHeader);
    EXPECT_EQ(gev::DecodeReadMemAck(arrPayload, {0x200, 4}, arrData), EGvcpStatus::InvalidHeader);
    EXPECT_EQ(gev::DecodeReadMemAck(arrPayload.first(3), {0x200, 8}, arrData), EGvcpStatus::InvalidHeader);
    gev::CNumberView objValues;
    EXPECT_EQ(gev::DecodeReadRegAck(arrPayload, 2, objValues), EGvcpStatus::InvalidHeader);
}

}  // namespace
