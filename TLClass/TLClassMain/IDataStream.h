#pragma once

#include <cstdint>

#include <boost/shared_ptr.hpp>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassInfo/BufferModuleInfo.h"
#include "TLClass/TLClassMain/GcObject.h"

class CBuffer;
class CGenTLLib;
class CNativeNewBufferEvent;
class IDevice;
class INewBufferCallback;

namespace TLClass {
class IBufferInitInfo;
}

/// A data stream of an open device: its buffers, the acquisition, and the event of a filled buffer.
///
/// Owned by its device, which lists it closed and closes it with itself.
///
/// Who opens, closes, starts or stops a stream must not hold the lock of the camera's node map, so a feature callback
/// of the camera must not do it: the thread that takes frames brings their chunk data into that node map, and a stop
/// waits for the thread. Such a callback leaves word for another thread.
class IDataStream : public CGcObject {
public:
    /// Opens the stream and loads its node map. Does nothing if it is open.
    /// @throws CUnexpectedError  the device is closed, or was since it listed this stream
    /// @throws CZrException      anything else that failed; the stream stays closed
    virtual void DoOpenDataStream() = 0;
    /// Stops what runs and frees the buffers. Does nothing if it is closed. Never throws.
    virtual void DoCloseDataStream() = 0;
    virtual bool IsOpened() const = 0;
    virtual bool IsAcqusition() const = 0;

    /// Keeps a clone of the callback, which is called with each filled buffer.
    virtual void RegisterNewBufferCallback(INewBufferCallback* pCallback) = 0;
    virtual void UnregisterNewBufferCallback() = 0;
    virtual bool IsNewBufferCallbackRegistered() const = 0;

    /// Gives every buffer back to the producer to fill.
    /// @throws CUnexpectedError  the stream is closed
    /// @throws CZrException      by the result of the producer
    virtual void DoFlushAllToInput() = 0;
    /// Takes the next filled buffer.
    /// @param pInformation  gets what the producer says of it
    /// @param bThrow        whether a failure is thrown; else it gives null
    /// @return owned by the stream
    /// @throws CTimeoutError  no frame came in time, also from a camera that has gone
    /// @throws CZrException   by the result of the producer
    virtual CBuffer* GetBuffer(BUFFER_MODULE_INFO* pInformation, std::uint32_t nTimeoutMs, bool bThrow) = 0;

    /// Allocates and announces the buffers and starts. Does nothing while an acquisition runs. With a callback
    /// registered before, a thread calls it with each frame; without one the caller takes frames with GetBuffer.
    /// @param pInitInfo  what the frames look like; copied. Its payload size, in bytes, decides the size and number of
    ///                   the buffers.
    /// @throws CUnexpectedError  the stream is closed, the payload size is 0, or size or number are beyond all reason
    /// @throws CZrException      anything else that failed; nothing runs then, and the buffers' memory stays
    virtual void DoStartDataStreamAcqusition(TLClass::IBufferInitInfo* pInitInfo) = 0;
    // The two halves of a stop, in this order: the thread that takes frames, then the producer. Neither may be called
    // from the callback of a frame. The memory of the buffers stays for the next start.
    virtual void StopGetNewBuffer() = 0;
    virtual void StopTLAcquisition() = 0;

    virtual boost::shared_ptr<IDevice> GetDevice() const = 0;
    virtual std::uint32_t GetNewBufferThreadId() const = 0;
    virtual CNativeNewBufferEvent* GetNativeNewBufferEvent() = 0;
    /// Null while closed.
    virtual DS_HANDLE GetHandle() const = 0;
    virtual CGenTLLib* GetLib() const = 0;

    /// How many buffers the next acquisition has; 0, as at first, lets the stream decide. The producer's bounds still
    /// apply. On an open stream 0 is refused like any other number below the producer's least, so it is set while
    /// closed.
    /// @throws COutOfRangeError  fewer than the producer needs, which only an open stream knows
    virtual void SetAcqusitionBufferNumber(std::uint64_t nNumber) = 0;
    virtual std::uint64_t GetAcqusitionBufferNumber() const = 0;

    /// The largest packet that the way from the camera lets through, as the producer finds it, in bytes.
    /// @throws CInvalidCallError  an acquisition runs
    /// @throws CZrException       by the result of the producer
    virtual std::uint32_t DoGetOptimalPacketSize() = 0;

    /// For the device, which closes: from now on an opening is refused. What is open stays open.
    virtual void ForbidOpening() = 0;

protected:
    using CGcObject::CGcObject;
};
