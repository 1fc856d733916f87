#include "producer/modules/DeviceModule.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <utility>

#include "gev/Bootstrap.h"
#include "producer/ProducerError.h"
#include "producer/modules/EventData.h"
#include "support/Address.h"
#include "support/Thread.h"

namespace producer {

namespace {

constexpr std::size_t kRemoteEventsKept = 256;
constexpr std::chrono::milliseconds kLongestCourtesy{250};

using Milliseconds = std::chrono::milliseconds;

CFeature::Number Microseconds(Milliseconds objDuration) {
    return std::chrono::duration_cast<std::chrono::microseconds>(objDuration).count();
}

Milliseconds RequireMilliseconds(CFeature::Number nMicroseconds, Milliseconds objLongest) {
    const Milliseconds objDuration = std::chrono::ceil<Milliseconds>(std::chrono::microseconds(nMicroseconds));
    if (nMicroseconds <= 0 || objDuration > objLongest) {
        throw CProducerError(GC_ERR_INVALID_VALUE, "a time from 1 us to " + std::to_string(objLongest.count()) +
                                                       " ms is wanted, not " + std::to_string(nMicroseconds) + " us");
    }
    return objDuration;
}

/// Limits a close: when it isn't through in time, the control channel is closed under those who keep it waiting. A
/// camera that asks for patience without end may hold whoever starts or ends a stream or opens the message channel.
class CCourtesy {
public:
    explicit CCourtesy(CControlChannel& objChannel) : m_objChannel(objChannel) {
        if (!m_objThread.Start(this, &CCourtesy::RunThread, kPriorityNormal)) {
            m_objChannel.Close();
        }
    }
    ~CCourtesy() {
        {
            const std::lock_guard objLock(m_mtxThrough);
            m_bThrough = true;
        }
        m_objSignal.notify_one();
        m_objThread.Join();
    }
    CCourtesy(const CCourtesy&) = delete;
    CCourtesy& operator=(const CCourtesy&) = delete;

private:
    static std::uint32_t RunThread(void* pArg) noexcept {
        static_cast<CCourtesy*>(pArg)->Run();
        return 0;
    }

    void Run() noexcept {
        std::unique_lock objLock(m_mtxThrough);
        if (!m_objSignal.wait_for(objLock, kLongestCourtesy, [this] { return m_bThrough; })) {
            objLock.unlock();
            m_objChannel.Close();
        }
    }

