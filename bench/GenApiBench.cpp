// How long a big description takes to load, against the parser alone, and how long a cached value takes to read,
// against a lock and a look-up of the same name.

#include <mutex>
#include <string>
#include <unordered_map>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include "GenApi/AccessMode.h"
#include "GenApi/Integer.h"
#include "GenApi/Node.h"
#include "GenApi/NodeCast.h"
#include "GenApi/NodeMapRef.h"
#include "tests/GenApi/DescriptionGenerator.h"
#include "tests/GenApi/MemoryPort.h"

namespace {

const std::string& BigDescription() {
    static const std::string s_strText = GenerateDescription(kBigDescriptionSize);
    return s_strText;
}

void BM_ParseAlone(benchmark::State& state) {
    const std::string& strText = BigDescription();
    for (auto _ : state) {
        pugi::xml_document objDocument;
        benchmark::DoNotOptimize(objDocument.load_buffer(strText.data(), strText.size()));
    }
    state.counters["bytes"] = static_cast<double>(strText.size());
}
BENCHMARK(BM_ParseAlone)->Unit(benchmark::kMicrosecond);

void BM_LoadDescription(benchmark::State& state) {
    const GenICam_3_0::gcstring strText(BigDescription());
    for (auto _ : state) {
        GenApi_3_0::CNodeMapRef objMap;
        objMap._LoadXMLFromString(strText);
        state.counters["nodes"] = static_cast<double>(objMap._Ptr->GetNumNodes());
    }
}
BENCHMARK(BM_LoadDescription)->Unit(benchmark::kMicrosecond);

constexpr const char* kFeature = "AcquisitionBurstFrameCount";

class CLoadedMap {
public:
    CLoadedMap() {
        Map._LoadXMLFromString(BigDescription());
        Map._Connect(&Port, "Device");
    }
    CMemoryPort Port;
    GenApi_3_0::CNodeMapRef Map;
};

void BM_LockAndLookUp(benchmark::State& state) {
    CLoadedMap objMap;
    GenApi_3_0::NodeList_t vecNode;
    objMap.Map._GetNodes(vecNode);
    std::unordered_map<std::string, GenApi_3_0::INode*> mapNode;
    for (GenApi_3_0::INode* pNode : vecNode) {
        mapNode.emplace(pNode->GetName().str(), pNode);
    }
    std::recursive_mutex objLock;
    const std::string strName = kFeature;
    for (auto _ : state) {
        const std::lock_guard objGuard(objLock);
        benchmark::DoNotOptimize(mapNode.find(strName)->second);
    }
}
BENCHMARK(BM_LockAndLookUp);

void BM_ReadCachedInteger(benchmark::State& state) {
    CLoadedMap objMap;
    auto* pInteger = dynamic_cast<GenApi_3_0::IInteger*>(objMap.Map._GetNode(kFeature));
    pInteger->GetValue();
    for (auto _ : state) {
        benchmark::DoNotOptimize(pInteger->GetValue());
    }
}
BENCHMARK(BM_ReadCachedInteger);

// As a caller does who has nothing but a name: find, ask for the access mode, cast, read.
void BM_ReadCachedIntegerByName(benchmark::State& state) {
    CLoadedMap objMap;
    const std::string strName = kFeature;
    for (auto _ : state) {
        GenApi_3_0::INode* pNode = objMap.Map._GetNode(strName);
        if (!GenApi_3_0::IsImplemented(pNode)) {
            state.SkipWithError("not implemented");
            break;
        }
        benchmark::DoNotOptimize(GenApi_3_0::node_cast<GenApi_3_0::IInteger>(pNode)->GetValue());
    }
}
BENCHMARK(BM_ReadCachedIntegerByName);

void BM_WriteInteger(benchmark::State& state) {
    CLoadedMap objMap;
    objMap.Port.PutNumber(0, 0);
    auto* pInteger = dynamic_cast<GenApi_3_0::IInteger*>(objMap.Map._GetNode("BlackLevelRaw"));
    std::int64_t nValue = 0;
    for (auto _ : state) {
        pInteger->SetValue(nValue ^= 1, false);
    }
}
BENCHMARK(BM_WriteInteger);

}  // namespace
