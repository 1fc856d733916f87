#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include <netinet/in.h>

#include "gev/Bootstrap.h"
#include "gev/GvcpDiscovery.h"
#include "gev/GvcpHeader.h"
#include "tests/network/NetworkNamespace.h"

/// A peer that speaks GVCP from one adapter as a test wants it: by itself it has 64 KiB of memory, a control privilege,
/// and as many discovery records as it is given, each the answer of a camera of its own.
class CScriptedCamera {
public:
    /// Sees a command first. @return true when nothing more is to be done with it.
    using Script = std::function<bool(CScriptedCamera&, const gev::GVCP_COMMAND_HEADER&, std::span<const std::byte>)>;

    CScriptedCamera(const CNetworkNamespace& objNamespace, std::string strAdapter,
                    std::vector<gev::DISCOVERY_RECORD> vecRecords);
    ~CScriptedCamera();
    CScriptedCamera(const CScriptedCamera&) = delete;
    CScriptedCamera& operator=(const CScriptedCamera&) = delete;

    void SetScript(Script funScript);
    void SetSilent(bool bSilent) { m_bSilent = bSilent; }

    void SetRegister(const gev::bootstrap::REGISTER& objRegister, std::uint32_t nValue);
    [[nodiscard]] std::uint32_t GetRegister(const gev::bootstrap::REGISTER& objRegister);
    [[nodiscard]] std::vector<std::byte> GetMemory();

    /// To who asked last; from the script only.
    void Answer(std::span<const std::byte> objDatagram);
    void Refuse(const gev::GVCP_COMMAND_HEADER& objHeader, gev::EGvcpStatus nStatus);

private:
    void Run();
    void Handle(std::span<const std::byte> objDatagram);
    void AnswerDiscovery(const gev::GVCP_COMMAND_HEADER& objHeader);
    void Read(const gev::GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> objPayload);
    void Write(const gev::GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> objPayload);
    bool MayWrite(std::uint32_t nAddress, std::uint32_t nValue);
    void Send(const sockaddr_in& objTo, std::span<const std::byte> objDatagram);

    const std::vector<gev::DISCOVERY_RECORD> m_vecRecords;
    int m_nSocket = -1;
    sockaddr_in m_objAsker{};
    sockaddr_in m_objController{};  // port 0: nobody
    std::atomic<bool> m_bSilent{false};
    std::atomic<bool> m_bEnd{false};
    std::mutex m_mtxState;  // guards the two below
    Script m_funScript;
    std::vector<std::byte> m_vecMemory;
    std::thread m_objThread;
};

/// The record of a camera, with the MAC's last octet and the address given.
gev::DISCOVERY_RECORD MakeRecord(std::uint64_t nMac, std::uint32_t nAddress);
