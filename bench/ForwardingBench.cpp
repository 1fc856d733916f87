// What a call into a producer costs through the binding, against the same call through a bare function pointer.

#include <benchmark/benchmark.h>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "bench/Turns.h"

namespace {

constexpr int kCallsInABatch = 100'000;

template <typename ENTRY>
void CallABatch(const ENTRY& fnEntry) {
    std::size_t nSize = 0;
    for (int i = 0; i < kCallsInABatch; ++i) {
        benchmark::DoNotOptimize(fnEntry(nullptr, 0, nullptr, &nSize));
    }
}

void ForwardingCall(benchmark::State& objState) {
    const CGenTLLib objLib(FORWARDING_PRODUCER);
    const auto pBare = reinterpret_cast<PGCReadPort>(objLib.FindFunction("GCReadPort"));
    CTurns objTurns;
    for (auto _ : objState) {
        objTurns.Take([&] { CallABatch(objLib.GCReadPort); }, [&] { CallABatch(pBare); });
    }
    Report(objTurns.GetFastest("call of a producer's entry", AtMost(1.5), kCallsInABatch));
}
BENCHMARK(ForwardingCall)->Unit(benchmark::kMillisecond)->Iterations(1000);

}  // namespace
