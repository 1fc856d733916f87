#include "ctl/Camera.h"

#include <algorithm>
#include <functional>
#include <sstream>

#include "GenTL/GenTL.h"
#include "ctl/AddressText.h"
#include "ctl/ExitCode.h"
#include "ctl/Table.h"
#include "support/Address.h"
#include "support/Text.h"

namespace {

std::string Describe(const std::vector<const CAMERA*>& vecCamera) {
    std::vector<std::vector<std::string>> vecRow;
    vecRow.reserve(vecCamera.size());
    for (const CAMERA* pCamera : vecCamera) {
        vecRow.push_back({"  " + pCamera->strID, pCamera->strSerialNumber, pCamera->strUserName,
                          pCamera->nAddress ? IPToString(*pCamera->nAddress) : "", pCamera->objAdapter.strName});
    }
    std::ostringstream objText;
    WriteTable(objText, vecRow);
    std::string strText = objText.str();
    strText.pop_back();  // the last line's end
    return strText;
}

using MATCH = std::function<bool(const CAMERA&)>;

/// From the surest way to mean a camera to the vaguest.
std::vector<MATCH> MatchesOf(std::string_view strName) {
    std::vector<MATCH> vecMatch;
    vecMatch.emplace_back([=](const CAMERA& objCamera) { return objCamera.strID == strName; });
    if (const auto nMAC = ParseMAC(strName)) {
        vecMatch.emplace_back([=](const CAMERA& objCamera) { return objCamera.nMAC == nMAC; });
    }
    vecMatch.emplace_back([=](const CAMERA& objCamera) { return objCamera.strSerialNumber == strName; });
    vecMatch.emplace_back([=](const CAMERA& objCamera) { return objCamera.strUserName == strName; });
    if (const auto nAddress = ParseAddress(strName)) {
        vecMatch.emplace_back([=](const CAMERA& objCamera) { return objCamera.nAddress == nAddress; });
    }
    vecMatch.emplace_back([strPart = ToUpperAscii(std::string(strName))](const CAMERA& objCamera) {
        return ToUpperAscii(objCamera.strModel).find(strPart) != std::string::npos;
    });
    return vecMatch;
}

}  // namespace

bool IsInOtherSubnet(const CAMERA& objCamera) {
    const ADAPTER& objAdapter = objCamera.objAdapter;
    if (!objCamera.nAddress || !objAdapter.nAddress || !objAdapter.nMask) {
        return false;
    }
    const auto isOutside = [nCamera = *objCamera.nAddress](const HOST_ADDRESS& objAddress) {
        return ((nCamera ^ objAddress.nAddress) & objAddress.nMask) != 0;
    };
    return isOutside({*objAdapter.nAddress, *objAdapter.nMask}) &&
           std::ranges::all_of(objAdapter.objInterface.vecAddress, isOutside);
}

bool IsCalled(const ADAPTER& objAdapter, std::string_view strName) {
    // Producers put an address or a description behind the name that the system has for an adapter.
    return strName.empty() || objAdapter.strID == strName || objAdapter.strName == strName ||
           objAdapter.objInterface.strName == strName || objAdapter.strName.starts_with(std::string(strName) + ' ');
}

std::string GetStateText(const CAMERA& objCamera) {
    // What the producer says of access is of no use where nothing but a broadcast reaches the camera.
    if (IsInOtherSubnet(objCamera)) {
        return "other subnet";
    }
    switch (objCamera.nAccessStatus) {
        case DEVICE_ACCESS_STATUS_READWRITE:
            return "ready";
        case DEVICE_ACCESS_STATUS_READONLY:
            return "read only";
        case DEVICE_ACCESS_STATUS_NOACCESS:
            return "no access";
        case DEVICE_ACCESS_STATUS_BUSY:
        case DEVICE_ACCESS_STATUS_OPEN_READWRITE:
        case DEVICE_ACCESS_STATUS_OPEN_READONLY:
            return "in use";
        default:
            return "unknown";
    }
}

const CAMERA& SelectCamera(const std::vector<CAMERA>& vecCamera, std::string_view strName,
                           std::string_view strAdapter) {
    std::vector<const CAMERA*> vecThere;
    for (const CAMERA& objCamera : vecCamera) {
        if (IsCalled(objCamera.objAdapter, strAdapter)) {
            vecThere.push_back(&objCamera);
        }
    }
    const std::string strQuoted = '"' + Printable(strName) + '"';
    const std::string strWhere = strAdapter.empty() ? "" : " on " + Printable(strAdapter);
    for (const MATCH& fnMatch : strName.empty() ? std::vector<MATCH>() : MatchesOf(strName)) {
        std::vector<const CAMERA*> vecMeant;
        std::copy_if(vecThere.begin(), vecThere.end(), std::back_inserter(vecMeant),
                     [&](const CAMERA* pCamera) { return fnMatch(*pCamera); });
        if (vecMeant.size() == 1) {
            return *vecMeant.front();
        }
        if (vecMeant.size() > 1) {
            throw CCommandError(EXIT_CODE::NoSuchCamera, strQuoted + " means more than one camera" + strWhere +
                                                             ". Give the ID of the one you mean, and --adapter "
                                                             "if several adapters see it:\n" +
                                                             Describe(vecMeant));
        }
    }
    throw CCommandError(EXIT_CODE::NoSuchCamera,
                        vecThere.empty()
                            ? "no camera answered" + strWhere +
                                  ". Is it on, and cabled? \"norvikctl doctor\" looks for the usual causes."
                            : "no camera is called " + strQuoted + strWhere + ". There are:\n" + Describe(vecThere));
}

bool IsSurelyFound(const std::vector<CAMERA>& vecCamera, std::string_view strName, std::string_view strAdapter) {
    const auto nMAC = ParseMAC(strName);
    const auto nAddress = ParseAddress(strName);
    const auto isMeant = [&](const CAMERA& objCamera) {
        return IsCalled(objCamera.objAdapter, strAdapter) &&
               ((!strName.empty() && objCamera.strID == strName) || (nMAC && objCamera.nMAC == nMAC) ||
                (nAddress && objCamera.nAddress == nAddress));
    };
    return std::count_if(vecCamera.begin(), vecCamera.end(), isMeant) == 1;
}
