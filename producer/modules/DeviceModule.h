#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>

#include "producer/modules/Children.h"
#include "producer/modules/DeviceEntry.h"
#include "producer/modules/Module.h"
#include "producer/modules/RemotePort.h"
#include "producer/modules/StreamModule.h"
#include "producer/stream/MessageChannel.h"

namespace producer {

/// @throws CProducerError  GC_ERR_INVALID_PARAMETER for what no device can be opened with
CONTROL_ACCESS ControlAccessOf(DEVICE_ACCESS_FLAGS nFlags);

/// An open camera: its module in the producer, its remote port and its data stream.
///
/// Owned by the interface module while it is open.
class CDeviceModule : public CModule {
public:
    /// Opens the camera's control channel.
    /// @param objGiveUp  ends the attempt
    /// @param funClosed  called last in the close
    /// @throws CProducerError  as CControlChannel
    CDeviceModule(const ADAPTER& objAdapter, const DEVICE_ENTRY& objEntry, CONTROL_ACCESS eAccess,
                  const std::stop_token& objGiveUp, std::function<void()> funClosed);

    /// @throws CProducerError  GC_ERR_NOT_AVAILABLE for a command that isn't known
    CInfoValue GetInfo(DEVICE_INFO_CMD nCommand) const;
    DEVICE_ACCESS_STATUS GetAccessStatus() const;
    CControlChannel& GetChannel() { return m_pRemotePort->GetChannel(); }

    /// Gives the remote port its handle at the first call.
    void* GetRemotePort();

    std::uint32_t GetStreamCount() const { return 1; }
    /// @throws CProducerError  GC_ERR_INVALID_INDEX
    std::string GetStreamId(std::uint32_t nIndex) const;
    /// @throws CProducerError  GC_ERR_INVALID_ID, GC_ERR_RESOURCE_IN_USE
    void* OpenStream(const std::string& strId);

private:
    void AddDeviceFeatures();
    void AddLinkFeatures();
    void AddStatisticsFeatures();
    std::uint64_t GetTickFrequency() const;
    void OpenMessages();
    void DoClose() noexcept override;

    const DEVICE_ENTRY m_objEntry;
    const std::string m_strStreamId;
    const std::function<void()> m_funClosed;
    const std::shared_ptr<CRemotePort> m_pRemotePort;
    std::mutex m_mtxRemote;                        // held while the remote port gets its handle
    std::mutex m_mtxMessages;                      // held while the one below is made and ended
    std::unique_ptr<CMessageChannel> m_pMessages;  // from the first registration of the camera's events on
    CChildren<CStreamModule> m_objStreams;
};

}  // namespace producer
