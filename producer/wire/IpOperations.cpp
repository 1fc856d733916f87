#include "producer/wire/IpOperations.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "gev/Bootstrap.h"
#include "gev/GvcpDiscovery.h"
#include "gev/GvcpForceIP.h"
#include "producer/ProducerError.h"
#include "producer/wire/AdapterSocket.h"
#include "producer/wire/BroadcastLine.h"
#include "producer/wire/ControlDialogue.h"
#include "producer/wire/DiscoveryAnswers.h"
#include "producer/wire/RequestID.h"
#include "support/Address.h"

namespace producer {

namespace {

namespace bootstrap = gev::bootstrap;
using std::chrono::milliseconds;

constexpr milliseconds kRound{250};            // between two questions to everybody
constexpr int kForceIpRounds = 4;              // with the command in them; from then on it is only asked who is there
constexpr milliseconds kRestartSettle{1'000};  // a camera that only starts to restart still answers from before
constexpr milliseconds kFindDeadline{1'000};
constexpr int kAskAttempts = 3;
constexpr milliseconds kAskTimeout{300};
constexpr std::uint32_t kIpConfigurations =
    bootstrap::kIPConfigurationPersistent | bootstrap::kIPConfigurationDHCP | bootstrap::kIPConfigurationLinkLocal;

ADAPTER GetAdapter(const std::string& strAdapter) {
    auto objAdapter = FindAdapter(strAdapter);
    if (!objAdapter) {
        throw CProducerError(GC_ERR_NOT_AVAILABLE, "the adapter " + strAdapter + " is gone or not up");
    }
    return std::move(*objAdapter);
}

bool IsMask(std::uint32_t nMask) {
    return nMask != 0 && (~nMask & (~nMask + 1)) == 0;
}

/// An address of one host: none of this network, the loopback, groups or the reserved ones.
bool IsHostAddress(std::uint32_t nAddress) {
    const std::uint32_t nFirst = nAddress >> 24;
    return nFirst != 0 && nFirst != 127 && nFirst < 224;
}

void CheckSettings(const IP_SETTINGS& objSettings) {
    const auto refuse = [](const std::string& strText) { throw CProducerError(GC_ERR_INVALID_PARAMETER, strText); };
    const std::uint32_t nHost = objSettings.Address & ~objSettings.Mask;
    if (!IsMask(objSettings.Mask)) {
        refuse(IPToString(objSettings.Mask) + " is no subnet mask");
    }
    if (!IsHostAddress(objSettings.Address) || (~objSettings.Mask > 1 && (nHost == 0 || nHost == ~objSettings.Mask))) {
        refuse(IPToString(objSettings.Address) + " is no address that a camera can have in a subnet " +
               IPToString(objSettings.Mask));
    }
    if (objSettings.Gateway != 0 && !IsHostAddress(objSettings.Gateway)) {
        refuse(IPToString(objSettings.Gateway) + " is no address of a gateway");
    }
}

/// Watches one camera over the broadcasts of its adapter.
class CCameraWatch {
public:
    CCameraWatch(const ADAPTER& objAdapter, std::uint64_t nMac) : m_objLine(objAdapter), m_nMac(nMac) {}

    /// Asks everybody who is there and sends what else there is to send, then listens for a round, or until funDone
    /// says that the camera is as it should be.
    template <class Done>
    bool Round(std::span<const std::byte> objCommand, Done funDone) {
        gev::GvcpBuffer arrBuffer;
        if (!objCommand.empty()) {
            Send(objCommand);
            ++m_nCommandsSent;
        }
        Send(gev::EncodeCommand(arrBuffer, gev::EGvcpCommand::Discovery, kBroadcastFlags, m_nDiscoveryID));
        bool bDone = false;
        m_objLine.Listen(Clock::now() + kRound, nullptr, [&](const HEARD_ACKNOWLEDGE& objHeard) {
            bDone = Hear(objHeard) && funDone(*m_objRecord);
            return !bDone;
        });
        return bDone;
    }

    [[nodiscard]] const std::optional<gev::DISCOVERY_RECORD>& GetRecord() const noexcept { return m_objRecord; }
    [[nodiscard]] std::uint16_t GetCommandID() const noexcept { return m_nCommandID; }
    [[nodiscard]] std::optional<gev::EGvcpStatus> GetCommandStatus() const noexcept { return m_nCommandStatus; }

    /// What was sent and what came back, for the text of a failure.
    [[nodiscard]] std::string Describe(const std::string& strAdapter) const {
        std::string strText = "FORCEIP_CMD for the camera " + MACToString(m_nMac) +
                              " was broadcast to 255.255.255.255 on " + strAdapter + " " +
                              std::to_string(m_nCommandsSent) + " times";
        if (m_nSendError != 0) {
            strText += " (" + GetErrnoText(m_nSendError) + ")";
        }
        if (m_nCommandStatus) {
            strText += ", and answered with \"" + std::string(gev::GetText(*m_nCommandStatus)) + "\"";
        }
        return strText + (m_objRecord ? "; the camera says that its address is " + IPToString(m_objRecord->IP)
                                      : "; no discovery acknowledge of it came back");
    }

private:
    void Send(std::span<const std::byte> objDatagram) {
        if (const int nErrno = m_objLine.SendToAll(objDatagram, false); nErrno != 0) {
            m_nSendError = nErrno;
        }
    }

    /// @return whether it was the camera telling of itself.
    bool Hear(const HEARD_ACKNOWLEDGE& objHeard) {
        const auto& objHeader = objHeard.Header;
        if (objHeader.Command == gev::EGvcpCommand::ForceIP && objHeader.AckID == m_nCommandID) {
            m_nCommandStatus = objHeader.Status;
        }
        gev::DISCOVERY_RECORD objRecord;
        if (objHeader.Command != gev::EGvcpCommand::Discovery || objHeader.AckID != m_nDiscoveryID ||
            objHeader.Status != gev::EGvcpStatus::Success ||
            gev::DecodeDiscoveryAck(objHeard.Payload, objRecord) != gev::EGvcpStatus::Success ||
            objRecord.MAC.GetValue() != m_nMac) {
            return false;
        }
        m_objRecord = objRecord;
        return true;
    }

    CBroadcastLine m_objLine;
    const std::uint64_t m_nMac;
    const std::uint16_t m_nDiscoveryID = TakeRequestID();
    const std::uint16_t m_nCommandID = TakeRequestID();
    std::optional<gev::DISCOVERY_RECORD> m_objRecord;
    std::optional<gev::EGvcpStatus> m_nCommandStatus;
    int m_nCommandsSent = 0;
    int m_nSendError = 0;
};

std::span<std::byte> EncodeForceIp(gev::GvcpBuffer& arrBuffer, const CCameraWatch& objWatch, std::uint64_t nMac,
                                   const IP_SETTINGS& objSettings) {
    return gev::EncodeForceIP(arrBuffer, objWatch.GetCommandID(),
                              {.MAC = gev::CMACAddress(nMac),
                               .IP = objSettings.Address,
                               .SubnetMask = objSettings.Mask,
                               .Gateway = objSettings.Gateway},
                              true);
}

void CheckGivenUp(const std::stop_token& objGiveUp) {
    if (objGiveUp.stop_requested()) {
        throw CProducerError(GC_ERR_ABORT,
                             "the interface was closed meanwhile; the camera may still do what was asked");
    }
}

/// @return the camera's address now.
std::uint32_t FindCamera(const ADAPTER& objAdapter, std::uint64_t nMac) {
    CCameraWatch objWatch(objAdapter, nMac);
    const auto objDeadline = Clock::now() + kFindDeadline;
    while (Clock::now() < objDeadline) {
        if (objWatch.Round({}, [](const auto&) { return true; })) {
            return objWatch.GetRecord()->IP;
        }
    }
    throw CProducerError(GC_ERR_TIMEOUT, "DISCOVERY_CMD was broadcast to 255.255.255.255 on " + objAdapter.Name +
                                             "; the camera " + MACToString(nMac) + " didn't answer");
}

void WriteAndCheck(CControlChannel& objChannel, const bootstrap::REGISTER& objRegister, std::uint32_t nValue,
                   std::uint32_t nMask) {
    objChannel.DoWriteRegister(objRegister.Address, nValue);
    if (const std::uint32_t nRead = objChannel.DoReadRegister(objRegister.Address); ((nRead ^ nValue) & nMask) != 0) {
        throw CProducerError(GC_ERR_IO, FormatHex(nValue) + " was written to the register " +
                                            FormatHex(objRegister.Address) + " of camera " +
                                            IPToString(objChannel.GetCameraAddress()) + ", which holds " +
                                            FormatHex(nRead) + " all the same");
    }
}

/// @param strName  that fits
void WriteUserName(CControlChannel& objChannel, const std::string& strName) {
    constexpr std::size_t kSize = bootstrap::kUserDefinedName.Size;
    std::array<std::byte, kSize> arrName{};
    std::array<std::byte, kSize> arrRead{};
    std::transform(strName.begin(), strName.end(), arrName.begin(), [](char n) { return static_cast<std::byte>(n); });
    objChannel.DoWrite(bootstrap::kUserDefinedName.Address, arrName);
    objChannel.DoRead(bootstrap::kUserDefinedName.Address, arrRead);
    if (arrRead != arrName) {
        throw CProducerError(GC_ERR_IO, "the name \"" + strName + "\" was written to camera " +
                                            IPToString(objChannel.GetCameraAddress()) + ", which didn't keep it");
    }
}

/// Nothing is written before all of it makes sense.
void CheckConfiguration(CControlChannel& objChannel, const IP_CONFIGURATION& objConfiguration) {
    if ((objConfiguration.Configuration & ~kIpConfigurations) != 0) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, FormatHex(objConfiguration.Configuration) +
                                                           " is no IP configuration: add up 1 persistent, "
                                                           "2 DHCP, 4 link-local");
    }
    constexpr std::size_t kLongestName = bootstrap::kUserDefinedName.Size;
    if (objConfiguration.UserName && objConfiguration.UserName->size() > kLongestName) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, "the name \"" + *objConfiguration.UserName +
                                                           "\" is longer than " + std::to_string(kLongestName) +
                                                           " bytes");
    }
    const std::uint32_t nSupported = objChannel.DoReadRegister(bootstrap::kSupportedIPConfiguration.Address);
    if ((objConfiguration.Configuration & ~nSupported) != 0) {
        throw CProducerError(GC_ERR_NOT_AVAILABLE, "camera " + IPToString(objChannel.GetCameraAddress()) +
                                                       " knows the IP configurations " + FormatHex(nSupported) +
                                                       " (1 persistent, 2 DHCP, 4 link-local) and not all of " +
                                                       FormatHex(objConfiguration.Configuration));
    }
    if (objConfiguration.Address || objConfiguration.Mask || objConfiguration.Gateway) {
        const auto get = [&](const std::optional<std::uint32_t>& nGiven, const bootstrap::REGISTER& objRegister) {
            return nGiven ? *nGiven : objChannel.DoReadRegister(objRegister.Address);
        };
        CheckSettings({get(objConfiguration.Address, bootstrap::kPersistentIP),
                       get(objConfiguration.Mask, bootstrap::kPersistentSubnetMask),
                       get(objConfiguration.Gateway, bootstrap::kPersistentGateway)});
    }
}

