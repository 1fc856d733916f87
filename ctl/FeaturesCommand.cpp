#include "ctl/FeaturesCommand.h"

#include <optional>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "GenApi/Command.h"
#include "GenApi/Node.h"
#include "GenApi/NodeCast.h"
#include "GenApi/Value.h"
#include "GenTL/GenTL.h"
#include "TLClass/TLClassFeature/FeatureFile.h"
#include "TLClass/TLClassFeature/FeatureFileModule.h"
#include "ctl/DifferenceReport.h"
#include "ctl/ErrorText.h"
#include "ctl/FeatureReport.h"
#include "ctl/FeatureTree.h"
#include "ctl/Json.h"
#include "ctl/OpenCamera.h"
#include "ctl/Table.h"
#include "ctl/UserFile.h"
#include "support/ZrException.h"

namespace {

GenApi_3_0::IValue& ValueOf(GenApi_3_0::INode& objNode) {
    auto* const pValue = dynamic_cast<GenApi_3_0::IValue*>(&objNode);
    if (pValue == nullptr) {
        throw CCommandError(EXIT_CODE::Failure, objNode.GetName().str() + " has no value");
    }
    return *pValue;
}

void Set(GenApi_3_0::INode& objNode, const std::string& strValue) {
    if (auto* const pCommand = GenApi_3_0::node_cast<GenApi_3_0::ICommand>(&objNode)) {
        pCommand->Execute();
    } else {
        ValueOf(objNode).FromString(strValue);
    }
}

std::istringstream ReadFeatureFile(const std::string& strPath) {
    return std::istringstream(ReadUserFile(strPath, CFeatureFile::kMaxFeatureFileSize));
}

/// Does what may find the file at fault, and then says which file.
template <class TStep>
auto UseFeatureFile(const std::string& strPath, const TStep& fnStep) {
    try {
        return fnStep();
    } catch (const CZrException&) {
        throw;  // of the camera
    } catch (const std::runtime_error& objError) {
        throw CCommandError(EXIT_CODE::Failure, strPath + ": " + objError.what());
    }
}

/// @param strText  its value; none of a command that can't be read
void PrintFeature(GenApi_3_0::INode& objNode, const std::optional<std::string>& strText,
                  const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    if (objOptions.bJson) {
        FEATURE objFeature = ReadFeature(objNode);
        objFeature.strValue = strText;  // at its full length
        WriteFeatureTreeJson(objOutput.objOut, objFeature);
    } else if (strText) {
        objOutput.objOut << Printable(*strText) << '\n';
    }
}

void PrintErrors(const std::vector<std::string>& vecError, const COMMAND_OUTPUT& objOutput) {
    for (const std::string& strError : vecError) {
        objOutput.objErr << Printable(strError) << '\n';
    }
}

}  // namespace

EXIT_CODE RunFeatures(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    const COpenCamera objCamera(objOptions.objCamera, DEVICE_ACCESS_READONLY);
    const FEATURE objRoot = ReadFeatureTree(objCamera.GetNodeMap(), objOptions.bAll);
    if (objOptions.bJson) {
        WriteFeatureTreeJson(objOutput.objOut, objRoot);
    } else {
        WriteFeatureTree(objOutput.objOut, objRoot);
    }
    return EXIT_CODE::Success;
}

EXIT_CODE RunFeatureGet(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    const COpenCamera objCamera(objOptions.objCamera, DEVICE_ACCESS_READONLY);
    GenApi_3_0::INode& objNode = objCamera.GetFeature(objOptions.strName);
    PrintFeature(objNode, ValueOf(objNode).ToString().str(), objOptions, objOutput);
    return EXIT_CODE::Success;
}

