#include "ctl/FeatureReport.h"

#include <ostream>

#include "ctl/Json.h"
#include "ctl/Table.h"

namespace {

constexpr std::size_t kIndent = 2;

std::string AccessText(const FEATURE& objFeature) {
    if (objFeature.bReadable) {
        return objFeature.bWritable ? "read, write" : "read only";
    }
    return objFeature.bWritable ? "write only" : "not available now";
}

/// The features of one category in columns of their own, so that one long value doesn't push all others aside.
void WriteCategory(std::ostream& objOut, const FEATURE& objCategory, std::size_t nDepth) {
    const std::string strIndent(nDepth * kIndent, ' ');
    std::vector<std::vector<std::string>> vecRow;
    for (const FEATURE& objFeature : objCategory.vecFeature) {
        if (objFeature.strKind != "category") {
            const std::string strUnit = objFeature.strUnit.empty() ? "" : ' ' + objFeature.strUnit;
            const std::string strValue = objFeature.strValue ? *objFeature.strValue + strUnit : "";
            const std::string strMore = objFeature.strLimits.empty() ? "" : ": " + objFeature.strLimits;
            const bool bCommand = objFeature.strKind == "command";
            vecRow.push_back({strIndent + objFeature.strName, bCommand ? "" : strValue,
                              (bCommand ? "command, " + AccessText(objFeature) : AccessText(objFeature)) + strMore});
        }
    }
    WriteTable(objOut, vecRow);
    for (const FEATURE& objFeature : objCategory.vecFeature) {
        if (objFeature.strKind == "category") {
            objOut << strIndent << Printable(objFeature.strName) << '\n';
            WriteCategory(objOut, objFeature, nDepth + 1);
        }
    }
}

nlohmann::ordered_json ToJson(const FEATURE& objFeature) {
    nlohmann::ordered_json objJson = nlohmann::ordered_json::object();
    if (objFeature.strKind == "category") {
        for (const FEATURE& objChild : objFeature.vecFeature) {
            objJson[objChild.strName] = ToJson(objChild);
        }
        return objJson;
    }
    objJson["kind"] = objFeature.strKind;
    objJson["value"] = objFeature.strValue ? nlohmann::ordered_json(*objFeature.strValue) : nlohmann::ordered_json();
    if (!objFeature.strUnit.empty()) {
        objJson["unit"] = objFeature.strUnit;
    }
    objJson["access"] = AccessText(objFeature);
    if (!objFeature.strLimits.empty()) {
        objJson["limits"] = objFeature.strLimits;
    }
    return objJson;
}

}  // namespace

void WriteFeatureTree(std::ostream& objOut, const FEATURE& objRoot) {
    WriteCategory(objOut, objRoot, 0);
}

void WriteFeatureTreeJson(std::ostream& objOut, const FEATURE& objRoot) {
    WriteJson(objOut, ToJson(objRoot));
}
