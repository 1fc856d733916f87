// The entries of data streams and their buffers.

#include <algorithm>
#include <vector>

#include "producer/entries/Entry.h"
#include "producer/modules/StreamModule.h"

using namespace producer;

GC_ERROR DSClose(DS_HANDLE hStream) {
    return RunInitialisedEntry("DSClose", [&] { CloseModule<CStreamModule>(hStream); });
}

GC_ERROR DSGetInfo(DS_HANDLE hStream, STREAM_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("DSGetInfo", [&] {
        const auto pStream = Require<CStreamModule>(hStream);
        RequireOut(pSize, "the size");  // before the camera is asked
        pStream->GetInfo(nCommand).Deliver(pType, pBuffer, pSize);
    });
}

GC_ERROR DSAnnounceBuffer(DS_HANDLE hStream, void* pBuffer, size_t nSize, void* pUserPointer, BUFFER_HANDLE* phBuffer) {
    return RunInitialisedEntry("DSAnnounceBuffer", [&] {
        const auto pStream = Require<CStreamModule>(hStream);
        BUFFER_HANDLE& hBuffer = RequireOut(phBuffer, "the buffer's handle");
        hBuffer = pStream->Announce(&RequireOut(static_cast<std::byte*>(pBuffer), "the buffer"), nSize, pUserPointer);
    });
}

GC_ERROR DSAllocAndAnnounceBuffer(DS_HANDLE hStream, size_t nSize, void* pUserPointer, BUFFER_HANDLE* phBuffer) {
    return RunInitialisedEntry("DSAllocAndAnnounceBuffer", [&] {
        const auto pStream = Require<CStreamModule>(hStream);
        BUFFER_HANDLE& hBuffer = RequireOut(phBuffer, "the buffer's handle");
        hBuffer = pStream->Announce(nullptr, nSize, pUserPointer);
    });
}

GC_ERROR DSFlushQueue(DS_HANDLE hStream, ACQ_QUEUE_TYPE nOperation) {
    return RunInitialisedEntry("DSFlushQueue", [&] { Require<CStreamModule>(hStream)->GetPool().Flush(nOperation); });
}

GC_ERROR DSStartAcquisition(DS_HANDLE hStream, ACQ_START_FLAGS nFlags, uint64_t nFrames) {
    return RunInitialisedEntry("DSStartAcquisition", [&] {
        const auto pStream = Require<CStreamModule>(hStream);
        if (nFlags != ACQ_START_FLAGS_DEFAULT) {
            throw CProducerError(GC_ERR_INVALID_PARAMETER, "there is no start flag " + std::to_string(nFlags));
        }
        pStream->StartAcquisition(nFrames);
    });
}

GC_ERROR DSStopAcquisition(DS_HANDLE hStream, ACQ_STOP_FLAGS nFlags) {
    return RunInitialisedEntry("DSStopAcquisition", [&] {
        const auto pStream = Require<CStreamModule>(hStream);
        if (nFlags != ACQ_STOP_FLAGS_DEFAULT && nFlags != ACQ_STOP_FLAGS_KILL) {
            throw CProducerError(GC_ERR_INVALID_PARAMETER, "there is no stop flag " + std::to_string(nFlags));
        }
        pStream->StopAcquisition(nFlags == ACQ_STOP_FLAGS_KILL);
    });
}

GC_ERROR DSGetBufferID(DS_HANDLE hStream, uint32_t nIndex, BUFFER_HANDLE* phBuffer) {
    return RunInitialisedEntry("DSGetBufferID", [&] {
        const auto pStream = Require<CStreamModule>(hStream);
        RequireOut(phBuffer, "the buffer's handle") = pStream->GetPool().GetHandle(nIndex);
    });
}

GC_ERROR DSRevokeBuffer(DS_HANDLE hStream, BUFFER_HANDLE hBuffer, void** ppBuffer, void** ppUserPointer) {
    return RunInitialisedEntry("DSRevokeBuffer", [&] {
        const auto pBuffer = Require<CStreamModule>(hStream)->GetPool().Revoke(hBuffer);
        if (ppBuffer != nullptr) {
            *ppBuffer = pBuffer->IsOwnMemory() ? nullptr : pBuffer->GetMemory().data();
        }
        if (ppUserPointer != nullptr) {
            *ppUserPointer = pBuffer->GetUserPointer();
        }
    });
}

GC_ERROR DSQueueBuffer(DS_HANDLE hStream, BUFFER_HANDLE hBuffer) {
    return RunInitialisedEntry("DSQueueBuffer", [&] { Require<CStreamModule>(hStream)->GetPool().Queue(hBuffer); });
}

GC_ERROR DSGetBufferInfo(DS_HANDLE hStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD nCommand, INFO_DATATYPE* pType,
                         void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry("DSGetBufferInfo", [&] {
        Require<CStreamModule>(hStream)->GetPool().GetInfo(hBuffer, nCommand).Deliver(pType, pBuffer, pSize);
    });
}

GC_ERROR DSGetBufferChunkData(DS_HANDLE hStream, BUFFER_HANDLE hBuffer, SINGLE_CHUNK_DATA* pChunks, size_t* pCount) {
    return RunInitialisedEntry("DSGetBufferChunkData", [&] {
        const auto pStream = Require<CStreamModule>(hStream);
        std::size_t& nCount = RequireOut(pCount, "the number of chunks");
        const std::vector<SINGLE_CHUNK_DATA> vecChunk = pStream->GetPool().GetChunks(hBuffer);
        if (pChunks != nullptr && nCount < vecChunk.size()) {
            throw CProducerError(GC_ERR_BUFFER_TOO_SMALL, "the buffer holds " + std::to_string(vecChunk.size()) +
                                                              " chunks, there is room for " + std::to_string(nCount));
        }
        nCount = vecChunk.size();
        if (pChunks != nullptr) {
            std::ranges::copy(vecChunk, pChunks);
        }
    });
}
