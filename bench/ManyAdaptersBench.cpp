// What further adapters cost one list update through the bundled producer: ten with three cameras each against one.
// Both machines are network namespaces, with a cable, a switch and cameras in software behind each adapter.

#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/Turns.h"
#include "tests/network/SwitchedNetwork.h"
#include "tests/network/TreeOnProducer.h"

namespace {

constexpr int kAdapters = 10;
constexpr int kCamerasEach = 3;
constexpr std::uint64_t kWindowMs = 200;

/// Updates on the machine, and checks that every camera is listed.
double TimeUpdate(const CTreeOnProducer& objTree, const CSwitchedNetwork& objNetwork, std::size_t nCameras) {
    objNetwork.GetMachine().Enter();
    std::size_t nListed = 0;
    const double fSeconds = CTurns::SecondsOf([&] { nListed = objTree.Update(kWindowMs); });
    if (nListed != nCameras) {
        throw std::runtime_error(std::to_string(nListed) + " cameras are listed, not " + std::to_string(nCameras));
    }
    return fSeconds;
}

void UpdateOfTenAdapters(benchmark::State& objState) {
    if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
        objState.SkipWithError(strWhy.c_str());
        return;
    }
    const CSwitchedNetwork objOne(1, kCamerasEach);
    const CSwitchedNetwork objTen(kAdapters, kCamerasEach);
    objOne.GetMachine().Enter();
    const CTreeOnProducer objTree;
    // The first update of each also opens the interfaces.
    TimeUpdate(objTree, objOne, kCamerasEach);
    TimeUpdate(objTree, objTen, std::size_t{kAdapters} * kCamerasEach);
    CTurns objTurns;
    for (auto _ : objState) {
        const double fOne = TimeUpdate(objTree, objOne, kCamerasEach);
        objTurns.Add(TimeUpdate(objTree, objTen, std::size_t{kAdapters} * kCamerasEach), fOne);
    }
    Report(objTurns.GetMedian("list update of ten adapters with 3 cameras each, through the producer", AtMost(1.1)));
}
BENCHMARK(UpdateOfTenAdapters)->Unit(benchmark::kMillisecond)->Iterations(20)->UseRealTime();

}  // namespace
