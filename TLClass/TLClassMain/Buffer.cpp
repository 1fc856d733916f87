#include "TLClass/TLClassMain/Buffer.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <string>

#include "GenApi/ChunkAdapter.h"
#include "TLClass/TLClassInfo/BufferInformationFromHandle.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "support/Text.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\Buffer";

}  // namespace

CBuffer::~CBuffer() {
    // The producer may write to the memory until then.
    RevokeBuffer();
}

void CBuffer::AllocateBuffer(std::uint64_t nSize) {
    constexpr const char* kFunction = "CBuffer::AllocateBuffer";
    if (nSize == 0) {
        throw CUnexpectedError(-1, "Can not allocate zero bytes memory", kFile, __LINE__, kFunction);
    }
    if (nSize > kMaxBufferSize) {
        throw CUnexpectedError(
            -1,
            "A buffer of " + std::to_string(nSize) + " bytes is asked for, more than " + std::to_string(kMaxBufferSize),
            kFile, __LINE__, kFunction);
    }
    if (nSize == m_nSize) {
        return;
    }
    try {
        m_pBuffer = std::make_unique_for_overwrite<std::uint8_t[]>(nSize);
        m_nSize = nSize;
    } catch (const std::exception& objException) {
        throw CUnexpectedError(-1, objException.what(), kFile, __LINE__, kFunction);
    }
}

void CBuffer::AnnounceBuffer() {
    constexpr const char* kFunction = "CBuffer::AnnounceBuffer";
    if (m_hBuffer != nullptr) {
        return;
    }
    if (m_nSize == 0) {
        throw CUnexpectedError(-1, "Can not announce a buffer before allocating it", kFile, __LINE__, kFunction);
    }
    // A producer that refuses and gives a handle all the same has it taken back by the next revocation.
    BUFFER_HANDLE hBuffer = nullptr;
    const GC_ERROR nResult = m_pLib->DSAnnounceBuffer(m_hDataStream, m_pBuffer.get(), m_nSize, this, &hBuffer);
    m_hBuffer = hBuffer;
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, kFunction);
}

void CBuffer::RevokeBuffer() noexcept {
    const BUFFER_HANDLE hBuffer = m_hBuffer;
    if (hBuffer == nullptr) {
        return;
    }
    const GC_ERROR nResult = m_pLib->DSRevokeBuffer(m_hDataStream, hBuffer, nullptr, nullptr);
    m_hBuffer = nullptr;
    CGenTLErrorCodeVerifier::LogIfFailed(nResult, m_pLib, kFile, __LINE__, "CBuffer::RevokeBuffer");
}

void CBuffer::QueueBuffer() {
    constexpr const char* kFunction = "CBuffer::QueueBuffer";
    const BUFFER_HANDLE hBuffer = m_hBuffer;
    if (hBuffer == nullptr) {
        throw CUnexpectedError(-1, "Can not queue a buffer before announcing it", kFile, __LINE__, kFunction);
    }
    const GC_ERROR nResult = m_pLib->DSQueueBuffer(m_hDataStream, hBuffer);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, kFunction);
}

BUFFER_MODULE_INFO CBuffer::GetBufferInfo() const {
    return CBufferInformationFromHandle(m_pLib, m_hDataStream, m_hBuffer).GetInformation();
}

std::vector<SINGLE_CHUNK_DATA> CBuffer::GetChunkData() const {
    return __GetChunkDataContent(__GetChunkDataSize());
}

std::size_t CBuffer::__GetChunkDataSize() const {
    constexpr const char* kFunction = "CBuffer::__GetChunkDataSize";
    std::size_t nCount = 0;
    const GC_ERROR nResult = m_pLib->DSGetBufferChunkData(m_hDataStream, m_hBuffer, nullptr, &nCount);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, kFunction);
    if (nCount > kMaxChunkCount) {
        throw CUnexpectedError(
            -1, Format("The TL library counts %zu chunks in a buffer, more than %zu", nCount, kMaxChunkCount), kFile,
            __LINE__, kFunction);
    }
    return nCount;
}

std::vector<SINGLE_CHUNK_DATA> CBuffer::__GetChunkDataContent(std::size_t nCount) const {
    std::vector<SINGLE_CHUNK_DATA> vecChunkData(nCount);
    if (nCount == 0) {
        return vecChunkData;
    }
    const GC_ERROR nResult = m_pLib->DSGetBufferChunkData(m_hDataStream, m_hBuffer, vecChunkData.data(), &nCount);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, "CBuffer::__GetChunkDataContent");
    // The count that this call left isn't looked at: there are as many entries as there was room for.
    return vecChunkData;
}

bool CBuffer::IsChunkDataInvalid(const std::vector<SINGLE_CHUNK_DATA>& vecChunkData) const {
    // Camera and producer choose both numbers: their sum may not fit into one, and a negative offset counts as a huge
    // one.
    return std::any_of(vecChunkData.begin(), vecChunkData.end(), [this](const SINGLE_CHUNK_DATA& objChunk) {
        return objChunk.ChunkLength > m_nSize ||
               static_cast<std::uint64_t>(objChunk.ChunkOffset) > m_nSize - objChunk.ChunkLength;
    });
}

void CBuffer::AttachChunkData(GenApi_3_0::CChunkAdapter* pChunkAdapter,
                              const std::vector<SINGLE_CHUNK_DATA>& vecChunkData) const {
    std::vector<GenApi_3_0::SingleChunkData_t> vecLayout;
    vecLayout.reserve(vecChunkData.size());
    std::transform(
        vecChunkData.begin(), vecChunkData.end(), std::back_inserter(vecLayout), [](const SINGLE_CHUNK_DATA& objChunk) {
            return GenApi_3_0::SingleChunkData_t{objChunk.ChunkID, objChunk.ChunkOffset, objChunk.ChunkLength};
        });
    // Memory of that size has been allocated: it fits a signed number.
    pChunkAdapter->AttachBuffer(m_pBuffer.get(), vecLayout.data(), static_cast<std::int64_t>(vecLayout.size()), nullptr,
                                static_cast<std::int64_t>(m_nSize));
}

void CBuffer::UpdateChunkData(GenApi_3_0::CChunkAdapter* pChunkAdapter) const {
    pChunkAdapter->UpdateBuffer(m_pBuffer.get());
}
