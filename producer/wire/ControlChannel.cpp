#include "producer/wire/ControlChannel.h"

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "gev/BigEndian.h"
#include "gev/Bootstrap.h"
#include "producer/ProducerError.h"
#include "producer/wire/ControlDialogue.h"
#include "producer/wire/Heartbeat.h"
#include "producer/wire/MemoryAccess.h"
#include "support/Address.h"

namespace producer {

namespace {

namespace bootstrap = gev::bootstrap;
using std::chrono::milliseconds;

constexpr milliseconds kBusyPause{20};
constexpr milliseconds kReleaseTimeout{100};     // for one of two attempts to give the privilege back
constexpr milliseconds kLostReleaseTimeout{20};  // the same where it most likely isn't heard
constexpr milliseconds kLongestOpening{5'000};   // for all its questions, however much patience the camera asks for

std::uint32_t GetPrivilege(CONTROL_ACCESS eAccess) {
    return eAccess == CONTROL_ACCESS::Exclusive ? bootstrap::kPrivilegeExclusive : bootstrap::kPrivilegeControl;
}

/// @return nothing from a camera that refuses: not all have these registers
/// @throws CProducerError  GC_ERR_TIMEOUT when it says nothing: it has gone, and to ask for the next one would only
///                         wait as long again
std::optional<std::uint32_t> ReadIfThere(CControlDialogue& objDialogue, const bootstrap::REGISTER& objRegister) {
    std::uint32_t nValue = 0;
    const OUTCOME objOutcome = objDialogue.ReadRegister(objRegister.Address, objDialogue.GetAsking(), nValue);
    if (objOutcome.Kind == OUTCOME::KIND::Silent) {
        throw CProducerError(GC_ERR_TIMEOUT, "camera " + IPToString(objDialogue.GetCamera()) + " on " +
                                                 objDialogue.GetAdapterName() + " gave no answer about register " +
                                                 FormatHex(objRegister.Address) + ", asked " +
                                                 std::to_string(objOutcome.Sent) + " times");
    }
    return objOutcome.Kind == OUTCOME::KIND::Answered ? std::optional(nValue) : std::nullopt;
}

std::optional<PRIMARY_APPLICATION> ReadApplication(CControlDialogue& objDialogue) {
    const auto nPort = ReadIfThere(objDialogue, bootstrap::kPrimaryApplicationPort);
    const auto nAddress = nPort ? ReadIfThere(objDialogue, bootstrap::kPrimaryApplicationIP) : std::nullopt;
    return nAddress ? std::optional(PRIMARY_APPLICATION{*nPort, *nAddress}) : std::nullopt;
}

[[noreturn]] void ThrowDenied(CControlDialogue& objDialogue) {
    std::string strText = "camera " + IPToString(objDialogue.GetCamera()) + " on " + objDialogue.GetAdapterName() +
                          " is controlled by another application";
    try {
        if (const auto objApplication = ReadApplication(objDialogue); objApplication && objApplication->Address != 0) {
            strText += " at " + IPToString(objApplication->Address) + " port " + std::to_string(objApplication->Port);
        }
    } catch (const CProducerError&) {
        // That it is denied is the message, with or without by whom.
    }
    throw CProducerError(GC_ERR_ACCESS_DENIED,
                         strText + ": close it, or wait for the camera's heartbeat time-out if it has ended already");
}

}  // namespace

class CControlChannel::CImpl {
public:
    CImpl(const ADAPTER& objAdapter, std::uint32_t nAddress, CONTROL_ACCESS eAccess,
          const CONTROL_SETTINGS& objSettings, ControlLossCallback funLoss, const std::stop_token& objGiveUp)
        : m_objAdapter(objAdapter), m_eAccess(eAccess), m_objDialogue(objAdapter, nAddress, objSettings) {
        const std::stop_callback objEnd(objGiveUp, [this] {
            m_objDialogue.End(GC_ERR_INVALID_HANDLE, "the module above was closed while the device was being opened");
        });
        m_objDialogue.SetDeadline(Clock::now() + kLongestOpening);
        m_nLocalAddress = m_objDialogue.GetSocket().GetLocalAddress();
        TakePrivilege();
        try {
            const auto nCapability = ReadIfThere(m_objDialogue, bootstrap::kGvcpCapability).value_or(0);
            m_objMemory.emplace(m_objDialogue, (nCapability & bootstrap::kGvcpCapabilityWriteMem) != 0);
            m_objHeartbeat.emplace(m_objDialogue, eAccess, ReadHeartbeatTimeout(), FindOurselves(), std::move(funLoss));
            m_objDialogue.SetDeadline(Clock::time_point::max());
        } catch (...) {
            ReleasePrivilege();
            throw;
        }
    }

