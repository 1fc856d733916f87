#include "TLClass/TLClassEvent/NativeNewBufferEvent.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <utility>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/Buffer.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "support/ScopedLock.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassEvent\\NativeNewBufferEvent";
constexpr const char* kGetBuffer = "CNativeNewBufferEvent::GetBuffer";
constexpr const char* kUpdateChunkData = "CNativeNewBufferEvent::__UpdateChunkData";

bool IsSameLayout(const std::vector<SINGLE_CHUNK_DATA>& vecLeft, const std::vector<SINGLE_CHUNK_DATA>& vecRight) {
    return vecLeft.size() == vecRight.size() &&
           (vecLeft.empty() ||
            std::memcmp(vecLeft.data(), vecRight.data(), vecLeft.size() * sizeof(SINGLE_CHUNK_DATA)) == 0);
}

}  // namespace

void CNativeNewBufferEvent::RegisterEventBufferHandle(DS_HANDLE hDataStream) {
    if (m_bRegistered) {
        return;
    }
    m_objGate.CloseAndEmpty([] {});  // without an event there is no wait to end
    try {
        CGCRegisterEventAgency objAgency(m_pLib, hDataStream, m_hEvent);
        m_hDataStream = hDataStream;
        m_bRegistered = true;
        Dismiss(objAgency);
    } catch (...) {
        m_objGate.Open();
        throw;
    }
    m_objGate.Open();
}

void CNativeNewBufferEvent::UnregisterEventBufferHandle() {
    if (!m_bRegistered) {
        return;
    }
    m_objGate.CloseAndEmpty([this] { EventKill(); });
    CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->GCUnregisterEvent(m_hDataStream, EVENT_NEW_BUFFER), m_pLib, kFile,
                                         __LINE__, "CNativeNewBufferEvent::UnregisterEventBufferHandle");
    m_hEvent = nullptr;
    m_hDataStream = nullptr;
    m_bRegistered = false;
    m_bKilled = false;
    m_bOldKill = false;
    m_objGate.Open();
}

void CNativeNewBufferEvent::SetInitInfo(TLClass::IBufferInitInfo* pInitInfo, GenApi_3_0::CChunkAdapter* pChunkAdapter) {
    if (m_bInitInfoSet) {
        return;
    }
    TLClass::CopyBufferInitInfo(*pInitInfo, m_objInitInfo);
    m_pChunkAdapter = pChunkAdapter;
    m_vecChunkData.clear();
    m_bOldKill = std::exchange(m_bKilled, false);
    m_bInitInfoSet = true;
}

void CNativeNewBufferEvent::ClearInitInfo() {
    if (!m_bInitInfoSet) {
        return;
    }
    m_objGate.CloseAndEmpty([this] { EventKill(); });
    m_bInitInfoSet = false;
    m_pChunkAdapter = nullptr;
    m_objInitInfo = TLClass::CBufferInitInfo();
    m_objGate.Open();
}

void CNativeNewBufferEvent::SetBuffers(std::vector<const void*> vecBuffer) {
    std::sort(vecBuffer.begin(), vecBuffer.end(), std::less<>());
    const CScopedLock objLock(m_csBuffer);
    m_vecBuffer.swap(vecBuffer);
}

bool CNativeNewBufferEvent::__IsBuffer(const void* pUserPointer) const {
    const CScopedLock objLock(m_csBuffer);
    return std::binary_search(m_vecBuffer.begin(), m_vecBuffer.end(), pUserPointer, std::less<>());
}

void CNativeNewBufferEvent::EventKill() {
    m_bOldKill = false;  // an abort from now on is meant
    m_bKilled = true;
    CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->EventKill(m_hEvent), m_pLib, kFile, __LINE__,
                                         "CNativeNewBufferEvent::EventKill");
}

void CNativeNewBufferEvent::LetCallersOut() {
    m_objGate.CloseAndEmpty([this] { EventKill(); });
    SetBuffers({});  // not before: a caller who has just got a frame isn't to blame
    m_objGate.Open();
}

