// The program itself with the bundled producer, and a virtual camera at the other end of a cable.

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include <sys/wait.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <png.h>

#include "camera/Faults.h"
#include "camera/TestImage.h"
#include "gev/Address.h"
#include "tests/TLClass/TemporaryDirectory.h"
#include "tests/camera/RunningCamera.h"
#include "tests/network/NetworkNamespace.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

struct RUN {
    int nExitCode = -1;
    std::string strOut;
};

std::vector<std::byte> ReadRaw(const std::string& strPath) {
    std::ifstream stream(strPath, std::ios::binary);
    const std::string strBytes(std::istreambuf_iterator<char>(stream), {});
    const auto vecBytes = std::as_bytes(std::span(strBytes));
    return {vecBytes.begin(), vecBytes.end()};
}

std::vector<std::byte> ReadGreyPng(const std::string& strPath) {
    png_image objImage{};
    objImage.version = PNG_IMAGE_VERSION;
    std::vector<std::byte> vecBytes;
    if (png_image_begin_read_from_file(&objImage, strPath.c_str()) != 0 && objImage.format == PNG_FORMAT_GRAY) {
        vecBytes.resize(PNG_IMAGE_SIZE(objImage));
        png_image_finish_read(&objImage, nullptr, vecBytes.data(), 0, nullptr);
    }
    return vecBytes;
}

/// Whether these are what the camera draws for the frame number that they show.
bool IsDrawnByCamera(const std::vector<std::byte>& vecBytes, std::uint32_t nWidth, std::uint32_t nHeight) {
    const camera::CTestImage objImage({nWidth, nHeight});
    std::vector<std::byte> vecDrawn(objImage.GetSize());
    if (vecBytes.size() != vecDrawn.size()) {
        return false;
    }
    objImage.Draw(objImage.ReadFrameNumber(vecBytes), vecDrawn);
    return vecBytes == vecDrawn;
}

/// A user at a machine with one adapter, and a camera whose address doesn't fit it.
class CameraOnCable : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
            GTEST_SKIP() << strWhy;
        }
        m_objMachine.emplace();
        m_objFar.emplace();
        Connect(*m_objMachine, "eth1", "192.168.1.5/24", *m_objFar, "far1", "");
        camera::CAMERA_CONFIGURATION objConfiguration;
        objConfiguration.Interface = "far1";
        objConfiguration.IP = camera::ParseIPSetting("10.9.9.9/24");
        objConfiguration.UserName = "left";
        m_objCamera.emplace(*m_objFar, objConfiguration);
        m_strMAC = gev::FormatMAC(m_objCamera->Get().GetMAC()).GetText();
    }

    /// Runs the program as one does who has set nothing up.
    RUN Run(const std::string& strArguments) const {
        return RunCommand("env -u GENICAM_GENTL64_PATH " NORVIKCTL " " + strArguments, {});
    }

    /// @param fnMeanwhile  called with the first line of its output
    RUN RunCommand(const std::string& strCommand, const std::function<void(const std::string&)>& fnMeanwhile) const {
        RUN objRun;
        m_objMachine->Do([&] {
            std::FILE* const pPipe = popen(strCommand.c_str(), "re");
            for (std::array<char, 4096> arrLine{}; std::fgets(arrLine.data(), arrLine.size(), pPipe) != nullptr;) {
                objRun.strOut += arrLine.data();
                if (fnMeanwhile && objRun.strOut == arrLine.data()) {
                    fnMeanwhile(objRun.strOut);
                }
            }
            const int nStatus = pclose(pPipe);
            objRun.nExitCode = WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
        });
        return objRun;
    }

    std::optional<CNetworkNamespace> m_objMachine;
    std::optional<CNetworkNamespace> m_objFar;
    std::optional<CRunningCamera> m_objCamera;
    std::string m_strMAC;
};

TEST_F(CameraOnCable, IsRecoveredAndThenReached) {
    RUN objRun = Run("list --json");
    ASSERT_EQ(objRun.nExitCode, 0);
    const json objFound = json::parse(objRun.strOut)["cameras"].at(0);
    EXPECT_EQ(objFound["mac"], m_strMAC);
    EXPECT_EQ(objFound["state"], "other subnet");
    EXPECT_EQ(objFound["interface"], "eth1");
    m_objMachine->Run("ip address add 10.9.9.1/24 broadcast + dev eth1");
    EXPECT_EQ(json::parse(Run("list --json").strOut)["cameras"].at(0)["state"], "ready") << "in the second subnet";
    m_objMachine->Run("ip address del 10.9.9.1/24 dev eth1");

    objRun = Run("recover " + m_strMAC + " 192.168.1.20 --json");
    EXPECT_EQ(objRun.nExitCode, 0);
    EXPECT_EQ(json::parse(objRun.strOut)["camera"]["address"], "192.168.1.20");
    objRun = Run("features 192.168.1.20 set Width 640");
    EXPECT_EQ(objRun.nExitCode, 0);
    EXPECT_EQ(objRun.strOut, "640\n");

    m_objMachine->Run("ip link add off type veth peer name other; ip address add 10.7.0.1/24 broadcast + dev off");
    objRun = Run("recover 02-00-00-00-00-01 192.168.1.21 --wait 1 2>&1");
    EXPECT_EQ(objRun.nExitCode, 6);
    EXPECT_THAT(objRun.strOut, HasSubstr("Sent on eth1.\n"));
    EXPECT_THAT(objRun.strOut, HasSubstr("No camera with the MAC 02-00-00-00-00-01"));
}