EXIT_CODE RunFeatureSet(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    const COpenCamera objCamera(objOptions.objCamera, DEVICE_ACCESS_CONTROL);
    GenApi_3_0::INode& objNode = objCamera.GetFeature(objOptions.strName);
    try {
        Set(objNode, objOptions.strValue);
    } catch (const std::exception& objException) {
        const std::string strLimits = DescribeLimits(ReadLimits(objNode));
        std::string strError = ErrorText(objException);
        if (strError.find(objOptions.strName) == std::string::npos) {
            strError.insert(0, objOptions.strName + ": ");
        }
        throw CCommandError(ExitCodeOf(objException),
                            strError + (strLimits.empty() ? "" : ". It may be set to " + strLimits));
    }
    const GenApi_3_0::EAccessMode eAccess = objNode.GetAccessMode();
    std::optional<std::string> strText;
    if (eAccess == GenApi_3_0::RO || eAccess == GenApi_3_0::RW) {
        strText = ValueOf(objNode).ToString(false, true).str();
    }
    PrintFeature(objNode, strText, objOptions, objOutput);
    return EXIT_CODE::Success;
}

EXIT_CODE RunFeatureSave(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    const COpenCamera objCamera(objOptions.objCamera, DEVICE_ACCESS_CONTROL);
    objCamera.OpenStream();  // the file has the stream's settings as well
    std::ostringstream objText;
    std::vector<std::string> vecError;
    SaveDeviceFeatures(objCamera.GetDevice(), objText, &vecError);
    WriteUserFile(objOptions.strFile, objText.str(), EWholeFile::Durable);
    PrintErrors(vecError, objOutput);
    if (objOptions.bJson) {
        WriteJson(objOutput.objOut, {{"not_saved", vecError}});
    }
    objOutput.objErr << "Saved the settings of " << Printable(objCamera.GetCamera().strID) << " to "
                     << objOptions.strFile << (vecError.empty() ? ".\n" : ", but for what is told above.\n");
    return vecError.empty() ? EXIT_CODE::Success : EXIT_CODE::Incomplete;
}

EXIT_CODE RunFeatureDiff(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    std::istringstream objFile = ReadFeatureFile(objOptions.strFile);
    const COpenCamera objCamera(objOptions.objCamera, DEVICE_ACCESS_CONTROL);  // without it no selector moves
    objCamera.OpenStream();
    const FEATURE_FILE_COMPARISON objComparison =
        UseFeatureFile(objOptions.strFile, [&] { return CompareDeviceFeatures(objCamera.GetDevice(), objFile); });
    if (objOptions.bJson) {
        WriteDifferencesJson(objOutput.objOut, objComparison);
    } else {
        WriteDifferences(objOutput.objOut, objComparison);
    }
    PrintErrors(objComparison.NotCompared, objOutput);
    const bool bDifferent = !objComparison.Differences.empty();
    const bool bWhole = objComparison.NotCompared.empty();
    objOutput.objErr << Printable(objCamera.GetCamera().strID) << (bDifferent ? " differs from " : " is as in ")
                     << objOptions.strFile;
    objOutput.objErr << (bWhole ? ".\n" : ", but for what is told above, which can't be compared.\n");
    return bDifferent ? EXIT_CODE::Different : bWhole ? EXIT_CODE::Success : EXIT_CODE::Incomplete;
}

EXIT_CODE RunFeatureLoad(const FEATURES_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    std::istringstream objFile = ReadFeatureFile(objOptions.strFile);
    const COpenCamera objCamera(objOptions.objCamera, DEVICE_ACCESS_CONTROL);
    objCamera.OpenStream();
    const std::vector<std::string> vecError =
        UseFeatureFile(objOptions.strFile, [&] { return LoadDeviceFeatures(objCamera.GetDevice(), objFile, true); });
    PrintErrors(vecError, objOutput);
    if (objOptions.bJson) {
        WriteJson(objOutput.objOut, {{"refused", vecError}});
    }
    objOutput.objErr << "Applied " << objOptions.strFile << " to " << Printable(objCamera.GetCamera().strID);
    objOutput.objErr << (vecError.empty() ? ".\n" : ", but for what is told above.\n");
    return vecError.empty() ? EXIT_CODE::Success : EXIT_CODE::Incomplete;
}
