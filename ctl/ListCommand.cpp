#include "ctl/ListCommand.h"

#include <ostream>
#include <string>

#include "ctl/CameraReport.h"
#include "ctl/CameraTree.h"
#include "ctl/Table.h"

namespace {

void TellThatNoneAnswered(std::ostream& objErr, const std::vector<ADAPTER>& vecAdapter) {
    std::string strWhere;
    for (const ADAPTER& objAdapter : vecAdapter) {
        strWhere += (strWhere.empty() ? " on " : ", ") + Printable(objAdapter.strName);
    }
    objErr << "No camera answered" << (strWhere.empty() ? ": there is no network adapter" : strWhere)
           << ". \"norvikctl doctor\" looks for the usual causes.\n";
}

}  // namespace

EXIT_CODE RunList(const LIST_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    CCameraTree objTree;
    objTree.Update(objOptions.nSearchTime);
    const std::vector<CAMERA> vecCamera = objTree.GetCameras();
    const std::vector<ADAPTER> vecAdapter = objTree.GetAdapters();
    if (objOptions.bJson) {
        WriteCameraJson(objOutput.objOut, vecAdapter, vecCamera);
    } else if (vecCamera.empty()) {
        TellThatNoneAnswered(objOutput.objErr, vecAdapter);
    } else {
        WriteCameraTable(objOutput.objOut, vecCamera);
    }
    return EXIT_CODE::Success;
}
