#include "ctl/Program.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <functional>
#include <ostream>

#include <CLI/CLI.hpp>

#include "ctl/DoctorCommand.h"
#include "ctl/ErrorText.h"
#include "ctl/FeaturesCommand.h"
#include "ctl/ForceCommand.h"
#include "ctl/GrabCommand.h"
#include "ctl/ListCommand.h"
#include "ctl/RecoverCommand.h"
#include "ctl/Table.h"
#include "support/Log.h"

namespace {

constexpr const char* kDescription =
    "Finds GigE Vision cameras, rescues those with a wrong address, reads and writes their\n"
    "features, and grabs frames.";

constexpr const char* kFooter =
    "CAMERA is the camera's ID, MAC, serial number, user-defined name, IP address, or a part of its model\n"
    "that no other camera has.\n"
    "\n"
    "Results go to standard output, everything else to standard error. GENICAM_GENTL64_PATH names folders\n"
    "with another ZrGVTL.cti to use in place of the bundled one.\n"
    "\n"
    "Exit codes:\n";

std::string MakeFooter() {
    std::string strFooter = kFooter;
    for (std::size_t i = 0; i < kExitCodeTexts.size(); ++i) {
        strFooter += "  " + std::to_string(i) + "  " + kExitCodeTexts[i] + '\n';
    }
    strFooter.pop_back();
    return strFooter;
}

constexpr const char* kCameraHelp = "The camera: its ID, MAC, serial number, name, IP address, or a part of its model";

// More than a day is a slip.
constexpr int kMostSearchMs = 86'400'000;

using COMMAND = std::function<EXIT_CODE(const COMMAND_OUTPUT&)>;

/// For a command line that isn't understood: what is wrong with it, and where to read what would be right.
std::string UsageText(const CLI::App* pApp, const CLI::Error& objError) {
    const std::vector<CLI::App*> vecCommand = pApp->get_subcommands();
    std::string strProblem = objError.what();
    if (vecCommand.empty()) {
        // To the parser only the command is missing, whatever else was typed.
        const std::vector<std::string> vecUnknown = pApp->remaining();
        strProblem = vecUnknown.empty() ? "A command is missing" : Printable(vecUnknown.front()) + ": no such command";
    }
    return "norvikctl: " + strProblem + ". Try norvikctl " +
           (vecCommand.empty() ? "" : vecCommand.front()->get_name() + ' ') + "--help\n";
}

/// The command line's grammar, and what it filled.
class CGrammar {
public:
    CGrammar() : m_objApp(kDescription, "norvikctl") {
        m_objApp.set_version_flag("--version", "norvikctl " NORVIK_VERSION, "Print the version and end");
        m_objApp.require_subcommand(1);
        m_objApp.fallthrough();  // the options of features may stand behind its subcommands, and -v anywhere
        m_objApp.failure_message(UsageText);
        m_objApp.add_flag("-v,--verbose", m_bVerbose, "Tell on standard error what the library logs");
        AddList();
        AddRecover();
        AddForce();
        AddFeatures();
        AddGrab();
        AddDoctor();
        m_objApp.footer(MakeFooter());  // last, or every command would have it too
    }
    CGrammar(const CGrammar&) = delete;
    CGrammar& operator=(const CGrammar&) = delete;

    /// Parses, then runs the command that was named.
    EXIT_CODE Run(std::vector<std::string> vecArgument, const COMMAND_OUTPUT& objOutput) {
        std::reverse(vecArgument.begin(), vecArgument.end());  // as the parser wants them
        try {
            m_objApp.parse(std::move(vecArgument));
        } catch (const CLI::ParseError& objError) {
            const bool bHelp = m_objApp.exit(objError, objOutput.objOut, objOutput.objErr) == 0;
            return bHelp ? EXIT_CODE::Success : EXIT_CODE::Usage;
        }
        constexpr int kLogDropped = 0;
        constexpr int kLogToStandardError = 1;
        CLog::GetInstance()->SetMode(m_bVerbose ? kLogToStandardError : kLogDropped);
        return m_fnCommand(objOutput);
    }

private:
    template <class TOptions>
    void Chooses(CLI::App* pApp, const TOptions& objOptions,
                 EXIT_CODE (*fnRun)(const TOptions&, const COMMAND_OUTPUT&)) {
        // Those of nested subcommands are called before that of the command they stand in.
        pApp->callback([this, &objOptions, fnRun] {
            if (!m_fnCommand) {
                m_fnCommand = [&objOptions, fnRun](const COMMAND_OUTPUT& objOutput) {
                    return fnRun(objOptions, objOutput);
                };
            }
        });
    }