    void Close() noexcept {
        const std::lock_guard objLock(m_mtxClose);
        if (!std::exchange(m_bClosed, true)) {
            m_objDialogue.End(GC_ERR_INVALID_HANDLE, "the device was closed");
            m_objHeartbeat->Stop();
            if (m_objHeartbeat->MayHaveControl()) {
                ReleasePrivilege(m_objHeartbeat->IsLost() ? kLostReleaseTimeout : kReleaseTimeout);
            }
        }
    }

    /// To be called after each write to the camera's memory.
    void FollowHeartbeat(std::uint64_t nAddress, std::span<const std::byte> objWritten) {
        const auto& objRegister = bootstrap::kHeartbeatTimeout;
        if (nAddress >= objRegister.GetEnd() || nAddress + objWritten.size() <= objRegister.Address) {
            return;
        }
        const std::lock_guard objLock(m_mtxFollow);
        if (nAddress <= objRegister.Address && nAddress + objWritten.size() >= objRegister.GetEnd()) {
            // Until the camera tells what it has made of it, the shorter one is safe.
            const milliseconds objTold(gev::Get32(objWritten, objRegister.Address - nAddress));
            m_objHeartbeat->SetTimeout(std::min(m_objHeartbeat->GetTimeout(), objTold));
        }
        try {
            m_objHeartbeat->SetTimeout(ReadHeartbeatTimeout());
        } catch (const CProducerError&) {
            // It was written all the same. What is wrong with the camera the next question tells.
        }
    }

    milliseconds ReadHeartbeatTimeout() {
        return milliseconds(
            ReadIfThere(m_objDialogue, bootstrap::kHeartbeatTimeout).value_or(bootstrap::kHeartbeatTimeoutDefaultMs));
    }

    const ADAPTER m_objAdapter;
    const CONTROL_ACCESS m_eAccess;
    CControlDialogue m_objDialogue;
    std::uint32_t m_nLocalAddress = 0;
    std::optional<CMemoryAccess> m_objMemory;  // set by the constructor, for good
    std::optional<CHeartbeat> m_objHeartbeat;  // likewise

private:
    void TakePrivilege() {
        const std::uint32_t nRegister = bootstrap::kControlChannelPrivilege.Address;
        bool bAsked = false;
        try {
            // The read comes first for every access: a camera on another subnet hears us, but we don't hear it. It
            // would be under our control until its heartbeat runs out, and refuse to be given an address meanwhile.
            m_objDialogue.DoReadRegister(nRegister);
            bAsked = m_eAccess != CONTROL_ACCESS::ReadOnly;
            if (bAsked) {
                m_objDialogue.DoWriteRegister(nRegister, GetPrivilege(m_eAccess));
            }
        } catch (const CProducerError& objError) {
            if (objError.GetCode() == GC_ERR_ACCESS_DENIED) {
                ThrowDenied(m_objDialogue);
            }
            if (bAsked) {
                ReleasePrivilege();  // the camera may have given it, and the answer is what was lost
            }
            throw;
        }
    }

    /// @return what the camera holds for its controlling application, if that is told and is us.
    std::optional<PRIMARY_APPLICATION> FindOurselves() {
        const auto objApplication =
            m_eAccess == CONTROL_ACCESS::ReadOnly ? std::nullopt : ReadApplication(m_objDialogue);
        return objApplication && objApplication->Port == m_objDialogue.GetSocket().GetLocalPort() ? objApplication
                                                                                                  : std::nullopt;
    }

    void ReleasePrivilege(milliseconds objTimeout = kReleaseTimeout) noexcept {
        if (m_eAccess == CONTROL_ACCESS::ReadOnly) {
            return;
        }
        ASKING objAsking;
        objAsking.AnswerTimeout = objTimeout;
        objAsking.Repeats = 1;
        objAsking.LongestPending = objTimeout;
        objAsking.EvenWhenClosing = true;
        OUTCOME objOutcome;
        const auto objEnd = Clock::now() + 2 * objTimeout;
        do {
            objOutcome = m_objDialogue.WriteRegister(bootstrap::kControlChannelPrivilege.Address, 0, objAsking);
            if (objOutcome.Kind != OUTCOME::KIND::Refused || objOutcome.Status != gev::EGvcpStatus::Busy) {
                return;
            }
            std::this_thread::sleep_for(kBusyPause);  // it still does what another thread wrote
        } while (Clock::now() < objEnd);
    }

