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
#include "bench/Turns.h"
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

/// A number of accesses to registers, which is held to the least there can be.
void ReportAccesses(const std::string& strName, int nAccesses, int nLeast) {
    Report({strName, static_cast<double>(nAccesses), 0, AtMost(nLeast), ""});
}

void SaveSettings(benchmark::State& objState) {
    CCamera objCamera(kFeatures);
    const auto vecValue = objCamera.Values();
    objCamera.Saved();
    ReportAccesses("registers read by a save of 2,000 settings", objCamera.Port.TakeReads(), kFeatures);
    ReportAccesses("most reads of one of them", objCamera.MostReads(), 1);
    objCamera.Saved();
    ReportAccesses("registers read by a second save", objCamera.Port.TakeReads(), 0);
    CTurns objTurns;
    for (auto _ : objState) {
        objCamera.Map._InvalidateNodes();
        const double fSave = CTurns::SecondsOf([&] { benchmark::DoNotOptimize(objCamera.Saved()); });
        objCamera.Map._InvalidateNodes();
        objTurns.Add(fSave, CTurns::SecondsOf([&] {
                         for (GenApi_3_0::IValue* pValue : vecValue) {
                             benchmark::DoNotOptimize(pValue->ToString());
                         }
                     }));
    }
    Report(objTurns.GetFastest("save of 2,000 settings", {}));
}
BENCHMARK(SaveSettings)->Unit(benchmark::kMillisecond)->Iterations(200);

void LoadSettings(benchmark::State& objState) {
    const std::string strText = CCamera(kFeatures).Saved();
    CCamera objCamera(kFeatures);
    const auto vecValue = objCamera.Values();
    const auto funLoad = [&] {
        std::istringstream stream(strText);
        if (!objCamera.File().Load(stream, true).empty()) {
            objState.SkipWithError("a value was refused");
        }
    };
    funLoad();
    ReportAccesses("registers read by a load of 2,000 settings", objCamera.Port.TakeReads(), 0);
    ReportAccesses("registers written by it", objCamera.Port.TakeWrites(), kFeatures);
    CTurns objTurns;
    for (auto _ : objState) {
        objTurns.Take(funLoad, [&] {
            for (GenApi_3_0::IValue* pValue : vecValue) {
                pValue->FromString("7");
            }
        });
    }
    Report(objTurns.GetFastest("load of 2,000 settings", {}));
}
BENCHMARK(LoadSettings)->Unit(benchmark::kMillisecond)->Iterations(200);

}  // namespace
