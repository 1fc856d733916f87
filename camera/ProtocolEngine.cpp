#include "camera/ProtocolEngine.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "camera/CommandKind.h"
#include "camera/DescriptionMemory.h"
#include "gev/BigEndian.h"
#include "gev/Bootstrap.h"
#include "gev/GvcpDiscovery.h"
#include "gev/GvcpForceIP.h"
#include "gev/GvcpResend.h"

namespace camera {
namespace {

namespace boot = gev::bootstrap;
using gev::EGvcpCommand;
using gev::EGvcpStatus;
using namespace std::chrono_literals;

constexpr std::uint32_t kWord = 4;
constexpr std::uint32_t kDelayMask = 0xFFFF;

std::string Hex(std::uint32_t nValue) {
    std::array<char, 8> arrText{};
    const auto objResult = std::to_chars(arrText.data(), arrText.data() + arrText.size(), nValue, 16);
    return "0x" + std::string(arrText.data(), objResult.ptr);
}

}  // namespace

CProtocolEngine::CProtocolEngine(const CAMERA_CONFIGURATION& objConfiguration, gev::CMACAddress objMAC,
                                 std::uint32_t nLinkSpeed, IAdapter& objAdapter, IOutlet& objOutlet,
                                 IStreaming& objStreaming, TIME tNow)
    : m_strModel(objConfiguration.Model),
      m_pDescription(objConfiguration.Description
                         ? objConfiguration.Description
                         : std::make_shared<const std::vector<std::byte>>(PackDescription(m_strModel))),
      m_funLog(objConfiguration.Log),
      m_funKeep(objConfiguration.Keep),
      m_objMAC(objMAC),
      m_objStreaming(objStreaming),
      m_objDevice(objConfiguration, objMAC, nLinkSpeed, objStreaming, tNow),
      m_objControl(m_objDevice),
      m_objMessages(m_objDevice, objOutlet),
      m_objIP(m_objDevice.Registers(), objAdapter, objMAC, objConfiguration.Reconfiguration),
      m_objAnswering(objOutlet, objMAC.GetLow()) {
    SetFaults(objConfiguration.Faults, tNow);
    m_objIP.Begin(objConfiguration);
}

void CProtocolEngine::SetFaults(const FAULTS& objFaults, TIME tNow) {
    m_objFaults = objFaults;
    m_tFaultsSet = tNow;
    m_nCommands = 0;
    m_objSlowWork.reset();
    m_objLastWrite.CommandLength = 0;
    m_bGone = false;
    m_objAnswering.SetFaults(objFaults, tNow);
    m_objStreaming.SetFaults(objFaults.Stream);
    m_objDevice.Advance(tNow);
    m_objDevice.SetOverheating(objFaults.Overheat);
    m_objDevice.SetNamesWithoutEnd(objFaults.NamesWithoutEnd);
    PlaceDescription(m_objDevice.Registers(), m_strModel, *m_pDescription, objFaults.Description);
}

bool CProtocolEngine::HasVanished(TIME tNow) const {
    const auto nCommands = m_objFaults.VanishAfterCommands;
    const auto nTime = m_objFaults.VanishAfterTime;
    return m_objFaults.Silent == ESilence::All || (nCommands && m_nCommands >= *nCommands) ||
           (nTime && tNow >= m_tFaultsSet + *nTime);
}

bool CProtocolEngine::IsHeard(EGvcpCommand nCommand, std::uint32_t nDestination, TIME tNow) {
    const bool bForAll = MayBeBroadcast(nCommand);
    if (HasVanished(tNow) || (m_objFaults.Silent == ESilence::Control && !bForAll) ||
        (nDestination != m_objIP.GetCurrent().Address && !bForAll)) {
        return false;
    }
    ++m_nCommands;
    return true;
}

void CProtocolEngine::Receive(const ENDPOINT& objFrom, std::uint32_t nDestination,
                              std::span<const std::byte> arrDatagram, TIME tNow) {
    Advance(tNow);
    if (m_objIP.IsUnderWay() || !m_objIP.IsMine(nDestination)) {
        return;
    }
    if (m_objMessages.TakeAcknowledge(objFrom, arrDatagram, tNow)) {
        return;
    }
    gev::GVCP_COMMAND_HEADER objHeader;
    std::span<const std::byte> arrPayload;
    const EGvcpStatus nGood = gev::DecodeCommand(arrDatagram, objHeader, arrPayload);
    if (objHeader.RequestID == 0 || !IsHeard(objHeader.Command, nDestination, tNow)) {
        return;
    }
    const REQUEST objRequest{objFrom, objHeader, arrPayload, arrDatagram, tNow};
    m_objControl.Beat(objFrom, tNow);
    LogRequest(objRequest, nGood == EGvcpStatus::Success ? Dispatch(objRequest) : Refuse(objRequest, nGood));
    ResetIfWished(tNow);
}

EGvcpStatus CProtocolEngine::Dispatch(const REQUEST& objRequest) {
    const EGvcpCommand nCommand = objRequest.Header.Command;
    // Whoever goes on has had the answer. Requests to send packets again come between, as a stream needs them.
    if (!IsWrite(nCommand) && nCommand != EGvcpCommand::PacketResend && m_objLastWrite.From == objRequest.From) {
        m_objLastWrite.CommandLength = 0;
    }
    if (m_objFaults.Denied && nCommand != EGvcpCommand::Discovery && nCommand != EGvcpCommand::ForceIP) {
        return Refuse(objRequest, EGvcpStatus::AccessDenied);
    }
    if (m_objFaults.PendingForever && IsControl(nCommand)) {
        BeginSlowWork(objRequest, std::nullopt, true);
        return EGvcpStatus::Success;
    }
    switch (nCommand) {
        case EGvcpCommand::Discovery:
            return Discover(objRequest);
        case EGvcpCommand::ForceIP:
            return ForceIP(objRequest);
        case EGvcpCommand::ForceIPEx:
            return ForceIPEx(objRequest);
        case EGvcpCommand::ReadReg:
            return ReadRegisters(objRequest);
        case EGvcpCommand::ReadMem:
            return ReadMemory(objRequest);
        case EGvcpCommand::WriteReg:
        case EGvcpCommand::WriteMem:
            return Write(objRequest);
        case EGvcpCommand::PacketResend:
            return Resend(objRequest);
        default:
            return Refuse(objRequest, EGvcpStatus::NotImplemented);
    }
}

// What goes to a host that the camera may not reach goes to everybody, where the host said that it may.
void CProtocolEngine::Acknowledge(const REQUEST& objRequest, std::span<const std::byte> arrAnswer,
                                  std::chrono::milliseconds nDelay) {
    const gev::GVCP_COMMAND_HEADER& objHeader = objRequest.Header;
    if (!objHeader.WantsAcknowledge()) {
        return;
    }
    ENDPOINT objTo = objRequest.From;
    if (MayBeBroadcast(objHeader.Command) && (objHeader.Flags & gev::kGvcpFlagBroadcastAcknowledge) != 0 &&
        !m_objIP.IsNeighbour(objTo.Address)) {
        objTo.Address = kLimitedBroadcast;
    }
    // To the system an address of 0 is this machine, so a host without any address can only be reached by broadcast.
    if (objTo.Address != 0) {
        m_objAnswering.Send(objTo, arrAnswer, objRequest.Now, nDelay);
    }
}

EGvcpStatus CProtocolEngine::Refuse(const REQUEST& objRequest, EGvcpStatus nStatus) {
    const EGvcpCommand nCommand = objRequest.Header.Command;
    if (nCommand != EGvcpCommand::PacketResend) {  // which is never acknowledged
        Acknowledge(objRequest, gev::EncodeAcknowledge(m_arrAnswer, nCommand, objRequest.Header.RequestID, nStatus, 0));
    }
    return nStatus;
}

EGvcpStatus CProtocolEngine::Discover(const REQUEST& objRequest) {
    const EGvcpStatus nGood = gev::DecodeDiscovery(objRequest.Payload);
    if (nGood != EGvcpStatus::Success) {
        return Refuse(objRequest, nGood);
    }
    const auto arrAnswer = gev::EncodeAcknowledge(m_arrAnswer, EGvcpCommand::Discovery, objRequest.Header.RequestID,
                                                  EGvcpStatus::Success, gev::kDiscoveryAckSize);
    std::ranges::copy(m_objDevice.Registers().View(0, gev::kDiscoveryAckSize),
                      arrAnswer.subspan(gev::kGvcpHeaderSize).begin());
    const std::uint32_t nMost = m_objDevice.Registers().Get(boot::kDiscoveryAckDelay) & kDelayMask;
    Acknowledge(objRequest, arrAnswer, std::chrono::milliseconds(nMost == 0 ? 0 : m_objAnswering.Random(nMost)));
    return EGvcpStatus::Success;
}

EGvcpStatus CProtocolEngine::ForceIP(const REQUEST& objRequest) {
    gev::FORCEIP_COMMAND objCommand;
    const EGvcpStatus nGood = gev::DecodeForceIP(objRequest.Payload, objCommand);
    if (nGood != EGvcpStatus::Success) {
        return Refuse(objRequest, nGood);
    }
    if (objCommand.MAC != m_objMAC) {
        return EGvcpStatus::Success;
    }
    // An application that controls the camera is not to lose it to another's wish.
    if (m_objControl.IsForeign(objRequest.From)) {
        return Refuse(objRequest, EGvcpStatus::AccessDenied);
    }
    if (objCommand.IP == 0) {
        LoseControl();
        m_objIP.Restart(objRequest.Now);
        return EGvcpStatus::Success;
    }
    const IP_SETTING objSetting{objCommand.IP, objCommand.SubnetMask, objCommand.Gateway};
    const bool bSame = objSetting == m_objIP.GetCurrent();
    if (const EGvcpStatus nTaken = bSame ? EGvcpStatus::Success : m_objIP.Force(objSetting);
        nTaken != EGvcpStatus::Success) {
        return Refuse(objRequest, nTaken);
    }
    if (!bSame) {
        LoseControl();
    }
    return Refuse(objRequest, EGvcpStatus::Success);
}

EGvcpStatus CProtocolEngine::ForceIPEx(const REQUEST& objRequest) {
    gev::FORCEIPEX_COMMAND objCommand;
    EGvcpStatus nStatus = gev::DecodeForceIPEx(objRequest.Payload, objCommand);
    if (nStatus == EGvcpStatus::Success) {
        if (objCommand.MAC != m_objMAC) {
            return EGvcpStatus::Success;
        }
        nStatus = m_objControl.IsForeign(objRequest.From) ? EGvcpStatus::AccessDenied
                                                          : m_objIP.Store({objCommand.IP, objCommand.SubnetMask, 0});
    }
    if (nStatus == EGvcpStatus::Success) {
        nStatus = KeepState();
    }
    return Refuse(objRequest, nStatus);
}

// Never acknowledged. Only the host that gets the stream may ask, from whatever port.
EGvcpStatus CProtocolEngine::Resend(const REQUEST& objRequest) {
    gev::RESEND_COMMAND objCommand;
    EGvcpStatus nStatus = gev::DecodeResend(objRequest.Header, objRequest.Payload, objCommand);
    const CHANNEL objChannel = m_objDevice.GetStreamChannel();
    if (nStatus == EGvcpStatus::Success && (objChannel.Port == 0 || objChannel.Address != objRequest.From.Address)) {
        nStatus = EGvcpStatus::AccessDenied;
    } else if (nStatus == EGvcpStatus::Success && objCommand.StreamChannel != 0) {
        nStatus = EGvcpStatus::InvalidParameter;
    }
    if (nStatus == EGvcpStatus::Success) {
        m_objStreaming.Resend(objCommand);
    }
    return nStatus;
}

void CProtocolEngine::TellUnsent(std::uint32_t nAcquisition, const UNSENT_PACKETS& objUnsent) {
    m_objDevice.CountUnsent(objUnsent.Count);
    if (m_funLog && nAcquisition != m_nUnsentTold) {
        const CHANNEL objChannel = m_objDevice.GetStreamChannel();
        Log("images can't be sent to " + std::string(gev::FormatIPv4(objChannel.Address).GetText()) + ":" +
            std::to_string(objChannel.Port) + ": " + objUnsent.Reason.message() +
            ". StreamUnsentPacketCount counts what is lost");
    }
    m_nUnsentTold = nAcquisition;
}

/// @return Error when what holds now will be lost with the next restart
EGvcpStatus CProtocolEngine::KeepState() const {
    return !m_funKeep || m_funKeep(FormatState(m_objDevice.GetState())) ? EGvcpStatus::Success : EGvcpStatus::Error;
}

void CProtocolEngine::LoseControl() {
    m_objControl.Drop();
    m_objSlowWork.reset();
    m_objLastWrite.CommandLength = 0;
}

void CProtocolEngine::ResetIfWished(TIME tNow) {
    if (m_objDevice.TakeResetWish()) {
        Log("starts anew");
        LoseControl();
        m_objDevice.Reset(tNow);
        m_objIP.Restart(tNow);
    }
}

void CProtocolEngine::EndAcquisition(std::uint32_t nAcquisition, TIME tNow) {
    m_objDevice.Advance(tNow);
    m_objDevice.EndAcquisition(nAcquisition);
}

void CProtocolEngine::Advance(TIME tNow) {
    m_objDevice.Advance(tNow);
    AdvanceSlowWork(tNow);
    if (m_objControl.Advance(tNow)) {
        LoseControl();
        Log("no heartbeat, control is free again");
    }
    if (m_objIP.Advance(tNow)) {
        Log("has the address " + std::string(gev::FormatIPv4(m_objIP.GetCurrent().Address).GetText()));
    }
    ResetIfWished(tNow);
    if (HasVanished(tNow)) {
        m_objAnswering.Mute();
        if (!m_bGone) {
            m_bGone = true;
            m_objDevice.CloseChannels();
        }
    }
    m_objMessages.Advance(tNow);
    m_objAnswering.Advance(tNow);
}

std::optional<TIME> CProtocolEngine::NextTime() const {
    std::optional<TIME> tNext = m_objControl.NextTime();
    const auto consider = [&tNext](std::optional<TIME> tOther) {
        if (tOther) {
            tNext = std::min(tNext.value_or(*tOther), *tOther);
        }
    };
    consider(m_objIP.NextTime());
    if (m_objFaults.VanishAfterTime && !m_bGone) {
        consider(m_tFaultsSet + *m_objFaults.VanishAfterTime);
    }
    consider(m_objMessages.NextTime());
    consider(m_objAnswering.NextTime());
    if (m_objSlowWork) {
        consider(m_objSlowWork->Done);
        consider(m_objSlowWork->Pending);
    }
    return tNext;
}

void CProtocolEngine::Log(std::string_view strLine) const {
    if (m_funLog) {
        m_funLog(strLine);
    }
}

void CProtocolEngine::LogRequest(const REQUEST& objRequest, EGvcpStatus nStatus) const {
    if (!m_funLog) {
        return;
    }
    std::string strLine(gev::GetText(objRequest.Header.Command));
    if (IsControl(objRequest.Header.Command) && objRequest.Payload.size() >= kWord) {
        strLine += " " + Hex(gev::Get32(objRequest.Payload, 0));
    }
    strLine.append(" from ").append(gev::FormatIPv4(objRequest.From.Address).GetText());
    strLine.append(":").append(std::to_string(objRequest.From.Port)).append(": ").append(gev::GetText(nStatus));
    m_funLog(strLine);
}

}  // namespace camera