    std::mutex m_mtxFollow;  // held from reading the heartbeat's time-out until it is followed
    std::mutex m_mtxClose;   // guards the one below; held for a whole close
    bool m_bClosed = false;
};

CControlChannel::CControlChannel(const ADAPTER& objAdapter, std::uint32_t nAddress, CONTROL_ACCESS eAccess,
                                 const CONTROL_SETTINGS& objSettings, ControlLossCallback funLoss,
                                 const std::stop_token& objGiveUp)
    : m_pImpl(std::make_unique<CImpl>(objAdapter, nAddress, eAccess, objSettings, std::move(funLoss), objGiveUp)) {}

CControlChannel::~CControlChannel() {
    m_pImpl->Close();
}

void CControlChannel::Close() noexcept {
    m_pImpl->Close();
}

void CControlChannel::DoRead(std::uint64_t nAddress, std::span<std::byte> objBuffer) {
    m_pImpl->m_objMemory->DoRead(nAddress, objBuffer);
}

void CControlChannel::DoWrite(std::uint64_t nAddress, std::span<const std::byte> objBuffer) {
    m_pImpl->m_objMemory->DoWrite(nAddress, objBuffer);
    m_pImpl->FollowHeartbeat(nAddress, objBuffer);
}

std::uint32_t CControlChannel::DoReadRegister(std::uint32_t nAddress, Clock::time_point objDeadline) {
    return m_pImpl->m_objDialogue.DoReadRegister(nAddress, objDeadline);
}

void CControlChannel::DoWriteRegister(std::uint32_t nAddress, std::uint32_t nValue, Clock::time_point objDeadline) {
    m_pImpl->m_objDialogue.DoWriteRegister(nAddress, nValue, objDeadline);
    std::array<std::byte, sizeof nValue> arrWritten{};
    gev::Put32(arrWritten, 0, nValue);
    m_pImpl->FollowHeartbeat(nAddress, arrWritten);
}

void CControlChannel::DoSendUnanswered(std::span<const std::byte> objDatagram) noexcept {
    m_pImpl->m_objDialogue.GetSocket().Send(objDatagram);
}

milliseconds CControlChannel::GetHeartbeatTimeout() const noexcept {
    return m_pImpl->m_objHeartbeat->GetTimeout();
}

void CControlChannel::DoSetHeartbeatTimeout(milliseconds objTimeout) {
    if (objTimeout.count() < 0 || objTimeout.count() > std::numeric_limits<std::uint32_t>::max()) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER,
                             std::to_string(objTimeout.count()) + " ms is no heartbeat time-out");
    }
    DoWriteRegister(bootstrap::kHeartbeatTimeout.Address, static_cast<std::uint32_t>(objTimeout.count()));
}

CONTROL_SETTINGS CControlChannel::GetSettings() const noexcept {
    return m_pImpl->m_objDialogue.GetSettings();
}

void CControlChannel::SetAnswerTimeout(milliseconds objTimeout) noexcept {
    m_pImpl->m_objDialogue.SetAnswerTimeout(objTimeout);
}

void CControlChannel::SetRepeats(std::uint32_t nRepeats) noexcept {
    m_pImpl->m_objDialogue.SetRepeats(nRepeats);
}

CONTROL_STATISTICS CControlChannel::GetStatistics() const noexcept {
    return m_pImpl->m_objDialogue.GetStatistics();
}

bool CControlChannel::IsLost() const noexcept {
    return m_pImpl->m_objHeartbeat->IsLost();
}

CONTROL_ACCESS CControlChannel::GetAccess() const noexcept {
    return m_pImpl->m_eAccess;
}

std::uint32_t CControlChannel::GetCameraAddress() const noexcept {
    return m_pImpl->m_objDialogue.GetCamera();
}

std::uint32_t CControlChannel::GetLocalAddress() const noexcept {
    return m_pImpl->m_nLocalAddress;
}

const ADAPTER& CControlChannel::GetAdapter() const noexcept {
    return m_pImpl->m_objAdapter;
}

}  // namespace producer
