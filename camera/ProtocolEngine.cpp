#include "camera/ProtocolEngine.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "camera/DescriptionMemory.h"
#include "gev/BigEndian.h"
#include "gev/Bootstrap.h"
#include "gev/GvcpDiscovery.h"
#include "gev/GvcpForceIP.h"
#include "gev/GvcpMemory.h"
#include "gev/GvcpRegister.h"

namespace camera {
namespace {

namespace boot = gev::bootstrap;
using gev::EGvcpCommand;
using gev::EGvcpStatus;
using namespace std::chrono_literals;

constexpr std::uint32_t kWord = 4;
constexpr auto kPendingInterval = 250ms;
constexpr auto kEndlessPending = 100ms;  // what is promised again and again and never kept
constexpr std::uint32_t kDelayMask = 0xFFFF;
constexpr std::size_t kIndexPlace = 2;  // of what failed, in the answer to a write

/// These may come as a broadcast; another command that does is nobody's.
bool MayBeBroadcast(EGvcpCommand nCommand) {
    return nCommand == EGvcpCommand::Discovery || nCommand == EGvcpCommand::ForceIP ||
           nCommand == EGvcpCommand::ForceIPEx || nCommand == EGvcpCommand::Action;
}

/// Their answers tell how far the write came, also when it is refused: analysers take an answer without that for
/// malformed.
bool IsWrite(EGvcpCommand nCommand) {
    return nCommand == EGvcpCommand::WriteReg || nCommand == EGvcpCommand::WriteMem;
}

/// These touch registers.
bool IsControl(EGvcpCommand nCommand) {
    return nCommand == EGvcpCommand::ReadReg || nCommand == EGvcpCommand::ReadMem || IsWrite(nCommand);
}

std::string Hex(std::uint32_t nValue) {
    std::array<char, 8> arrText{};
    const auto objResult = std::to_chars(arrText.data(), arrText.data() + arrText.size(), nValue, 16);
    return "0x" + std::string(arrText.data(), objResult.ptr);
}

}  // namespace

CProtocolEngine::CProtocolEngine(const CAMERA_CONFIGURATION& objConfiguration, gev::CMACAddress objMAC,
                                 std::uint32_t nLinkSpeed, IAdapter& objAdapter, IOutlet& objOutlet, TIME tNow)
    : m_strModel(objConfiguration.Model),
      m_funLog(objConfiguration.Log),
      m_nSlowCommand(objConfiguration.SlowCommand),
      m_objMAC(objMAC),
      m_objDevice(objConfiguration, objMAC, nLinkSpeed, tNow),
      m_objControl(m_objDevice),
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
    m_objAnswering.SetFaults(objFaults, tNow);
    m_objDevice.SetNamesWithoutEnd(objFaults.NamesWithoutEnd);
    PlaceDescription(m_objDevice.Registers(), m_strModel, objFaults.Description);
}

