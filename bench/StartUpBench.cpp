// What the program's start costs beyond what no window can do without: Qt, the fonts, and the half second that the
// first list waits for answers. The cameras are in software, behind two adapters of a network namespace.

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/Turns.h"
#include "support/Environment.h"
#include "tests/network/SwitchedNetwork.h"

namespace {

constexpr int kAdapters = 2;
constexpr int kCamerasEach = 3;

/// Starts a program, and waits until it says that its list is painted.
/// @throws std::runtime_error  it doesn't list every camera
void StartUp(const char* pProgram) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pOutput(popen(pProgram, "re"), pclose);
    int nListed = 0;
    if (!pOutput || std::fscanf(pOutput.get(), "%d", &nListed) != 1 || nListed != kAdapters * kCamerasEach) {
        throw std::runtime_error(std::string(pProgram) + " lists " + std::to_string(nListed) + " cameras");
    }
}

void StartUpToFirstList(benchmark::State& objState) {
    if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
        objState.SkipWithError(strWhy.c_str());
        return;
    }
    const CSwitchedNetwork objNetwork(kAdapters, kCamerasEach);
    objNetwork.GetMachine().Enter();
    SetEnvironment("QT_QPA_PLATFORM", "offscreen");
    SetEnvironment("GENICAM_GENTL64_PATH", PRODUCER_CTI_DIRECTORY);
    StartUp(STARTED_NORVIK);  // reads both from the disk
    StartUp(BARE_WINDOW);
    CTurns objTurns;
    for (auto _ : objState) {
        objTurns.Take([] { StartUp(STARTED_NORVIK); }, [] { StartUp(BARE_WINDOW); });
    }
    Report(objTurns.GetMedian("start to the first list on the screen", AtMost(1.05)));
}
BENCHMARK(StartUpToFirstList)->Unit(benchmark::kMillisecond)->Iterations(10)->UseRealTime();

}  // namespace
