// The device module and the data stream module with its buffers.

#include "tests/producer_double/Exports.h"

using namespace ProducerDouble;

extern "C" {

GC_ERROR DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemotePort) {
    return CCall("DevGetPort").Handle(hDevice).Do([&](CProducer& p, LOCK&) {
        Required(phRemotePort) = Opened<CDevice>(p, hDevice).RemotePort()->Handle();
    });
}

GC_ERROR DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* pCount) {
    return CCall("DevGetNumDataStreams").Handle(hDevice).Count(pCount).Do([&](CProducer& p, LOCK&) {
        Required(pCount) = static_cast<uint32_t>(Opened<CDevice>(p, hDevice).Streams().size());
    });
}

GC_ERROR DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t nIndex, char* pszId, size_t* pSize) {
    return CCall("DevGetDataStreamID")
        .Handle(hDevice)
        .Number(nIndex)
        .Out(nullptr, pszId, pSize)
        .Do([&](CProducer& p, LOCK&) {
            const auto& vecStream = Opened<CDevice>(p, hDevice).Streams();
            if (nIndex >= vecStream.size()) {
                Refuse(GC_ERR_INVALID_INDEX, "the device has no data stream of this index");
            }
            PutText({nullptr, pszId, pSize}, vecStream[nIndex]->Id());
        });
}

GC_ERROR DevOpenDataStream(DEV_HANDLE hDevice, const char* pszStreamId, DS_HANDLE* phStream) {
    return CCall("DevOpenDataStream").Handle(hDevice).Text(pszStreamId).Do([&](CProducer& p, LOCK&) {
        const std::string strId = Required(pszStreamId);
        DS_HANDLE& hStream = Required(phStream);
        for (const auto& pStream : Opened<CDevice>(p, hDevice).Streams()) {
            if (pStream->Id() == strId) {
                hStream = pStream->Open();
                return;
            }
        }
        Refuse(GC_ERR_INVALID_ID, "the device has no data stream " + strId);
    });
}

GC_ERROR DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return CCall("DevGetInfo").Handle(hDevice).Number(nCommand).Out(pType, pBuffer, pSize).Do([&](CProducer& p, LOCK&) {
        Opened<CDevice>(p, hDevice).GetInfo(nCommand, {pType, pBuffer, pSize});
    });
}

GC_ERROR DevClose(DEV_HANDLE hDevice) {
    return CCall("DevClose").Handle(hDevice).Do([&](CProducer& p, LOCK&) { Opened<CDevice>(p, hDevice).Close(); });
}

GC_ERROR DSAnnounceBuffer(DS_HANDLE hStream, void* pBuffer, size_t nSize, void* pUserPointer, BUFFER_HANDLE* phBuffer) {
    return CCall("DSAnnounceBuffer").Handle(hStream).Value(nSize).Do([&](CProducer& p, LOCK&) {
        BUFFER_HANDLE& hBuffer = Required(phBuffer);
        if (pBuffer == nullptr) {
            Refuse(GC_ERR_INVALID_PARAMETER, "a null pointer for a buffer");
        }
        hBuffer = Opened<CStream>(p, hStream).Announce(pBuffer, nSize, pUserPointer);
    });
}

GC_ERROR DSAllocAndAnnounceBuffer(DS_HANDLE hStream, size_t nSize, void* pUserPointer, BUFFER_HANDLE* phBuffer) {
    return CCall("DSAllocAndAnnounceBuffer").Handle(hStream).Value(nSize).Do([&](CProducer& p, LOCK&) {
        BUFFER_HANDLE& hBuffer = Required(phBuffer);
        hBuffer = Opened<CStream>(p, hStream).Announce(nullptr, nSize, pUserPointer);
    });
}

GC_ERROR DSRevokeBuffer(DS_HANDLE hStream, BUFFER_HANDLE hBuffer, void** ppBuffer, void** ppUserPointer) {
    return CCall("DSRevokeBuffer").Handle(hStream).Do([&](CProducer& p, LOCK&) {
        Opened<CStream>(p, hStream).Revoke(hBuffer, ppBuffer, ppUserPointer);
    });
}

GC_ERROR DSQueueBuffer(DS_HANDLE hStream, BUFFER_HANDLE hBuffer) {
    return CCall("DSQueueBuffer").Handle(hStream).Do([&](CProducer& p, LOCK&) {
        Opened<CStream>(p, hStream).Queue(hBuffer);
    });
}

GC_ERROR DSFlushQueue(DS_HANDLE hStream, ACQ_QUEUE_TYPE nOperation) {
    return CCall("DSFlushQueue").Handle(hStream).Number(nOperation).Do([&](CProducer& p, LOCK&) {
        Opened<CStream>(p, hStream).FlushQueue(nOperation);
    });
}

GC_ERROR DSStartAcquisition(DS_HANDLE hStream, ACQ_START_FLAGS nFlags, uint64_t nFrames) {
    return CCall("DSStartAcquisition").Handle(hStream).Number(nFlags).Value(nFrames).Do([&](CProducer& p, LOCK&) {
        Opened<CStream>(p, hStream).Start(nFrames);
    });
}

GC_ERROR DSStopAcquisition(DS_HANDLE hStream, ACQ_STOP_FLAGS nFlags) {
    return CCall("DSStopAcquisition").Handle(hStream).Number(nFlags).Do([&](CProducer& p, LOCK&) {
        Opened<CStream>(p, hStream).Stop();
    });
}

GC_ERROR DSGetInfo(DS_HANDLE hStream, STREAM_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return CCall("DSGetInfo").Handle(hStream).Number(nCommand).Out(pType, pBuffer, pSize).Do([&](CProducer& p, LOCK&) {
        Opened<CStream>(p, hStream).GetInfo(nCommand, {pType, pBuffer, pSize});
    });
}

GC_ERROR DSGetBufferID(DS_HANDLE hStream, uint32_t nIndex, BUFFER_HANDLE* /*phBuffer*/) {
    return CCall("DSGetBufferID").Handle(hStream).Number(nIndex).DoNothing();
}

GC_ERROR DSClose(DS_HANDLE hStream) {
    return CCall("DSClose").Handle(hStream).Do([&](CProducer& p, LOCK&) { Opened<CStream>(p, hStream).Close(); });
}

GC_ERROR DSGetBufferInfo(DS_HANDLE hStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD nCommand, INFO_DATATYPE* pType,
                         void* pBuffer, size_t* pSize) {
    return CCall("DSGetBufferInfo")
        .Handle(hStream)
        .Number(nCommand)
        .Out(pType, pBuffer, pSize)
        .Do([&](CProducer& p, LOCK&) {
            Opened<CStream>(p, hStream).GetBufferInfo(hBuffer, nCommand, {pType, pBuffer, pSize});
        });
}

GC_ERROR DSGetBufferChunkData(DS_HANDLE hStream, BUFFER_HANDLE hBuffer, SINGLE_CHUNK_DATA* pChunks, size_t* pCount) {
    return CCall("DSGetBufferChunkData")
        .Handle(hStream)
        .Value(pChunks != nullptr && pCount != nullptr ? *pCount : 0)
        .Count(pCount)
        .Do([&](CProducer& p, LOCK&) { Opened<CStream>(p, hStream).GetChunks(hBuffer, pChunks, pCount); });
}

}  // extern "C"
