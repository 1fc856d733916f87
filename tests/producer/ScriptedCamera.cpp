#include "tests/producer/ScriptedCamera.h"

#include <array>
#include <string_view>
#include <utility>

#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include "gev/GvcpMemory.h"
#include "gev/GvcpRegister.h"

namespace {

constexpr std::size_t kMemory = 64 * 1024;

}  // namespace

gev::DISCOVERY_RECORD MakeRecord(std::uint64_t nMac, std::uint32_t nAddress) {
    gev::DISCOVERY_RECORD objRecord;
    objRecord.VersionMajor = 2;
    objRecord.MAC = gev::CMACAddress(nMac);
    objRecord.IP = nAddress;
    objRecord.SubnetMask = 0xFFFFFF00;
    objRecord.ManufacturerName = gev::CFixedText<32>(std::string_view("Maker"));
    objRecord.ModelName = gev::CFixedText<32>(std::string_view("Model"));
    objRecord.SerialNumber = gev::CFixedText<16>(std::string_view("S" + std::to_string(nMac & 0xFFFF)));
    return objRecord;
}

CScriptedCamera::CScriptedCamera(const CNetworkNamespace& objNamespace, std::string strAdapter,
                                 std::vector<gev::DISCOVERY_RECORD> vecRecords)
    : m_vecRecords(std::move(vecRecords)), m_vecMemory(kMemory) {
    SetRegister(gev::bootstrap::kHeartbeatTimeout, gev::bootstrap::kHeartbeatTimeoutDefaultMs);
    SetRegister(gev::bootstrap::kGvcpCapability, gev::bootstrap::kGvcpCapabilityWriteMem);
    SetRegister(gev::bootstrap::kSupportedIPConfiguration, 5);
    objNamespace.Do([&] {
        m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        const int nOne = 1;
        const timeval objWait{0, 20'000};
        sockaddr_in objAny{};
        objAny.sin_family = AF_INET;
        objAny.sin_port = htons(gev::kGvcpPort);
        if (setsockopt(m_nSocket, SOL_SOCKET, SO_BROADCAST, &nOne, sizeof nOne) != 0 ||
            setsockopt(m_nSocket, SOL_SOCKET, SO_REUSEADDR, &nOne, sizeof nOne) != 0 ||
            setsockopt(m_nSocket, SOL_SOCKET, SO_RCVTIMEO, &objWait, sizeof objWait) != 0 ||
            setsockopt(m_nSocket, SOL_SOCKET, SO_BINDTODEVICE, strAdapter.data(),
                       static_cast<socklen_t>(strAdapter.size())) != 0 ||
            bind(m_nSocket, reinterpret_cast<const sockaddr*>(&objAny), sizeof objAny) != 0) {
            throw std::runtime_error("no socket for the camera on " + strAdapter);
        }
    });
    m_objThread = std::thread([this] { Run(); });
}

CScriptedCamera::~CScriptedCamera() {
    m_bEnd = true;
    m_objThread.join();
    close(m_nSocket);
}

void CScriptedCamera::SetScript(Script funScript) {
    const std::lock_guard objLock(m_mtxState);
    m_funScript = std::move(funScript);
}

void CScriptedCamera::SetRegister(const gev::bootstrap::REGISTER& objRegister, std::uint32_t nValue) {
    const std::lock_guard objLock(m_mtxState);
    gev::Put32(m_vecMemory, objRegister.Address, nValue);
}

std::uint32_t CScriptedCamera::GetRegister(const gev::bootstrap::REGISTER& objRegister) {
    const std::lock_guard objLock(m_mtxState);
    return gev::Get32(m_vecMemory, objRegister.Address);
}

std::vector<std::byte> CScriptedCamera::GetMemory() {
    const std::lock_guard objLock(m_mtxState);
    return m_vecMemory;
}

void CScriptedCamera::Run() {
    std::array<std::byte, 2048> arrBuffer;
    while (!m_bEnd) {
        socklen_t nSize = sizeof m_objAsker;
        const auto nReceived = recvfrom(m_nSocket, arrBuffer.data(), arrBuffer.size(), 0,
                                        reinterpret_cast<sockaddr*>(&m_objAsker), &nSize);
        if (nReceived > 0 && !m_bSilent) {
            Handle(std::span(arrBuffer).first(static_cast<std::size_t>(nReceived)));
        }
    }
}

void CScriptedCamera::Handle(std::span<const std::byte> objDatagram) {
    gev::GVCP_COMMAND_HEADER objHeader;
    std::span<const std::byte> objPayload;
    if (gev::DecodeCommand(objDatagram, objHeader, objPayload) != gev::EGvcpStatus::Success) {
        return;
    }
    Script funScript;
    {
        const std::lock_guard objLock(m_mtxState);
        funScript = m_funScript;
    }
    if (funScript && funScript(*this, objHeader, objPayload)) {
        return;
    }
    switch (objHeader.Command) {
        case gev::EGvcpCommand::Discovery:
            return AnswerDiscovery(objHeader);
        case gev::EGvcpCommand::ReadReg:
        case gev::EGvcpCommand::ReadMem:
            return Read(objHeader, objPayload);
        case gev::EGvcpCommand::WriteReg:
        case gev::EGvcpCommand::WriteMem:
            return Write(objHeader, objPayload);
        default:
            return Refuse(objHeader, gev::EGvcpStatus::NotImplemented);
    }
}

void CScriptedCamera::AnswerDiscovery(const gev::GVCP_COMMAND_HEADER& objHeader) {
    sockaddr_in objTo = m_objAsker;
    if ((objHeader.Flags & gev::kGvcpFlagBroadcastAcknowledge) != 0) {
        objTo.sin_addr.s_addr = INADDR_BROADCAST;
    }
    for (const auto& objRecord : m_vecRecords) {
        gev::GvcpBuffer arrBuffer;
        Send(objTo, gev::EncodeDiscoveryAck(arrBuffer, objHeader.RequestID, objRecord));
    }
}

void CScriptedCamera::Read(const gev::GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> objPayload) {
    const std::lock_guard objLock(m_mtxState);
    gev::GvcpBuffer arrBuffer;
    gev::CNumberView objAddresses;
    gev::READMEM_COMMAND objCommand;
    if (objHeader.Command == gev::EGvcpCommand::ReadReg &&
        gev::DecodeReadReg(objPayload, objAddresses) == gev::EGvcpStatus::Success && objAddresses.Get(0) < kMemory) {
        const std::uint32_t nValue = gev::Get32(m_vecMemory, objAddresses.Get(0));
        Answer(gev::EncodeReadRegAck(arrBuffer, objHeader.RequestID, std::span(&nValue, 1)));
    } else if (objHeader.Command == gev::EGvcpCommand::ReadMem &&
               gev::DecodeReadMem(objPayload, objCommand) == gev::EGvcpStatus::Success &&
               objCommand.Address + objCommand.Count <= kMemory) {
        const auto objData = std::span(m_vecMemory).subspan(objCommand.Address, objCommand.Count);
        Answer(gev::EncodeReadMemAck(arrBuffer, objHeader.RequestID, {objCommand.Address, objData}));
    } else {
        Refuse(objHeader, gev::EGvcpStatus::InvalidAddress);
    }
}

bool CScriptedCamera::MayWrite(std::uint32_t nAddress, std::uint32_t nValue) {
    if (m_objController.sin_port != 0 && (m_objController.sin_port != m_objAsker.sin_port ||
                                          m_objController.sin_addr.s_addr != m_objAsker.sin_addr.s_addr)) {
        return false;
    }
    if (nAddress == gev::bootstrap::kControlChannelPrivilege.Address) {
        m_objController = nValue == 0 ? sockaddr_in{} : m_objAsker;
        gev::Put32(m_vecMemory, gev::bootstrap::kPrimaryApplicationPort.Address, ntohs(m_objController.sin_port));
        gev::Put32(m_vecMemory, gev::bootstrap::kPrimaryApplicationIP.Address, ntohl(m_objController.sin_addr.s_addr));
        return true;
    }
    return m_objController.sin_port != 0;
}

void CScriptedCamera::Write(const gev::GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> objPayload) {
    const std::lock_guard objLock(m_mtxState);
    gev::CRegisterWriteView objWrites;
    gev::MEMORY_BLOCK objBlock;
    std::array<std::byte, 4> arrValue;
    if (objHeader.Command == gev::EGvcpCommand::WriteReg) {
        if (gev::DecodeWriteReg(objPayload, objWrites) == gev::EGvcpStatus::Success) {
            gev::Put32(arrValue, 0, objWrites.Get(0).Value);
            objBlock = {objWrites.Get(0).Address, arrValue};
        }
    } else {
        gev::DecodeWriteMem(objPayload, objBlock);
    }
    if (objBlock.Data.empty() || objBlock.Address + objBlock.Data.size() > kMemory) {
        return Refuse(objHeader, gev::EGvcpStatus::InvalidAddress);
    }
    if (!MayWrite(objBlock.Address, gev::Get32(objBlock.Data, 0))) {
        return Refuse(objHeader, gev::EGvcpStatus::AccessDenied);
    }
    std::copy(objBlock.Data.begin(), objBlock.Data.end(), m_vecMemory.begin() + objBlock.Address);
    gev::GvcpBuffer arrBuffer;
    Answer(
        objHeader.Command == gev::EGvcpCommand::WriteReg
            ? gev::EncodeWriteRegAck(arrBuffer, objHeader.RequestID, 1)
            : gev::EncodeWriteMemAck(arrBuffer, objHeader.RequestID, static_cast<std::uint16_t>(objBlock.Data.size())));
}

void CScriptedCamera::Refuse(const gev::GVCP_COMMAND_HEADER& objHeader, gev::EGvcpStatus nStatus) {
    gev::GvcpBuffer arrBuffer;
    Answer(gev::EncodeAcknowledge(arrBuffer, objHeader.Command, objHeader.RequestID, nStatus));
}

void CScriptedCamera::Answer(std::span<const std::byte> objDatagram) {
    Send(m_objAsker, objDatagram);
}

void CScriptedCamera::Send(const sockaddr_in& objTo, std::span<const std::byte> objDatagram) {
    sendto(m_nSocket, objDatagram.data(), objDatagram.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&objTo),
           sizeof objTo);
}