CBuffer* CNativeNewBufferEvent::GetBuffer(BUFFER_MODULE_INFO* pInformation, std::uint32_t nTimeoutMs, bool bThrow) {
    const CWaitGate::CPass objPass(m_objGate);
    if (!objPass.IsInside()) {
        if (bThrow) {
            throw CUnexpectedError(GC_ERR_ABORT, "The acquisition is being stopped", kFile, __LINE__, kGetBuffer);
        }
        return nullptr;
    }
    CBuffer* pBuffer = nullptr;
    BUFFER_MODULE_INFO objInformation;
    const GC_ERROR nStatus = TakeBuffer(pBuffer, objInformation, nTimeoutMs);
    if (bThrow) {
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nStatus, m_pLib, kFile, __LINE__, kGetBuffer);
    }
    if (pBuffer != nullptr && pInformation != nullptr) {
        *pInformation = objInformation;
    }
    return pBuffer;
}

GC_ERROR CNativeNewBufferEvent::TakeBuffer(CBuffer*& pBuffer, BUFFER_MODULE_INFO& objInformation,
                                           std::uint32_t nTimeoutMs) {
    EVENT_NEW_BUFFER_DATA objData{};
    const GC_ERROR nStatus = __WaitForFrame(objData, nTimeoutMs);
    if (nStatus != GC_ERR_SUCCESS) {
        return nStatus;
    }
    if (objData.pUserPointer == nullptr) {
        throw CUnexpectedError(-1, "pUserPointer should not be NULL", kFile, __LINE__, kGetBuffer);
    }
    if (!__IsBuffer(objData.pUserPointer)) {
        throw CUnexpectedError(-1, "pUserPointer is no buffer of the acquisition", kFile, __LINE__, kGetBuffer);
    }
    pBuffer = static_cast<CBuffer*>(objData.pUserPointer);
    objInformation = pBuffer->GetBufferInfo();
    __ApplyInitInfo(objInformation);
    return nStatus;
}

GC_ERROR CNativeNewBufferEvent::__WaitForFrame(EVENT_NEW_BUFFER_DATA& objData, std::uint32_t nTimeoutMs) {
    for (;;) {
        objData = {};
        std::size_t nSize = sizeof(objData);
        const GC_ERROR nStatus = m_pLib->EventGetData(m_hEvent, &objData, &nSize, nTimeoutMs);
        // A producer remembers a kill that met no wait, as that of a stop does when nobody polls just then. It was
        // meant for the acquisition before, not for the first wait of this one.
        const bool bOldKill = m_bOldKill.load(std::memory_order_relaxed) && m_bOldKill.exchange(false);
        if (nStatus != GC_ERR_ABORT || !bOldKill) {
            return nStatus;
        }
    }
}

void CNativeNewBufferEvent::__ApplyInitInfo(BUFFER_MODULE_INFO& objInformation) const {
    if (!m_bInitInfoSet) {
        return;
    }
    objInformation.InitPayloadSize = m_objInitInfo.GetPayloadSize();
    objInformation.InitPayloadSizeValid = true;
    if (m_objInitInfo.GetOverride() == 0) {
        return;
    }
    objInformation.Width = m_objInitInfo.GetWidth();
    objInformation.Height = m_objInitInfo.GetHeight();
    objInformation.XOffset = m_objInitInfo.GetOffsetX();
    objInformation.YOffset = m_objInitInfo.GetOffsetY();
    objInformation.PixelFormat = m_objInitInfo.GetPixelFormat();
    objInformation.WidthValid = true;
    objInformation.HeightValid = true;
    objInformation.XOffsetValid = true;
    objInformation.YOffsetValid = true;
    objInformation.PixelFormatValid = true;
}

void CNativeNewBufferEvent::__UpdateChunkData(CBuffer* pBuffer) {
    if (m_pChunkAdapter == nullptr) {
        throw CUnexpectedError(-1, "Invalid Chunk Adapter", kFile, __LINE__, kUpdateChunkData);
    }
    std::vector<SINGLE_CHUNK_DATA> vecChunkData = pBuffer->GetChunkData();
    if (IsSameLayout(vecChunkData, m_vecChunkData)) {
        pBuffer->UpdateChunkData(m_pChunkAdapter);
        return;
    }
    if (pBuffer->IsChunkDataInvalid(vecChunkData)) {
        throw CUnexpectedError(-1, "Invalid chunk data information", kFile, __LINE__, kUpdateChunkData);
    }
    m_vecChunkData.clear();  // an attachment that fails leaves none
    pBuffer->AttachChunkData(m_pChunkAdapter, vecChunkData);
    m_vecChunkData = std::move(vecChunkData);
}
