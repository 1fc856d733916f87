#include <algorithm>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassInfo/ZrInformationAgency.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/Agency.h"
#include "TLClass/TLClassMain/DataStream.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "TLClass/TLClassMain/IBufferInitInfo.h"
#include "support/Text.h"
#include "support/ZrException.h"

// The acquisition of a data stream: how many buffers of which size, starting and stopping.

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\DataStream";

// While it is 1 the producer lets nobody change what frames look like.
constexpr const char* kTLParamsLocked = "TLParamsLocked";

void SetTLParamsLocked(IFeatureControl* pFeatureControl, std::int64_t nLocked) {
    if (pFeatureControl->IsFeatureExist(kTLParamsLocked)) {
        pFeatureControl->DoSetInt(kTLParamsLocked, nLocked);
    }
}

// How many buffers an automatic acquisition has: as many as fit the first amount of memory, but no more than the
// ceiling; the floor if that is too few; and the second floor if the first one needs more than the second amount.
constexpr std::uint64_t kWantedBytes = std::uint64_t{8} << 20;
constexpr std::uint64_t kCeilingNumber = 124;
constexpr std::uint64_t kFloorNumber = 10;
constexpr std::uint64_t kFloorBytes = std::uint64_t{128} << 20;
constexpr std::uint64_t kLastFloorNumber = 4;

}  // namespace

/// Locks what the frames look like.
class CDataStream::CStreamTLParamsLockedAgency : public CAgency {
public:
    explicit CStreamTLParamsLockedAgency(IFeatureControl* pFeatureControl) : m_pFeatureControl(pFeatureControl) {
        try {
            SetTLParamsLocked(m_pFeatureControl, 1);
        } catch (...) {
            // A callback may have failed behind the write.
            __Unlock();
            throw;
        }
    }
    ~CStreamTLParamsLockedAgency() {
        if (m_bArmed) {
            __Unlock();
        }
    }

private:
    void __Unlock() noexcept {
        try {
            SetTLParamsLocked(m_pFeatureControl, 0);
        } catch (...) {
            __LogCurrentException(__LINE__, "CDataStream::CStreamTLParamsLockedAgency::~CStreamTLParamsLockedAgency");
        }
    }

    IFeatureControl* m_pFeatureControl;
};

/// Starts the thread that takes frames, if there is a callback for them.
class CDataStream::CStartNewBufferAgency : public CAgency {
public:
    CStartNewBufferAgency(CNewBufferEvent& objEvent, DS_HANDLE hDataStream, TLClass::IBufferInitInfo* pInitInfo,
                          GenApi_3_0::CChunkAdapter* pChunkAdapter)
        : m_objEvent(objEvent) {
        m_objEvent.StartGetNewBuffer(hDataStream, pInitInfo, pChunkAdapter);
    }
    ~CStartNewBufferAgency() {
        if (m_bArmed) {
            m_objEvent.StopGetNewBuffer();
        }
    }

private:
    CNewBufferEvent& m_objEvent;
};

/// Makes all buffers known to the producer.
class CDataStream::CAnnounceBuffersAgency : public CAgency {
public:
    explicit CAnnounceBuffersAgency(CDataStream& objStream) : m_objStream(objStream) {
        try {
            m_objStream.__AnnounceBuffers();
        } catch (...) {
            // No destructor runs for an agency whose constructor failed, and some of the buffers are announced.
            m_objStream.__RevokeBuffers();
            throw;
        }
    }
    ~CAnnounceBuffersAgency() {
        if (m_bArmed) {
            m_objStream.__RevokeBuffers();
        }
    }

private:
    CDataStream& m_objStream;
};

/// Gives all buffers to the producer.
class CDataStream::CDSFlushQueueAgency : public CAgency {
public:
    CDSFlushQueueAgency(CGenTLLib* pLib, DS_HANDLE hDataStream) : m_pLib(pLib), m_hDataStream(hDataStream) {
        const GC_ERROR nResult = m_pLib->DSFlushQueue(m_hDataStream, ACQ_QUEUE_ALL_TO_INPUT);
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__,
                                                        "CDataStream::CDSFlushQueueAgency::CDSFlushQueueAgency");
    }
    ~CDSFlushQueueAgency() {
        if (m_bArmed) {
            const GC_ERROR nResult = m_pLib->DSFlushQueue(m_hDataStream, ACQ_QUEUE_ALL_DISCARD);
            CGenTLErrorCodeVerifier::LogIfFailed(nResult, m_pLib, kFile, __LINE__,
                                                 "CDataStream::CDSFlushQueueAgency::~CDSFlushQueueAgency");
        }
    }

private:
    CGenTLLib* m_pLib;
    DS_HANDLE m_hDataStream;
};

