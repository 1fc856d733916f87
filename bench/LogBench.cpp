#include <cstdio>
#include <filesystem>
#include <string>

#include <unistd.h>

#include <benchmark/benchmark.h>

#include "bench/Turns.h"
#include "support/LocalTimeText.h"
#include "support/Log.h"

namespace {

constexpr int kLines = 2000;  // about a millisecond, so that most rounds run undisturbed
const std::string kLine = "Device.cpp(211):'CDevice::__DoClose':The TL library is not complete";

std::string BenchFile() {
    return (std::filesystem::temp_directory_path() / ("norvik_log_bench." + std::to_string(getpid()))).string();
}

void WriteToLog(CLog& objLog) {
    for (int i = 0; i < kLines; ++i) {
        objLog.Write(kLine);
    }
    objLog.Flush();
}

void AppendToFile(const std::string& strFile, std::string& strBuffer) {
    std::FILE* const pFile = std::fopen(strFile.c_str(), "a");
    std::fwrite(strBuffer.data(), 1, strBuffer.size(), pFile);
    std::fclose(pFile);
    strBuffer.clear();
}

/// The least that the same lines can cost: the same time text, one buffer, and the file once for each 1024 bytes.
void WriteInBareLoop(const std::string& strFile) {
    CLocalTimeText objTime;
    std::string strBuffer;
    for (int i = 0; i < kLines; ++i) {
        objTime.AppendTo(strBuffer);
        strBuffer += kLine;
        strBuffer += '\n';
        if (strBuffer.size() >= 1024) {
            AppendToFile(strFile, strBuffer);
        }
    }
    AppendToFile(strFile, strBuffer);
}

void BufferedLogAgainstBareLoop(benchmark::State& objState) {
    const std::string strFile = BenchFile();
    CLog objLog;
    objLog.SetFileName(strFile);
    CTurns objTurns;
    for (auto _ : objState) {
        std::filesystem::remove(strFile);
        const double fLog = CTurns::SecondsOf([&] { WriteToLog(objLog); });
        std::filesystem::remove(strFile);
        objTurns.Add(fLog, CTurns::SecondsOf([&] { WriteInBareLoop(strFile); }));
    }
    std::filesystem::remove(strFile);
    Report(objTurns.GetFastest("line into the buffered log", AtMost(1.25), kLines));
}
BENCHMARK(BufferedLogAgainstBareLoop)->Unit(benchmark::kMillisecond)->Iterations(300)->UseRealTime();

}  // namespace
