// save-features: saves the settings of a camera to a file.
//
//     save-features CAMERA FILE
//
// CAMERA is an ID, a serial number or a user's name, as list-cameras shows them. The file is a text, and is what
// LoadDeviceFeatures writes back to a camera of the same model. A FILE that is there already is replaced, once all of
// it has been saved.
//
// Set GENICAM_GENTL64_PATH to the folder of ZrGVTL.cti first.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "TLClass/TLClassFeature/FeatureFileModule.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "examples/Session.h"

namespace {

constexpr const char* kProgram = "save-features";
constexpr const char* kUsage = "Usage: save-features CAMERA FILE\n";

/// The whole feature file as a text.
std::string ReadSettings(const std::string& strCamera) {
    const CSession objSession{std::chrono::milliseconds(500)};
    const COpenCamera objCamera(objSession.FindCamera(strCamera));
    const auto vecDataStream = objCamera.GetDevice()->GetDataStreamList();
    if (vecDataStream.empty()) {
        throw std::runtime_error(strCamera + ": has no data stream, whose settings belong to the file");
    }
    // The camera's streams are listed with it, but opened only when somebody needs one: here for its features. Closing
    // the camera closes it too.
    vecDataStream.front()->DoOpenDataStream();
    std::ostringstream streamText;
    std::vector<std::string> vecMissing;
    SaveDeviceFeatures(objCamera.GetDevice(), streamText, &vecMissing);
    for (const std::string& strText : vecMissing) {
        std::cerr << strText << '\n';
    }
    return streamText.str();
}

/// The text stands in a file beside it until it is complete, so that a full disk doesn't cost the settings of last
/// time.
void ReplaceFile(const std::string& strFile, const std::string& strText) {
    const std::string strPart = strFile + ".part";
    std::ofstream streamFile(strPart, std::ios_base::binary);
    streamFile.write(strText.data(), static_cast<std::streamsize>(strText.size()));
    streamFile.close();
    if (!streamFile) {
        std::error_code objIgnored;
        std::filesystem::remove(strPart, objIgnored);
        throw std::runtime_error(strPart + ": can't be written");
    }
    std::filesystem::rename(strPart, strFile);
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
        ReplaceFile(argv[2], ReadSettings(argv[1]));
        std::cout << argv[2] << ": saved\n";
    });
}
