#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <stop_token>
#include <vector>

#include "producer/modules/DeviceEntry.h"
#include "producer/modules/Port.h"
#include "producer/wire/ControlChannel.h"

namespace producer {

/// The camera itself, as a port: its registers over the control channel, which this owns.
///
/// Owned by the device module, and held by every call that is under way. When the camera is lost, the event
/// EVENT_ZR_DEVICE_OFFLINE comes once, and every access from then on fails with GC_ERR_ZR_DEVICE_OFFLINE.
class CRemotePort : public CPort {
public:
    /// Opens the control channel.
    /// @param objGiveUp  ends the attempt
    /// @throws CProducerError  as CControlChannel
    CRemotePort(const ADAPTER& objAdapter, const DEVICE_ENTRY& objEntry, CONTROL_ACCESS eAccess,
                const std::stop_token& objGiveUp);

    void* Publish(const std::shared_ptr<CRemotePort>& pThis);
    void* GetHandle() const { return m_hPort; }

    /// Ends the accesses under way and gives the camera free.
    void Close() noexcept;

    /// Whether a consumer wrote the size of the stream's packets: it is the consumer's from then on.
    bool HasWrittenPacketSize() const { return m_bPacketSizeWritten; }

    CControlChannel& GetChannel() { return m_objChannel; }
    const CControlChannel& GetChannel() const { return m_objChannel; }

    void Read(std::uint64_t nAddress, std::span<std::byte> spanBuffer) override;
    void Write(std::uint64_t nAddress, std::span<const std::byte> spanBuffer) override;
    PORT_FACTS GetPortFacts() const override;
    /// Asked of the camera once, then kept.
    std::vector<URL_FACTS> GetUrls() override;

private:
    std::vector<URL_FACTS> ReadUrls();

    PORT_FACTS m_objFacts;
    std::atomic<void*> m_hPort = nullptr;
    std::atomic<bool> m_bPacketSizeWritten = false;
    std::mutex m_mtxUrls;  // held while the camera is asked for them; guards the one below
    std::vector<URL_FACTS> m_vecUrl;
    CControlChannel m_objChannel;  // last, since its thread uses the events of this object
};

}  // namespace producer
