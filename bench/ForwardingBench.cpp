// What a call into a producer costs through the binding, against the same call through a bare function pointer.

#include <algorithm>
#include <chrono>
#include <limits>

#include <benchmark/benchmark.h>

#include "TLClass/TLClassLoadTL/GenTLLib.h"

namespace {

constexpr int kCallsInABatch = 100'000;

/// Nanoseconds for each call of a batch.
template <typename ENTRY>
double TimeBatch(const ENTRY& fnEntry) {
    std::size_t nSize = 0;
    const auto objStart = std::chrono::steady_clock::now();
    for (int i = 0; i < kCallsInABatch; ++i) {
        benchmark::DoNotOptimize(fnEntry(nullptr, 0, nullptr, &nSize));
    }
    const std::chrono::duration<double, std::nano> objElapsed = std::chrono::steady_clock::now() - objStart;
    return objElapsed.count() / kCallsInABatch;
}

/// Both kinds of call take turns, and of each the fastest batch counts: what slows a batch down is never the call.
void ForwardingCall(benchmark::State& objState) {
    const CGenTLLib objLib(FORWARDING_PRODUCER);
    const auto pBare = reinterpret_cast<PGCReadPort>(objLib.FindFunction("GCReadPort"));
    double nBare = std::numeric_limits<double>::max();
    double nForwarded = std::numeric_limits<double>::max();
    for (auto _ : objState) {
        nBare = std::min(nBare, TimeBatch(pBare));
        nForwarded = std::min(nForwarded, TimeBatch(objLib.GCReadPort));
    }
    objState.counters["bare_ns"] = nBare;
    objState.counters["forwarded_ns"] = nForwarded;
    objState.counters["ratio"] = nForwarded / nBare;  // goal: at most 1.5
}
BENCHMARK(ForwardingCall)->Unit(benchmark::kMillisecond);

}  // namespace
