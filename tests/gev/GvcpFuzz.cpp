// One datagram, taken apart as a device and as an application would. What is understood is said again, and must then be
// understood to be the same.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>
#include <vector>

#include "gev/Address.h"
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
using Payload = std::span<const std::byte>;

void Require(bool bHolds) {
    if (!bHolds) {
        std::abort();
    }
}

void RequireSamePayload(std::span<const std::byte> arrDatagram, Payload arrPayload) {
    Require(!arrDatagram.empty());
    const Payload arrAgain = arrDatagram.subspan(gev::kGvcpHeaderSize);
    Require(std::vector(arrAgain.begin(), arrAgain.end()) == std::vector(arrPayload.begin(), arrPayload.end()));
}

/// Commands without reserved fields: what is understood is written again to the byte.
void TryExactCommand(EGvcpCommand nCommand, Payload arrPayload, std::span<std::byte> arrBuffer) {
    gev::CNumberView objAddresses;
    gev::CRegisterWriteView objWrites;
    gev::MEMORY_BLOCK objBlock;
    gev::ACTION_COMMAND objAction;
    if (nCommand == EGvcpCommand::ReadReg && gev::DecodeReadReg(arrPayload, objAddresses) == EGvcpStatus::Success) {
        std::vector<std::uint32_t> vecAddresses;
        for (std::size_t i = 0; i < objAddresses.GetCount(); ++i) {
            vecAddresses.push_back(objAddresses.Get(i));
        }
        RequireSamePayload(gev::EncodeReadReg(arrBuffer, 1, vecAddresses), arrPayload);
    }
    if (nCommand == EGvcpCommand::WriteReg && gev::DecodeWriteReg(arrPayload, objWrites) == EGvcpStatus::Success) {
        std::vector<gev::REGISTER_WRITE> vecWrites;
        for (std::size_t i = 0; i < objWrites.GetCount(); ++i) {
            vecWrites.push_back(objWrites.Get(i));
        }
        RequireSamePayload(gev::EncodeWriteReg(arrBuffer, 1, vecWrites), arrPayload);
    }
    if (nCommand == EGvcpCommand::WriteMem && gev::DecodeWriteMem(arrPayload, objBlock) == EGvcpStatus::Success) {
        RequireSamePayload(gev::EncodeWriteMem(arrBuffer, 1, objBlock), arrPayload);
    }
    if (nCommand == EGvcpCommand::Action && gev::DecodeAction(arrPayload, objAction) == EGvcpStatus::Success) {
        RequireSamePayload(gev::EncodeAction(arrBuffer, 1, objAction, true), arrPayload);
    }
}

/// Events lie one behind the other in the payload, and each with its data can be said by itself.
void TryEventData(gev::CEventDataWalk objWalk, Payload arrPayload, std::span<std::byte> arrBuffer) {
    const std::byte* pLast = arrPayload.data();
    std::size_t nEvents = 0;
    for (; const auto objEvent = objWalk.GetNext(); ++nEvents) {
        Require(objEvent->Data.data() >= pLast + 16);
        pLast = objEvent->Data.data() + objEvent->Data.size();
        Require(pLast <= arrPayload.data() + arrPayload.size());
        const auto arrAgain = gev::EncodeEventData(arrBuffer, 1, objEvent->Entry, objEvent->Data, true, true);
        Require(arrAgain.empty() || arrAgain.size() == gev::kGvcpHeaderSize + 24 + objEvent->Data.size());
    }
    Require(nEvents >= 1 && nEvents <= gev::kGvcpLongestPayload / 16);
}

