// What a list update costs beyond the time that the cameras are given to answer, and what the merge of a long list
// costs.

#include <algorithm>
#include <chrono>
#include <limits>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/ListMerge.h"
#include "tests/TLClass/TreeOnDouble.h"

namespace {

constexpr int kInterfaces = 8;
constexpr int kCameras = 32;
constexpr std::uint64_t kWindowMs = 200;
constexpr std::uint64_t kDelayMs = 1;
constexpr int kKnownCameras = 1000;

double MillisecondsSince(std::chrono::steady_clock::time_point tmStart) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - tmStart).count();
}

/// Interfaces that look for cameras for the whole of their time, all of which are known after the first update. The
/// limit is that time itself.
void UpdateOfManyInterfaces(benchmark::State& objState) {
    const CTreeOnDouble objTree;
    objTree.Init();
    for (int nInterface = 0; nInterface < kInterfaces; ++nInterface) {
        auto& objInterface = objTree.Double().AddInterface("if-" + std::to_string(nInterface));
        for (int nCamera = 0; nCamera < kCameras; ++nCamera) {
            objInterface.Plug("cam-" + std::to_string(nInterface) + "-" + std::to_string(nCamera));
        }
        objInterface.WaitWholeWindow();
    }
    objTree.Double().RecordCalls(false);
    CGevUpdateAgency objAgency({CTreeOnDouble::TL()});
    const auto Update = [&] {
        bool bChanged = false;
        objAgency.DoLimitedBroadcastUpdate(kWindowMs, kDelayMs, &bChanged);
    };
    Update();
    double nFastestMs = std::numeric_limits<double>::max();
    double nSlowestMs = 0;
    for (auto _ : objState) {
        const auto tmStart = std::chrono::steady_clock::now();
        Update();
        const double nMs = MillisecondsSince(tmStart);
        nFastestMs = std::min(nFastestMs, nMs);
        nSlowestMs = std::max(nSlowestMs, nMs);
    }
    objState.counters["windows"] = nFastestMs / static_cast<double>(kWindowMs);  // goal: at most 1.1
    objState.counters["windows_at_worst"] = nSlowestMs / static_cast<double>(kWindowMs);
}
BENCHMARK(UpdateOfManyInterfaces)->Unit(benchmark::kMillisecond)->Iterations(10)->UseRealTime();

/// Cameras that are all known, in the producer's order or against it, where each record searches to the list's end.
/// The limit is one refresh of every record, which no merge can do without. Of each the fastest counts: what slows one
/// down is never the search.
void MergeOfKnownCameras(benchmark::State& objState) {
    const CTreeOnDouble objTree;
    objTree.Init();
    const boost::shared_ptr<IInterface> pInterface = objTree.AddInterface("if-1");
    COMMON_DEVICE_INFO objCommonInfo;
    GEV_DEV_INFO objGevInfo;
    std::vector<DEV_MODULE_INFO> vecRecord;
    std::vector<boost::shared_ptr<IDevice>> vecDevice;
    for (int i = 0; i < kKnownCameras; ++i) {
        DEV_MODULE_INFO objRecord;
        objRecord.ID = "A camera with an ID of usual length " + std::to_string(i);
        objRecord.pCommonInfo = &objCommonInfo;
        objRecord.pSpecialInfo = &objGevInfo;
        vecRecord.push_back(objRecord);
        vecDevice.push_back(boost::shared_ptr<IDevice>(
            new CGevDevice(nullptr, pInterface, nullptr, objRecord, objCommonInfo, objGevInfo)));
    }
    if (objState.range(0) != 0) {
        std::reverse(vecRecord.begin(), vecRecord.end());
    }
    double nMergeMs = std::numeric_limits<double>::max();
    double nRefreshMs = std::numeric_limits<double>::max();
    for (auto _ : objState) {
        auto tmStart = std::chrono::steady_clock::now();
        auto listCandidate =
            MakeCandidates(vecDevice, [](const IDevice& objDevice) { return objDevice.GetDeviceInformation().ID; });
        const auto vecMerged = MergeList(vecRecord, listCandidate, EMatched::Taken,
                                         [](const DEV_MODULE_INFO&) { return boost::shared_ptr<IDevice>(); });
        nMergeMs = std::min(nMergeMs, MillisecondsSince(tmStart));
        if (!listCandidate.empty()) {
            objState.SkipWithError("a known camera wasn't found");
        }
        tmStart = std::chrono::steady_clock::now();
        for (int i = 0; i < kKnownCameras; ++i) {
            vecMerged[static_cast<std::size_t>(i)]->UpdateInformation(vecRecord[static_cast<std::size_t>(i)]);
        }
        nRefreshMs = std::min(nRefreshMs, MillisecondsSince(tmStart));
    }
    objState.counters["merge_ms"] = nMergeMs;  // goal: under 50
    objState.counters["times_the_refresh"] = nMergeMs / nRefreshMs;
}
BENCHMARK(MergeOfKnownCameras)->ArgName("reversed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
