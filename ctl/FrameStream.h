#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include <boost/shared_ptr.hpp>

#include "ctl/FrameImage.h"
#include "ctl/OpenCamera.h"
#include "ctl/StreamLosses.h"

class IDataStream;
class IFeatureControl;

/// A frame as the stream gives it.
struct STREAM_FRAME {
    std::optional<std::uint64_t> nFrameID;
    FRAME_SHAPE objShape;
    bool bIncomplete = false;
    std::span<const std::uint8_t> vecData;  ///< the image; lies in the stream's buffer
};

/// A running acquisition: from its constructor, which starts the stream and then the camera, to its destructor, which
/// stops them in the other order.
class CFrameStream {
public:
    /// @param objCamera  open with control; outlives this
    /// @throws std::exception  the camera or the stream refuses
    explicit CFrameStream(const COpenCamera& objCamera);
    ~CFrameStream();
    CFrameStream(const CFrameStream&) = delete;
    CFrameStream& operator=(const CFrameStream&) = delete;

    /// Waits for the next frame, hands it to the function and gives its buffer back.
    /// @return false if none came in time
    /// @throws CZrException  the stream or the camera has failed
    bool Take(std::chrono::milliseconds nTimeout, const std::function<void(const STREAM_FRAME&)>& fnFrame);

    /// @return 0 for what the producer doesn't count
    STREAM_LOSSES ReadLosses() const;

private:
    void __LockParameters(bool bLock) const;

    IFeatureControl* const m_pFeatureControl;  // the camera's
    const boost::shared_ptr<IDataStream> m_pStream;
    std::uint64_t m_nPayloadSize = 0;  // bytes that a buffer has at least
};
