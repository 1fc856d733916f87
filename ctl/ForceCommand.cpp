#include "ctl/ForceCommand.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <ostream>
#include <vector>

#include "TLClass/TLClassMain/IDevice.h"
#include "ctl/CameraAddress.h"
#include "ctl/CameraReport.h"
#include "ctl/CameraTree.h"
#include "ctl/Table.h"
#include "support/Address.h"

namespace {

// It has been heard with the address; this is for the list.
constexpr std::chrono::milliseconds kLookTime{5000};

/// The record of a camera as the list has it now.
std::optional<CAMERA> FindAgain(const CCameraTree& objTree, const CAMERA& objCamera) {
    const std::vector<CAMERA> vecCamera = objTree.GetCameras();
    const auto itFound = std::find_if(vecCamera.begin(), vecCamera.end(), [&](const CAMERA& objOther) {
        return objOther.strID == objCamera.strID && objOther.objAdapter.strID == objCamera.objAdapter.strID;
    });
    return itFound == vecCamera.end() ? std::nullopt : std::optional(*itFound);
}

/// Over a control channel of the producer's own. The name stays as it is, and without a gateway the camera's too.
void Keep(IDevice& objDevice, const FORCE_OPTIONS& objOptions) {
    // The ways to an address that the camera is to try, in this order: persistent 1, DHCP 2, link-local 4, added up.
    constexpr std::uint32_t kPersistentOrLinkLocal = 1 + 4;
    const std::string strNameAsItIs;
    objDevice.DoIpConfiguration(kPersistentOrLinkLocal, objOptions.strAddress, objOptions.strMask,
                                objOptions.strGateway, strNameAsItIs);
}

}  // namespace

EXIT_CODE RunForce(const FORCE_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    const std::uint32_t nAddress = RequireCameraAddress(objOptions.strAddress);
    CCameraTree objTree;
    const CAMERA objCamera = objTree.FindCamera(objOptions.objCamera);
    objCamera.pDevice->DoForceIp(objOptions.strAddress, objOptions.strMask, objOptions.strGateway);
    std::optional<CAMERA> objNow;
    const auto isThere = [&] { return objNow && objNow->nAddress == nAddress; };
    objTree.Look(kLookTime, [&] {
        objNow = FindAgain(objTree, objCamera);
        return isThere();
    });
    if (objOptions.bKeep) {
        Keep(*(objNow ? *objNow : objCamera).pDevice, objOptions);
    }
    if (objOptions.bJson) {
        WriteFoundCameraJson(objOutput.objOut, objNow);
    } else if (isThere()) {
        WriteCameraAt(objOutput.objOut, *objNow,
                      objOptions.bKeep ? ", and keeps the address" : ", until its next start");
    }
    if (!isThere()) {
        objOutput.objErr << Printable(objCamera.strID) << " took the address " << IPToString(nAddress)
                         << ", but doesn't answer there. \"norvikctl list\" looks again.\n";
        return EXIT_CODE::Incomplete;
    }
    TellOfOtherSubnet(objOutput.objErr, *objNow);
    return EXIT_CODE::Success;
}