/// Commands with reserved fields, of which only what counts must come back.
void TryCommand(const gev::GVCP_COMMAND_HEADER& objHeader, Payload arrPayload, std::span<std::byte> arrBuffer) {
    gev::FORCEIP_COMMAND objForceIP;
    gev::FORCEIPEX_COMMAND objForceIPEx;
    gev::READMEM_COMMAND objRead;
    gev::CEventView objEvents;
    gev::CEventDataWalk objWalk;
    gev::RESEND_COMMAND objResend;
    gev::DecodeDiscovery(arrPayload);
    gev::DecodeForceIPEx(arrPayload, objForceIPEx);
    if (gev::DecodeForceIP(arrPayload, objForceIP) == EGvcpStatus::Success) {
        const auto nIP = objForceIP.IP;
        gev::DecodeForceIP(gev::EncodeForceIP(arrBuffer, 1, objForceIP).subspan(gev::kGvcpHeaderSize), objForceIP);
        Require(objForceIP.IP == nIP);
    }
    if (gev::DecodeReadMem(arrPayload, objRead) == EGvcpStatus::Success) {
        Require(objRead.Count % 4 == 0 && objRead.Count <= gev::kLongestMemoryBlock);
    }
    if (gev::DecodeEvent(objHeader, arrPayload, objEvents) == EGvcpStatus::Success) {
        for (std::size_t i = 0; i < objEvents.GetCount(); ++i) {
            objEvents.Get(i);
        }
    }
    if (gev::DecodeEventData(objHeader, arrPayload, objWalk) == EGvcpStatus::Success) {
        TryEventData(objWalk, arrPayload, arrBuffer);
    }
    if (gev::DecodeResend(objHeader, arrPayload, objResend) == EGvcpStatus::Success) {
        Require(!gev::EncodeResend(arrBuffer, 1, objResend).empty());
    }
}

void TryAcknowledge(Payload arrPayload, std::span<std::byte> arrBuffer) {
    gev::DISCOVERY_RECORD objRecord;
    gev::CNumberView objValues;
    std::uint16_t nNumber = 0;
    Payload arrData;
    if (gev::DecodeDiscoveryAck(arrPayload, objRecord) == EGvcpStatus::Success) {
        gev::DISCOVERY_RECORD objAgain;
        gev::DecodeDiscoveryAck(gev::EncodeDiscoveryAck(arrBuffer, 1, objRecord).subspan(gev::kGvcpHeaderSize),
                                objAgain);
        Require(objAgain == objRecord);
    }
    if (gev::DecodeReadRegAck(arrPayload, arrPayload.size() / 4, objValues) == EGvcpStatus::Success &&
        objValues.GetCount() > 0) {
        const auto nCount = static_cast<std::uint16_t>(4 * (objValues.GetCount() - 1));
        Require(gev::DecodeReadMemAck(arrPayload, {objValues.Get(0), nCount}, arrData) == EGvcpStatus::Success);
        Require(arrData.size() == nCount);
    }
    gev::DecodePendingAck(arrPayload, nNumber);
    gev::DecodeWriteRegAck(arrPayload, nNumber);
    gev::DecodeWriteMemAck(arrPayload, nNumber);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const Payload arrDatagram(reinterpret_cast<const std::byte*>(pData), nSize);
    gev::GvcpBuffer arrBuffer;
    Payload arrPayload;
    gev::GVCP_COMMAND_HEADER objCommand;
    if (gev::DecodeCommand(arrDatagram, objCommand, arrPayload) == EGvcpStatus::Success) {
        TryExactCommand(objCommand.Command, arrPayload, arrBuffer);
        TryCommand(objCommand, arrPayload, arrBuffer);
    }
    gev::GVCP_ACKNOWLEDGE_HEADER objAcknowledge;
    if (gev::DecodeAcknowledge(arrDatagram, objAcknowledge, arrPayload) == EGvcpStatus::Success) {
        TryAcknowledge(arrPayload, arrBuffer);
    }
    const std::string_view strText(reinterpret_cast<const char*>(pData), nSize);
    if (const auto nAddress = gev::ParseIPv4(strText)) {
        Require(gev::ParseIPv4(gev::FormatIPv4(*nAddress).GetText()) == nAddress);
    }
    if (const auto objAddress = gev::ParseMAC(strText)) {
        Require(gev::ParseMAC(gev::FormatMAC(*objAddress).GetText()) == objAddress);
    }
    return 0;
}
