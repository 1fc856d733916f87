#include "ctl/GrabCommand.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "ctl/ErrorText.h"
#include "ctl/FrameStatistics.h"
#include "ctl/FrameStream.h"
#include "ctl/Json.h"
#include "ctl/OpenCamera.h"
#include "ctl/ProgressLine.h"
#include "ctl/Table.h"

namespace {

// How soon Ctrl-C is noticed while no frame comes.
constexpr std::chrono::milliseconds kSlice{200};

struct GRAB_RESULT {
    CFrameStatistics objStatistics;
    std::string strEnd;      ///< why it ended before its time; empty if it didn't
    bool bTimedOut = false;  ///< that is since no complete frame came
    STREAM_LOSSES objLosses;

    bool IsAnyMissing() const { return objStatistics.GetLost() > 0 || objStatistics.GetIncomplete() > 0; }
};

/// Takes frames until there are enough, none comes any more, or the user has had enough.
GRAB_RESULT TakeFrames(CFrameStream& objStream, CFrameWriter& objWriter, CInterrupt& objInterrupt,
                       const GRAB_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    GRAB_RESULT objResult;
    CFrameStatistics& objStatistics = objResult.objStatistics;
    CProgressLine objProgress(objOutput.objErr, objOutput.bErrIsTerminal);
    auto nLastComplete = std::chrono::steady_clock::now();
    while (objStatistics.GetComplete() < objOptions.nFrames) {
        objStream.Take(std::min(kSlice, objOptions.nTimeout), [&](const STREAM_FRAME& objFrame) {
            const auto nNow = std::chrono::steady_clock::now();
            objStatistics.Add(objFrame.nFrameID, objFrame.vecData.size(), objFrame.bIncomplete, nNow);
            if (!objFrame.bIncomplete) {
                nLastComplete = nNow;
                objWriter.Push({objStatistics.GetComplete(),
                                objFrame.objShape,
                                {objFrame.vecData.begin(), objFrame.vecData.end()}});
            }
        });
        objProgress.Show(objStatistics.GetComplete(), objOptions.nFrames, objStatistics.GetText());
        if (objInterrupt.IsAsked()) {
            objInterrupt.Answer();
            objResult.strEnd = "Interrupted";
            break;
        }
        if (std::chrono::steady_clock::now() - nLastComplete > objOptions.nTimeout) {
            objResult.strEnd = "No complete frame came for " + std::to_string(objOptions.nTimeout.count()) + " ms";
            objResult.bTimedOut = true;
            break;
        }
    }
    return objResult;
}

/// Says so before anything is grabbed if the camera's pixel format can't be made a PNG file.
void CheckPixelFormat(IFeatureControl& objFeatureControl) {
    constexpr const char* kFeature = "PixelFormat";
    if (!objFeatureControl.IsFeatureImplemented(kFeature)) {
        return;  // the frames tell
    }
    const auto nPixelFormat = static_cast<std::uint64_t>(objFeatureControl.DoGetEnum(kFeature));
    if (!IsConvertible(nPixelFormat)) {
        throw CCommandError(EXIT_CODE::Failure, "frames with the pixel format " + GetPixelFormatName(nPixelFormat) +
                                                    " can't be made PNG files. --raw writes frames of any format as "
                                                    "they come; \"norvikctl features CAMERA set PixelFormat\" chooses "
                                                    "another");
    }
}

/// The setting that most often keeps frames from coming, or who knows the other causes.
std::string WhyNoFrames(IFeatureControl& objFeatureControl) {
    for (const auto& [pFeature, pValue, pWhy] :
         {std::tuple{"TriggerMode", "On", ": the camera waits for a trigger (TriggerMode is On)"},
          std::tuple{"AcquisitionMode", "SingleFrame",
                     ": the camera sends one frame only (AcquisitionMode is SingleFrame)"}}) {
        try {
            if (objFeatureControl.DoGetEnum(pFeature) == objFeatureControl.DoGetEnumEntryValue(pFeature, pValue)) {
                return pWhy;
            }
        } catch (const std::exception&) {
            // A camera without the feature, or without that entry.
        }
    }
    return ". \"norvikctl doctor\" looks for what may keep them away";
}

void Report(const GRAB_RESULT& objResult, const GRAB_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    const CFrameStatistics& objStatistics = objResult.objStatistics;
    if (objOptions.bJson) {
        WriteJson(objOutput.objOut, {{"frames", objStatistics.GetComplete()},
                                     {"lost", objStatistics.GetLost()},
                                     {"incomplete", objStatistics.GetIncomplete()},
                                     {"seconds", objStatistics.GetSeconds()},
                                     {"frames_per_second", objStatistics.GetFramesPerSecond()},
                                     {"packets_missing", objResult.objLosses.nMissing},
                                     {"packets_resent", objResult.objLosses.nResent},
                                     {"packets_dropped", objResult.objLosses.nDropped},
                                     {"underruns", objResult.objLosses.nUnderruns},
                                     {"megabytes_per_second", objStatistics.GetMegabytesPerSecond()},
                                     {"folder", objOptions.strFolder}});
    } else {
        objOutput.objOut << objStatistics.GetComplete() << " frames in " << objOptions.strFolder << ": "
                         << objStatistics.GetText() << '\n';
    }
    if (!objResult.strEnd.empty()) {
        objOutput.objErr << objResult.strEnd << ".\n";
    }
    if (objResult.IsAnyMissing()) {
        objOutput.objErr << DescribeLosses(objResult.objLosses);
    }
}

}  // namespace

EXIT_CODE RunGrab(const GRAB_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    std::shared_ptr<CInterrupt> pInterrupt;  // or the end would come in the middle of a file
    std::optional<CFrameWriter> objWriter;   // goes on writing when the camera is closed
    GRAB_RESULT objResult;
    {
        const COpenCamera objCamera(objOptions.objCamera, DEVICE_ACCESS_CONTROL);
        if (objOptions.eFile == FRAME_FILE::Png) {
            CheckPixelFormat(*objCamera.GetDevice()->GetRemoteFeatureControl());
        }
        pInterrupt = objCamera.GetInterrupt();
        objOutput.objErr << "Grabbing from " << Printable(objCamera.GetCamera().strID) << ".\n";
        objWriter.emplace(objOptions.strFolder, objOptions.eFile);
        CFrameStream objStream(objCamera);
        objResult = TakeFrames(objStream, *objWriter, *pInterrupt, objOptions, objOutput);
        objResult.objLosses = objStream.ReadLosses();
        if (objResult.bTimedOut && objResult.objStatistics.GetIncomplete() == 0) {
            objResult.strEnd += WhyNoFrames(*objCamera.GetDevice()->GetRemoteFeatureControl());
        }
    }
    objWriter->Finish();
    Report(objResult, objOptions, objOutput);
    const bool bWhole = objResult.objStatistics.GetComplete() == objOptions.nFrames && !objResult.IsAnyMissing();
    return bWhole ? EXIT_CODE::Success : EXIT_CODE::Incomplete;
}
