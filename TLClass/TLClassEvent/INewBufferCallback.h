#pragma once

#include "TLClass/TLClassEvent/IEventCallback.h"
#include "TLClass/TLClassInfo/BufferModuleInfo.h"

/// Called with each frame of a data stream, on a thread of the stream's own. It must not start, stop or close the
/// stream or its device, nor register another callback, nor wait for a thread that does. What it throws is only logged.
class INewBufferCallback : public IEventCallback {
public:
    /// @param objInformation  what the producer tells of the frame. Its memory is the callback's until it returns; then
    ///                        the producer fills it again.
    virtual void OnNewBuffer(const BUFFER_MODULE_INFO& objInformation) = 0;
};