    static void AddMilliseconds(CLI::App* pApp, const char* pName, std::chrono::milliseconds& nTime,
                                const char* pHelp) {
        pApp->add_option_function<int>(
                pName, [&nTime](const int& nMs) { nTime = std::chrono::milliseconds(nMs); }, pHelp)
            ->check(CLI::Range(0, kMostSearchMs).description(""))
            ->type_name("MS")
            ->default_str(std::to_string(nTime.count()));
    }

    static void AddAdapter(CLI::App* pApp, std::string& strAdapter, const char* pHelp) {
        pApp->add_option("--adapter", strAdapter, pHelp)->type_name("NAME");
    }

    static void AddCamera(CLI::App* pApp, CAMERA_OPTIONS& objOptions) {
        pApp->add_option("camera", objOptions.strCamera, kCameraHelp)->required()->type_name("CAMERA");
        AddAdapter(pApp, objOptions.strAdapter, "Only a camera on this adapter, named as list shows it");
        AddMilliseconds(pApp, "--search", objOptions.nSearchTime,
                        "How long to look for cameras; a tenth of it if one answers that has this ID, MAC or address");
    }

    void AddList() {
        CLI::App* const pApp = m_objApp.add_subcommand("list", "List the cameras on all adapters");
        pApp->add_flag("--json", m_objList.bJson, "Write JSON: the lists \"adapters\" and \"cameras\"");
        AddAdapter(pApp, m_objList.strAdapter, "Only this adapter, by its name or the first word of it");
        AddMilliseconds(pApp, "--search", m_objList.nSearchTime, "How long to look for cameras");
        Chooses(pApp, m_objList, RunList);
    }

    void AddRecover() {
        CLI::App* const pApp = m_objApp.add_subcommand(
            "recover", "Give a camera that nothing reaches an address, by its MAC, and see where it comes up");
        pApp->add_option("mac", m_objRecover.strMAC, "As on the camera's label, such as 02-5E-17-00-AD-EA")
            ->required()
            ->type_name("MAC");
        pApp->add_option("address", m_objRecover.strAddress, "That it is to get, such as 192.168.1.20")
            ->required()
            ->type_name("ADDRESS");
        CLI::Option* const pDryRun =
            pApp->add_flag("--dry-run", m_objRecover.bDryRun, "Show the packets and send nothing");
        pApp->add_flag("--json", m_objRecover.bJson, "Write JSON: the \"camera\" where it last answered, or null")
            ->excludes(pDryRun);
        AddMilliseconds(pApp, "--wait", m_objRecover.nWait,
                        "How long to look for the camera afterwards; 0 for not at all");
        pApp->footer(
            "It is broadcast on every adapter: a vendor command, which stores the address in cameras that know\n"
            "it, then a restart of their IP configuration. The camera's mask becomes 255.255.255.0.");
        Chooses(pApp, m_objRecover, RunRecover);
    }

    void AddForce() {
        CLI::App* const pApp = m_objApp.add_subcommand(
            "force", "Force an address on a camera that answers, in whatever subnet it is; every camera takes one so");
        FORCE_OPTIONS& objOptions = m_objForce;
        AddCamera(pApp, objOptions.objCamera);
        pApp->add_option("address", objOptions.strAddress, "That it is to get, such as 192.168.1.20")
            ->required()
            ->type_name("ADDRESS");
        pApp->add_option("--mask", objOptions.strMask, "Its subnet mask")->type_name("MASK")->capture_default_str();
        pApp->add_option("--gateway", objOptions.strGateway, "Its gateway; none if not given")->type_name("ADDRESS");
        pApp->add_flag("--keep", objOptions.bKeep, "Store it in the camera as well; else it is lost at its next start");
        pApp->add_flag("--json", objOptions.bJson, "Write JSON: the \"camera\" as list does");
        Chooses(pApp, objOptions, RunForce);
    }