DEVICE_ACCESS_STATUS AskAccessStatus(const ADAPTER& objAdapter, std::uint32_t nAddress) {
    CControlDialogue objDialogue(objAdapter, nAddress,
                                 {.AnswerTimeout = kAskTimeout, .Repeats = 1, .LongestPending = kAskTimeout});
    std::uint32_t nPrivilege = 0;
    const OUTCOME objOutcome =
        objDialogue.ReadRegister(bootstrap::kControlChannelPrivilege.Address, objDialogue.GetAsking(), nPrivilege);
    const bool bAnswered = objOutcome.Kind == OUTCOME::KIND::Answered || objOutcome.Kind == OUTCOME::KIND::Refused;
    return bAnswered ? GetAccessStatus(objOutcome.Status, nPrivilege) : DEVICE_ACCESS_STATUS_UNKNOWN;
}

}  // namespace

void DoForceIp(const std::string& strAdapter, std::uint64_t nMac, const IP_SETTINGS& objSettings,
               const std::stop_token& objGiveUp) {
    CheckSettings(objSettings);
    const ADAPTER objAdapter = GetAdapter(strAdapter);
    if (std::any_of(objAdapter.Addresses.begin(), objAdapter.Addresses.end(),
                    [&](const auto& objOwn) { return objOwn.Address == objSettings.Address; })) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER,
                             IPToString(objSettings.Address) + " is the address of " + strAdapter + " itself");
    }
    CCameraWatch objWatch(objAdapter, nMac);
    gev::GvcpBuffer arrBuffer;
    const auto objCommand = EncodeForceIp(arrBuffer, objWatch, nMac, objSettings);
    const auto isDone = [&](const gev::DISCOVERY_RECORD& objRecord) {
        // Not every camera tells the gateway: then its acknowledge counts.
        const bool bTaken = objWatch.GetCommandStatus() == gev::EGvcpStatus::Success;
        return objRecord.IP == objSettings.Address && objRecord.SubnetMask == objSettings.Mask &&
               (objRecord.Gateway == objSettings.Gateway || bTaken);
    };
    const auto objDeadline = Clock::now() + kForceIpDeadline;
    for (int i = 0; Clock::now() < objDeadline; ++i) {
        CheckGivenUp(objGiveUp);
        const bool bRepeat = i < kForceIpRounds && !objWatch.GetCommandStatus();
        if (objWatch.Round(bRepeat ? objCommand : std::span<std::byte>(), isDone)) {
            return;
        }
        if (const auto nStatus = objWatch.GetCommandStatus(); nStatus && *nStatus != gev::EGvcpStatus::Success) {
            throw CProducerError(GetErrorCode(*nStatus), objWatch.Describe(strAdapter));
        }
    }
    throw CProducerError(GC_ERR_TIMEOUT, objWatch.Describe(strAdapter));
}

