#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "camera/CameraConfiguration.h"
#include "tests/camera/RunningCamera.h"
#include "tests/network/NetworkNamespace.h"

/// A machine with the adapters eth0, eth1 and so on, each cabled to a switch with running cameras behind it, all of
/// them noticed by the kernel.
///
/// Adapter I has the address 10.(I+1).0.1/24 and a MAC of its own that it keeps when it is made anew. Its switch is
/// cabled to it by uplinkI, and to its camera J by portI-J. That camera has the address 10.(I+1).0.(J+11)/24, but the
/// third one of each switch is lost, on 172.16.(I+1).9/24. Its adapter is cam, on a machine of its own.
class CSwitchedNetwork {
public:
    using MakeConfiguration = std::function<void(int nCamera, camera::CAMERA_CONFIGURATION&)>;

    /// @param funConfigure  may add to what the camera with this number, counted through all switches, is made of
    /// @throws std::runtime_error  with the command that failed
    CSwitchedNetwork(int nAdapters, int nCamerasEach, MakeConfiguration funConfigure = {});

    const CNetworkNamespace& GetMachine() const { return m_objMachine; }
    /// Where all the switches are.
    const CNetworkNamespace& GetSwitches() const { return m_objSwitches; }

    /// The machine that a camera is.
    const CNetworkNamespace& GetPlace(int nCamera) const { return *m_vecPlaces.at(static_cast<std::size_t>(nCamera)); }

    /// Makes an adapter, which isn't there or no more, and its cable, and doesn't wait for the link.
    void Cable(int nAdapter);
    /// Waits until the kernel has noticed every link: before that it drops what is sent.
    /// @throws std::runtime_error  when they don't come within 10 s
    void AwaitLinks() const;

    /// Switches a camera off, and another with the same MAC and address on.
    void SwitchOff(int nCamera);
    void SwitchOn(int nCamera);
    CRunningCamera& GetCamera(int nCamera) { return *m_vecCameras.at(static_cast<std::size_t>(nCamera)); }

private:
    void CableCamera(int nCamera);

    const int m_nAdapters;
    const int m_nCamerasEach;
    const MakeConfiguration m_funConfigure;
    CNetworkNamespace m_objMachine;
    CNetworkNamespace m_objSwitches;
    std::vector<std::unique_ptr<CNetworkNamespace>> m_vecPlaces;  // of the cameras
    std::vector<std::unique_ptr<CRunningCamera>> m_vecCameras;    // null: switched off
};
