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
class IDataStream : public CGcObject {
public:
    /// Opens the stream and loads its node map. Does nothing if it is open.
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
    virtual void DoFlushAllToInput() = 0;
    /// Takes the next filled buffer.
    /// @param pInformation  gets what the producer says of it
    /// @param bThrow        whether a failure is thrown; else it gives null
    /// @return owned by the stream
    virtual CBuffer* GetBuffer(BUFFER_MODULE_INFO* pInformation, std::uint32_t nTimeoutMs, bool bThrow) = 0;

    /// Allocates and announces the buffers and starts. Does nothing while an acquisition runs.
    virtual void DoStartDataStreamAcqusition(TLClass::IBufferInitInfo* pInitInfo) = 0;
    virtual void StopGetNewBuffer() = 0;
    virtual void StopTLAcquisition() = 0;

    virtual boost::shared_ptr<IDevice> GetDevice() const = 0;
    virtual std::uint32_t GetNewBufferThreadId() const = 0;
    virtual CNativeNewBufferEvent* GetNativeNewBufferEvent() = 0;
    /// Null while closed.
    virtual DS_HANDLE GetHandle() const = 0;
    virtual CGenTLLib* GetLib() const = 0;

    /// How many buffers the next acquisition has; 0 lets the stream decide.
    virtual void SetAcqusitionBufferNumber(std::uint64_t nNumber) = 0;
    virtual std::uint64_t GetAcqusitionBufferNumber() const = 0;

    /// In bytes.
    virtual std::uint32_t DoGetOptimalPacketSize() = 0;

protected:
    using CGcObject::CGcObject;
};
