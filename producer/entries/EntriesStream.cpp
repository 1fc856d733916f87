// The entries of data streams and their buffers.

#include "producer/entries/Entry.h"
#include "producer/stream/StreamModule.h"

using namespace producer;

namespace {

/// What moves images: the handle is checked, and the rest isn't built.
GC_ERROR RefuseImages(const char* pszEntry, DS_HANDLE hStream) {
    return RunInitialisedEntry(pszEntry, [&] {
        Require<CStreamModule>(hStream);
        throw CProducerError(GC_ERR_NOT_IMPLEMENTED, "this version of the producer doesn't receive images yet");
    });
}

}  // namespace

GC_ERROR DSClose(DS_HANDLE hStream) {
    return RunInitialisedEntry("DSClose", [&] { CloseModule<CStreamModule>(hStream); });
}

GC_ERROR DSGetInfo(DS_HANDLE hStream, STREAM_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return RunInitialisedEntry(
        "DSGetInfo", [&] { Require<CStreamModule>(hStream)->GetInfo(nCommand).Deliver(pType, pBuffer, pSize); });
}

GC_ERROR DSAnnounceBuffer(DS_HANDLE hStream, void*, size_t, void*, BUFFER_HANDLE*) {
    return RefuseImages("DSAnnounceBuffer", hStream);
}

GC_ERROR DSAllocAndAnnounceBuffer(DS_HANDLE hStream, size_t, void*, BUFFER_HANDLE*) {
    return RefuseImages("DSAllocAndAnnounceBuffer", hStream);
}

GC_ERROR DSFlushQueue(DS_HANDLE hStream, ACQ_QUEUE_TYPE) {
    return RefuseImages("DSFlushQueue", hStream);
}

GC_ERROR DSStartAcquisition(DS_HANDLE hStream, ACQ_START_FLAGS, uint64_t) {
    return RefuseImages("DSStartAcquisition", hStream);
}

GC_ERROR DSStopAcquisition(DS_HANDLE hStream, ACQ_STOP_FLAGS) {
    return RefuseImages("DSStopAcquisition", hStream);
}

GC_ERROR DSGetBufferID(DS_HANDLE hStream, uint32_t, BUFFER_HANDLE*) {
    return RefuseImages("DSGetBufferID", hStream);
}

GC_ERROR DSRevokeBuffer(DS_HANDLE hStream, BUFFER_HANDLE, void**, void**) {
    return RefuseImages("DSRevokeBuffer", hStream);
}

GC_ERROR DSQueueBuffer(DS_HANDLE hStream, BUFFER_HANDLE) {
    return RefuseImages("DSQueueBuffer", hStream);
}

GC_ERROR DSGetBufferInfo(DS_HANDLE hStream, BUFFER_HANDLE, BUFFER_INFO_CMD, INFO_DATATYPE*, void*, size_t*) {
    return RefuseImages("DSGetBufferInfo", hStream);
}

GC_ERROR DSGetBufferChunkData(DS_HANDLE hStream, BUFFER_HANDLE, SINGLE_CHUNK_DATA*, size_t*) {
    return RefuseImages("DSGetBufferChunkData", hStream);
}
