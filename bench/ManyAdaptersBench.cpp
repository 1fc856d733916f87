// What further adapters cost one list update through the bundled producer: ten with three cameras each against one.
// Both machines are network namespaces, with a cable, a switch and cameras in software behind each adapter.

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "tests/network/SwitchedNetwork.h"
#include "tests/network/TreeOnProducer.h"

namespace {

constexpr int kAdapters = 10;
constexpr int kCamerasEach = 3;
constexpr std::uint64_t kWindowMs = 200;

/// Updates on the machine, and checks that every camera is listed.
double TimeUpdate(const CTreeOnProducer& objTree, const CSwitchedNetwork& objNetwork, std::size_t nCameras) {
    objNetwork.GetMachine().Enter();
    const auto tmStart = std::chrono::steady_clock::now();
    const std::size_t nListed = objTree.Update(kWindowMs);
    const std::chrono::duration<double, std::milli> tmTaken = std::chrono::steady_clock::now() - tmStart;
    if (nListed != nCameras) {
        throw std::runtime_error(std::to_string(nListed) + " cameras are listed, not " + std::to_string(nCameras));
    }
    return tmTaken.count();
}

double GetMedian(std::vector<double>& vecTimes) {
    const auto itMiddle = vecTimes.begin() + static_cast<std::ptrdiff_t>(vecTimes.size() / 2);
    std::nth_element(vecTimes.begin(), itMiddle, vecTimes.end());
    return *itMiddle;
}

/// Turn about, so that whatever else the machine does meets both.
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
    std::vector<double> vecOne;
    std::vector<double> vecTen;
    for (auto _ : objState) {
        vecOne.push_back(TimeUpdate(objTree, objOne, kCamerasEach));
        vecTen.push_back(TimeUpdate(objTree, objTen, std::size_t{kAdapters} * kCamerasEach));
    }
    const double fOne = GetMedian(vecOne);
    const double fTen = GetMedian(vecTen);
    objState.counters["ms"] = fTen;
    objState.counters["one_adapter_ms"] = fOne;
    objState.counters["ratio"] = fTen / fOne;  // goal: at most 1.1
}
BENCHMARK(UpdateOfTenAdapters)->Unit(benchmark::kMillisecond)->Iterations(20)->UseRealTime();

}  // namespace
