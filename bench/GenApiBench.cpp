// How long a big description takes to load, against the parser alone.

#include <string>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include "GenApi/NodeMapRef.h"
#include "bench/Turns.h"
#include "tests/GenApi/DescriptionGenerator.h"

namespace {

void LoadDescription(benchmark::State& objState) {
    const GenICam_3_0::gcstring strText(GenerateDescription(kBigDescriptionSize));
    std::size_t nNodes = 0;
    CTurns objTurns;
    for (auto _ : objState) {
        objTurns.Take(
            [&] {
                GenApi_3_0::CNodeMapRef objMap;
                objMap._LoadXMLFromString(strText);
                nNodes = static_cast<std::size_t>(objMap._Ptr->GetNumNodes());
            },
            [&] {
                pugi::xml_document objDocument;
                benchmark::DoNotOptimize(objDocument.load_buffer(strText.c_str(), strText.length()));
            });
    }
    Report(objTurns.GetFastest("load of a description of " + std::to_string(strText.length() / 1000) + " kB with " +
                                   std::to_string(nNodes) + " nodes",
                               AtMost(3)));
}
BENCHMARK(LoadDescription)->Unit(benchmark::kMillisecond)->Iterations(100);

}  // namespace
