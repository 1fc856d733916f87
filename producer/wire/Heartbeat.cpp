#include "producer/wire/Heartbeat.h"

#include <algorithm>
#include <new>
#include <system_error>
#include <utility>

#include "gev/Bootstrap.h"
#include "support/Address.h"
#include "support/Log.h"

namespace producer {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLeastTimeout{gev::bootstrap::kHeartbeatTimeoutLeastMs};
constexpr milliseconds kLongestTimeout{60'000};  // so that a camera that is gone is noticed at all
constexpr int kLeastAttempts = 4;                // between a beat that is due and the loss
constexpr milliseconds kPause{10};               // of a beat, between two rounds of attempts

}  // namespace

CHeartbeat::CHeartbeat(CControlDialogue& objDialogue, CONTROL_ACCESS eAccess, milliseconds objTimeout,
                       std::optional<PRIMARY_APPLICATION> objApplication, ControlLossCallback funLoss)
    : m_objDialogue(objDialogue),
      m_eAccess(eAccess),
      m_objApplication(objApplication),
      m_funLoss(std::move(funLoss)),
      m_nTimeoutMs(std::clamp(objTimeout, kLeastTimeout, kLongestTimeout).count()) {
    m_objDialogue.SetLongestAttempt(GetTimeout() / 2);
    try {
        m_objThread = std::thread([this] { Run(); });
    } catch (const std::system_error& objError) {
        throw CProducerError(GC_ERR_RESOURCE_EXHAUSTED, std::string("no thread for the heartbeat: ") + objError.what());
    }
}

CHeartbeat::~CHeartbeat() {
    Stop();
}

void CHeartbeat::Stop() noexcept {
    {
        const std::lock_guard objLock(m_mtxStop);
        m_bStop = true;
    }
    m_objChanged.notify_all();
    if (m_objThread.joinable()) {
        m_objThread.join();
    }
}

void CHeartbeat::SetTimeout(milliseconds objTimeout) noexcept {
    {
        const std::lock_guard objLock(m_mtxStop);  // so that the wait can't miss it
        m_nTimeoutMs = std::clamp(objTimeout, kLeastTimeout, kLongestTimeout).count();
        m_objDialogue.SetLongestAttempt(GetTimeout() / 2);
    }
    m_objChanged.notify_all();
}

milliseconds CHeartbeat::GetTimeout() const noexcept {
    return milliseconds(m_nTimeoutMs.load());
}

void CHeartbeat::Run() noexcept {
    while (WaitForBeat()) {
        if (const auto eLoss = Beat()) {
            Tell(*eLoss);
            return;
        }
    }
}

/// @return false when the thread is to end.
bool CHeartbeat::WaitForBeat() {
    std::unique_lock objLock(m_mtxStop);
    const auto objStart = Clock::now();
    while (!m_bStop) {
        const auto objDue = objStart + GetTimeout() / 3;
        if (Clock::now() >= objDue) {
            return true;
        }
        m_objChanged.wait_until(objLock, objDue);
    }
    return false;
}

/// Not quite the time-out, so that the loss is told within it.
Clock::time_point CHeartbeat::GetLossTime() const {
    return m_objDialogue.GetLastSign() + GetTimeout() * 9 / 10;
}

ASKING CHeartbeat::MakeAsking(Clock::time_point objStart) const {
    ASKING objAsking = m_objDialogue.GetAsking();
    objAsking.AnswerTimeout = std::min(objAsking.AnswerTimeout, GetTimeout() * 6 / 10 / kLeastAttempts);
    // A beat that starts late, as after the process was stopped, asks once all the same.
    objAsking.Deadline = std::max(GetLossTime(), objStart + objAsking.AnswerTimeout);
    objAsking.IsHeartbeat = true;
    return objAsking;
}

/// One beat, which lasts as long as the camera is silent but there is still hope.
std::optional<CONTROL_LOSS> CHeartbeat::Beat() {
    const auto objStart = Clock::now();
    for (;;) {
        std::uint32_t nPrivilege = 0;
        const OUTCOME objOutcome = m_objDialogue.ReadRegister(gev::bootstrap::kControlChannelPrivilege.Address,
                                                              MakeAsking(objStart), nPrivilege);
        switch (objOutcome.Kind) {
            case OUTCOME::KIND::Ended:
                return std::nullopt;
            case OUTCOME::KIND::Answered:
            case OUTCOME::KIND::Refused:
                return JudgeAnswer(objOutcome, nPrivilege);
            case OUTCOME::KIND::Silent:
            case OUTCOME::KIND::NoTurn:
                // Meanwhile another thread may have had an answer.
                if (Clock::now() >= GetLossTime()) {
                    return CONTROL_LOSS::NoAnswer;
                }
                LetOthersAsk();
        }
    }
}

/// Who waits for its turn gets it, and fails in its own time instead of ours, which may be a minute.
void CHeartbeat::LetOthersAsk() {
    std::unique_lock objLock(m_mtxStop);
    m_objChanged.wait_for(objLock, kPause, [this] { return m_bStop; });
}

std::optional<CONTROL_LOSS> CHeartbeat::JudgeAnswer(const OUTCOME& objOutcome, std::uint32_t nPrivilege) {
    if (m_eAccess == CONTROL_ACCESS::ReadOnly) {
        return std::nullopt;  // it only asks whether the camera is there
    }
    if (objOutcome.Kind == OUTCOME::KIND::Refused) {
        // Its controlling application may always read it.
        return objOutcome.Status == gev::EGvcpStatus::AccessDenied ? std::optional(CONTROL_LOSS::Taken) : std::nullopt;
    }
    if ((nPrivilege & (gev::bootstrap::kPrivilegeControl | gev::bootstrap::kPrivilegeExclusive)) == 0) {
        return CONTROL_LOSS::Dropped;
    }
    return IsApplicationAnother() ? std::optional(CONTROL_LOSS::Taken) : std::nullopt;
}

bool CHeartbeat::IsApplicationAnother() {
    PRIMARY_APPLICATION objNow;
    const auto isAnswered = [this](std::uint32_t nAddress, std::uint32_t& nValue) {
        return m_objDialogue.ReadRegister(nAddress, MakeAsking(Clock::now()), nValue).Kind == OUTCOME::KIND::Answered;
    };
    return m_objApplication && isAnswered(gev::bootstrap::kPrimaryApplicationPort.Address, objNow.Port) &&
           isAnswered(gev::bootstrap::kPrimaryApplicationIP.Address, objNow.Address) && objNow != *m_objApplication;
}

std::string CHeartbeat::Describe(CONTROL_LOSS eLoss) const {
    std::string strText = "camera " + IPToString(m_objDialogue.GetCamera()) + " on " + m_objDialogue.GetAdapterName();
    const auto nSilenceMs =
        std::chrono::duration_cast<milliseconds>(Clock::now() - m_objDialogue.GetLastSign()).count();
    switch (eLoss) {
        case CONTROL_LOSS::NoAnswer:
            strText += " has not answered for " + std::to_string(nSilenceMs) +
                       " ms: check its power and the cable, then open it again";
            break;
        case CONTROL_LOSS::Dropped:
            strText += " has taken the control back: open it again";
            break;
        case CONTROL_LOSS::Taken:
            strText += " is controlled by another application now";
            break;
    }
    return strText;
}

void CHeartbeat::Tell(CONTROL_LOSS eLoss) noexcept {
    std::string strText;
    try {
        strText = Describe(eLoss);
    } catch (const std::bad_alloc&) {
        // The loss counts without words as well.
    }
    m_eLoss = eLoss;
    m_bLost.store(true, std::memory_order_release);
    m_objDialogue.End(GC_ERR_ZR_DEVICE_OFFLINE, strText);
    try {
        if (m_funLoss) {
            m_funLoss(eLoss, strText);
        }
    } catch (const std::bad_alloc&) {
        // Nor is there memory for a line in the log. What is asked of the camera from now on says that it is lost.
    } catch (const std::exception& objError) {
        CLog::GetInstance()->Write(std::string("telling the loss of a camera failed: ") + objError.what());
    }
}

}  // namespace producer
