#include "ctl/ListCommand.h"

#include <ostream>
#include <string>

#include "ctl/CameraReport.h"
#include "ctl/CameraTree.h"
#include "ctl/Table.h"

namespace {

std::string NamesOf(const std::vector<ADAPTER>& vecAdapter) {
    std::string strNames;
    for (const ADAPTER& objAdapter : vecAdapter) {
        strNames += (strNames.empty() ? "" : ", ") + Printable(objAdapter.strName);
    }
    return strNames;
}

void TellThatNoneAnswered(std::ostream& objErr, const std::vector<ADAPTER>& vecAdapter) {
    objErr << "No camera answered"
           << (vecAdapter.empty() ? ": there is no network adapter" : " on " + NamesOf(vecAdapter))
           << ". \"norvikctl doctor\" looks for the usual causes.\n";
}

}  // namespace

EXIT_CODE RunList(const LIST_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    CCameraTree objTree;
    objTree.Look(objOptions.nSearchTime);
    std::vector<CAMERA> vecCamera = objTree.GetCameras();
    std::vector<ADAPTER> vecAdapter = objTree.GetAdapters();
    const std::string strAll = NamesOf(vecAdapter);
    std::erase_if(vecCamera, [&](const CAMERA& obj) { return !IsCalled(obj.objAdapter, objOptions.strAdapter); });
    std::erase_if(vecAdapter, [&](const ADAPTER& obj) { return !IsCalled(obj, objOptions.strAdapter); });
    if (vecAdapter.empty() && !objOptions.strAdapter.empty()) {
        throw CCommandError(EXIT_CODE::Failure, "there is no network adapter " + Printable(objOptions.strAdapter) +
                                                    (strAll.empty() ? "" : ". There are: " + strAll));
    }
    if (objOptions.bJson) {
        WriteCameraJson(objOutput.objOut, vecAdapter, vecCamera);
    } else if (vecCamera.empty()) {
        TellThatNoneAnswered(objOutput.objErr, vecAdapter);
    } else {
        WriteCameraTable(objOutput.objOut, vecCamera);
    }
    return EXIT_CODE::Success;
}
