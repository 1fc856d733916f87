#include "ctl/DifferenceReport.h"

#include <ostream>
#include <string>
#include <vector>

#include "TLClass/TLClassFeature/FeatureFileComparison.h"
#include "ctl/Json.h"
#include "ctl/Table.h"

namespace {

const char* ModuleText(EFeatureFileSection eSection) {
    switch (eSection) {
        case EFeatureFileSection::RemoteDevice:
            return "camera";
        case EFeatureFileSection::LocalDevice:
            return "device module";
        case EFeatureFileSection::Stream:
            break;
    }
    return "stream module";
}

std::string SelectorsText(const GenApi_3_0::FEATURE_DIFFERENCE& objFeature) {
    std::string strText;
    for (const auto& objSelector : objFeature.Selectors) {
        strText += (strText.empty() ? "" : ", ") + objSelector.Name + '=' + objSelector.Value;
    }
    return strText;
}

/// A register may hold megabytes, and a column is as wide as its widest cell.
std::string Shortened(const std::string& strText) {
    constexpr std::size_t kMost = 64;
    return strText.size() <= kMost ? strText : strText.substr(0, kMost) + "...";
}

}  // namespace

void WriteDifferences(std::ostream& objOut, const FEATURE_FILE_COMPARISON& objComparison) {
    if (objComparison.Differences.empty()) {
        return;
    }
    std::vector<std::vector<std::string>> vecRow{{"FEATURE", "SELECTORS", "FILE", "CAMERA", "MODULE"}};
    for (const auto& [eSection, objFeature] : objComparison.Differences) {
        vecRow.push_back({objFeature.Name, SelectorsText(objFeature), Shortened(objFeature.InBag),
                          Shortened(objFeature.OnDevice), ModuleText(eSection)});
    }
    WriteTable(objOut, vecRow);
}

void WriteDifferencesJson(std::ostream& objOut, const FEATURE_FILE_COMPARISON& objComparison) {
    nlohmann::ordered_json objDifferences = nlohmann::ordered_json::array();
    for (const auto& [eSection, objFeature] : objComparison.Differences) {
        nlohmann::ordered_json objSelectors = nlohmann::ordered_json::object();
        for (const auto& objSelector : objFeature.Selectors) {
            objSelectors[objSelector.Name] = objSelector.Value;
        }
        objDifferences.push_back({{"module", ModuleText(eSection)},
                                  {"feature", objFeature.Name},
                                  {"selectors", objSelectors},
                                  {"file", objFeature.InBag},
                                  {"camera", objFeature.OnDevice}});
    }
    nlohmann::ordered_json objJson;
    objJson["differences"] = objDifferences;
    objJson["not_compared"] = objComparison.NotCompared;
    WriteJson(objOut, objJson);
}
