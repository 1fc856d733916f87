// compare-features: tells which settings a camera and a file have differently.
//
//     compare-features CAMERA FILE
//
// CAMERA is an ID, a serial number or a user's name, as list-cameras shows them; FILE is what save-features has
// written, of a camera of the same model. No setting is changed.
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

constexpr const char* kProgram = "compare-features";
constexpr const char* kUsage = "Usage: compare-features CAMERA FILE\n";

void PrintDifferences(const COpenCamera& objCamera, std::istream& streamText) {
    const auto vecDataStream = objCamera.GetDevice()->GetDataStreamList();
    if (vecDataStream.empty()) {
        throw std::runtime_error("the camera has no data stream, whose settings belong to the file");
    }
    vecDataStream.front()->DoOpenDataStream();
    const FEATURE_FILE_COMPARISON objComparison = CompareDeviceFeatures(objCamera.GetDevice(), streamText);
    for (const auto& [eSection, objFeature] : objComparison.Differences) {
        std::cout << objFeature.Name;
        for (const auto& objSelector : objFeature.Selectors) {
            std::cout << ", " << objSelector.Name << ' ' << objSelector.Value;
        }
        std::cout << ": " << objFeature.InBag << " in the file, " << objFeature.OnDevice << " now\n";
    }
    for (const std::string& strText : objComparison.NotCompared) {
        std::cerr << strText << '\n';
    }
    std::cout << objComparison.Differences.size() << " differences\n";
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
        PrintDifferences(COpenCamera(objSession.FindCamera(argv[1])), streamText);
    });
}
