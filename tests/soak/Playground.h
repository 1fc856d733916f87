#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <random>
#include <string>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/IDevice.h"
#include "tests/network/SwitchedNetwork.h"
#include "tests/soak/CallBook.h"

inline constexpr int kAdapters = 2;
inline constexpr int kCamerasEach = 4;  // the third of each is lost: it is listed and can't be opened
inline constexpr int kCameras = kAdapters * kCamerasEach;

/// What all who take part share: the cameras, the book, and the sign to end.
struct PLAYGROUND {
    CSwitchedNetwork Network{kAdapters, kCamerasEach};
    CCallBook Book;
    std::atomic<bool> Stop{false};

    // What has happened at all, without which the soak has shown nothing.
    std::atomic<std::uint64_t> Frames{0};
    std::atomic<std::uint64_t> IncompleteFrames{0};
    std::atomic<std::uint64_t> Events{0};
    std::atomic<std::uint64_t> Unplugs{0};
    std::atomic<std::uint64_t> Goings{0};  ///< cameras that were told to have gone
    std::atomic<std::uint64_t> Visits{0};  ///< of another application
};

/// Chance of one thread.
class CChance {
public:
    explicit CChance(std::uint32_t nSeed) : m_objEngine(nSeed) {}

    /// From nLeast to nMost.
    int Between(int nLeast, int nMost) { return std::uniform_int_distribution(nLeast, nMost)(m_objEngine); }
    bool OneIn(int nTimes) { return Between(1, nTimes) == 1; }
    /// Waits for so many milliseconds, or until the sign to end.
    void Wait(const PLAYGROUND& objPlayground, int nLeastMs, int nMostMs);

private:
    std::mt19937 m_objEngine;
};

/// The camera as the tree lists it now, or null.
boost::shared_ptr<IDevice> FindCamera(int nCamera);

// Who takes part. Each runs on a thread of its own inside the machine's namespace until the sign to end, and leaves its
// camera closed.

/// Streams from one camera again and again: by a callback or by polling, with chunks and events, ended politely or by a
/// close under way.
void StreamImages(PLAYGROUND& objPlayground, int nCamera, CChance objChance);
/// Opens and closes one camera, reads and writes features and feature files, and listens whether it has gone.
void UseFeatures(PLAYGROUND& objPlayground, int nCamera, bool bReadsBack, CChance objChance);
/// Updates the lists and reads what they say.
void UpdateLists(PLAYGROUND& objPlayground, CChance objChance);
/// Changes the cameras' faults, and unplugs cameras, cables and an adapter and puts them back. At the end all is well
/// again.
void MakeTrouble(PLAYGROUND& objPlayground, CChance objChance);
/// Starts another process now and then that opens a camera; some of them are killed while they hold it.
void LetOthersVisit(PLAYGROUND& objPlayground, int nCamera, CChance objChance);

/// What that process does. It refuses to run in any network namespace but the one that it is told.
/// @return its exit status
int BeAnotherApplication(int nCamera, const std::string& strNamespace);
/// The namespace of the calling thread, as "net:[4026531840]".
std::string GetNetworkNamespace();