    CControlChannel& m_objChannel;
    std::mutex m_mtxThrough;  // guards the one below
    std::condition_variable m_objSignal;
    bool m_bThrough = false;
    CThread m_objThread;  // last: it uses all of the above
};

}  // namespace

CONTROL_ACCESS ControlAccessOf(DEVICE_ACCESS_FLAGS nFlags) {
    switch (nFlags) {
        case DEVICE_ACCESS_READONLY:
            return CONTROL_ACCESS::ReadOnly;
        case DEVICE_ACCESS_CONTROL:
            return CONTROL_ACCESS::Control;
        case DEVICE_ACCESS_EXCLUSIVE:
            return CONTROL_ACCESS::Exclusive;
        default:
            throw CProducerError(GC_ERR_INVALID_PARAMETER,
                                 "a device is opened for reading (2), for control (3) or "
                                 "exclusively (4), not with the access flag " +
                                     std::to_string(nFlags));
    }
}

CDeviceModule::CDeviceModule(const ADAPTER& objAdapter, const DEVICE_ENTRY& objEntry, CONTROL_ACCESS eAccess,
                             const std::stop_token& objGiveUp, std::function<void()> funClosed)
    : CModule("TLDevice", objEntry.Id,
              {"NorvikDevice", "One open camera, as the producer sees it", "DevicePort",
               "6B1E3A52-0C3D-4E61-9A57-2F4D0B8C7E13"}),
      m_objEntry(objEntry),
      m_strStreamId(MACToString(objEntry.Device.Mac) + "-Stream0"),
      m_funClosed(std::move(funClosed)),
      m_pRemotePort(std::make_shared<CRemotePort>(objAdapter, objEntry, eAccess, objGiveUp)) {
    GetEvents().Offer(EVENT_REMOTE_DEVICE, kRemoteEventSizeMax, kRemoteEventsKept, [this] { OpenMessages(); });
    AddDeviceFeatures();
    AddLinkFeatures();
    AddStatisticsFeatures();
    GetRegisters().Finish();
}

CInfoValue CDeviceModule::GetInfo(DEVICE_INFO_CMD nCommand) const {
    if (nCommand == DEVICE_INFO_TIMESTAMP_FREQUENCY) {
        return CInfoValue::Uint64(GetTickFrequency());
    }
    return GetDeviceEntryInfo(m_objEntry, GetAccessStatus(), nCommand);
}

std::uint64_t CDeviceModule::GetTickFrequency() const {
    CControlChannel& objChannel = m_pRemotePort->GetChannel();
    const std::uint64_t nHigh = objChannel.DoReadRegister(gev::bootstrap::kTimestampTickFrequencyHigh.Address);
    return nHigh << 32 | objChannel.DoReadRegister(gev::bootstrap::kTimestampTickFrequencyLow.Address);
}

DEVICE_ACCESS_STATUS CDeviceModule::GetAccessStatus() const {
    const CControlChannel& objChannel = m_pRemotePort->GetChannel();
    if (objChannel.IsLost()) {
        return DEVICE_ACCESS_STATUS_NOACCESS;
    }
    return objChannel.GetAccess() == CONTROL_ACCESS::ReadOnly ? DEVICE_ACCESS_STATUS_OPEN_READONLY
                                                              : DEVICE_ACCESS_STATUS_OPEN_READWRITE;
}

void* CDeviceModule::GetRemotePort() {
    const std::lock_guard objLock(m_mtxRemote);
    RequireOpen();
    return m_pRemotePort->GetHandle() != nullptr ? m_pRemotePort->GetHandle() : m_pRemotePort->Publish(m_pRemotePort);
}

std::string CDeviceModule::GetStreamId(std::uint32_t nIndex) const {
    if (nIndex >= GetStreamCount()) {
        throw CProducerError(GC_ERR_INVALID_INDEX,
                             "a device has one data stream, none with index " + std::to_string(nIndex));
    }
    return m_strStreamId;
}

void* CDeviceModule::OpenStream(const std::string& strId) {
    if (strId != m_strStreamId) {
        throw CProducerError(GC_ERR_INVALID_ID, GetModuleId() + " has no data stream \"" + strId + "\"");
    }
    return m_objStreams.Open(strId, [&] {
        return std::make_shared<CStreamModule>(m_pRemotePort, strId, [this, strId] { m_objStreams.Forget(strId); });
    });
}

/// The camera's events come only to a consumer that may write its registers, and only from a camera that has any.
void CDeviceModule::OpenMessages() {
    const std::lock_guard objLock(m_mtxMessages);
    RequireOpen();
    CControlChannel& objChannel = GetChannel();
    if (m_pMessages || objChannel.GetAccess() == CONTROL_ACCESS::ReadOnly ||
        objChannel.DoReadRegister(gev::bootstrap::kMessageChannelCount.Address) == 0) {
        return;
    }
    m_pMessages = std::make_unique<CMessageChannel>(
        objChannel, [this](const gev::EVENT_ENTRY& objEvent, std::span<const std::byte> spanData) {
            std::array<std::byte, kRemoteEventSizeMax> arrEvent;
            const REMOTE_EVENT_HEADER objHeader{objEvent.EventID};
            std::memcpy(arrEvent.data(), &objHeader, sizeof(objHeader));
            const std::size_t nData = std::min(spanData.size(), kRemoteEventValueMax);
            std::copy_n(spanData.begin(), nData, arrEvent.begin() + sizeof(objHeader));
            GetEvents().Post(EVENT_REMOTE_DEVICE, std::span(arrEvent).first(sizeof(objHeader) + nData));
        });
}

void CDeviceModule::DoClose() noexcept {
    {
        const CCourtesy objCourtesy(m_pRemotePort->GetChannel());
        m_objStreams.CloseAll();
        const std::lock_guard objLock(m_mtxMessages);
        m_pMessages.reset();
    }
    {
        // A remote port that another thread is just asking for has its handle before, or gets none.
        const std::lock_guard objLock(m_mtxRemote);
    }
    m_pRemotePort->Close();
    m_funClosed();
}

void CDeviceModule::AddDeviceFeatures() {
    CRegisterMap& objMap = GetRegisters();
    const DISCOVERED_DEVICE& objDevice = m_objEntry.Device;
    const auto funText = [&](const char* pszName, const char* pszToolTip, const std::string& strValue) {
        objMap.Text(pszName, pszToolTip, [&strValue] { return strValue; }).Constant();
    };
    const auto funNumber = [&](const char* pszName, const char* pszToolTip, const char* pszShown,
                               std::uint64_t nValue) {
        objMap.Integer(pszName, pszToolTip, [nValue] { return static_cast<CFeature::Number>(nValue); })
            .Shown(pszShown)
            .Constant();
    };
    objMap.Category("DeviceInformation");
    funText("DeviceID", "Identifies the camera", m_objEntry.Id);
    funText("DeviceDisplayName", "The camera's name for users", m_objEntry.DisplayName);
    funText("DeviceVendorName", "Who made the camera", objDevice.Manufacturer);
    funText("DeviceModelName", "The camera's model", objDevice.Model);
    funText("DeviceVersion", "The camera's version", objDevice.DeviceVersion);
    funText("DeviceManufacturerInfo", "What the maker adds", objDevice.ManufacturerInfo);
    funText("DeviceSerialNumber", "The camera's serial number", objDevice.SerialNumber);
    funText("DeviceUserID", "The name that a user gave the camera", objDevice.UserName);
    objMap.Enumeration("DeviceType", "The transport layer of the camera", {{"GigEVision", 1}}, [] { return 1; })
        .Constant();
    funNumber("GevDeviceIPAddress", "The camera's address when it was found", "IPV4Address", objDevice.Address);
    funNumber("GevDeviceSubnetMask", "The camera's subnet mask when it was found", "IPV4Address", objDevice.SubnetMask);
    funNumber("GevDeviceGateway", "The camera's gateway when it was found", "IPV4Address", objDevice.Gateway);
    funNumber("GevDeviceMACAddress", "The camera's MAC", "MACAddress", objDevice.Mac);
    objMap.Enumeration("DeviceAccessStatus", "What the camera is open for",
                       {{"Unknown", DEVICE_ACCESS_STATUS_UNKNOWN},
                        {"NoAccess", DEVICE_ACCESS_STATUS_NOACCESS},
                        {"OpenReadWrite", DEVICE_ACCESS_STATUS_OPEN_READWRITE},
                        {"OpenReadOnly", DEVICE_ACCESS_STATUS_OPEN_READONLY}},
                       [this] { return CFeature::Number{GetAccessStatus()}; });
}

void CDeviceModule::AddLinkFeatures() {
    CRegisterMap& objMap = GetRegisters();
    objMap.Category("DeviceLink");
    objMap
        .Duration("DeviceLinkHeartbeatTimeout",
                  "The camera drops control, and counts as lost, after this long without a word",
                  [this] { return Microseconds(GetChannel().GetHeartbeatTimeout()); })
        .Streamable()
        .Set([this](CFeature::Number nValue) {
            GetChannel().DoSetHeartbeatTimeout(RequireMilliseconds(nValue, std::chrono::hours(1)));
        });
    objMap
        .Duration("DeviceLinkCommandTimeout", "How long an answer is waited for before the question is repeated",
                  [this] { return Microseconds(GetChannel().GetSettings().AnswerTimeout); })
        .Streamable()
        .Set([this](CFeature::Number nValue) {
            GetChannel().SetAnswerTimeout(RequireMilliseconds(nValue, std::chrono::minutes(1)));
        });
    objMap
        .Integer("DeviceLinkCommandRetryCount", "How often a question is repeated",
                 [this] { return CFeature::Number{GetChannel().GetSettings().Repeats}; })
        .Custom()
        .Streamable()
        .Set([this](CFeature::Number nValue) {
            constexpr CFeature::Number kMostRepeats = 100;
            if (nValue < 0 || nValue > kMostRepeats) {
                throw CProducerError(GC_ERR_INVALID_VALUE, "a number of repeats from 0 to 100 is wanted");
            }
            GetChannel().SetRepeats(static_cast<std::uint32_t>(nValue));
        });
    objMap
        .Integer("DeviceLinkSpeed", "As the camera tells it, in megabits a second",
                 [this] { return CFeature::Number{GetChannel().DoReadRegister(gev::bootstrap::kLinkSpeed.Address)}; })
        .Unit("Mbps");
    objMap
        .Integer("GevLocalIPAddress", "The address of this machine that the camera sees",
                 [this] { return CFeature::Number{GetChannel().GetLocalAddress()}; })
        .Custom()
        .Shown("IPV4Address");
}

void CDeviceModule::AddStatisticsFeatures() {
    CRegisterMap& objMap = GetRegisters();
    objMap.Category("ControlStatistics");
    const auto funCount = [&](const char* pszName, const char* pszToolTip, std::uint64_t CONTROL_STATISTICS::*pMember) {
        objMap
            .Integer(pszName, pszToolTip,
                     [this, pMember] { return static_cast<CFeature::Number>(GetChannel().GetStatistics().*pMember); })
            .Custom()
            .Visibility("Expert");
    };
    funCount("ControlCommandCount", "Questions asked of the camera", &CONTROL_STATISTICS::Commands);
    funCount("ControlRepeatCount", "Questions that had to be repeated", &CONTROL_STATISTICS::Repeats);
    funCount("ControlTimeoutCount", "Questions that stayed without an answer", &CONTROL_STATISTICS::Timeouts);
    funCount("ControlPendingCount", "Times that the camera asked for patience", &CONTROL_STATISTICS::PendingAnswers);
    funCount("ControlRefusedPacketCount", "Packets that were malformed or answered another question",
             &CONTROL_STATISTICS::RefusedPackets);
}

}  // namespace producer
