#pragma once

#include <cstdint>
#include <memory>

#include "camera/CameraConfiguration.h"
#include "camera/Faults.h"
#include "gev/Address.h"

namespace camera {

/// A GigE Vision camera in software, on a network adapter of its own.
///
/// It takes over the adapter's MAC and really applies its IP configuration there, so run it only where that adapter is
/// meant for it: in a network namespace made for the purpose. It stays in the namespace of the thread that made it.
/// Made and destroyed on any thread; Run is called once, on a thread of the caller's.
class CVirtualCamera {
public:
    /// Takes the adapter and starts the IP configuration. Requests that come from now on are answered by Run.
    /// @throws std::system_error      no such adapter, not permitted, the port is taken
    /// @throws std::invalid_argument  a text is too long
    /// @throws CStateError            the state is none of this camera
    explicit CVirtualCamera(CAMERA_CONFIGURATION objConfiguration);
    /// Takes the camera's address off the adapter. Run must have ended.
    ~CVirtualCamera();
    CVirtualCamera(const CVirtualCamera&) = delete;
    CVirtualCamera& operator=(const CVirtualCamera&) = delete;

    /// Answers requests until Stop.
    /// @throws std::system_error  the adapter has gone or its address can't be set
    void Run();

    /// Ends Run at once, now or when it comes. For any thread, and for signal handlers.
    void Stop() noexcept;

    /// Replaces all faults, from the next datagram on. For any thread. VanishAfter... count from here.
    void SetFaults(const FAULTS& objFaults);

    [[nodiscard]] gev::CMACAddress GetMAC() const;
    /// The camera's address at this moment, 0 while it has none. For any thread.
    [[nodiscard]] std::uint32_t GetAddress() const;

private:
    class CImplementation;
    std::unique_ptr<CImplementation> m_pImplementation;
};

}  // namespace camera
