#pragma once

#include <functional>
#include <memory>
#include <string>

#include "producer/modules/Module.h"
#include "producer/modules/RemotePort.h"

namespace producer {

/// The data stream of an open camera.
///
/// Owned by the device module while it is open. It has its port, its description and its events; the operations that
/// move images aren't built yet and say so.
class CStreamModule : public CModule {
public:
    /// @param pRemotePort  the camera, for its stream channel's registers
    /// @param funClosed    called last in the close
    CStreamModule(std::shared_ptr<CRemotePort> pRemotePort, std::string strId, std::function<void()> funClosed);

    /// @throws CProducerError  GC_ERR_NOT_AVAILABLE for a command that isn't known, or whose answer isn't
    CInfoValue GetInfo(STREAM_INFO_CMD nCommand) const;

private:
    void DoClose() noexcept override;

    const std::shared_ptr<CRemotePort> m_pRemotePort;
    const std::function<void()> m_funClosed;
};

}  // namespace producer
