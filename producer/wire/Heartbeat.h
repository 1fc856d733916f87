#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "producer/wire/ControlDialogue.h"

namespace producer {

/// Who holds the privilege, as the camera's registers for the primary application say.
struct PRIMARY_APPLICATION {
    std::uint32_t Port = 0;
    std::uint32_t Address = 0;

    bool operator==(const PRIMARY_APPLICATION&) const = default;
};

/// Keeps the control of a camera by reading its privilege register at a third of the heartbeat time-out, and notices
/// when the camera or its control is lost; then it ends the dialogue and tells.
///
/// Owned by a control channel. Has a thread of its own from construction to Stop.
class CHeartbeat {
public:
    /// @param objApplication  us, as the camera told it after giving us the privilege; nothing where it doesn't tell
    /// @throws CProducerError  GC_ERR_RESOURCE_EXHAUSTED without a thread
    CHeartbeat(CControlDialogue& objDialogue, CONTROL_ACCESS eAccess, std::chrono::milliseconds objTimeout,
               std::optional<PRIMARY_APPLICATION> objApplication, ControlLossCallback funLoss);
    ~CHeartbeat();
    CHeartbeat(const CHeartbeat&) = delete;
    CHeartbeat& operator=(const CHeartbeat&) = delete;

    /// Waits for the thread's end, a callback under way included. The dialogue has been ended before.
    void Stop() noexcept;

    void SetTimeout(std::chrono::milliseconds objTimeout) noexcept;
    [[nodiscard]] std::chrono::milliseconds GetTimeout() const noexcept;
    [[nodiscard]] bool IsLost() const noexcept { return m_bLost.load(std::memory_order_acquire); }
    /// Whether the camera may still take us for its controlling application: a silent one may only have been cut off.
    [[nodiscard]] bool MayHaveControl() const noexcept { return !IsLost() || m_eLoss == CONTROL_LOSS::NoAnswer; }

private:
    void Run() noexcept;
    bool WaitForBeat();
    std::optional<CONTROL_LOSS> Beat();
    void LetOthersAsk();
    std::optional<CONTROL_LOSS> JudgeAnswer(const OUTCOME& objOutcome, std::uint32_t nPrivilege);
    bool IsApplicationAnother();
    [[nodiscard]] ASKING MakeAsking(Clock::time_point objStart) const;
    [[nodiscard]] Clock::time_point GetLossTime() const;
    [[nodiscard]] std::string Describe(CONTROL_LOSS eLoss) const;
    void Tell(CONTROL_LOSS eLoss) noexcept;

    CControlDialogue& m_objDialogue;
    const CONTROL_ACCESS m_eAccess;
    const std::optional<PRIMARY_APPLICATION> m_objApplication;
    const ControlLossCallback m_funLoss;

    std::atomic<std::int64_t> m_nTimeoutMs;
    std::atomic<CONTROL_LOSS> m_eLoss{};  // good once it is lost
    std::atomic<bool> m_bLost{false};

    std::mutex m_mtxStop;  // guards the one below
    bool m_bStop = false;
    std::condition_variable m_objChanged;
    std::thread m_objThread;  // last: it uses all above
};

}  // namespace producer
