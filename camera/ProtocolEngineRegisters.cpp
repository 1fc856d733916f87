// The part of the engine that reads and writes registers, at once or in a while.

#include <algorithm>
#include <array>

#include "camera/CommandKind.h"
#include "camera/ProtocolEngine.h"
#include "gev/BigEndian.h"
#include "gev/Bootstrap.h"
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

}  // namespace

EGvcpStatus CProtocolEngine::ReadRegisters(const REQUEST& objRequest) {
    gev::CNumberView objAddresses;
    EGvcpStatus nStatus = gev::DecodeReadReg(objRequest.Payload, objAddresses);
    if (nStatus == EGvcpStatus::Success && !m_objControl.MayRead(objRequest.From)) {
        nStatus = EGvcpStatus::AccessDenied;
    }
    const CRegisterSpace& objRegisters = m_objDevice.Registers();
    for (std::size_t i = 0; nStatus == EGvcpStatus::Success && i < objAddresses.GetCount(); ++i) {
        nStatus = objRegisters.CheckRead(objAddresses.Get(i), kWord);
    }
    if (nStatus != EGvcpStatus::Success) {
        return Refuse(objRequest, nStatus);
    }
    const auto arrAnswer = gev::EncodeAcknowledge(m_arrAnswer, EGvcpCommand::ReadReg, objRequest.Header.RequestID,
                                                  nStatus, objAddresses.GetCount() * kWord);
    for (std::size_t i = 0; i < objAddresses.GetCount(); ++i) {
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
    if (const auto nDuration = GetDuration(objRequest); nDuration > 0ms && m_objControl.IsHeldBy(objRequest.From)) {
        const bool bPending =
            (m_objDevice.Registers().Get(boot::kGvcpConfiguration) & boot::kGvcpConfigurationPendingAckEnable) != 0;
        BeginSlowWork(objRequest, nDuration, bPending);
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
    arrAnswer = nStatus == EGvcpStatus::Success
                    ? gev::EncodeWriteRegAck(m_arrAnswer, nID, static_cast<std::uint16_t>(nDone))
                    : gev::EncodeAcknowledge(m_arrAnswer, EGvcpCommand::WriteReg, nID, nStatus, 0);
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
                    : gev::EncodeAcknowledge(m_arrAnswer, EGvcpCommand::WriteMem, nID, nStatus, 0);
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
    const EGvcpStatus nStatus = m_objDevice.Write(nAddress, arrData, objRequest.Now);
    return m_objDevice.TakeStateChange() ? KeepState() : nStatus;
}

std::chrono::milliseconds CProtocolEngine::GetDuration(const REQUEST& objRequest) const {
    gev::MEMORY_BLOCK objBlock;
    if (objRequest.Header.Command == EGvcpCommand::WriteMem) {
        return gev::DecodeWriteMem(objRequest.Payload, objBlock) == EGvcpStatus::Success
                   ? m_objDevice.GetDuration(objBlock.Address, objBlock.Data)
                   : 0ms;
    }
    gev::CRegisterWriteView objWrites;
    std::chrono::milliseconds nLongest{};
    if (gev::DecodeWriteReg(objRequest.Payload, objWrites) == EGvcpStatus::Success) {
        for (std::size_t i = 0; i < objWrites.GetCount(); ++i) {
            std::array<std::byte, kWord> arrValue;
            gev::Put32(arrValue, 0, objWrites.Get(i).Value);
            nLongest = std::max(nLongest, m_objDevice.GetDuration(objWrites.Get(i).Address, arrValue));
        }
    }
    return nLongest;
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
    // An application that waits for the camera isn't silent.
    if (m_objSlowWork->Done) {
        m_objControl.Beat(m_objSlowWork->From, tNow);
    }
    if (m_objSlowWork->Done && tNow >= *m_objSlowWork->Done) {
        const SLOW_WORK objWork = *m_objSlowWork;
        m_objSlowWork.reset();
        gev::GVCP_COMMAND_HEADER objHeader;
        std::span<const std::byte> arrPayload;
        const auto arrDatagram = std::span(objWork.Command).first(objWork.Length);
        gev::DecodeCommand(arrDatagram, objHeader, arrPayload);  // good the first time
        const REQUEST objRequest{objWork.From, objHeader, arrPayload, arrDatagram, tNow};
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

}  // namespace camera