bool CProtocolEngine::IsHeard(EGvcpCommand nCommand, std::uint32_t nDestination, TIME tNow) {
    if (m_objFaults.Silent == ESilence::All || (m_objFaults.Silent == ESilence::Control && !MayBeBroadcast(nCommand))) {
        return false;
    }
    if (m_objFaults.VanishAfterTime && tNow >= m_tFaultsSet + *m_objFaults.VanishAfterTime) {
        return false;
    }
    if (nDestination != m_objIP.GetCurrent().Address && !MayBeBroadcast(nCommand)) {
        return false;
    }
    if (m_objFaults.VanishAfterCommands && m_nCommands >= *m_objFaults.VanishAfterCommands) {
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
    if (!IsWrite(nCommand) && m_objLastWrite.From == objRequest.From) {
        m_objLastWrite.CommandLength = 0;  // whoever goes on has had the answer
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
        Acknowledge(objRequest, gev::EncodeAcknowledge(m_arrAnswer, nCommand, objRequest.Header.RequestID, nStatus,
                                                       IsWrite(nCommand) ? kWord : 0));
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
    return Refuse(objRequest, nStatus);
}

EGvcpStatus CProtocolEngine::ReadRegisters(const REQUEST& objRequest) {
    gev::CNumberView objAddresses;
    EGvcpStatus nStatus = gev::DecodeReadReg(objRequest.Payload, objAddresses);
    if (nStatus == EGvcpStatus::Success && !m_objControl.MayRead(objRequest.From)) {
        nStatus = EGvcpStatus::AccessDenied;
    }
    const CRegisterSpace& objRegisters = m_objDevice.Registers();
    std::size_t nGood = 0;
    while (nStatus == EGvcpStatus::Success && nGood < objAddresses.GetCount()) {
        nStatus = objRegisters.CheckRead(objAddresses.Get(nGood), kWord);
        nGood += nStatus == EGvcpStatus::Success ? 1 : 0;
    }
    // On a failure the values before it go back, so that their number tells which address failed.
    const auto arrAnswer =
        gev::EncodeAcknowledge(m_arrAnswer, EGvcpCommand::ReadReg, objRequest.Header.RequestID, nStatus, nGood * kWord);
    for (std::size_t i = 0; i < nGood; ++i) {
        gev::Put32(arrAnswer, gev::kGvcpHeaderSize + i * kWord, objRegisters.Get(objAddresses.Get(i)));
    }
    Acknowledge(objRequest, arrAnswer);
    return nStatus;
}

EGvcpStatus CProtocolEngine::ReadMemory(const REQUEST& objRequest) {
    gev::READMEM_COMMAND objCommand;
    EGvcpStatus nStatus = gev::DecodeReadMem(objRequest.Payload, objCommand);
    if (nStatus == EGvcpStatus::Success) {
        nStatus = m_objControl.MayRead(objRequest.From)
                      ? m_objDevice.Registers().CheckRead(objCommand.Address, objCommand.Count)
                      : EGvcpStatus::AccessDenied;
    }
    if (nStatus != EGvcpStatus::Success) {
        return Refuse(objRequest, nStatus);
    }
    const gev::MEMORY_BLOCK objBlock{objCommand.Address,
                                     m_objDevice.Registers().View(objCommand.Address, objCommand.Count)};
    Acknowledge(objRequest, gev::EncodeReadMemAck(m_arrAnswer, objRequest.Header.RequestID, objBlock));
    return EGvcpStatus::Success;
}

EGvcpStatus CProtocolEngine::Write(const REQUEST& objRequest) {
    if (AnswerRepeat(objRequest)) {
        return EGvcpStatus::Success;
    }
    if (m_objSlowWork) {
        return Refuse(objRequest, EGvcpStatus::Busy);
    }
    if (m_objControl.IsHeldBy(objRequest.From) && IsSlow(objRequest)) {
        const bool bPending =
            (m_objDevice.Registers().Get(boot::kGvcpConfiguration) & boot::kGvcpConfigurationPendingAckEnable) != 0;
        BeginSlowWork(objRequest, m_nSlowCommand, bPending);
        return EGvcpStatus::Success;
    }
    std::span<std::byte> arrAnswer;
    const EGvcpStatus nStatus = objRequest.Header.Command == EGvcpCommand::WriteReg
                                    ? WriteRegisters(objRequest, arrAnswer)
                                    : WriteMemory(objRequest, arrAnswer);
    RememberWrite(objRequest, arrAnswer);
    Acknowledge(objRequest, arrAnswer);
    return nStatus;
}

EGvcpStatus CProtocolEngine::WriteRegisters(const REQUEST& objRequest, std::span<std::byte>& arrAnswer) {
    const std::uint16_t nID = objRequest.Header.RequestID;
    gev::CRegisterWriteView objWrites;
    EGvcpStatus nStatus = gev::DecodeWriteReg(objRequest.Payload, objWrites);
    std::size_t nDone = 0;
    while (nStatus == EGvcpStatus::Success && nDone < objWrites.GetCount()) {
        std::array<std::byte, kWord> arrValue;
        gev::Put32(arrValue, 0, objWrites.Get(nDone).Value);
        nStatus = WriteBlock(objRequest, objWrites.Get(nDone).Address, arrValue);
        nDone += nStatus == EGvcpStatus::Success ? 1 : 0;
    }
    if (nStatus == EGvcpStatus::Success) {
        arrAnswer = gev::EncodeWriteRegAck(m_arrAnswer, nID, static_cast<std::uint16_t>(nDone));
        return nStatus;
    }
    arrAnswer = gev::EncodeAcknowledge(m_arrAnswer, EGvcpCommand::WriteReg, nID, nStatus, kWord);
    gev::Put16(arrAnswer, gev::kGvcpHeaderSize + kIndexPlace, static_cast<std::uint16_t>(nDone));
    return nStatus;
}

EGvcpStatus CProtocolEngine::WriteMemory(const REQUEST& objRequest, std::span<std::byte>& arrAnswer) {
    const std::uint16_t nID = objRequest.Header.RequestID;
    gev::MEMORY_BLOCK objBlock;
    EGvcpStatus nStatus = gev::DecodeWriteMem(objRequest.Payload, objBlock);
    if (nStatus == EGvcpStatus::Success) {
        nStatus = WriteBlock(objRequest, objBlock.Address, objBlock.Data);
    }
    arrAnswer = nStatus == EGvcpStatus::Success
                    ? gev::EncodeWriteMemAck(m_arrAnswer, nID, static_cast<std::uint16_t>(objBlock.Data.size()))
                    : gev::EncodeAcknowledge(m_arrAnswer, EGvcpCommand::WriteMem, nID, nStatus, kWord);
    return nStatus;
}

EGvcpStatus CProtocolEngine::WriteBlock(const REQUEST& objRequest, std::uint32_t nAddress,
                                        std::span<const std::byte> arrData) {
    constexpr std::uint32_t kPrivilege = boot::kControlChannelPrivilege.Address;
    if (nAddress == kPrivilege && arrData.size() == kWord) {
        const EGvcpStatus nStatus = m_objControl.SetPrivilege(objRequest.From, gev::Get32(arrData, 0), objRequest.Now);
        if (nStatus == EGvcpStatus::Success && !m_objControl.IsHeld()) {
            m_objLastWrite.CommandLength = 0;
        }
        return nStatus;
    }
    if (!m_objControl.IsHeldBy(objRequest.From)) {
        return EGvcpStatus::AccessDenied;
    }
    // The privilege is no memory that a longer block may overwrite.
    if (nAddress < kPrivilege && arrData.size() > kPrivilege - nAddress) {
        return EGvcpStatus::InvalidAddress;
    }
    return m_objDevice.Write(nAddress, arrData, objRequest.Now);
}

bool CProtocolEngine::IsSlow(const REQUEST& objRequest) const {
    gev::MEMORY_BLOCK objBlock;
    if (objRequest.Header.Command == EGvcpCommand::WriteMem) {
        return gev::DecodeWriteMem(objRequest.Payload, objBlock) == EGvcpStatus::Success &&
               m_objDevice.IsSlow(objBlock.Address, objBlock.Data.size());
    }
    gev::CRegisterWriteView objWrites;
    if (gev::DecodeWriteReg(objRequest.Payload, objWrites) != EGvcpStatus::Success) {
        return false;
    }
    for (std::size_t i = 0; i < objWrites.GetCount(); ++i) {
        if (m_objDevice.IsSlow(objWrites.Get(i).Address, kWord)) {
            return true;
        }
    }
    return false;
}

void CProtocolEngine::BeginSlowWork(const REQUEST& objRequest, std::optional<std::chrono::milliseconds> nDuration,
                                    bool bPending) {
    SLOW_WORK& objWork = m_objSlowWork.emplace();
    objWork.From = objRequest.From;
    objWork.RequestID = objRequest.Header.RequestID;
    objWork.Length = objRequest.Datagram.size();
    std::ranges::copy(objRequest.Datagram, objWork.Command.begin());
    if (nDuration) {
        objWork.Done = objRequest.Now + *nDuration;
    }
    if (bPending && objRequest.Header.WantsAcknowledge()) {
        objWork.Pending = objRequest.Now;
    }
    AdvanceSlowWork(objRequest.Now);
}

void CProtocolEngine::AdvanceSlowWork(TIME tNow) {
    if (!m_objSlowWork) {
        return;
    }
    if (m_objSlowWork->Done && tNow >= *m_objSlowWork->Done) {
        const SLOW_WORK objWork = *m_objSlowWork;
        m_objSlowWork.reset();
        gev::GVCP_COMMAND_HEADER objHeader;
        std::span<const std::byte> arrPayload;
        const auto arrDatagram = std::span(objWork.Command).first(objWork.Length);
        gev::DecodeCommand(arrDatagram, objHeader, arrPayload);  // good the first time
        const REQUEST objRequest{objWork.From, objHeader, arrPayload, arrDatagram, tNow};
        m_objControl.Beat(objWork.From, tNow);
        std::span<std::byte> arrAnswer;
        const EGvcpStatus nStatus = objHeader.Command == EGvcpCommand::WriteReg ? WriteRegisters(objRequest, arrAnswer)
                                                                                : WriteMemory(objRequest, arrAnswer);
        RememberWrite(objRequest, arrAnswer);
        Acknowledge(objRequest, arrAnswer);
        LogRequest(objRequest, nStatus);
        return;
    }
    if (m_objSlowWork->Pending && tNow >= *m_objSlowWork->Pending) {
        const auto nLeft = m_objSlowWork->Done
                               ? std::chrono::ceil<std::chrono::milliseconds>(*m_objSlowWork->Done - tNow)
                               : std::chrono::milliseconds(kEndlessPending);
        const auto nPromise = static_cast<std::uint16_t>(std::min<std::int64_t>(nLeft.count(), 0xFFFF));
        m_objAnswering.Send(m_objSlowWork->From, gev::EncodePendingAck(m_arrAnswer, m_objSlowWork->RequestID, nPromise),
                            tNow);
        m_objSlowWork->Pending = tNow + (m_objSlowWork->Done ? kPendingInterval : kEndlessPending / 2);
    }
}

// A command whose acknowledge was lost comes again, with the same ID: it is answered again, and done once.
bool CProtocolEngine::AnswerRepeat(const REQUEST& objRequest) {
    if (m_objSlowWork && m_objSlowWork->From == objRequest.From &&
        m_objSlowWork->RequestID == objRequest.Header.RequestID) {
        if (m_objSlowWork->Pending) {
            m_objSlowWork->Pending = objRequest.Now;
            AdvanceSlowWork(objRequest.Now);
        }
        return true;
    }
    const LAST_WRITE& objLast = m_objLastWrite;
    if (objLast.CommandLength == 0 || objLast.From != objRequest.From ||
        !std::ranges::equal(std::span(objLast.Command).first(objLast.CommandLength), objRequest.Datagram)) {
        return false;
    }
    Acknowledge(objRequest, std::span(objLast.Answer).first(objLast.AnswerLength));
    return true;
}

void CProtocolEngine::RememberWrite(const REQUEST& objRequest, std::span<const std::byte> arrAnswer) {
    // Others' writes are refused, which can be done twice.
    if (!m_objControl.IsHeldBy(objRequest.From)) {
        return;
    }
    m_objLastWrite.From = objRequest.From;
    m_objLastWrite.CommandLength = objRequest.Datagram.size();
    std::ranges::copy(objRequest.Datagram, m_objLastWrite.Command.begin());
    m_objLastWrite.AnswerLength = arrAnswer.size();
    std::ranges::copy(arrAnswer, m_objLastWrite.Answer.begin());
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

void CProtocolEngine::Advance(TIME tNow) {
    AdvanceSlowWork(tNow);
    if (m_objControl.Advance(tNow)) {
        LoseControl();
        Log("no heartbeat, control is free again");
    }
    if (m_objIP.Advance(tNow)) {
        Log("has the address " + std::string(gev::FormatIPv4(m_objIP.GetCurrent().Address).GetText()));
    }
    ResetIfWished(tNow);
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
