// Everything at once, for as long as it is told: cameras on two adapters of a machine of its own that lose packets,
// play tricks and come and go; streams, features, events, lists and another application, through the module tree and
// the bundled producer as a program uses them. Meanwhile each frame is compared with what the camera drew, each
// stream's counts with what came, and each call's time with its bound.
//
// It goes in rounds. Between them everything is closed and what the process holds is noted; at the end that is judged.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <future>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tests/network/TreeOnProducer.h"
#include "tests/soak/Playground.h"
#include "tests/soak/RollCall.h"

namespace {

using Clock = CCallBook::Clock;
using namespace std::chrono_literals;

constexpr double kShortestRound = 2;  // seconds
constexpr double kLongestRound = 10;
constexpr int kSkipped = 77;  // what CTest takes for a test that can't run here

struct OPTIONS {
    double Seconds = 600;
    double Round = 0;
    std::uint32_t Seed = 0;
    std::size_t Leak = 0;
    int Other = -1;
    std::string Inside;
};

using Player = std::function<void(PLAYGROUND&, CChance)>;

const std::vector<Player>& GetPlayers() {
    static const std::vector<Player> s_vecPlayers{
        [](PLAYGROUND& objAll, CChance objChance) { StreamImages(objAll, 0, objChance); },
        [](PLAYGROUND& objAll, CChance objChance) { StreamImages(objAll, 1, objChance); },
        [](PLAYGROUND& objAll, CChance objChance) { UseFeatures(objAll, 3, true, objChance); },
        [](PLAYGROUND& objAll, CChance objChance) { StreamImages(objAll, 4, objChance); },
        [](PLAYGROUND& objAll, CChance objChance) { UseFeatures(objAll, 5, false, objChance); },
        [](PLAYGROUND& objAll, CChance objChance) { LetOthersVisit(objAll, 5, objChance); },
        [](PLAYGROUND& objAll, CChance objChance) { UseFeatures(objAll, 7, false, objChance); },
        UpdateLists,
        MakeTrouble};
    return s_vecPlayers;
}

void PlayRound(PLAYGROUND& objPlayground, Clock::time_point tmEnd, std::mt19937& objSeeds) {
    objPlayground.Stop = false;
    std::vector<std::future<void>> vecDone;
    for (const Player& funPlayer : GetPlayers()) {
        vecDone.push_back(std::async(std::launch::async, funPlayer, std::ref(objPlayground),
                                     CChance(static_cast<std::uint32_t>(objSeeds()))));
    }
    for (auto& objDone : vecDone) {
        while (objDone.wait_for(20ms) != std::future_status::ready) {
            objPlayground.Book.EndIfSomethingHangs();
            objPlayground.Stop = objPlayground.Stop || Clock::now() >= tmEnd;
        }
        objPlayground.Stop = true;  // nobody ends before the others but with an exception
        objDone.get();
    }
}

/// After a round nothing is open and nothing is unplugged: all cameras must come back.
void AwaitAll(PLAYGROUND& objPlayground) {
    const auto tmEnd = Clock::now() + 20s;
    std::size_t nListed = 0;
    while (nListed != kCameras && Clock::now() < tmEnd) {
        objPlayground.Book.Try(ECall::Update, [&] { nListed = CTreeOnProducer::Update(200); });
    }
    objPlayground.Book.Expect(nListed == kCameras, "only " + std::to_string(nListed) + " cameras have come back");
}

/// What the process holds beside the cameras, which keep megabytes of sent images to send them again.
ROLL CallTheRollWithoutCameras(PLAYGROUND& objPlayground, double fSeconds) {
    for (int i = 0; i < kCameras; ++i) {
        objPlayground.Network.SwitchOff(i);
    }
    const ROLL objRoll = CallTheRoll(fSeconds);
    for (int i = 0; i < kCameras; ++i) {
        objPlayground.Network.SwitchOn(i);
    }
    return objRoll;
}

void PrintRoll(const ROLL& objRoll, const PLAYGROUND& objPlayground) {
    std::printf("%8.0f %12lld %12lld %6lld %8lld %10llu %8llu\n", objRoll.Seconds,
                static_cast<long long>(objRoll.Resident), static_cast<long long>(objRoll.Heap),
                static_cast<long long>(objRoll.Descriptors), static_cast<long long>(objRoll.Threads),
                static_cast<unsigned long long>(objPlayground.Frames),
                static_cast<unsigned long long>(objPlayground.Book.GetComplaints()));
    std::fflush(stdout);
}

void PlayAll(PLAYGROUND& objPlayground, const OPTIONS& objOptions) {
    const auto tmStart = Clock::now();
    const auto Elapsed = [&] { return std::chrono::duration<double>(Clock::now() - tmStart).count(); };
    const double fRound =
        objOptions.Round > 0 ? objOptions.Round : std::clamp(objOptions.Seconds / 60, kShortestRound, kLongestRound);
    std::mt19937 objSeeds(objOptions.Seed);
    std::vector<ROLL> vecRoll;
    vecRoll.reserve(100'000);  // so that it doesn't grow itself
    std::vector<std::unique_ptr<char[]>> vecLeak;
    std::printf("%8s %12s %12s %6s %8s %10s %8s\n", "SECONDS", "RESIDENT KiB", "HEAP bytes", "FILES", "THREADS",
                "FRAMES", "WRONG");
    while (Elapsed() < objOptions.Seconds || vecRoll.size() < 6) {
        PlayRound(objPlayground,
                  Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(fRound)),
                  objSeeds);
        AwaitAll(objPlayground);
        vecRoll.push_back(CallTheRollWithoutCameras(objPlayground, Elapsed()));
        PrintRoll(vecRoll.back(), objPlayground);
        if (objOptions.Leak != 0) {
            vecLeak.push_back(std::make_unique<char[]>(objOptions.Leak));
        }
    }
    for (const std::string& strComplaint : JudgeRolls(vecRoll)) {
        objPlayground.Book.Expect(false, strComplaint);
    }
}

int Soak(const OPTIONS& objOptions) {
    if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
        std::printf("skipped: %s\n", strWhy.c_str());
        return kSkipped;
    }
    std::printf("seed %u\n", objOptions.Seed);
    GiveFreedMemoryBack();
    PLAYGROUND objPlayground;
    objPlayground.Network.GetMachine().Enter();
    {
        const CTreeOnProducer objTree;
        CTreeOnProducer::Update(500);
        PlayAll(objPlayground, objOptions);
    }
    objPlayground.Book.Print();
    std::printf(
        "\n%llu frames, %llu of them incomplete; %llu events; %llu times unplugged, %llu times told; %llu visits\n",
        static_cast<unsigned long long>(objPlayground.Frames),
        static_cast<unsigned long long>(objPlayground.IncompleteFrames),
        static_cast<unsigned long long>(objPlayground.Events), static_cast<unsigned long long>(objPlayground.Unplugs),
        static_cast<unsigned long long>(objPlayground.Goings), static_cast<unsigned long long>(objPlayground.Visits));
    objPlayground.Book.Expect(
        objPlayground.Frames > objPlayground.IncompleteFrames && objPlayground.Unplugs > 0 && objPlayground.Visits > 0,
        "too little has happened to show anything");
    std::printf("%s\n", objPlayground.Book.GetComplaints() == 0 ? "all well" : "NOT well");
    return objPlayground.Book.GetComplaints() == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    OPTIONS objOptions;
    objOptions.Seed = std::random_device()();
    CLI::App objApp("Plays everything at once on a network of its own, and tells whether it stays well.");
    objApp.add_option("--seconds", objOptions.Seconds, "how long")
        ->envname("NORVIK_SOAK_SECONDS")
        ->capture_default_str();
    objApp.add_option("--round", objOptions.Round, "seconds between two rolls; by default a sixtieth, 2 to 10");
    objApp.add_option("--seed", objOptions.Seed, "of all that is left to chance");
    objApp.add_option("--leak", objOptions.Leak, "bytes to lose in each round, to see it noticed");
    objApp.add_option("--other", objOptions.Other, "be the other application, at this camera")->group("");
    objApp.add_option("--inside", objOptions.Inside, "the namespace that it must be in")->group("");
    CLI11_PARSE(objApp, argc, argv);
    return objOptions.Other >= 0 ? BeAnotherApplication(objOptions.Other, objOptions.Inside) : Soak(objOptions);
}
