#pragma once

#include <cstdint>
#include <vector>

#include <boost/shared_ptr.hpp>

class IInterface;
class ITL;
class IUpdater;

// Several updaters that run at once. Null elements are passed over. All of it on the thread of the update.

using UPDATER_LIST = std::vector<boost::shared_ptr<IUpdater>>;

/// A wait without limit: what bounds an update is that the producer returns from its own update calls.
inline constexpr std::uint64_t kNoLimitMs = UINT64_MAX;

/// One updater for each element, in order.
UPDATER_LIST CreateTLUpdaters(const std::vector<boost::shared_ptr<ITL>>& vecTL);
UPDATER_LIST CreateIFUpdaters(const std::vector<boost::shared_ptr<IInterface>>& vecInterface);

/// @param nTimeoutMs  of each update
/// @param nDelayMs    between two starts
void StartUpdaters(const UPDATER_LIST& vecUpdater, std::uint64_t nTimeoutMs, std::uint64_t nDelayMs);

bool AreAllUpdatersFinished(const UPDATER_LIST& vecUpdater);
bool IsAnyUpdaterFinished(const UPDATER_LIST& vecUpdater);
bool IsAnyUpdaterChanged(const UPDATER_LIST& vecUpdater);

// Both look once a millisecond.
/// @return false once the time-out has passed
bool WaitAllUpdatersFinished(const UPDATER_LIST& vecUpdater, std::uint64_t nTimeoutMs);
/// @return true for an empty list; false once the time-out has passed
bool WaitAnyUpdaterFinished(const UPDATER_LIST& vecUpdater, std::uint64_t nTimeoutMs);

/// @throws CZrException  an interface refused its stop command; those behind it weren't asked
void StopUnfinishedUpdaters(const UPDATER_LIST& vecUpdater);