/// Starts the acquisition in the producer, without a limit.
class CDataStream::CDSStartAcquisitionAgency : public CAgency {
public:
    CDSStartAcquisitionAgency(CGenTLLib* pLib, DS_HANDLE hDataStream) : m_pLib(pLib), m_hDataStream(hDataStream) {
        const GC_ERROR nResult = m_pLib->DSStartAcquisition(m_hDataStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE);
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(
            nResult, m_pLib, kFile, __LINE__, "CDataStream::CDSStartAcquisitionAgency::CDSStartAcquisitionAgency");
    }
    ~CDSStartAcquisitionAgency() {
        if (m_bArmed) {
            const GC_ERROR nResult = m_pLib->DSStopAcquisition(m_hDataStream, kStopFlags);
            CGenTLErrorCodeVerifier::LogIfFailed(nResult, m_pLib, kFile, __LINE__,
                                                 "CDataStream::CDSStartAcquisitionAgency::~CDSStartAcquisitionAgency");
        }
    }

private:
    static constexpr ACQ_STOP_FLAGS kStopFlags = ACQ_STOP_FLAGS_DEFAULT;

    CGenTLLib* m_pLib;
    DS_HANDLE m_hDataStream;
};

void CDataStream::DoStartDataStreamAcqusition(TLClass::IBufferInitInfo* pInitInfo) {
    const CScopedLock objLock(m_csDataStream);
    if (m_bAcquisition) {
        return;
    }
    if (!m_bOpened) {
        throw CUnexpectedError(-1, "Can not start stream acquisition before open it", kFile, __LINE__,
                               "CDataStream::DoStartDataStreamAcqusition");
    }
    // The thread runs before the first buffer is announced, and all buffers are queued before the producer starts.
    CStreamTLParamsLockedAgency objLocked(GetFeatureControl());
    __AllocateBuffers(pInitInfo->GetPayloadSize());
    CStartNewBufferAgency objStartEvent(m_objNewBufferEvent, m_hDataStream, pInitInfo, m_pChunkAdapter.get());
    CAnnounceBuffersAgency objAnnounce(*this);
    CDSFlushQueueAgency objQueue(m_pLib, m_hDataStream);
    CDSStartAcquisitionAgency objStart(m_pLib, m_hDataStream);
    m_bAcquisition = true;
    Dismiss(objStart);
    Dismiss(objQueue);
    Dismiss(objAnnounce);
    Dismiss(objStartEvent);
    Dismiss(objLocked);
}

void CDataStream::StopGetNewBuffer() {
    const CScopedLock objLock(m_csDataStream);
    __StopGetNewBuffer();
}

void CDataStream::__StopGetNewBuffer() {
    if (m_bAcquisition) {
        m_objNewBufferEvent.StopGetNewBuffer();
    }
}

void CDataStream::StopTLAcquisition() {
    const CScopedLock objLock(m_csDataStream);
    __StopTLAcquisition();
}

void CDataStream::__StopTLAcquisition() {
    constexpr const char* kFunction = "CDataStream::__StopTLAcquisition";
    if (!m_bAcquisition) {
        return;
    }
    // A caller who has left this out would have buffers revoked under the thread's hands. Else it does nothing.
    m_objNewBufferEvent.StopGetNewBuffer();
    try {
        GC_ERROR nResult = m_pLib->DSStopAcquisition(m_hDataStream, ACQ_STOP_FLAGS_KILL);
        CGenTLErrorCodeVerifier::LogIfFailed(nResult, m_pLib, kFile, __LINE__, kFunction);
        nResult = m_pLib->DSFlushQueue(m_hDataStream, ACQ_QUEUE_ALL_DISCARD);
        CGenTLErrorCodeVerifier::LogIfFailed(nResult, m_pLib, kFile, __LINE__, kFunction);
        __RevokeBuffers();
        SetTLParamsLocked(GetFeatureControl(), 0);
    } catch (...) {
        __LogCurrentException(__LINE__, kFunction);
    }
    m_bAcquisition = false;
}

void CDataStream::DoFlushAllToInput() {
    constexpr const char* kFunction = "CDataStream::DoFlushAllToInput";
    if (!m_bOpened) {
        throw CUnexpectedError(-1, "The data stream is closed", kFile, __LINE__, kFunction);
    }
    const GC_ERROR nResult = m_pLib->DSFlushQueue(m_hDataStream, ACQ_QUEUE_ALL_TO_INPUT);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, kFunction);
}

void CDataStream::SetAcqusitionBufferNumber(std::uint64_t nNumber) {
    const DS_MODULE_INFO objInformation = CZrInformationAgency::GetDataStreamInformation(m_pLib, m_hDataStream);
    if (objInformation.BufAnnounceMinValid && nNumber < objInformation.BufAnnounceMin) {
        throw COutOfRangeError("Acquisition buffers is less than the minimum", kFile, __LINE__,
                               "CDataStream::SetAcqusitionBufferNumber");
    }
    m_nBufferNumber = nNumber;
}

