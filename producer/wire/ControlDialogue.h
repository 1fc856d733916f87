#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

#include "gev/GvcpHeader.h"
#include "producer/ProducerError.h"
#include "producer/wire/ControlSettings.h"
#include "producer/wire/ControlTurn.h"
#include "producer/wire/UdpSocket.h"

namespace producer {

/// How a question is asked.
struct ASKING {
    std::chrono::milliseconds AnswerTimeout{};
    std::uint32_t Repeats = 0;
    std::chrono::milliseconds LongestPending{};
    Clock::time_point Deadline = Clock::time_point::max();  ///< ends it, whatever else is left; with one it goes first
    bool IsHeartbeat = false;                               ///< patience that the camera asks for is no sign of it
    bool EvenWhenClosing = false;                           ///< gives the privilege back
};

/// What came of a question.
struct OUTCOME {
    enum class KIND {
        Answered,
        Refused,  ///< by the camera, with Status
        Silent,   ///< no answer, for want of patience or of a way
        NoTurn,   ///< it didn't come to its turn before its deadline
        Ended,    ///< the dialogue was ended meanwhile
    };
    KIND Kind = KIND::Silent;
    gev::EGvcpStatus Status{};
    std::span<const std::byte> Payload;  ///< of the answer, in the caller's buffer
    std::uint32_t Sent = 0;              ///< how often
    bool AskedForPatience = false;
    int SendError = 0;  ///< the last errno of sending, 0 when all left
};

/// Questions and answers between us and one camera: one at a time, repeated, with patience where the camera asks for
/// it.
///
/// Any thread may ask. A question runs on the thread that asks it: without losses it costs one send and one receive.
class CControlDialogue {
public:
    /// @throws CProducerError  as CUdpSocket
    CControlDialogue(const ADAPTER& objAdapter, std::uint32_t nCamera, const CONTROL_SETTINGS& objSettings);

    /// Asks one question.
    /// @param objQuestion  a whole command; its request ID is filled in here
    /// @param arrAnswer    where the answer is put
    OUTCOME Ask(std::span<std::byte> objQuestion, const ASKING& objAsking, gev::GvcpBuffer& arrAnswer);

    /// From now on questions that are asked as the settings say end by then too.
    void SetDeadline(Clock::time_point objDeadline) noexcept;

    /// The four questions, asked as the settings say.
    /// @throws CProducerError  as CControlChannel tells
    /// @param objDeadline  ends the question, whatever else is left
    std::uint32_t DoReadRegister(std::uint32_t nAddress, Clock::time_point objDeadline = Clock::time_point::max());
    void DoWriteRegister(std::uint32_t nAddress, std::uint32_t nValue,
                         Clock::time_point objDeadline = Clock::time_point::max());
    /// @param objBuffer  4 to 536 bytes, a multiple of 4, as is the address
    void DoReadBlock(std::uint32_t nAddress, std::span<std::byte> objBuffer);
    void DoWriteBlock(std::uint32_t nAddress, std::span<const std::byte> objBuffer);

    /// Asks for a register otherwise than the settings say.
    /// @param nValue  set when it was answered
    OUTCOME ReadRegister(std::uint32_t nAddress, const ASKING& objAsking, std::uint32_t& nValue);
    OUTCOME WriteRegister(std::uint32_t nAddress, std::uint32_t nValue, const ASKING& objAsking);

    /// Every question under way and every later one ends with this failure, those under way within some 10 ms. The
    /// first call decides.
    void End(GC_ERROR nCode, std::string_view strText) noexcept;

    /// @return until when nothing speaks against the camera's being there: its last answer, or the end of the patience
    ///         that it asked for.
    [[nodiscard]] Clock::time_point GetLastSign() const noexcept;

    [[nodiscard]] ASKING GetAsking() const noexcept;
    [[nodiscard]] CONTROL_SETTINGS GetSettings() const noexcept;
    /// Each brought within sensible limits.
    void SetSettings(const CONTROL_SETTINGS& objSettings) noexcept;
    void SetAnswerTimeout(std::chrono::milliseconds objTimeout) noexcept;
    void SetRepeats(std::uint32_t nRepeats) noexcept;
    /// An answer that takes longer is asked for again, for as long as the settings give it in all: somebody else needs
    /// the turn by then.
    void SetLongestAttempt(std::chrono::milliseconds objAttempt) noexcept { m_nLongestAttemptMs = objAttempt.count(); }
    [[nodiscard]] CONTROL_STATISTICS GetStatistics() const noexcept;
    [[nodiscard]] std::uint32_t GetCamera() const noexcept { return m_nCamera; }
    [[nodiscard]] const std::string& GetAdapterName() const noexcept { return m_strAdapter; }
    [[nodiscard]] CUdpSocket& GetSocket() noexcept { return m_objSocket; }

private:
    struct WAIT;

    [[nodiscard]] bool IsEnded(const ASKING& objAsking) const noexcept;
    bool Await(WAIT& objWait, const ASKING& objAsking, OUTCOME& objOutcome, gev::GvcpBuffer& arrAnswer);
    bool TakeAnswer(WAIT& objWait, OUTCOME& objOutcome, std::span<const std::byte> objDatagram);
    std::span<const std::byte> AskOrThrow(std::span<std::byte> objQuestion, std::uint32_t nAddress,
                                          gev::GvcpBuffer& arrAnswer,
                                          Clock::time_point objDeadline = Clock::time_point::max());
    [[nodiscard]] std::string Describe(gev::EGvcpCommand nCommand, std::uint32_t nAddress) const;
    [[noreturn]] void ThrowWrongAnswer(gev::EGvcpCommand nCommand, std::uint32_t nAddress) const;
    [[noreturn]] void Throw(const OUTCOME& objOutcome, gev::EGvcpCommand nCommand, std::uint32_t nAddress) const;
    void Sign(Clock::time_point objUntil) noexcept;

    const std::string m_strAdapter;
    const std::uint32_t m_nCamera;
    CUdpSocket m_objSocket;
    CControlTurn m_objTurn;

    std::uint16_t m_nRequestID;  // of the last question; belongs to who has the turn

    std::atomic<bool> m_bEnded{false};
    mutable std::mutex m_mtxEnd;  // guards the two below
    GC_ERROR m_nEndCode = GC_ERR_SUCCESS;
    std::string m_strEndText;

    std::atomic<Clock::rep> m_nLastSign;
    std::atomic<std::int64_t> m_nLongestAttemptMs{std::chrono::milliseconds(std::chrono::hours(1)).count()};
    std::atomic<std::int64_t> m_nAnswerTimeoutMs;
    std::atomic<std::uint32_t> m_nRepeats;
    std::atomic<std::int64_t> m_nLongestPendingMs;
    std::atomic<Clock::rep> m_nDeadline{Clock::time_point::max().time_since_epoch().count()};

    std::atomic<std::uint64_t> m_nCommandCount{0};
    std::atomic<std::uint64_t> m_nRepeatCount{0};
    std::atomic<std::uint64_t> m_nTimeoutCount{0};
    std::atomic<std::uint64_t> m_nPendingCount{0};
    std::atomic<std::uint64_t> m_nRefusedCount{0};
};

/// @return the code of the GenTL interface for a refusal by a camera.
GC_ERROR GetErrorCode(gev::EGvcpStatus nStatus) noexcept;

/// @return eight hexadecimal digits, as in "0x00000A00".
std::string FormatHex(std::uint32_t nValue);

}  // namespace producer
