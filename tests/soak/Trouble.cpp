// What happens to cameras and cables, and other applications.

#include <filesystem>
#include <iostream>
#include <thread>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "tests/network/TreeOnProducer.h"
#include "tests/soak/Playground.h"

namespace {

using namespace std::chrono_literals;

/// Cameras that are unplugged; those before them only play tricks.
constexpr int kFirstUnplugged = kCamerasEach;

void SetLink(PLAYGROUND& objPlayground, const std::string& strLink, const char* pState) {
    objPlayground.Network.GetSwitches().Run("ip link set " + strLink + ' ' + pState);
}

std::string PortOf(int nCamera) {
    return "port" + std::to_string(nCamera / kCamerasEach) + "-" + std::to_string(nCamera % kCamerasEach);
}

camera::FAULTS MakeStreamFaults(CChance& objChance) {
    camera::FAULTS objFaults;
    camera::STREAM_FAULTS& objStream = objFaults.Stream;
    const auto Percent = [&](int nMost) { return objChance.OneIn(2) ? 0.0 : objChance.Between(1, nMost); };
    objStream.Loss = Percent(10);
    objStream.LossBurst = static_cast<std::uint32_t>(objChance.Between(1, 8));
    objStream.LostLeaders = Percent(10);
    objStream.LostTrailers = Percent(10);
    objStream.Duplicates = Percent(20);
    objStream.Reorder = objChance.OneIn(3) ? static_cast<std::uint32_t>(objChance.Between(2, 20)) : 0;
    objStream.WrongSizes = objChance.OneIn(4) ? 2 : 0;
    objStream.Foreign = Percent(10);
    objStream.NoResend = objChance.OneIn(4);
    objStream.Seed = static_cast<std::uint32_t>(objChance.Between(1, 1'000'000));
    return objFaults;
}

camera::FAULTS MakeControlFaults(CChance& objChance) {
    camera::FAULTS objFaults;
    const int nWhat = objChance.Between(0, 6);
    if (nWhat == 0) {
        objFaults.Late = std::chrono::milliseconds(objChance.Between(1, 20));
    }
    objFaults.Doubled = nWhat == 1;
    objFaults.ForeignID = nWhat == 2;
    objFaults.WrongLength = nWhat == 3;
    objFaults.Garbage = nWhat == 4;
    objFaults.NamesWithoutEnd = nWhat == 5;
    if (nWhat == 6) {
        objFaults.Silent = objChance.OneIn(2) ? camera::ESilence::All : camera::ESilence::Control;
    }
    return objFaults;
}

void ChangeFaults(PLAYGROUND& objPlayground, CChance& objChance) {
    const int nCamera = objChance.Between(0, kCameras - 1);
    const bool bControl = objChance.OneIn(4);
    objPlayground.Network.GetCamera(nCamera).Get().SetFaults(bControl ? MakeControlFaults(objChance)
                                                                      : MakeStreamFaults(objChance));
    if (bControl) {
        objChance.Wait(objPlayground, 50, 600);
        objPlayground.Network.GetCamera(nCamera).Get().SetFaults({});
    }
}

void Unplug(PLAYGROUND& objPlayground, CChance& objChance) {
    const int nCamera = objChance.Between(kFirstUnplugged, kCameras - 1);
    const int nWay = objChance.Between(0, 4);
    const std::string strLink = nWay == 0 ? "uplink" + std::to_string(kAdapters - 1) : PortOf(nCamera);
    nWay < 3 ? SetLink(objPlayground, strLink, "down") : objPlayground.Network.SwitchOff(nCamera);
    ++objPlayground.Unplugs;
    objChance.Wait(objPlayground, 50, objChance.OneIn(4) ? 5000 : 800);
    nWay < 3 ? SetLink(objPlayground, strLink, "up") : objPlayground.Network.SwitchOn(nCamera);
}

}  // namespace

void CChance::Wait(const PLAYGROUND& objPlayground, int nLeastMs, int nMostMs) {
    const auto tmEnd = CCallBook::Clock::now() + std::chrono::milliseconds(Between(nLeastMs, nMostMs));
    while (!objPlayground.Stop && CCallBook::Clock::now() < tmEnd) {
        std::this_thread::sleep_for(std::min<CCallBook::Clock::duration>(20ms, tmEnd - CCallBook::Clock::now()));
    }
}

void MakeTrouble(PLAYGROUND& objPlayground, CChance objChance) {
    for (bool bUnplug = true; !objPlayground.Stop; bUnplug = objChance.OneIn(8)) {
        bUnplug ? Unplug(objPlayground, objChance) : ChangeFaults(objPlayground, objChance);
        objChance.Wait(objPlayground, 20, 150);
    }
    for (int i = 0; i < kCameras; ++i) {
        objPlayground.Network.GetCamera(i).Get().SetFaults({});
    }
}

void LetOthersVisit(PLAYGROUND& objPlayground, int nCamera, CChance objChance) {
    const std::string strProgram = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string strCommand = " '" + strProgram + "' --other " + std::to_string(nCamera) + " --inside '" +
                                   GetNetworkNamespace() + "' 2>&3 3>&-";
    while (!objPlayground.Stop) {
        const bool bKilled = objChance.OneIn(3);
        // Its own words come through, the shell's about those that are killed don't.
        std::string strLine = "exec 3>&2 2>/dev/null; timeout -s KILL ";
        strLine.append(bKilled ? "0." + std::to_string(objChance.Between(3, 9)) : "60").append(strCommand);
        try {
            objPlayground.Network.GetMachine().Run(strLine);
        } catch (const std::runtime_error& objError) {
            objPlayground.Book.Expect(bKilled, std::string("another application ") + objError.what());
        }
        ++objPlayground.Visits;
        objChance.Wait(objPlayground, 100, 1500);
    }
}

std::string GetNetworkNamespace() {
    return std::filesystem::read_symlink("/proc/thread-self/ns/net").string();
}

int BeAnotherApplication(int nCamera, const std::string& strNamespace) {
    if (GetNetworkNamespace() != strNamespace) {
        std::cerr << "this is not " << strNamespace << '\n';
        return 2;
    }
    const CTreeOnProducer objTree;
    CTreeOnProducer::Update(200);
    const auto pDevice = FindCamera(nCamera);
    if (pDevice == nullptr) {
        return 0;  // it is unplugged
    }
    try {
        pDevice->DoOpenDevice(DEVICE_ACCESS_CONTROL);
        for (int i = 0; i < 20; ++i) {
            pDevice->GetRemoteFeatureControl()->DoSetFloat("Gain", i);
            std::this_thread::sleep_for(20ms);
        }
    } catch (const std::runtime_error&) {  // somebody else has it, or it has gone
    }
    pDevice->DoCloseDevice();
    return 0;
}
