// A text that says it is a camera's state. What is understood is said again and understood to be the same, and a camera
// either refuses it or comes up in it.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "camera/CameraState.h"
#include "tests/camera/EngineOnTable.h"

namespace {

void Require(bool bHolds) {
    if (!bHolds) {
        std::abort();
    }
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the name that the fuzzer calls
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    static const camera::CAMERA_STATE objFresh = CEngineOnTable().Engine.GetDevice().GetState();
    const std::string_view strText(reinterpret_cast<const char*>(pData), nSize);
    camera::CAMERA_STATE objState;
    try {
        objState = camera::ParseState(strText, objFresh);
    } catch (const camera::CStateError&) {
        return 0;
    }
    Require(camera::ParseState(camera::FormatState(objState), objFresh) == objState);
    auto objConfiguration = CEngineOnTable::Configure({});
    objConfiguration.State = strText;
    try {
        CEngineOnTable objTable(objConfiguration);
        Require(objTable.Engine.GetDevice().GetState() == objState);
    } catch (const camera::CStateError&) {
        return 0;
    }
    return 0;
}
