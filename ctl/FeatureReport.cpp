#include "ctl/FeatureReport.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <ostream>
#include <system_error>
#include <utility>

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
            const std::string strLimits = DescribeLimits(objFeature.objLimits);
            const std::string strMore = strLimits.empty() ? "" : ": " + strLimits;
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

template <class T>
std::optional<T> ParseWhole(const std::string& strText) {
    T nValue{};
    const char* const pEnd = strText.data() + strText.size();
    const auto objResult = std::from_chars(strText.data(), pEnd, nValue);
    return objResult.ec == std::errc() && objResult.ptr == pEnd ? std::optional(nValue) : std::nullopt;
}

/// A number or a truth value as such, if JSON has it; any other value, hexadecimal numbers and addresses among them, as
/// the text that sets it.
nlohmann::ordered_json ValueToJson(const std::string& strKind, const std::string& strText) {
    if (strKind == "integer") {
        if (const auto nValue = ParseWhole<std::int64_t>(strText)) {
            return *nValue;
        }
    } else if (strKind == "float") {
        const auto fValue = ParseWhole<double>(strText);
        if (fValue && std::isfinite(*fValue)) {
            return *fValue;
        }
    } else if (strKind == "boolean") {
        return strText == "1" || strText == "true";
    }
    return strText;
}

nlohmann::ordered_json LimitsToJson(const FEATURE& objFeature) {
    const FEATURE_LIMITS& objLimits = objFeature.objLimits;
    nlohmann::ordered_json objJson = nlohmann::ordered_json::object();
    const auto addNumber = [&](const char* pName, const std::string& strText) {
        if (!strText.empty()) {
            objJson[pName] = ValueToJson(objFeature.strKind, strText);
        }
    };
    addNumber("min", objLimits.strMin);
    addNumber("max", objLimits.strMax);
    addNumber("increment", objLimits.strIncrement);
    if (!objLimits.vecEntry.empty() && objFeature.strKind != "boolean") {
        objJson["entries"] = objLimits.vecEntry;
    }
    if (objLimits.bMoreEntries) {
        objJson["more_entries"] = true;
    }
    if (objLimits.nMaxLength) {
        objJson["max_length"] = *objLimits.nMaxLength;
    }
    return objJson;
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
    objJson["value"] = objFeature.strValue ? ValueToJson(objFeature.strKind, *objFeature.strValue) : nullptr;
    if (!objFeature.strUnit.empty()) {
        objJson["unit"] = objFeature.strUnit;
    }
    objJson["readable"] = objFeature.bReadable;
    objJson["writable"] = objFeature.bWritable;
    nlohmann::ordered_json objLimits = LimitsToJson(objFeature);
    if (!objLimits.empty()) {
        objJson["limits"] = std::move(objLimits);
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
