#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "producer/wire/Adapter.h"
#include "producer/wire/DiscoveredDevice.h"
#include "producer/wire/WakeSocket.h"

namespace producer {

enum class DISCOVERY_MODE {
    Limited,         ///< to 255.255.255.255
    DirectedSubnet,  ///< to the broadcast address of each of the adapter's subnets; to 255.255.255.255 without one
};

enum class DISCOVERY_END {
    Complete,  ///< a camera that isn't in the result isn't there
    CutShort,  ///< stopped early, no time given, or the adapter failed half way: who isn't in it may still be there
};

/// What one update of one adapter brought.
struct DISCOVERY_RESULT {
    DISCOVERY_END End = DISCOVERY_END::CutShort;
    std::optional<ADAPTER> Adapter;          ///< as it was at the start; nothing when it was gone or down
    std::vector<DISCOVERED_DEVICE> Devices;  ///< in the order of their MACs, at most kMostDevices
    std::uint64_t RefusedAnswers = 0;        ///< malformed, or to a question that wasn't asked
    std::uint64_t SurplusDevices = 0;        ///< answers of cameras beyond kMostDevices
    /// What to check when cameras are missing, in a sentence for the user, such as the reverse-path filter; empty when
    /// nothing is known to hide a camera.
    std::string Advice;
};

/// Cameras kept for one adapter: a hostile sender may claim to be any number.
inline constexpr std::size_t kMostDevices = 4096;

/// The longest that one update listens, whatever the time-out.
inline constexpr std::chrono::milliseconds kLongestDiscovery{1000};

/// Finds the cameras behind one adapter, by broadcast.
///
/// Owned by an interface module. DoUpdate runs on the thread of IFUpdateDeviceList, which waits in it; Stop may be
/// called from any thread at any time and never waits for an update. The object must outlive both calls. An adapter
/// that is gone, down or refuses to send is a state, never an exception: its update waits out its time like any other,
/// so that it doesn't end the updates of adapters that work.
class CDiscovery {
public:
    /// @param strAdapter  the name of the adapter, which needn't exist and is looked up anew by every update
    /// @throws CProducerError  GC_ERR_RESOURCE_EXHAUSTED, when the process has no descriptor left
    explicit CDiscovery(std::string strAdapter);
    ~CDiscovery();
    CDiscovery(const CDiscovery&) = delete;
    CDiscovery& operator=(const CDiscovery&) = delete;

    /// Asks three times within the time, listens to its end, and asks each camera that can be reached who controls it.
    /// A second caller waits until the first is done.
    /// @param objTimeout  at most kLongestDiscovery is used. With 0 it takes what comes within some milliseconds and
    ///                    is cut short, but on an adapter without an address, where the few milliseconds count as all
    DISCOVERY_RESULT DoUpdate(DISCOVERY_MODE eMode, std::chrono::milliseconds objTimeout);

    /// Ends an update that is under way within 10 ms. It counts as complete all the same when the last of its three
    /// questions has had a quarter of the window to be answered in. Forgotten without an update.
    void Stop() noexcept;

private:
    const std::string m_strAdapter;

    class CRunning;

    CWakeSocket m_objWake;   // wakes the update under way
    std::mutex m_mtxUpdate;  // held for a whole update; taken before m_mtxStop
    std::mutex m_mtxStop;    // guards the one below
    bool m_bRunning = false;
};

/// Brings a list up to date with the result of an update: a complete one replaces it, one that was cut short changes
/// and adds what it heard and drops nothing.
/// @param vecDevices  in the order of their MACs, and so it stays; at most kMostDevices
/// @return whether the list is another one than before.
bool MergeDevices(std::vector<DISCOVERED_DEVICE>& vecDevices, const DISCOVERY_RESULT& objResult);

}  // namespace producer
