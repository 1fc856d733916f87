// What a list update costs beyond the time that the cameras are given to answer, and what the merge of a long list
// costs.

#include <algorithm>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/ListMerge.h"
#include "bench/Turns.h"
#include "tests/TLClass/TreeOnDouble.h"

namespace {

constexpr int kInterfaces = 8;
constexpr int kCameras = 32;
constexpr std::uint64_t kWindowMs = 200;
constexpr std::uint64_t kDelayMs = 1;
constexpr int kKnownCameras = 1000;

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
    CTurns objTurns;
    for (auto _ : objState) {
        objTurns.Add(CTurns::SecondsOf(Update), static_cast<double>(kWindowMs) / 1000);
    }
    Report(objTurns.GetMedian("list update of 8 adapters with 32 cameras each", AtMost(1.1)));
}
BENCHMARK(UpdateOfManyInterfaces)->Unit(benchmark::kMillisecond)->Iterations(10)->UseRealTime();

/// Cameras that are all known, in the worst order: each record searches to the list's end.
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
    std::reverse(vecRecord.begin(), vecRecord.end());
    CTurns objTurns;
    for (auto _ : objState) {
        objTurns.Add(CTurns::SecondsOf([&] {
                         auto listCandidate = MakeCandidates(
                             vecDevice, [](const IDevice& objDevice) { return objDevice.GetDeviceInformation().ID; });
                         MergeList(vecRecord, listCandidate, EMatched::Taken,
                                   [](const DEV_MODULE_INFO&) { return boost::shared_ptr<IDevice>(); });
                         if (!listCandidate.empty()) {
                             objState.SkipWithError("a known camera wasn't found");
                         }
                     }),
                     0);
    }
    Report(objTurns.GetFastest("merge of 1,000 known cameras in the worst order", AtMost(0.05)));
}
BENCHMARK(MergeOfKnownCameras)->Unit(benchmark::kMillisecond)->Iterations(200);

}  // namespace
