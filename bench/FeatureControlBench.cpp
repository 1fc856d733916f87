// How long a cached integer takes to read through the feature control, against a lock and a look-up of the same name.

#include <mutex>
#include <string>
#include <unordered_map>

#include <benchmark/benchmark.h>

#include "GenApi/Node.h"
#include "GenApi/NodeMapRef.h"
#include "TLClass/TLClassFeature/FeatureControl.h"
#include "bench/Turns.h"
#include "tests/GenApi/DescriptionGenerator.h"
#include "tests/GenApi/MemoryPort.h"

namespace {

constexpr const char* kFeature = "AcquisitionBurstFrameCount";
constexpr int kReadsInABatch = 20'000;

class CLoadedFeatures {
public:
    CLoadedFeatures() {
        Map._LoadXMLFromString(GenerateDescription(kBigDescriptionSize));
        Map._Connect(&Port, "Device");
    }

    CMemoryPort Port;
    GenApi_3_0::CNodeMapRef Map;
    CFeatureControl Control{&Map};
};

void CachedInteger(benchmark::State& objState) {
    CLoadedFeatures objFeatures;
    GenApi_3_0::NodeList_t vecNode;
    objFeatures.Map._GetNodes(vecNode);
    std::unordered_map<std::string, GenApi_3_0::INode*> mapNode;
    for (GenApi_3_0::INode* pNode : vecNode) {
        mapNode.emplace(pNode->GetName().str(), pNode);
    }
    std::recursive_mutex objLock;
    const std::string strName = kFeature;
    CTurns objTurns;
    for (auto _ : objState) {
        objTurns.Take(
            [&] {
                for (int i = 0; i < kReadsInABatch; ++i) {
                    benchmark::DoNotOptimize(objFeatures.Control.DoGetInt(strName));
                }
            },
            [&] {
                for (int i = 0; i < kReadsInABatch; ++i) {
                    const std::lock_guard objGuard(objLock);
                    benchmark::DoNotOptimize(mapNode.find(strName)->second);
                }
            });
    }
    Report(objTurns.GetFastest("cached integer by name", AtMost(3), kReadsInABatch));
}
BENCHMARK(CachedInteger)->Unit(benchmark::kMillisecond)->Iterations(500);

}  // namespace
