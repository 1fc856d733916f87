#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <boost/shared_ptr.hpp>

#include "ctl/CameraOptions.h"
#include "ctl/CameraTree.h"
#include "ctl/Interrupt.h"

class IDataStream;

namespace GenApi_3_0 {
class INode;
class INodeMap;
}  // namespace GenApi_3_0

/// The one camera of a command: found, opened, and closed again with the end of the object. While a camera is
/// controlled Ctrl-C is held back, or other programs would find it in use until it misses its heartbeat.
class COpenCamera {
public:
    /// @param nAccessMode  one of DEVICE_ACCESS_FLAGS_LIST
    /// @throws CCommandError  there is no such camera, or it can't be opened; says which camera and what to try
    COpenCamera(const CAMERA_OPTIONS& objOptions, std::uint32_t nAccessMode);

    const CAMERA& GetCamera() const { return m_objCamera; }
    const boost::shared_ptr<IDevice>& GetDevice() const { return m_objCamera.pDevice; }
    /// What holds back Ctrl-C; it may be kept longer than the camera. Empty if the camera isn't controlled.
    const std::shared_ptr<CInterrupt>& GetInterrupt() const { return m_pInterrupt; }

    /// The camera's own node map.
    GenApi_3_0::INodeMap& GetNodeMap() const;
    /// @throws CCommandError  the camera has no such feature; suggests others
    GenApi_3_0::INode& GetFeature(const std::string& strName) const;
    /// Opens the camera's first stream.
    /// @throws CCommandError  it has none
    boost::shared_ptr<IDataStream> OpenStream() const;

private:
    std::shared_ptr<CInterrupt> m_pInterrupt;  // goes behind the tree
    CCameraTree m_objTree;                     // closes the camera
    CAMERA m_objCamera;
};