void DoRestartIpConfiguration(const std::string& strAdapter, std::uint64_t nMac, const std::stop_token& objGiveUp) {
    const ADAPTER objAdapter = GetAdapter(strAdapter);
    FindCamera(objAdapter, nMac);
    CCameraWatch objWatch(objAdapter, nMac);
    gev::GvcpBuffer arrBuffer;
    const auto objStart = Clock::now();
    // It isn't acknowledged, and each one starts the configuration again, so it is sent once.
    objWatch.Round(EncodeForceIp(arrBuffer, objWatch, nMac, {}), [](const auto&) { return false; });
    const auto isDone = [&](const auto&) { return Clock::now() >= objStart + kRestartSettle; };
    while (Clock::now() < objStart + kRestartIpDeadline) {
        CheckGivenUp(objGiveUp);
        if (objWatch.Round({}, isDone)) {
            return;
        }
    }
    throw CProducerError(GC_ERR_TIMEOUT, objWatch.Describe(strAdapter));
}

void DoConfigureIp(const std::string& strAdapter, std::uint64_t nMac, const IP_CONFIGURATION& objConfiguration) {
    const ADAPTER objAdapter = GetAdapter(strAdapter);
    const std::uint32_t nAddress = FindCamera(objAdapter, nMac);
    if (!objAdapter.IsUsableForCamera(nAddress)) {
        throw CProducerError(GC_ERR_NOT_AVAILABLE, "the camera " + MACToString(nMac) + " has the address " +
                                                       IPToString(nAddress) + ", which is in no subnet of " +
                                                       strAdapter + ": give it one by force first");
    }
    CControlChannel objChannel(objAdapter, nAddress, CONTROL_ACCESS::Control, {}, nullptr);
    DoConfigureIp(objChannel, objConfiguration);
}

