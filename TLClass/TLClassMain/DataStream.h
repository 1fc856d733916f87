#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "GenApi/ChunkAdapterGeneric.h"
#include "TLClass/TLClassEvent/NewBufferEvent.h"
#include "TLClass/TLClassInfo/DSModuleInfo.h"
#include "TLClass/TLClassMain/Buffer.h"
#include "TLClass/TLClassMain/IDataStream.h"

/// The most buffers of one acquisition, whoever asks for them.
inline constexpr std::uint64_t kMaxBufferNumber = 65536;

/// A data stream on the producer: its buffers, and the start and stop of its acquisition.
///
/// Owned by its device, which makes it closed when it opens and closes it with itself; the destructor closes nothing.
/// Opening, closing, starting and stopping exclude each other and wait for the end of the event thread: so a callback
/// of a filled buffer must call none of them. Everything else may be called from any thread; what a caller has got
/// hold of (a buffer, the feature control) is gone once the stream is stopped or closed.
class CDataStream final : public IDataStream {
public:
    /// @param pDevice          the parent; kept
    /// @param strDataStreamID  by which the stream is opened
    /// @throws CInvalidParameterError  the parent is empty: it has left its interface's list
    CDataStream(CGenTLLib* pLib, boost::shared_ptr<IDevice> pDevice, DEV_HANDLE hDevice, std::string strDataStreamID);

    void DoOpenDataStream() override;
    void DoCloseDataStream() override;
    bool IsOpened() const override { return m_bOpened; }
    bool IsAcqusition() const override { return m_bAcquisition; }

    void RegisterNewBufferCallback(INewBufferCallback* pCallback) override;
    void UnregisterNewBufferCallback() override;
    bool IsNewBufferCallbackRegistered() const override;

    void DoFlushAllToInput() override;
    CBuffer* GetBuffer(BUFFER_MODULE_INFO* pInformation, std::uint32_t nTimeoutMs, bool bThrow) override;

    void DoStartDataStreamAcqusition(TLClass::IBufferInitInfo* pInitInfo) override;
    void StopGetNewBuffer() override;
    void StopTLAcquisition() override;

    boost::shared_ptr<IDevice> GetDevice() const override { return m_pDevice; }
    std::uint32_t GetNewBufferThreadId() const override;
    CNativeNewBufferEvent* GetNativeNewBufferEvent() override;
    DS_HANDLE GetHandle() const override { return m_hDataStream; }
    CGenTLLib* GetLib() const override { return m_pLib; }

    void SetAcqusitionBufferNumber(std::uint64_t nNumber) override;
    std::uint64_t GetAcqusitionBufferNumber() const override { return m_nBufferNumber; }

    std::uint32_t DoGetOptimalPacketSize() override;

    void ForbidOpening() override;

private:
    class CAttachChunkNodeMapAgency;
    class CDevOpenDataStreamAgency;
    class CRegisterNewBufferAgency;
    class CStreamTLParamsLockedAgency;
    class CStartNewBufferAgency;
    class CAnnounceBuffersAgency;
    class CDSFlushQueueAgency;
    class CDSStartAcquisitionAgency;

    GenApi_3_0::INodeMap* __GetRemoteNodeMap() const;
    void __AllocateBuffers(std::uint64_t nPayloadSize);
    std::uint64_t __GetBufferNumber(std::uint64_t nPayloadSize, const DS_MODULE_INFO& objInformation) const;
    static std::uint64_t __GetAutoBufferNumber(std::uint64_t nPayloadSize);
    static std::uint64_t __AlignBufferSize(std::uint64_t nPayloadSize, const DS_MODULE_INFO& objInformation);
    void __AnnounceBuffers();
    void __RevokeBuffers() noexcept;
    void __FreeBuffers() noexcept;
    void __StopGetNewBuffer();
    void __StopTLAcquisition();
    void __DetachChunkNodeMap() noexcept;
    static void __LogCurrentException(int nLine, const char* pFunction) noexcept;

    const boost::shared_ptr<IDevice> m_pDevice;
    const DEV_HANDLE m_hDevice;
    std::atomic<DS_HANDLE> m_hDataStream = nullptr;
    const std::string m_strDataStreamID;
    std::atomic<bool> m_bOpened = false;
    bool m_bMayOpen = true;                             // guarded by m_csDataStream
    std::vector<std::unique_ptr<CBuffer>> m_vecBuffer;  // guarded by m_csDataStream; kept from one start to the next
    std::atomic<std::uint64_t> m_nBufferNumber = 0;     // as the user asked; 0 for automatic
    CNewBufferEvent m_objNewBufferEvent;
    std::unique_ptr<GenApi_3_0::CChunkAdapterGeneric> m_pChunkAdapter;  // without a node map while closed
    std::atomic<bool> m_bAcquisition = false;
    CCriticalSection
        m_csDataStream;  // held for a whole opening, closing, start or stop; m_csRecords is taken behind it
};
