#pragma once

#include <cstdint>
#include <vector>

#include <boost/shared_ptr.hpp>

class IInterface;

/// Updates many modules at once, each on a thread that ends before the call does.
class IParallelUpdater {
public:
    virtual ~IParallelUpdater() = default;

    /// Waits for all transport layers.
    /// @param pChanged  whether any of them said so
    virtual void DoUpdateTLs(std::uint64_t nTimeoutMs, bool* pChanged) = 0;
    /// Lets the first interface that has finished end the search of the others, then waits for all.
    /// @param nDelayMs  between the starts of two interfaces
    /// @param pChanged  whether any of them said so
    /// @throws CZrException  an interface refused its stop command
    virtual void DoUpdateInterfaces(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) = 0;
    /// Of all transport layers, in order.
    virtual std::vector<boost::shared_ptr<IInterface>> GetInterfaceList() const = 0;
};
