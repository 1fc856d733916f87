// What saving and loading the settings of a big camera costs beyond turning its values into text and back, and how
// often it goes to the camera for that: on a network each access costs more than all else for its value.

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "GenApi/Node.h"
#include "GenApi/Value.h"
#include "TLClass/TLClassFeature/FeatureFile.h"
#include "tests/GenApi/TestMap.h"

namespace {

constexpr int kFeatures = 2000;

/// A camera with so many settings, each with limits and a register of its own, and a model.
class CCamera : public CTestMap {
public:
    explicit CCamera(int nFeatures) : CTestMap(Nodes(nFeatures)) {}

    CFeatureFile File() { return {&Map, &m_objModule.Map, &m_objModule.Map}; }
    std::string Saved() {
        std::ostringstream stream;
        File().Save(stream);
        return stream.str();
    }
    /// The most reads that one register has had.
    int MostReads() const {
        const auto& mapReads = Port.ReadsAt();
        const auto it = std::max_element(mapReads.begin(), mapReads.end(),
                                         [](const auto& a, const auto& b) { return a.second < b.second; });
        return it == mapReads.end() ? 0 : it->second;
    }
    std::vector<GenApi_3_0::IValue*> Values() const {
        std::vector<GenApi_3_0::IValue*> vecValue;
        for (int i = 0; i < kFeatures; ++i) {
            vecValue.push_back(dynamic_cast<GenApi_3_0::IValue*>(Map._GetNode("Feature" + std::to_string(i))));
        }
        return vecValue;
    }

private:
    static std::string Nodes(int nFeatures) {
        std::string strCategory = "<Category Name='Root'>";
        std::string strNodes = "<String Name='DeviceModelName'><Value>Camera</Value></String>";
        for (int i = 0; i < nFeatures; ++i) {
            const std::string strName = "Feature" + std::to_string(i);
            strCategory += "<pFeature>" + strName + "</pFeature>";
            strNodes += "<Integer Name='" + strName + "'><Streamable>Yes</Streamable><pValue>" + strName +
                        "Reg</pValue><Min>0</Min><Max>100000</Max></Integer>" + Reg(strName + "Reg", 4 * i);
        }
        return strCategory + "</Category>" + strNodes;
    }

    CTestMap m_objModule{""};
};

/// Fails the benchmark if a register is read twice.
void CheckReads(benchmark::State& state, const CCamera& objCamera) {
    if (objCamera.MostReads() > 1) {
        state.SkipWithError("a register was read twice");
    }
}

void BM_ReadAllAsText(benchmark::State& state) {
    const CCamera objCamera(kFeatures);
    const auto vecValue = objCamera.Values();
    for (auto _ : state) {
        objCamera.Map._InvalidateNodes();
        for (GenApi_3_0::IValue* pValue : vecValue) {
            benchmark::DoNotOptimize(pValue->ToString());
        }
    }
}
BENCHMARK(BM_ReadAllAsText)->Unit(benchmark::kMicrosecond);

void BM_Save(benchmark::State& state) {
    CCamera objCamera(kFeatures);
    objCamera.Saved();
    CheckReads(state, objCamera);
    state.counters["reads"] = objCamera.Port.TakeReads();
    objCamera.Saved();
    state.counters["reads_again"] = objCamera.Port.TakeReads();
    for (auto _ : state) {
        objCamera.Map._InvalidateNodes();
        benchmark::DoNotOptimize(objCamera.Saved());
    }
}
BENCHMARK(BM_Save)->Unit(benchmark::kMicrosecond);

void BM_WriteAllAsText(benchmark::State& state) {
    const CCamera objCamera(kFeatures);
    const auto vecValue = objCamera.Values();
    for (auto _ : state) {
        for (GenApi_3_0::IValue* pValue : vecValue) {
            pValue->FromString("7");
        }
    }
}
BENCHMARK(BM_WriteAllAsText)->Unit(benchmark::kMicrosecond);

void BM_Load(benchmark::State& state) {
    const std::string strText = CCamera(kFeatures).Saved();
    CCamera objCamera(kFeatures);
    const auto Load = [&] {
        std::istringstream stream(strText);
        if (!objCamera.File().Load(stream, true).empty()) {
            state.SkipWithError("a value was refused");
        }
    };
    Load();
    CheckReads(state, objCamera);
    state.counters["reads"] = objCamera.Port.TakeReads();
    state.counters["writes"] = objCamera.Port.TakeWrites();
    for (auto _ : state) {
        Load();
    }
}
BENCHMARK(BM_Load)->Unit(benchmark::kMicrosecond);

}  // namespace
