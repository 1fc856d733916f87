// open-and-configure: opens a camera, sets some of its features and shows what they are then.
//
//     open-and-configure CAMERA [FEATURE=VALUE]...
//     open-and-configure SN42 Width=640 ExposureTime=2500 PixelFormat=Mono8
//
// CAMERA is an ID (which may have blanks: quote it), a serial number or a user's name, as list-cameras shows them. The
// program knows the features below; without any it only shows them. A camera may lack some of them: that is said, and
// is no failure unless one was to be set.
//
// Set GENICAM_GENTL64_PATH to the folder of ZrGVTL.cti first.

#include <algorithm>
#include <charconv>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "examples/Session.h"

namespace {

constexpr const char* kProgram = "open-and-configure";
constexpr const char* kUsage = "Usage: open-and-configure CAMERA [FEATURE=VALUE]...\n";

// A feature is read and written by the operations of its type, which the standard's list of feature names tells.
constexpr const char* kIntegers[] = {"Width", "Height", "OffsetX", "OffsetY"};
constexpr const char* kFloats[] = {"ExposureTime", "Gain"};
constexpr const char* kEnumerations[] = {"PixelFormat", "TriggerMode"};

template <std::size_t nCount>
bool IsAmong(const char* const (&arrName)[nCount], const std::string& strName) {
    return std::find(std::begin(arrName), std::end(arrName), strName) != std::end(arrName);
}

template <typename NUMBER>
NUMBER ParseNumber(const std::string& strFeature, std::string_view strText) {
    NUMBER number{};
    // Unlike the standard's older functions this one minds no locale: a point is a point.
    const auto [pEnd, nError] = std::from_chars(strText.data(), strText.data() + strText.size(), number);
    if (nError != std::errc() || pEnd != strText.data() + strText.size()) {
        throw std::runtime_error(strFeature + ": \"" + std::string(strText) + "\" isn't a number it could have");
    }
    return number;
}

/// Whatever goes wrong here is thrown: there is no such feature, it can't be written now, the value is out of range.
void SetFeature(IFeatureControl& objFeatures, std::string_view strSetting) {
    const std::size_t nEquals = strSetting.find('=');
    const std::string strName(strSetting.substr(0, nEquals));
    const std::string strValue(nEquals == std::string_view::npos ? "" : strSetting.substr(nEquals + 1));
    if (IsAmong(kIntegers, strName)) {
        objFeatures.DoSetInt(strName, ParseNumber<std::int64_t>(strName, strValue));
    } else if (IsAmong(kFloats, strName)) {
        objFeatures.DoSetFloat(strName, ParseNumber<double>(strName, strValue));
    } else if (IsAmong(kEnumerations, strName)) {
        // An enumeration is a number to the camera and a name to people.
        objFeatures.DoSetEnum(strName, objFeatures.DoGetEnumEntryValue(strName, strValue));
    } else {
        throw std::runtime_error(strName + ": this example knows no such feature");
    }
}

std::string NameOfEntry(IFeatureControl& objFeatures, const char* pName) {
    std::vector<FEATURE_ENUM_ENTRY> vecEntry;
    objFeatures.DoGetEnumDescription(pName, vecEntry);
    const std::int64_t nValue = objFeatures.DoGetEnum(pName);
    for (const FEATURE_ENUM_ENTRY& objEntry : vecEntry) {
        if (objEntry.Value == nValue) {
            return objEntry.Symbolic;
        }
    }
    return std::to_string(nValue);
}

template <typename PRINT>
void ShowFeature(IFeatureControl& objFeatures, const char* pName, PRINT fnPrint) {
    std::cout << pName << ": ";
    // To be asked in this order: whether a feature can be read now is only answered for one that there is.
    if (!objFeatures.IsFeatureImplemented(pName)) {
        std::cout << "not a feature of this camera";
    } else if (!objFeatures.IsFeatureReadable(pName)) {
        std::cout << "can't be read now";
    } else {
        fnPrint();
    }
    std::cout << '\n';
}

void ShowFeatures(IFeatureControl& objFeatures) {
    for (const char* pName : kIntegers) {
        ShowFeature(objFeatures, pName, [&] {
            const FEATURE_INT_RANGE objRange = objFeatures.DoGetIntRange(pName);
            std::cout << objFeatures.DoGetInt(pName) << " (" << objRange.Min << " to " << objRange.Max
                      << ", in steps of " << objRange.Inc << ')';
        });
    }
    for (const char* pName : kFloats) {
        ShowFeature(objFeatures, pName, [&] {
            std::cout << objFeatures.DoGetFloat(pName) << ' ' << objFeatures.DoGetFloatRange(pName).Unit;
        });
    }
    for (const char* pName : kEnumerations) {
        ShowFeature(objFeatures, pName, [&] { std::cout << NameOfEntry(objFeatures, pName); });
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> vecArgument(argv + (argc > 0 ? 1 : 0), argv + argc);
    if (vecArgument.empty() || vecArgument.front() == "--help") {
        (vecArgument.empty() ? std::cerr : std::cout) << kUsage;
        return vecArgument.empty() ? 2 : 0;
    }
    return RunExample(kProgram, [&] {
        const CSession objSession{std::chrono::milliseconds(500)};
        const COpenCamera objCamera(objSession.FindCamera(vecArgument.front()));
        for (std::size_t i = 1; i < vecArgument.size(); ++i) {
            SetFeature(objCamera.GetFeatures(), vecArgument[i]);
        }
        ShowFeatures(objCamera.GetFeatures());
    });
}
