// The device module and the data stream module with its buffers.

#include "tests/producer_double/Exports.h"

using namespace ProducerDouble;

extern "C" {

GC_ERROR DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemotePort) {
    return CCall(__func__, hDevice).On<CDevice>([&](auto& m) { Required(phRemotePort) = m.RemotePort()->Handle(); });
}

GC_ERROR DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* pCount) {
    return CCall(__func__, hDevice).Count(pCount).On<CDevice>([&](auto& m) { PutCount(pCount, m.Streams().size()); });
}

GC_ERROR DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t nIndex, char* pszId, size_t* pSize) {
    return CCall(__func__, hDevice).Number(nIndex).Out(nullptr, pszId, pSize).On<CDevice>([&](auto& m) {
        if (nIndex >= m.Streams().size()) {
            Refuse(GC_ERR_INVALID_INDEX, "the device has no data stream of this index");
        }
        PutText({nullptr, pszId, pSize}, m.Streams()[nIndex]->Id());
    });
}

GC_ERROR DevOpenDataStream(DEV_HANDLE hDevice, const char* pszId, DS_HANDLE* phStream) {
    return CCall(__func__, hDevice).Text(pszId).On<CDevice>([&](auto& m) {
        const std::string strId = Required(pszId);
        CStream* const pStream = m.FindStream(strId);
        if (pStream == nullptr) {
            Refuse(GC_ERR_INVALID_ID, "the device has no data stream " + strId);
        }
        DS_HANDLE& hStream = Required(phStream);
        hStream = pStream->Open();
    });
}

GC_ERROR DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return GetInfo<CDevice>(__func__, hDevice, nCommand, {pType, pBuffer, pSize});
}

GC_ERROR DevClose(DEV_HANDLE hDevice) {
    return CCall(__func__, hDevice).On<CDevice>([](auto& m) { m.Close(); });
}

GC_ERROR DSAnnounceBuffer(DS_HANDLE hStream, void* pBuffer, size_t nSize, void* pUserPointer, BUFFER_HANDLE* phBuffer) {
    return CCall(__func__, hStream).Value(nSize).On<CStream>([&](auto& m) {
        BUFFER_HANDLE& hBuffer = Required(phBuffer);
        hBuffer = m.Announce(&Required(static_cast<std::byte*>(pBuffer)), nSize, pUserPointer);
    });
}

GC_ERROR DSAllocAndAnnounceBuffer(DS_HANDLE hStream, size_t nSize, void* /*pUserPointer*/,
                                  BUFFER_HANDLE* /*phBuffer*/) {
    return CCall(__func__, hStream).Value(nSize).DoNothing();
}

GC_ERROR DSRevokeBuffer(DS_HANDLE hStream, BUFFER_HANDLE hBuffer, void** ppBuffer, void** ppUserPointer) {
    return CCall(__func__, hStream).On<CStream>([&](auto& m) { m.Revoke(hBuffer, ppBuffer, ppUserPointer); });
}

GC_ERROR DSQueueBuffer(DS_HANDLE hStream, BUFFER_HANDLE hBuffer) {
    return CCall(__func__, hStream).On<CStream>([&](auto& m) { m.Queue(hBuffer); });
}

GC_ERROR DSFlushQueue(DS_HANDLE hStream, ACQ_QUEUE_TYPE nOperation) {
    return CCall(__func__, hStream).Number(nOperation).On<CStream>([&](auto& m) { m.FlushQueue(nOperation); });
}

GC_ERROR DSStartAcquisition(DS_HANDLE hStream, ACQ_START_FLAGS nFlags, uint64_t nFrames) {
    return CCall(__func__, hStream).Number(nFlags).Value(nFrames).On<CStream>([&](auto& m) { m.Start(nFrames); });
}

GC_ERROR DSStopAcquisition(DS_HANDLE hStream, ACQ_STOP_FLAGS nFlags) {
    return CCall(__func__, hStream).Number(nFlags).On<CStream>([](auto& m) { m.Stop(); });
}

GC_ERROR DSGetInfo(DS_HANDLE hStream, STREAM_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return GetInfo<CStream>(__func__, hStream, nCommand, {pType, pBuffer, pSize});
}

GC_ERROR DSGetBufferID(DS_HANDLE hStream, uint32_t nIndex, BUFFER_HANDLE* /*phBuffer*/) {
    return CCall(__func__, hStream).Number(nIndex).DoNothing();
}

GC_ERROR DSClose(DS_HANDLE hStream) {
    return CCall(__func__, hStream).On<CStream>([](auto& m) { m.Close(); });
}

GC_ERROR DSGetBufferInfo(DS_HANDLE hStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD nCommand, INFO_DATATYPE* pType,
                         void* pBuffer, size_t* pSize) {
    return CCall(__func__, hStream).Number(nCommand).Out(pType, pBuffer, pSize).On<CStream>([&](auto& m) {
        m.GetBufferInfo(hBuffer, nCommand, {pType, pBuffer, pSize});
    });
}

GC_ERROR DSGetBufferChunkData(DS_HANDLE hStream, BUFFER_HANDLE hBuffer, SINGLE_CHUNK_DATA* pChunks, size_t* pCount) {
    const size_t nRoom = pChunks != nullptr && pCount != nullptr ? *pCount : 0;
    return CCall(__func__, hStream).Value(nRoom).Count(pCount).On<CStream>([&](auto& m) {
        m.GetChunks(hBuffer, pChunks, pCount);
    });
}

}  // extern "C"
