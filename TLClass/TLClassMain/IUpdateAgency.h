#pragma once

#include <cstdint>

/// One whole update of the lists of several transport layers.
class IUpdateAgency {
public:
    virtual ~IUpdateAgency() = default;

    /// Refreshes the interfaces of all transport layers, then the devices of all interfaces, all of them at once. The
    /// first interface that has finished ends the search of the others. No thread outlives the call.
    /// @param nTimeoutMs  how long the interfaces may look for devices
    /// @param nDelayMs    between the starts of two interfaces; 0 for none
    /// @param pChanged    whether any list update said that something changed
    /// @throws CZrException  a feature of an interface refused. What fails on one of the update's own threads ends the
    ///                       process.
    virtual void DoUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) = 0;
};
