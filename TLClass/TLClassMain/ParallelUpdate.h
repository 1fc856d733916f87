#pragma once

#include <cstdint>
#include <vector>

#include <boost/shared_ptr.hpp>

class IInterface;
class ITL;

// The steps that the parallel updaters of all kinds have in common; see IParallelUpdater.

void UpdateTLsInParallel(const std::vector<boost::shared_ptr<ITL>>& vecTL, std::uint64_t nTimeoutMs, bool* pChanged);
void UpdateInterfacesInParallel(const std::vector<boost::shared_ptr<IInterface>>& vecInterface,
                                std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged);
std::vector<boost::shared_ptr<IInterface>> CollectInterfaces(const std::vector<boost::shared_ptr<ITL>>& vecTL);
