#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stop_token>

#include "producer/wire/Adapter.h"
#include "producer/wire/ControlSettings.h"
#include "producer/wire/SocketDescriptor.h"

namespace producer {

/// The control channel of one camera: registers and memory, and the heartbeat that keeps the privilege.
///
/// Owned by an open device. Any thread may read, write and ask at any time, also while another closes it; the object
/// must outlive every call. One question is under way at a time, on the thread that asks it; the heartbeat runs on a
/// thread of its own, between the others' questions. After Close and after a loss every read and write fails at once.
///
/// All failures are CProducerError with a text that tells what was asked of which address and what came back:
/// GC_ERR_TIMEOUT no answer after all repeats, GC_ERR_ZR_DEVICE_OFFLINE after a loss, GC_ERR_INVALID_HANDLE after
/// Close, GC_ERR_ACCESS_DENIED, GC_ERR_INVALID_ADDRESS, GC_ERR_BUSY, GC_ERR_INVALID_PARAMETER, GC_ERR_NOT_IMPLEMENTED
/// and GC_ERR_IO as the camera refuses.
class CControlChannel {
public:
    /// Opens: takes the privilege, reads the heartbeat time-out from the camera and starts the heartbeat. Takes at most
    /// some five seconds, however the camera answers.
    /// @param objAdapter  where the camera is; every packet leaves by it, whatever the routes say
    /// @param nAddress    of the camera, first octet highest
    /// @param objGiveUp   ends the attempt within some 10 ms, and 200 ms more to give the privilege back; no concern of
    ///                    a channel that is open
    /// @throws CProducerError  GC_ERR_ACCESS_DENIED when another application controls the camera; GC_ERR_TIMEOUT when
    ///                         it doesn't answer; GC_ERR_INVALID_HANDLE when it was given up; GC_ERR_NOT_AVAILABLE when
    ///                         the adapter is gone or has no way to it; GC_ERR_RESOURCE_EXHAUSTED
    CControlChannel(const ADAPTER& objAdapter, std::uint32_t nAddress, CONTROL_ACCESS eAccess,
                    const CONTROL_SETTINGS& objSettings, ControlLossCallback funLoss,
                    const std::stop_token& objGiveUp = {});
    /// As Close.
    ~CControlChannel();
    CControlChannel(const CControlChannel&) = delete;
    CControlChannel& operator=(const CControlChannel&) = delete;

    /// Gives the privilege back if the camera still answers, and ends the heartbeat. Calls of other threads that wait
    /// for an answer end with an error. Takes at most about 250 ms. A second call waits for the first.
    void Close() noexcept;

    /// Reads the camera's memory, of any length at any address. One aligned register is one READREG on the calling
    /// thread, anything else as many READMEM as it takes; unaligned edges are read with their neighbours.
    /// @param nAddress  GC_ERR_INVALID_ADDRESS when the end lies beyond 32 bits
    /// @param objBuffer filled from its start; bytes in the camera's order. Partly filled after a failure.
    void DoRead(std::uint64_t nAddress, std::span<std::byte> objBuffer);

    /// Writes the camera's memory, of any length at any address. One aligned register is one WRITEREG; anything else
    /// WRITEMEM, or register by register where the camera knows no WRITEMEM. Unaligned edges are read, filled in and
    /// written back. What was written before a failure stays written.
    void DoWrite(std::uint64_t nAddress, std::span<const std::byte> objBuffer);

    /// @param nAddress     a multiple of 4
    /// @param objDeadline  ends the question with GC_ERR_TIMEOUT, however much patience the camera asks for, and also
    ///                     when another's question was under way until then
    std::uint32_t DoReadRegister(std::uint32_t nAddress, Clock::time_point objDeadline = Clock::time_point::max());
    void DoWriteRegister(std::uint32_t nAddress, std::uint32_t nValue,
                         Clock::time_point objDeadline = Clock::time_point::max());

    /// Sends a datagram that no answer belongs to, such as a request to send packets again, from the port that holds
    /// the privilege. Waits for nothing and no lock; what can't be sent is lost, as on the wire.
    void DoSendUnanswered(std::span<const std::byte> objDatagram) noexcept;

    /// @return the camera's heartbeat time-out as last read or written, at least 500 ms and at most a minute.
    [[nodiscard]] std::chrono::milliseconds GetHeartbeatTimeout() const noexcept;
    /// Writes it to the camera, which may round it, and follows it. A write to its register by DoWrite has the same
    /// effect.
    void DoSetHeartbeatTimeout(std::chrono::milliseconds objTimeout);

    [[nodiscard]] CONTROL_SETTINGS GetSettings() const noexcept;
    /// Brought within sensible limits.
    void SetAnswerTimeout(std::chrono::milliseconds objTimeout) noexcept;
    void SetRepeats(std::uint32_t nRepeats) noexcept;

    [[nodiscard]] CONTROL_STATISTICS GetStatistics() const noexcept;
    [[nodiscard]] bool IsLost() const noexcept;

    [[nodiscard]] CONTROL_ACCESS GetAccess() const noexcept;
    [[nodiscard]] std::uint32_t GetCameraAddress() const noexcept;
    /// @return the adapter's address that the camera sees, which is where streams and messages are to be sent.
    [[nodiscard]] std::uint32_t GetLocalAddress() const noexcept;
    /// @return the adapter as it was when the channel was opened.
    [[nodiscard]] const ADAPTER& GetAdapter() const noexcept;

private:
    class CImpl;
    std::unique_ptr<CImpl> m_pImpl;
};

}  // namespace producer