void DoConfigureIp(CControlChannel& objChannel, const IP_CONFIGURATION& objConfiguration) {
    CheckConfiguration(objChannel, objConfiguration);
    constexpr std::uint32_t kWhole = 0xFFFF'FFFF;
    const auto write = [&](const std::optional<std::uint32_t>& nValue, const bootstrap::REGISTER& objRegister) {
        if (nValue) {
            WriteAndCheck(objChannel, objRegister, *nValue, kWhole);
        }
    };
    write(objConfiguration.Address, bootstrap::kPersistentIP);
    write(objConfiguration.Mask, bootstrap::kPersistentSubnetMask);
    write(objConfiguration.Gateway, bootstrap::kPersistentGateway);
    if (objConfiguration.UserName) {
        WriteUserName(objChannel, *objConfiguration.UserName);
    }
    // Last, so that a camera never starts with a persistent address that was only half written. The link-local bit
    // stays set in cameras that can't do without.
    if (objConfiguration.Configuration != 0) {
        WriteAndCheck(objChannel, bootstrap::kCurrentIPConfiguration, objConfiguration.Configuration,
                      kIpConfigurations & ~bootstrap::kIPConfigurationLinkLocal);
    }
}

DISCOVERY_REPLY DoAskDevice(const std::string& strAdapter, std::uint32_t nAddress) {
    const ADAPTER objAdapter = GetAdapter(strAdapter);
    if (!IsHostAddress(nAddress)) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, IPToString(nAddress) + " is no address of a camera");
    }
    CControlDialogue objDialogue(
        objAdapter, nAddress,
        {.AnswerTimeout = kAskTimeout, .Repeats = kAskAttempts - 1, .LongestPending = kAskTimeout});
    gev::GvcpBuffer arrQuestion;
    gev::GvcpBuffer arrAnswer;
    const auto objQuestion =
        gev::EncodeCommand(arrQuestion, gev::EGvcpCommand::Discovery, gev::kGvcpFlagAcknowledge, 1);
    const OUTCOME objOutcome = objDialogue.Ask(objQuestion, objDialogue.GetAsking(), arrAnswer);
    gev::DISCOVERY_RECORD objRecord;
    if (objOutcome.Kind != OUTCOME::KIND::Answered ||
        gev::DecodeDiscoveryAck(objOutcome.Payload, objRecord) != gev::EGvcpStatus::Success) {
        throw CProducerError(GC_ERR_TIMEOUT, "DISCOVERY_CMD was sent to " + IPToString(nAddress) + " on " + strAdapter +
                                                 " " + std::to_string(objOutcome.Sent) +
                                                 " times; no discovery acknowledge came back");
    }
    DISCOVERY_REPLY arrReply{};
    std::copy_n(arrAnswer.begin(), arrReply.size(), arrReply.begin());
    const auto nStatus = static_cast<std::uint32_t>(AskAccessStatus(objAdapter, nAddress));
    constexpr std::size_t kAccessStatusOffset = 16;
    arrReply[kAccessStatusOffset] = static_cast<std::byte>(nStatus & 0xFF);
    arrReply[kAccessStatusOffset + 1] = static_cast<std::byte>(nStatus >> 8 & 0xFF);
    return arrReply;
}

}  // namespace producer
