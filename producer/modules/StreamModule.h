#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "producer/modules/BufferPool.h"
#include "producer/modules/Module.h"
#include "producer/modules/RemotePort.h"
#include "producer/stream/Acquisition.h"

namespace producer {

/// The data stream of an open camera: its buffers, its acquisition, its port and its events.
///
/// Owned by the device module while it is open. Any thread may call any operation.
class CStreamModule : public CModule {
public:
    /// @param pRemotePort  the camera, for its stream channel's registers
    /// @param funClosed    called last in the close
    CStreamModule(std::shared_ptr<CRemotePort> pRemotePort, std::string strId, std::function<void()> funClosed);

    /// @throws CProducerError  GC_ERR_NOT_AVAILABLE for a command that isn't known, or whose answer isn't; for the
    /// packet
    ///                         size as AskPacketSize
    CInfoValue GetInfo(STREAM_INFO_CMD nCommand);

    /// @param pMemory  the consumer's, of nSize bytes; null to have it allocated
    /// @return the buffer's handle
    /// @throws CProducerError  as CBufferPool
    void* Announce(void* pMemory, std::size_t nSize, void* pUser);
    CBufferPool& GetPool() { return m_objPool; }

    /// Takes images from now on.
    /// @param nFrames  how many; GENTL_INFINITE for all
    /// @throws CProducerError  GC_ERR_RESOURCE_IN_USE while images are to come, GC_ERR_INVALID_BUFFER without a buffer,
    ///                         as CAcquisition
    void StartAcquisition(std::uint64_t nFrames);
    /// @param bKill  the buffers being filled go back to be filled; else they are put out as they are
    /// @throws CProducerError  GC_ERR_RESOURCE_IN_USE, when it doesn't run
    void StopAcquisition(bool bKill);

private:
    void AddAcquisitionFeatures();
    void AddLinkFeatures();
    void AddStatisticsFeatures();
    void AddCount(const char* pszName, const char* pszToolTip, std::function<CFeature::Number()> funGet);
    void RequireUnlocked() const;
    std::uint32_t GetPacketSize();
    [[nodiscard]] STREAM_STATISTICS GetStatistics() const;
    [[nodiscard]] std::uint64_t GetDropped() const;
    void EndAcquisition(bool bDeliver) noexcept;
    void DoClose() noexcept override;

    const std::shared_ptr<CRemotePort> m_pRemotePort;
    const std::function<void()> m_funClosed;
    CBufferPool m_objPool;

    std::atomic<bool> m_bParamsLocked = false;
    std::atomic<bool> m_bResend = true;
    std::atomic<bool> m_bProbe = true;
    std::atomic<std::int64_t> m_nReceiveBuffer{std::int64_t{64} << 20};                       // bytes
    std::atomic<std::int64_t> m_nBlockTimeout{REASSEMBLY_SETTINGS{}.BlockTimeout.count()};    // us
    std::atomic<std::int64_t> m_nResendTimeout{REASSEMBLY_SETTINGS{}.ResendTimeout.count()};  // us

    // Held while an acquisition is started and stopped; taken before m_mtxRunning.
    std::mutex m_mtxStart;
    mutable std::mutex m_mtxRunning;  // guards the following; no wait happens under it
    std::unique_ptr<CAcquisition> m_pAcquisition;
    ACQUISITION_FACTS m_objFacts;    // of the last acquisition
    STREAM_STATISTICS m_objEarlier;  // of the acquisitions before this one
    std::uint64_t m_nEarlierDropped = 0;
};

}  // namespace producer
