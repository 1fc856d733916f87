#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "ctl/Camera.h"
#include "ctl/CameraOptions.h"

/// The producers' tree of adapters and cameras, up for the length of a command.
///
/// One at a time in a process. Its destructor closes what is open and unloads the producers, after which the devices of
/// its records may not be used any more.
class CCameraTree {
public:
    /// Loads the producers from the search path (see ProducerPath.h).
    /// @throws CCommandError  none was found, or one fails
    CCameraTree();
    ~CCameraTree();
    CCameraTree(const CCameraTree&) = delete;
    CCameraTree& operator=(const CCameraTree&) = delete;

    /// Lets every adapter look for cameras, by the limited broadcast, until the function is content with what there is
    /// or the time is over. It is called after each look; these last a second at most, as a producer may listen no
    /// longer however long it is told to.
    void Look(std::chrono::milliseconds nTime, const std::function<bool()>& fnIsEnough);
    /// Looks for the whole time.
    void Look(std::chrono::milliseconds nTime);

    /// Looks for one camera.
    /// @return its record
    /// @throws CCommandError  none or several are called so
    CAMERA FindCamera(const CAMERA_OPTIONS& objOptions);

    /// As of the last look.
    std::vector<ADAPTER> GetAdapters() const;
    std::vector<CAMERA> GetCameras() const;

private:
    static void Update(std::chrono::milliseconds nTimeout);
};
