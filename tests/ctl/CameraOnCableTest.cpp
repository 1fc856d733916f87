// The program itself with the bundled producer, and a virtual camera at the other end of a cable.

#include <array>
#include <cstdio>
#include <optional>
#include <string>

#include <sys/wait.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "gev/Address.h"
#include "tests/camera/RunningCamera.h"
#include "tests/network/NetworkNamespace.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

struct RUN {
    int nExitCode = -1;
    std::string strOut;
};

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
        RUN objRun;
        const std::string strCommand = "env -u GENICAM_GENTL64_PATH " NORVIKCTL " " + strArguments;
        m_objMachine->Do([&] {
            std::FILE* const pPipe = popen(strCommand.c_str(), "re");
            std::array<char, 4096> arrBlock{};
            for (std::size_t nRead = 0; (nRead = std::fread(arrBlock.data(), 1, arrBlock.size(), pPipe)) > 0;) {
                objRun.strOut.append(arrBlock.data(), nRead);
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

    objRun = Run("recover " + m_strMAC + " 192.168.1.20");
    EXPECT_EQ(objRun.nExitCode, 0);
    EXPECT_THAT(objRun.strOut, HasSubstr("is at 192.168.1.20 on eth1"));
    objRun = Run("features 192.168.1.20 set Width 640");
    EXPECT_EQ(objRun.nExitCode, 0);
    EXPECT_EQ(objRun.strOut, "640\n");

    objRun = Run("recover 02-00-00-00-00-01 192.168.1.21 --wait 1 2>&1");
    EXPECT_EQ(objRun.nExitCode, 6);
    EXPECT_THAT(objRun.strOut, HasSubstr("No camera with the MAC 02-00-00-00-00-01"));
}

}  // namespace
