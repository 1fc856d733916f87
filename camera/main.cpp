#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>

#include "camera/CameraConfiguration.h"
#include "camera/CameraState.h"
#include "camera/StateFile.h"
#include "camera/VirtualCamera.h"
#include "gev/Address.h"

namespace {

std::atomic<camera::CVirtualCamera*> g_pCamera = nullptr;  // for the signal handler

void OnSignal(int nSignal) {
    // A second one ends the program at once: it may be waiting for somebody who doesn't read its output any further.
    std::signal(nSignal, nSignal == SIGPIPE ? SIG_IGN : SIG_DFL);
    if (camera::CVirtualCamera* const pCamera = g_pCamera; pCamera != nullptr) {
        pCamera->Stop();
    }
}

/// How the program ends, for scripts; the same numbers as norvikctl's.
enum class EExitCode : int {
    Success = 0,  ///< ended by a signal, as is meant
    Failure = 1,
    Usage = 2  ///< the command line isn't understood
};

struct ARGUMENTS {
    camera::CAMERA_CONFIGURATION Configuration;
    std::string IP;
    std::string Persistent;
    std::uint32_t ReconfigurationMs = 0;
    std::vector<std::string> Faults;
    std::string State;
    bool Verbose = false;
};

std::string MakeFooter() {
    std::string strFooter = "Faults:\n";
    for (const camera::FAULT_HELP& objHelp : camera::ListFaults()) {
        std::string strForm(objHelp.Form);
        strForm.resize(26, ' ');
        strFooter.append("  ").append(strForm).append(objHelp.Text).append("\n");
    }
    return strFooter +
           "\nExit codes: 0 ended by Ctrl-C or SIGTERM; 1 failed; 2 the command line isn't understood.\n"
           "\nThe camera takes over the adapter: its MAC is the adapter's, and the adapter gets the camera's address.\n"
           "So give it one of its own, in a network namespace. As root, for example:\n"
           "  ip netns add camera\n"
           "  ip link add eth-cam type veth peer name eth0 netns camera\n"
           "  ip address add 10.0.0.1/24 dev eth-cam && ip link set eth-cam up\n"
           "  ip netns exec camera virtual-camera --interface eth0 --persistent 10.0.0.2/24\n";
}

void DescribeArguments(CLI::App& objApp, ARGUMENTS& objArguments) {
    camera::CAMERA_CONFIGURATION& objConfiguration = objArguments.Configuration;
    objApp.set_version_flag("--version", "virtual-camera " NORVIK_VERSION, "Print the version and end");
    objArguments.ReconfigurationMs = static_cast<std::uint32_t>(objConfiguration.Reconfiguration.count());
    objApp.add_option("--interface", objConfiguration.Interface, "Adapter that the camera owns")
        ->required()
        ->type_name("IF");
    objApp
        .add_option("--ip", objArguments.IP,
                    "Address at the start, until the IP configuration starts again; none: no address at all")
        ->type_name("A.B.C.D/N");
    objApp
        .add_option("--persistent", objArguments.Persistent,
                    "Address of the persistent configuration. Without it the camera takes a link-local one")
        ->type_name("A.B.C.D/N");
    objApp.add_option("--model", objConfiguration.Model, "Name of the model")->type_name("TEXT")->capture_default_str();
    objApp.add_option("--serial", objConfiguration.Serial, "Serial number; without it the MAC's digits")
        ->type_name("TEXT");
    objApp.add_option("--name", objConfiguration.UserName, "User-defined name")->type_name("TEXT");
    objApp
        .add_option("--reconfiguration", objArguments.ReconfigurationMs,
                    "How long nothing reaches the camera when its IP configuration starts again")
        ->type_name("MS")
        ->check(CLI::Range(0, 600000))
        ->capture_default_str();
    objApp.add_option("--fault", objArguments.Faults, "What the camera does wrong; may be given several times")
        ->type_name("NAME[=VALUE]")
        ->allow_extra_args(false);
    objApp
        .add_option("--state", objArguments.State,
                    "File that keeps what a camera keeps when it is switched off: the persistent address, the name and "
                    "the user sets")
        ->type_name("FILE");
    objApp.add_flag("--verbose", objArguments.Verbose, "Tell each request and its outcome");
}

/// @throws std::invalid_argument  with a text for the user
void TakeArguments(ARGUMENTS& objArguments) {
    camera::CAMERA_CONFIGURATION& objConfiguration = objArguments.Configuration;
    if (objArguments.IP == "none") {
        objConfiguration.IP = camera::IP_SETTING{};
    } else if (!objArguments.IP.empty()) {
        objConfiguration.IP = camera::ParseIPSetting(objArguments.IP);
    }
    if (!objArguments.Persistent.empty()) {
        objConfiguration.Persistent = camera::ParseIPSetting(objArguments.Persistent);
    }
    objConfiguration.Reconfiguration = std::chrono::milliseconds(objArguments.ReconfigurationMs);
    for (const std::string& strFault : objArguments.Faults) {
        camera::SetFault(objConfiguration.Faults, strFault);
    }
    if (objArguments.Verbose) {
        objConfiguration.Log = [](std::string_view strLine) {
            std::printf("%.*s\n", static_cast<int>(strLine.size()), strLine.data());
            std::fflush(stdout);
        };
    }
}

/// @throws camera::CStateError
void TakeState(const std::string& strPath, camera::CAMERA_CONFIGURATION& objConfiguration) {
    const camera::CStateFile objFile(strPath);
    objConfiguration.State = objFile.Read();
    objConfiguration.Keep = [objFile, strPath](std::string_view strText) {
        try {
            objFile.Write(strText);
            return true;
        } catch (const camera::CStateError& objError) {
            std::fprintf(stderr, "virtual-camera: %s: %s\n", strPath.c_str(), objError.what());
            return false;
        }
    };
}

/// Lets a signal stop the camera, for the length of its life: what ends the program ends it in order, so that the
/// adapter doesn't keep the camera's address.
class CStopBySignal {
public:
    explicit CStopBySignal(camera::CVirtualCamera& objCamera) {
        g_pCamera = &objCamera;
        // A terminal that closes, and a reader of the output that goes, mean the end as well.
        for (const int nSignal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
            // What nohup ignores stays so. A script's "&" ignores Ctrl-C, which is to end its camera nevertheless.
            if (std::signal(nSignal, OnSignal) == SIG_IGN && nSignal == SIGHUP) {
                std::signal(nSignal, SIG_IGN);
            }
        }
    }
    ~CStopBySignal() { g_pCamera = nullptr; }
    CStopBySignal(const CStopBySignal&) = delete;
    CStopBySignal& operator=(const CStopBySignal&) = delete;
};

void RunCamera(const camera::CAMERA_CONFIGURATION& objConfiguration) {
    camera::CVirtualCamera objCamera(objConfiguration);
    const CStopBySignal objStop(objCamera);
    const std::string strMAC(gev::FormatMAC(objCamera.GetMAC()).GetText());
    const std::string strAddress(gev::FormatIPv4(objCamera.GetAddress()).GetText());
    std::printf("ready: %s on %s, address %s\n", strMAC.c_str(), objConfiguration.Interface.c_str(),
                strAddress.c_str());
    std::fflush(stdout);
    objCamera.Run();
}

std::string Advise(const std::system_error& objError) {
    if (objError.code() == std::errc::operation_not_permitted || objError.code() == std::errc::permission_denied) {
        return ". The camera changes its adapter's address, which needs root: run it in a network namespace, as "
               "--help shows";
    }
    if (objError.code() == std::errc::no_such_device) {
        return ". 'ip link' lists the adapters of this network namespace";
    }
    if (objError.code() == std::errc::address_in_use) {
        return ". Another camera or program has it on this adapter";
    }
    return "";
}

/// @throws std::exception
void Run(ARGUMENTS& objArguments) {
    TakeArguments(objArguments);
    if (!objArguments.State.empty()) {
        TakeState(objArguments.State, objArguments.Configuration);
    }
    RunCamera(objArguments.Configuration);
}

EExitCode Fail(EExitCode eExitCode, const std::string& strText) {
    std::fprintf(stderr, "virtual-camera: %s\n", strText.c_str());
    return eExitCode;
}

/// @throws std::exception  that there is nothing to advise on
EExitCode RunProgram(int argc, char* argv[]) {
    ARGUMENTS objArguments;
    CLI::App objApp("A GigE Vision camera in software, on a network adapter of its own.", "virtual-camera");
    DescribeArguments(objApp, objArguments);
    objApp.footer(MakeFooter());
    objApp.failure_message([](const CLI::App* /*pApp*/, const CLI::Error& objError) {
        return std::string("virtual-camera: ") + objError.what() + ". Try virtual-camera --help\n";
    });
    try {
        objApp.parse(argc, argv);
        Run(objArguments);
    } catch (const CLI::ParseError& objError) {
        const bool bHelp = objApp.exit(objError) == 0;
        return bHelp ? EExitCode::Success : EExitCode::Usage;
    } catch (const std::invalid_argument& objError) {
        return Fail(EExitCode::Usage, objError.what());
    } catch (const camera::CStateError& objError) {
        const bool bRead = objArguments.Configuration.State.has_value();
        return Fail(EExitCode::Failure,
                    objArguments.State + ": " + objError.what() + (bRead ? ". The file is left as it is" : ""));
    } catch (const std::system_error& objError) {
        return Fail(EExitCode::Failure, objError.what() + Advise(objError));
    }
    return EExitCode::Success;
}

}  // namespace

int main(int argc, char* argv[]) {
    try {
        return static_cast<int>(RunProgram(argc, argv));
    } catch (const std::exception& objError) {
        std::fprintf(stderr, "virtual-camera: %s\n", objError.what());
        return static_cast<int>(EExitCode::Failure);
    }
}
