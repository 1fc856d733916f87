// load-features: writes the settings in a file back to a camera.
//
//     load-features CAMERA FILE
//
// CAMERA is an ID, a serial number or a user's name, as list-cameras shows them; FILE is what save-features has
// written, of a camera of the same model. A setting that the camera refuses is told, and keeps no other from being
// written.
//
// Set GENICAM_GENTL64_PATH to the folder of ZrGVTL.cti first.

#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "TLClass/TLClassFeature/FeatureFileModule.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "examples/Session.h"

namespace {

constexpr const char* kProgram = "load-features";
constexpr const char* kUsage = "Usage: load-features CAMERA FILE\n";

/// @throws std::runtime_error  a setting was refused, or the text isn't one for this camera
void LoadSettings(const COpenCamera& objCamera, std::istream& streamText) {
    const auto vecDataStream = objCamera.GetDevice()->GetDataStreamList();
    if (vecDataStream.empty()) {
        throw std::runtime_error("the camera has no data stream, whose settings belong to the file");
    }
    vecDataStream.front()->DoOpenDataStream();
    constexpr bool kVerify = true;  // look at access and limits before each write
    const std::vector<std::string> vecRefused = LoadDeviceFeatures(objCamera.GetDevice(), streamText, kVerify);
    for (const std::string& strText : vecRefused) {
        std::cerr << strText << '\n';
    }
    if (!vecRefused.empty()) {
        throw std::runtime_error(std::to_string(vecRefused.size()) + " settings were refused");
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::string_view(argv[1]) == "--help") {
        std::cout << kUsage;
        return 0;
    }
    if (argc != 3) {
        std::cerr << kUsage;
        return 2;
    }
    return RunExample(kProgram, [argv] {
        std::ifstream streamText(argv[2], std::ios_base::binary);
        if (!streamText) {
            throw std::runtime_error(std::string(argv[2]) + ": can't be read");
        }
        const CSession objSession{std::chrono::milliseconds(500)};
        LoadSettings(COpenCamera(objSession.FindCamera(argv[1])), streamText);
        std::cout << argv[2] << ": loaded\n";
    });
}
