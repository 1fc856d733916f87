#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// What the process holds while every camera is closed and every thread of the soak has ended.
struct ROLL {
    double Seconds = 0;         ///< since the start
    std::int64_t Resident = 0;  ///< KiB
    std::int64_t Heap = 0;      ///< bytes in use
    std::int64_t Descriptors = 0;
    std::int64_t Threads = 0;
};

/// Has large blocks taken from the system and given back to it one by one. Otherwise the allocator keeps as much of
/// what was freed as the largest block was long, for each thread anew. Before any other thread runs.
void GiveFreedMemoryBack();

ROLL CallTheRoll(double fSeconds);

/// Judges what was held over time. The first fifth, and two rolls at least, are a warm-up and don't count. Of the rest
/// the least of the last third may exceed the most of the first third by nothing for descriptors and threads, by 128
/// KiB for the heap and by 4 MiB for what is resident, which under a sanitizer isn't judged. So what swings passes, and
/// what only grows doesn't.
/// @return a complaint for each that grows, and one if the rolls are too few to judge
std::vector<std::string> JudgeRolls(std::span<const ROLL> arrRolls);