    void AddFeatures() {
        CLI::App* const pApp =
            m_objApp.add_subcommand("features", "Show, get, set, save, load and compare a camera's features");
        FEATURES_OPTIONS& objOptions = m_objFeatures;
        AddCamera(pApp, objOptions.objCamera);
        pApp->add_flag("--all", objOptions.bAll, "Show those for gurus as well");
        pApp->add_flag("--json", objOptions.bJson, "Write JSON: categories as objects of their features, or see below");
        Chooses(pApp, objOptions, RunFeatures);

        CLI::App* const pGet = pApp->add_subcommand("get", "get NAME: print the value of one feature");
        pGet->add_option("name", objOptions.strName, "Of the feature")->required()->type_name("NAME");
        CLI::App* const pSet = pApp->add_subcommand(
            "set", "set NAME VALUE: set a feature and print what it is then; execute a command, whatever VALUE");
        pSet->add_option("name", objOptions.strName, "Of the feature")->required()->type_name("NAME");
        pSet->add_option("value", objOptions.strValue, "That it gets; any for a command, which is executed")
            ->required()
            ->type_name("VALUE");
        CLI::App* const pSave = pApp->add_subcommand("save", "save FILE: save the settings to a feature file");
        pSave->add_option("file", objOptions.strFile, "To write, in place of one of that name")
            ->required()
            ->type_name("FILE");
        CLI::App* const pLoad = pApp->add_subcommand("load", "load FILE: apply the settings in a feature file");
        pLoad->add_option("file", objOptions.strFile, "That save has written, for a camera of the same model")
            ->required()
            ->type_name("FILE");
        CLI::App* const pDiff = pApp->add_subcommand(
            "diff", "diff FILE: print which settings a feature file and the camera have differently; change none");
        pDiff->add_option("file", objOptions.strFile, "That save has written, for a camera of the same model")
            ->required()
            ->type_name("FILE");
        pApp->require_subcommand(0, 1);
        Chooses(pGet, objOptions, RunFeatureGet);
        Chooses(pSet, objOptions, RunFeatureSet);
        Chooses(pSave, objOptions, RunFeatureSave);
        Chooses(pLoad, objOptions, RunFeatureLoad);
        Chooses(pDiff, objOptions, RunFeatureDiff);
        pApp->footer(
            R"(Without a subcommand it shows all features by category. The options may stand behind a subcommand. With
--json get and set write the feature as one of those objects, save the list "not_saved", load the list
"refused", and diff the lists "differences" and "not_compared". A feature has "kind", "value" (null if it
can't be read), "unit", "readable", "writable" and "limits": "min", "max" and "increment", or "entries", or
"max_length". Numbers are numbers, but for those that are shown in hexadecimal or as an address.)");
    }

    void AddGrab() {
        CLI::App* const pApp = m_objApp.add_subcommand("grab", "Grab frames to files, with the camera's settings");
        GRAB_OPTIONS& objOptions = m_objGrab;
        AddCamera(pApp, objOptions.objCamera);
        pApp->add_option("-n,--frames", objOptions.nFrames, "How many complete frames")
            ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1'000'000'000}).description(""))
            ->type_name("N")
            ->capture_default_str();
        pApp->add_option("-o,--output", objOptions.strFolder,
                         "The folder for the files; made if it isn't there. Frames of an earlier run are overwritten")
            ->type_name("DIR")
            ->capture_default_str();
        pApp->add_flag(
            "--raw", [this](std::int64_t) { m_objGrab.eFile = FRAME_FILE::Raw; },
            "Write the bytes as they came instead of PNG files");
        AddMilliseconds(pApp, "--timeout", objOptions.nTimeout, "The longest wait for a complete frame");
        pApp->add_flag("--json", objOptions.bJson, "Write the result as JSON");
        pApp->footer(
            "PNG takes Mono8 to Mono16, packed ones too, Bayer, RGB8 and BGR8. Samples of 10 to 14 bits are\n"
            "shifted up to 16. A Bayer mosaic is made colours of by averaging neighbours; --raw keeps the mosaic.");
        Chooses(pApp, objOptions, RunGrab);
    }

    void AddDoctor() {
        CLI::App* const pApp = m_objApp.add_subcommand(
            "doctor", "Look at this machine for what keeps cameras from being seen; change nothing");
        pApp->add_flag("--json", m_objDoctor.bJson, "Write JSON: a list of findings");
        Chooses(pApp, m_objDoctor, RunDoctor);
    }

    CLI::App m_objApp;
    bool m_bVerbose = false;
    LIST_OPTIONS m_objList;
    RECOVER_OPTIONS m_objRecover;
    FORCE_OPTIONS m_objForce;
    FEATURES_OPTIONS m_objFeatures;
    GRAB_OPTIONS m_objGrab;
    DOCTOR_OPTIONS m_objDoctor;
    COMMAND m_fnCommand;
};

}  // namespace

EXIT_CODE RunProgram(const std::vector<std::string>& vecArgument, const COMMAND_OUTPUT& objOutput) {
    try {
        CGrammar objGrammar;
        EXIT_CODE eExitCode = objGrammar.Run(vecArgument, objOutput);
        if (!objOutput.objOut.flush()) {
            throw CCommandError(EXIT_CODE::Failure, "standard output can't be written");
        }
        return eExitCode;
    } catch (const std::exception& objException) {
        // Some of it may come from a camera.
        objOutput.objErr << "norvikctl: " << PrintableLines(ErrorText(objException)) << '\n';
        return ExitCodeOf(objException);
    }
}
