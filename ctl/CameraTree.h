#pragma once

#include <chrono>
#include <vector>

#include "ctl/Camera.h"

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

    /// Lets every adapter look for cameras, by the limited broadcast.
    void Update(std::chrono::milliseconds nTimeout);

    /// As of the last update.
    std::vector<ADAPTER> GetAdapters() const;
    std::vector<CAMERA> GetCameras() const;
};
