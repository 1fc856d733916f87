#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "camera/Answering.h"
#include "camera/CameraConfiguration.h"
#include "camera/ControlChannel.h"
#include "camera/Device.h"
#include "camera/IPConfiguration.h"
#include "camera/MessageChannel.h"
#include "gev/Address.h"
#include "gev/GvcpHeader.h"
#include "gev/GvcpStatus.h"

namespace camera {

/// A whole camera without sockets: datagrams and the time go in, datagrams and changes of its address come out.
///
/// Calls allocate nothing unless a log or a state is kept. Not for two threads at once.
class CProtocolEngine {
public:
    /// @param objAdapter, objOutlet, objStreaming  must outlive this
    /// @throws CStateError  the configuration's state is none of this camera
    CProtocolEngine(const CAMERA_CONFIGURATION& objConfiguration, gev::CMACAddress objMAC, std::uint32_t nLinkSpeed,
                    IAdapter& objAdapter, IOutlet& objOutlet, IStreaming& objStreaming, TIME tNow);
    CProtocolEngine(const CProtocolEngine&) = delete;
    CProtocolEngine& operator=(const CProtocolEngine&) = delete;

    /// @param nDestination  address that the datagram was sent to
    void Receive(const ENDPOINT& objFrom, std::uint32_t nDestination, std::span<const std::byte> arrDatagram,
                 TIME tNow);

    /// Does what is due.
    void Advance(TIME tNow);
    /// When Advance has something to do next.
    [[nodiscard]] std::optional<TIME> NextTime() const;

    void SetFaults(const FAULTS& objFaults, TIME tNow);

    /// Something happened to a frame of the stream.
    void TellEvent(const FRAME_EVENT& objEvent, TIME tNow) { m_objMessages.Tell(objEvent, tNow); }
    /// The stream has sent all images of this acquisition.
    void EndAcquisition(std::uint32_t nAcquisition, TIME tNow);
    /// Packets of this acquisition's images found no way out. The first time in an acquisition goes to the log.
    void TellUnsent(std::uint32_t nAcquisition, const UNSENT_PACKETS& objUnsent);

    [[nodiscard]] const CDevice& GetDevice() const { return m_objDevice; }

private:
    /// A command as its handler gets it.
    struct REQUEST {
        const ENDPOINT& From;
        const gev::GVCP_COMMAND_HEADER& Header;
        std::span<const std::byte> Payload;
        std::span<const std::byte> Datagram;
        TIME Now;
    };
    /// A write that takes its time: the command is carried out at the end.
    struct SLOW_WORK {
        ENDPOINT From;
        std::uint16_t RequestID;
        std::size_t Length;
        gev::GvcpBuffer Command;
        std::optional<TIME> Done;     // nothing: never
        std::optional<TIME> Pending;  // when the next PENDING_ACK goes out; nothing: none does
    };
    /// The write that was answered last, for a repeat of it.
    struct LAST_WRITE {
        ENDPOINT From;
        std::size_t CommandLength = 0;  // 0: there is none
        gev::GvcpBuffer Command;
        std::size_t AnswerLength = 0;
        gev::GvcpBuffer Answer;
    };

    [[nodiscard]] bool HasVanished(TIME tNow) const;
    [[nodiscard]] bool IsHeard(gev::EGvcpCommand nCommand, std::uint32_t nDestination, TIME tNow);
    gev::EGvcpStatus Dispatch(const REQUEST& objRequest);
    gev::EGvcpStatus Discover(const REQUEST& objRequest);
    gev::EGvcpStatus ForceIP(const REQUEST& objRequest);
    gev::EGvcpStatus ForceIPEx(const REQUEST& objRequest);
    gev::EGvcpStatus ReadRegisters(const REQUEST& objRequest);
    gev::EGvcpStatus ReadMemory(const REQUEST& objRequest);
    gev::EGvcpStatus Write(const REQUEST& objRequest);
    gev::EGvcpStatus WriteRegisters(const REQUEST& objRequest, std::span<std::byte>& arrAnswer);
    gev::EGvcpStatus WriteMemory(const REQUEST& objRequest, std::span<std::byte>& arrAnswer);
    gev::EGvcpStatus WriteBlock(const REQUEST& objRequest, std::uint32_t nAddress, std::span<const std::byte> arrData);
    gev::EGvcpStatus Resend(const REQUEST& objRequest);
    gev::EGvcpStatus Refuse(const REQUEST& objRequest, gev::EGvcpStatus nStatus);
    void Acknowledge(const REQUEST& objRequest, std::span<const std::byte> arrAnswer,
                     std::chrono::milliseconds nDelay = {});

    [[nodiscard]] std::chrono::milliseconds GetDuration(const REQUEST& objRequest) const;
    void BeginSlowWork(const REQUEST& objRequest, std::optional<std::chrono::milliseconds> nDuration, bool bPending);
    void AdvanceSlowWork(TIME tNow);
    [[nodiscard]] bool AnswerRepeat(const REQUEST& objRequest);
    void RememberWrite(const REQUEST& objRequest, std::span<const std::byte> arrAnswer);
    gev::EGvcpStatus KeepState() const;
    void LoseControl();
    void ResetIfWished(TIME tNow);

    void Log(std::string_view strLine) const;
    void LogRequest(const REQUEST& objRequest, gev::EGvcpStatus nStatus) const;

    std::string m_strModel;
    std::shared_ptr<const std::vector<std::byte>> m_pDescription;  // packed, without faults
    std::function<void(std::string_view)> m_funLog;
    std::function<bool(std::string_view)> m_funKeep;
    gev::CMACAddress m_objMAC;
    IStreaming& m_objStreaming;
    CDevice m_objDevice;
    CControlChannel m_objControl;
    CMessageChannel m_objMessages;
    CIPConfiguration m_objIP;
    CAnswering m_objAnswering;
    FAULTS m_objFaults;
    TIME m_tFaultsSet{};
    std::uint32_t m_nCommands = 0;    // since the faults were set
    bool m_bGone = false;             // vanished, and its stream with it
    std::uint32_t m_nUnsentTold = 0;  // the acquisition whose lost packets went to the log
    std::optional<SLOW_WORK> m_objSlowWork;
    LAST_WRITE m_objLastWrite;
    gev::GvcpBuffer m_arrAnswer{};  // being built
};

}  // namespace camera