TEST_F(CameraOnCable, IsForcedToAnAddressAndKeepsIt) {
    const RUN objRun = Run("force left 192.168.1.20 --keep --json");
    EXPECT_EQ(objRun.nExitCode, 0);
    const json objCamera = json::parse(objRun.strOut)["camera"];
    EXPECT_EQ(objCamera["address"], "192.168.1.20");
    EXPECT_EQ(objCamera["state"], "ready");
    EXPECT_EQ(Run("features left get GevPersistentIPAddress").strOut, "192.168.1.20\n");
    EXPECT_EQ(Run("force left 192.168.1.5").nExitCode, 2) << "this computer's own";
    EXPECT_THAT(Run("force left 10.8.8.8 2>&1").strOut, HasSubstr("ADDRESS/24 broadcast + dev eth1\n"));
    EXPECT_EQ(Run("force left 192.168.1.21 --mask 255.0.255.0").nExitCode, 1);
}

/// At its own address, streaming. Its frames go to a folder of the test's own.
class GrabOnCable : public CameraOnCable {
protected:
    void SetUp() override {
        CameraOnCable::SetUp();
        if (!IsSkipped()) {
            Run("recover " + m_strMAC + " 192.168.1.20");
            ASSERT_EQ(Run("features left set AcquisitionFrameRate 50").nExitCode, 0);
        }
    }

    /// One with many frames to go, to which something happens once it has the first.
    /// @param fnHappens  gets the ID of its process
    RUN GrabUntil(const std::function<void(const std::string&)>& fnHappens) const {
        std::filesystem::remove_all(Path(""));
        return RunCommand("echo $$; exec " NORVIKCTL " grab left -n 1000 --raw --timeout 1000 -o " + Path("") + " 2>&1",
                          [&](const std::string& strOut) {
                              for (int i = 0; i < 2000 && !std::filesystem::exists(GetRawFile(1)); ++i) {
                                  std::this_thread::sleep_for(std::chrono::milliseconds(5));
                              }
                              fnHappens(strOut.substr(0, strOut.find('\n')));
                          });
    }

    std::string GetRawFile(int nNumber) const {
        return Path("frame-00000" + std::to_string(nNumber) + "-1280x1024-Mono8.raw");
    }
    std::string Path(const std::string& strName) const { return m_objDirectory.Path(strName); }

    CTemporaryDirectory m_objDirectory;
};

TEST_F(GrabOnCable, WritesWhatTheCameraDrawsAndTellsTheRate) {
    for (const bool bRaw : {false, true}) {
        const RUN objRun = Run("grab left -n 5 --json -o " + Path("") + (bRaw ? " --raw" : ""));
        EXPECT_EQ(objRun.nExitCode, 0);
        const json objResult = json::parse(objRun.strOut);
        EXPECT_EQ(objResult["frames"], 5);
        EXPECT_EQ(objResult["lost"], 0);
        EXPECT_NEAR(objResult["megabytes_per_second"].get<double>() / objResult["frames_per_second"].get<double>(),
                    1.31072, 0.01);
        for (int i = 1; i <= 5; ++i) {
            const std::string strPng = Path("frame-00000" + std::to_string(i) + ".png");
            EXPECT_TRUE(IsDrawnByCamera(bRaw ? ReadRaw(GetRawFile(i)) : ReadGreyPng(strPng), 1280, 1024)) << i;
        }
    }
}

TEST_F(GrabOnCable, SaysWhatToCheckAfterFramesCameIncomplete) {
    camera::FAULTS objFaults;
    camera::SetFault(objFaults, "lost-trailer=100");
    camera::SetFault(objFaults, "no-resend");
    m_objCamera->Get().SetFaults(objFaults);
    const RUN objRun = Run("grab left --raw --timeout 2000 -o " + Path("") + " 2>&1");
    EXPECT_EQ(objRun.nExitCode, 6);
    EXPECT_THAT(objRun.strOut, HasSubstr("No packet that was asked for came again"));
}

TEST_F(GrabOnCable, EndsInOrderByCtrlCAndWhenTheCameraIsUnplugged) {
    RUN objRun = GrabUntil(
        [](const std::string& strProcess) { EXPECT_EQ(std::system(("kill -INT " + strProcess).c_str()), 0); });
    EXPECT_EQ(objRun.nExitCode, 6);
    EXPECT_THAT(objRun.strOut, HasSubstr("Interrupted.\n"));
    EXPECT_EQ(Run("grab left -o " + Path("")).nExitCode, 0) << "the camera is free again";

    const auto objStart = std::chrono::steady_clock::now();
    objRun = GrabUntil([this](const std::string&) { m_objFar->Run("ip link set far1 down"); });
    EXPECT_EQ(objRun.nExitCode, 6);
    EXPECT_THAT(objRun.strOut, HasSubstr("No complete frame came for 1000 ms"));
    EXPECT_LT(std::chrono::steady_clock::now() - objStart, std::chrono::seconds(15));
}

}  // namespace
