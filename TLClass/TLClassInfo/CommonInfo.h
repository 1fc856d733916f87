#pragma once

/// Base of what the modules of every transport layer offer through features.
struct COMMON_INFO {
    COMMON_INFO() = default;
    COMMON_INFO(const COMMON_INFO&) = default;
    COMMON_INFO(COMMON_INFO&&) = default;
    COMMON_INFO& operator=(const COMMON_INFO&) = default;
    COMMON_INFO& operator=(COMMON_INFO&&) = default;
    virtual ~COMMON_INFO() = default;
};
