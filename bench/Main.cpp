// What every benchmark starts with: Google Benchmark's own options and output, then the figures.

#include <cstdio>

#include <benchmark/benchmark.h>

#include "bench/Figure.h"

int main(int argc, char* argv[]) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    std::printf("\n");
    return PrintFigures() ? 0 : 1;
}
