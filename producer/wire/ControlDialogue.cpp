#include "producer/wire/ControlDialogue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "gev/GvcpMemory.h"
#include "gev/GvcpRegister.h"
#include "producer/wire/RequestID.h"
#include "support/Address.h"

namespace producer {

namespace {

using std::chrono::milliseconds;

/// How long a question takes at most to notice that the dialogue was ended, or that its time is over.
constexpr milliseconds kSlice{10};
constexpr milliseconds kLeastTimeout{1};
constexpr milliseconds kLongestTimeout{60'000};
constexpr std::uint32_t kMostRepeats = 100;
constexpr std::size_t kRequestIDOffset = 6;

}  // namespace

std::string FormatHex(std::uint32_t nValue) {
    std::array<char, 8> arrDigits{};
    const auto objEnd = std::to_chars(arrDigits.begin(), arrDigits.end(), nValue, 16);
    std::string strDigits(arrDigits.data(), objEnd.ptr);
    for (char& nDigit : strDigits) {
        nDigit = nDigit >= 'a' ? static_cast<char>(nDigit - 'a' + 'A') : nDigit;
    }
    return "0x" + std::string(8 - strDigits.size(), '0') + strDigits;
}

GC_ERROR GetErrorCode(gev::EGvcpStatus nStatus) noexcept {
    switch (nStatus) {
        case gev::EGvcpStatus::Success:
            return GC_ERR_SUCCESS;
        case gev::EGvcpStatus::NotImplemented:
            return GC_ERR_NOT_IMPLEMENTED;
        case gev::EGvcpStatus::InvalidParameter:
        case gev::EGvcpStatus::BadAlignment:
            return GC_ERR_INVALID_PARAMETER;
        case gev::EGvcpStatus::InvalidAddress:
            return GC_ERR_INVALID_ADDRESS;
        case gev::EGvcpStatus::WriteProtect:
        case gev::EGvcpStatus::AccessDenied:
            return GC_ERR_ACCESS_DENIED;
        case gev::EGvcpStatus::Busy:
            return GC_ERR_BUSY;
        default:
            return GC_ERR_IO;
    }
}

/// The question that is out, and the times that it has.
struct CControlDialogue::WAIT {
    gev::EGvcpCommand Command{};
    Clock::time_point Deadline;  ///< of this attempt
    Clock::time_point PatienceEnd = Clock::time_point::max();
    milliseconds LongestPending{};
    bool IsHeartbeat = false;
};

CControlDialogue::CControlDialogue(const ADAPTER& objAdapter, std::uint32_t nCamera,
                                   const CONTROL_SETTINGS& objSettings)
    : m_strAdapter(objAdapter.Name),
      m_nCamera(nCamera),
      m_objSocket(objAdapter),
      m_nRequestID(TakeRequestID()),
      m_nLastSign(Clock::now().time_since_epoch().count()) {
    SetSettings(objSettings);
    m_objSocket.Connect(nCamera, gev::kGvcpPort);
    m_objSocket.SetWait(kSlice);
}

OUTCOME CControlDialogue::Ask(std::span<std::byte> objQuestion, const ASKING& objAsking, gev::GvcpBuffer& arrAnswer) {
    OUTCOME objOutcome;
    const auto objTurn = objAsking.Deadline == Clock::time_point::max()
                             ? CControlTurn::CHolder(m_objTurn)
                             : CControlTurn::CHolder(m_objTurn, objAsking.Deadline);
    if (!objTurn.HasTurn()) {
        objOutcome.Kind = OUTCOME::KIND::NoTurn;
        return objOutcome;
    }
    m_nRequestID = gev::NextRequestID(m_nRequestID);
    gev::Put16(objQuestion, kRequestIDOffset, m_nRequestID);
    m_nCommandCount.fetch_add(1, std::memory_order_relaxed);
    WAIT objWait;
    objWait.Command = gev::EGvcpCommand{gev::Get16(objQuestion, 2)};
    objWait.LongestPending = objAsking.LongestPending;
    objWait.IsHeartbeat = objAsking.IsHeartbeat;
    const milliseconds objAttempt = std::min(objAsking.AnswerTimeout, milliseconds(m_nLongestAttemptMs.load()));
    const auto objEnd = Clock::now() + objAsking.AnswerTimeout * (objAsking.Repeats + std::int64_t{1});
    for (std::uint32_t i = 0; i <= objAsking.Repeats || Clock::now() + objAttempt <= objEnd; ++i) {
        const auto objNow = Clock::now();
        if (IsEnded(objAsking) || (i > 0 && objNow >= std::min(objAsking.Deadline, objWait.PatienceEnd))) {
            break;
        }
        if (i > 0) {
            m_nRepeatCount.fetch_add(1, std::memory_order_relaxed);
        }
        if (const int nErrno = m_objSocket.Send(objQuestion); nErrno != 0) {
            objOutcome.SendError = nErrno;  // the way may come back before the last repeat
        }
        ++objOutcome.Sent;
        objWait.Deadline = std::min(objNow + objAttempt, objAsking.Deadline);
        if (Await(objWait, objAsking, objOutcome, arrAnswer)) {
            return objOutcome;
        }
    }
    objOutcome.Kind = IsEnded(objAsking) ? OUTCOME::KIND::Ended : OUTCOME::KIND::Silent;
    if (objOutcome.Kind == OUTCOME::KIND::Silent) {
        m_nTimeoutCount.fetch_add(1, std::memory_order_relaxed);
    }
    return objOutcome;
}

bool CControlDialogue::IsEnded(const ASKING& objAsking) const noexcept {
    return m_bEnded.load(std::memory_order_acquire) && !objAsking.EvenWhenClosing;
}

/// @return true when the answer has come.
bool CControlDialogue::Await(WAIT& objWait, const ASKING& objAsking, OUTCOME& objOutcome, gev::GvcpBuffer& arrAnswer) {
    while (!IsEnded(objAsking)) {
        const auto objDatagram = m_objSocket.ReceiveConnected(arrAnswer);
        if (!objDatagram.empty() && TakeAnswer(objWait, objOutcome, objDatagram)) {
            return true;
        }
        // Looked at after every datagram too: packets that nobody asked for don't prolong anything.
        if (Clock::now() >= std::min(objWait.Deadline, objAsking.Deadline)) {
            return false;
        }
    }
    return false;
}

bool CControlDialogue::TakeAnswer(WAIT& objWait, OUTCOME& objOutcome, std::span<const std::byte> objDatagram) {
    gev::GVCP_ACKNOWLEDGE_HEADER objHeader;
    std::span<const std::byte> objPayload;
    const bool bGood = gev::DecodeAcknowledge(objDatagram, objHeader, objPayload) == gev::EGvcpStatus::Success &&
                       objHeader.AckID == m_nRequestID;
    if (bGood && objHeader.Command == objWait.Command) {
        Sign(Clock::now());
        objOutcome.Kind =
            objHeader.Status == gev::EGvcpStatus::Success ? OUTCOME::KIND::Answered : OUTCOME::KIND::Refused;
        objOutcome.Status = objHeader.Status;
        objOutcome.Payload = objPayload;
        return true;
    }
    std::uint16_t nPatienceMs = 0;
    if (bGood && objHeader.Command == gev::EGvcpCommand::Pending &&
        gev::DecodePendingAck(objPayload, nPatienceMs) == gev::EGvcpStatus::Success) {
        const auto objNow = Clock::now();
        if (!objOutcome.AskedForPatience) {
            objWait.PatienceEnd = objNow + objWait.LongestPending;
        }
        objOutcome.AskedForPatience = true;
        objWait.Deadline =
            std::min(std::max(objWait.Deadline, objNow + milliseconds(nPatienceMs)), objWait.PatienceEnd);
        if (!objWait.IsHeartbeat) {  // a camera that is only ever busy isn't there
            Sign(objWait.Deadline);
        }
        m_nPendingCount.fetch_add(1, std::memory_order_relaxed);
    } else {
        m_nRefusedCount.fetch_add(1, std::memory_order_relaxed);
    }
    return false;
}

std::span<const std::byte> CControlDialogue::AskOrThrow(std::span<std::byte> objQuestion, std::uint32_t nAddress,
                                                        gev::GvcpBuffer& arrAnswer, Clock::time_point objDeadline) {
    ASKING objAsking = GetAsking();
    objAsking.Deadline = std::min(objAsking.Deadline, objDeadline);
    const OUTCOME objOutcome = Ask(objQuestion, objAsking, arrAnswer);
    if (objOutcome.Kind != OUTCOME::KIND::Answered) {
        Throw(objOutcome, gev::EGvcpCommand{gev::Get16(objQuestion, 2)}, nAddress);
    }
    return objOutcome.Payload;
}

std::string CControlDialogue::Describe(gev::EGvcpCommand nCommand, std::uint32_t nAddress) const {
    return std::string(gev::GetText(nCommand)) + " of " + FormatHex(nAddress) + " at camera " + IPToString(m_nCamera) +
           " on " + m_strAdapter + ": ";
}

void CControlDialogue::ThrowWrongAnswer(gev::EGvcpCommand nCommand, std::uint32_t nAddress) const {
    throw CProducerError(GC_ERR_IO, Describe(nCommand, nAddress) + "the answer isn't what was asked for");
}

void CControlDialogue::Throw(const OUTCOME& objOutcome, gev::EGvcpCommand nCommand, std::uint32_t nAddress) const {
    const std::string strWhat = Describe(nCommand, nAddress);
    if (objOutcome.Kind == OUTCOME::KIND::Ended) {
        const std::lock_guard objLock(m_mtxEnd);
        throw CProducerError(m_nEndCode, strWhat + m_strEndText);
    }
    if (objOutcome.Kind == OUTCOME::KIND::Refused) {
        throw CProducerError(GetErrorCode(objOutcome.Status),
                             strWhat + std::string(gev::GetText(objOutcome.Status)) + " (status 0x" +
                                 FormatHex(static_cast<std::uint32_t>(objOutcome.Status)).substr(6) + ")");
    }
    if (objOutcome.Kind == OUTCOME::KIND::NoTurn) {
        throw CProducerError(GC_ERR_TIMEOUT, strWhat + "not asked, as the camera hasn't answered another question yet");
    }
    const std::string strPatience = objOutcome.AskedForPatience ? ", only requests for patience" : "";
    const std::string strSendError =
        objOutcome.SendError != 0 ? " (" + GetErrnoText(objOutcome.SendError) + ")" : std::string();
    throw CProducerError(GC_ERR_TIMEOUT, strWhat + "no answer" + strPatience + ", asked " +
                                             std::to_string(objOutcome.Sent) + " times" + strSendError);
}

std::uint32_t CControlDialogue::DoReadRegister(std::uint32_t nAddress, Clock::time_point objDeadline) {
    gev::GvcpBuffer arrQuestion;
    gev::GvcpBuffer arrAnswer;
    const auto objQuestion = gev::EncodeReadReg(arrQuestion, 1, std::span(&nAddress, 1));
    gev::CNumberView objValues;
    if (gev::DecodeReadRegAck(AskOrThrow(objQuestion, nAddress, arrAnswer, objDeadline), 1, objValues) !=
        gev::EGvcpStatus::Success) {
        ThrowWrongAnswer(gev::EGvcpCommand::ReadReg, nAddress);
    }
    return objValues.Get(0);
}

void CControlDialogue::DoWriteRegister(std::uint32_t nAddress, std::uint32_t nValue, Clock::time_point objDeadline) {
    gev::GvcpBuffer arrQuestion;
    gev::GvcpBuffer arrAnswer;
    const gev::REGISTER_WRITE objWrite{nAddress, nValue};
    AskOrThrow(gev::EncodeWriteReg(arrQuestion, 1, std::span(&objWrite, 1)), nAddress, arrAnswer, objDeadline);
}

void CControlDialogue::DoReadBlock(std::uint32_t nAddress, std::span<std::byte> objBuffer) {
    gev::GvcpBuffer arrQuestion;
    gev::GvcpBuffer arrAnswer;
    const gev::READMEM_COMMAND objCommand{nAddress, static_cast<std::uint16_t>(objBuffer.size())};
    const auto objQuestion = gev::EncodeReadMem(arrQuestion, 1, objCommand);
    std::span<const std::byte> objData;
    if (gev::DecodeReadMemAck(AskOrThrow(objQuestion, nAddress, arrAnswer), objCommand, objData) !=
        gev::EGvcpStatus::Success) {
        ThrowWrongAnswer(gev::EGvcpCommand::ReadMem, nAddress);
    }
    std::memcpy(objBuffer.data(), objData.data(), objBuffer.size());
}

void CControlDialogue::DoWriteBlock(std::uint32_t nAddress, std::span<const std::byte> objBuffer) {
    gev::GvcpBuffer arrQuestion;
    gev::GvcpBuffer arrAnswer;
    AskOrThrow(gev::EncodeWriteMem(arrQuestion, 1, {nAddress, objBuffer}), nAddress, arrAnswer);
}

OUTCOME CControlDialogue::ReadRegister(std::uint32_t nAddress, const ASKING& objAsking, std::uint32_t& nValue) {
    gev::GvcpBuffer arrQuestion;
    gev::GvcpBuffer arrAnswer;
    OUTCOME objOutcome = Ask(gev::EncodeReadReg(arrQuestion, 1, std::span(&nAddress, 1)), objAsking, arrAnswer);
    gev::CNumberView objValues;
    if (objOutcome.Kind == OUTCOME::KIND::Answered) {
        if (gev::DecodeReadRegAck(objOutcome.Payload, 1, objValues) == gev::EGvcpStatus::Success) {
            nValue = objValues.Get(0);
        } else {
            objOutcome.Kind = OUTCOME::KIND::Refused;
            objOutcome.Status = gev::EGvcpStatus::InvalidHeader;
        }
    }
    objOutcome.Payload = {};
    return objOutcome;
}

OUTCOME CControlDialogue::WriteRegister(std::uint32_t nAddress, std::uint32_t nValue, const ASKING& objAsking) {
    gev::GvcpBuffer arrQuestion;
    gev::GvcpBuffer arrAnswer;
    const gev::REGISTER_WRITE objWrite{nAddress, nValue};
    OUTCOME objOutcome = Ask(gev::EncodeWriteReg(arrQuestion, 1, std::span(&objWrite, 1)), objAsking, arrAnswer);
    objOutcome.Payload = {};
    return objOutcome;
}

void CControlDialogue::End(GC_ERROR nCode, std::string_view strText) noexcept {
    const std::lock_guard objLock(m_mtxEnd);
    if (!m_bEnded.load(std::memory_order_relaxed)) {
        m_nEndCode = nCode;
        try {
            m_strEndText = strText;
        } catch (const std::bad_alloc&) {
            m_strEndText.clear();
        }
        m_bEnded.store(true, std::memory_order_release);
    }
}

void CControlDialogue::Sign(Clock::time_point objUntil) noexcept {
    m_nLastSign.store(objUntil.time_since_epoch().count(), std::memory_order_relaxed);
}

Clock::time_point CControlDialogue::GetLastSign() const noexcept {
    return Clock::time_point(Clock::duration(m_nLastSign.load(std::memory_order_relaxed)));
}

ASKING CControlDialogue::GetAsking() const noexcept {
    ASKING objAsking;
    objAsking.AnswerTimeout = milliseconds(m_nAnswerTimeoutMs.load(std::memory_order_relaxed));
    objAsking.Repeats = m_nRepeats.load(std::memory_order_relaxed);
    objAsking.LongestPending = milliseconds(m_nLongestPendingMs.load(std::memory_order_relaxed));
    objAsking.Deadline = Clock::time_point(Clock::duration(m_nDeadline.load(std::memory_order_relaxed)));
    return objAsking;
}

void CControlDialogue::SetDeadline(Clock::time_point objDeadline) noexcept {
    m_nDeadline.store(objDeadline.time_since_epoch().count(), std::memory_order_relaxed);
}

CONTROL_SETTINGS CControlDialogue::GetSettings() const noexcept {
    const ASKING objAsking = GetAsking();
    return {objAsking.AnswerTimeout, objAsking.Repeats, objAsking.LongestPending};
}

void CControlDialogue::SetAnswerTimeout(milliseconds objTimeout) noexcept {
    m_nAnswerTimeoutMs = std::clamp(objTimeout, kLeastTimeout, kLongestTimeout).count();
}

void CControlDialogue::SetRepeats(std::uint32_t nRepeats) noexcept {
    m_nRepeats = std::min(nRepeats, kMostRepeats);
}

void CControlDialogue::SetSettings(const CONTROL_SETTINGS& objSettings) noexcept {
    SetAnswerTimeout(objSettings.AnswerTimeout);
    SetRepeats(objSettings.Repeats);
    m_nLongestPendingMs = std::clamp(objSettings.LongestPending, kLeastTimeout, 10 * kLongestTimeout).count();
}

CONTROL_STATISTICS CControlDialogue::GetStatistics() const noexcept {
    const auto get = [](const auto& nCount) { return nCount.load(std::memory_order_relaxed); };
    return {get(m_nCommandCount), get(m_nRepeatCount), get(m_nTimeoutCount), get(m_nPendingCount),
            get(m_nRefusedCount)};
}

}  // namespace producer