// The buffers of the last acquisition are used again, and stay for the next one even if this one doesn't start.
void CDataStream::__AllocateBuffers(std::uint64_t nPayloadSize) {
    // The chunk features may still stand on the memory of one of them.
    m_pChunkAdapter->DetachBuffer();
    const DS_MODULE_INFO objInformation = CZrInformationAgency::GetDataStreamInformation(m_pLib, m_hDataStream);
    const std::uint64_t nNumber = __GetBufferNumber(nPayloadSize, objInformation);
    while (m_vecBuffer.size() < nNumber) {
        m_vecBuffer.push_back(std::make_unique<CBuffer>(m_pLib, m_hDataStream));
    }
    m_vecBuffer.resize(nNumber);
    const std::uint64_t nSize = __AlignBufferSize(nPayloadSize, objInformation);
    for (const std::unique_ptr<CBuffer>& pBuffer : m_vecBuffer) {
        pBuffer->AllocateBuffer(nSize);
    }
}

std::uint64_t CDataStream::__GetBufferNumber(std::uint64_t nPayloadSize, const DS_MODULE_INFO& objInformation) const {
    constexpr const char* kFunction = "CDataStream::__GetBufferNumber";
    if (nPayloadSize == 0) {
        throw CUnexpectedError(-1, "Current PayloadSize is 0", kFile, __LINE__, kFunction);
    }
    std::uint64_t nNumber = m_nBufferNumber;
    if (nNumber == 0) {
        nNumber = __GetAutoBufferNumber(nPayloadSize);
    }
    if (objInformation.BufAnnounceMaxValid) {
        nNumber = std::min<std::uint64_t>(nNumber, objInformation.BufAnnounceMax);
    }
    // The least number wins where the two cross.
    if (objInformation.BufAnnounceMinValid) {
        nNumber = std::max<std::uint64_t>(nNumber, objInformation.BufAnnounceMin);
    }
    if (nNumber > kMaxBufferNumber) {
        throw CUnexpectedError(-1,
                               "An acquisition of " + std::to_string(nNumber) + " buffers is asked for, more than " +
                                   std::to_string(kMaxBufferNumber),
                               kFile, __LINE__, kFunction);
    }
    return nNumber;
}

std::uint64_t CDataStream::__GetAutoBufferNumber(std::uint64_t nPayloadSize) {
    const std::uint64_t nFitting = std::min(kWantedBytes / nPayloadSize, kCeilingNumber);
    if (nFitting >= kFloorNumber) {
        return nFitting;
    }
    return nPayloadSize <= kFloorBytes / kFloorNumber ? kFloorNumber : kLastFloorNumber;
}

std::uint64_t CDataStream::__AlignBufferSize(std::uint64_t nPayloadSize, const DS_MODULE_INFO& objInformation) {
    if (!objInformation.BufAlignmentValid || objInformation.BufAlignment == 0) {
        return nPayloadSize;
    }
    const std::uint64_t nBeyond = nPayloadSize % objInformation.BufAlignment;
    if (nBeyond == 0) {
        return nPayloadSize;
    }
    const std::uint64_t nMissing = objInformation.BufAlignment - nBeyond;
    if (nMissing > std::numeric_limits<std::uint64_t>::max() - nPayloadSize) {
        throw CUnexpectedError(-1,
                               "No buffer of " + std::to_string(nPayloadSize) + " bytes or more is a multiple of " +
                                   std::to_string(objInformation.BufAlignment),
                               kFile, __LINE__, "CDataStream::__AlignBufferSize");
    }
    return nPayloadSize + nMissing;
}

void CDataStream::__AnnounceBuffers() {
    std::vector<const void*> vecUserPointer;
    for (const std::unique_ptr<CBuffer>& pBuffer : m_vecBuffer) {
        vecUserPointer.push_back(pBuffer.get());
    }
    m_objNewBufferEvent.GetNativeEvent()->SetBuffers(std::move(vecUserPointer));
    for (const std::unique_ptr<CBuffer>& pBuffer : m_vecBuffer) {
        pBuffer->AnnounceBuffer();
    }
}

// No queue of the producer has a buffer any more. A caller who polls may just have taken one, though.
void CDataStream::__RevokeBuffers() noexcept {
    m_objNewBufferEvent.GetNativeEvent()->LetCallersOut();
    for (const std::unique_ptr<CBuffer>& pBuffer : m_vecBuffer) {
        pBuffer->RevokeBuffer();
    }
}

void CDataStream::__FreeBuffers() noexcept {
    try {
        m_pChunkAdapter->DetachBuffer();
        while (!m_vecBuffer.empty()) {
            m_vecBuffer.pop_back();
        }
    } catch (...) {
        __LogCurrentException(__LINE__, "CDataStream::__FreeBuffers");
    }
}
