#pragma once

#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include "camera/VirtualCamera.h"
#include "tests/network/NetworkNamespace.h"

/// A virtual camera that runs on a thread of its own, on an adapter of a namespace, until the object goes.
class CRunningCamera {
public:
    /// The camera answers from here on.
    /// @throws what CVirtualCamera's constructor throws
    CRunningCamera(const CNetworkNamespace& objNamespace, camera::CAMERA_CONFIGURATION objConfiguration) {
        objNamespace.Do([&] { m_pCamera = std::make_unique<camera::CVirtualCamera>(std::move(objConfiguration)); });
        m_objThread = std::thread([this] {
            try {
                m_pCamera->Run();
            } catch (const std::system_error&) {
                // The adapter has gone while the camera changed its address: it is as if it had been unplugged.
            }
        });
    }
    ~CRunningCamera() {
        m_pCamera->Stop();
        m_objThread.join();
    }
    CRunningCamera(const CRunningCamera&) = delete;
    CRunningCamera& operator=(const CRunningCamera&) = delete;

    camera::CVirtualCamera& Get() { return *m_pCamera; }

private:
    std::unique_ptr<camera::CVirtualCamera> m_pCamera;
    std::thread m_objThread;
};
