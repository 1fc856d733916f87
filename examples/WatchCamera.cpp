// watch-camera: tells what happens to a camera while it is open: a feature that changes, an event that the camera
// sends, and that it has gone.
//
//     watch-camera CAMERA [EVENT]
//     watch-camera SN42 ExposureEnd
//
// CAMERA is an ID, a serial number or a user's name, as list-cameras shows them. It takes images meanwhile, which
// nobody looks at, until you press Return. EVENT is one of the camera's EventSelector, ExposureEnd if left out; its
// data stands in features whose names begin with "Event" and its name.
//
// Set GENICAM_GENTL64_PATH to the folder of ZrGVTL.cti first.

#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include "GenApi/Node.h"
#include "TLClass/TLClassEvent/IDeviceOfflineCallback.h"
#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassMain/BufferInitInfo.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "examples/Session.h"

namespace {

constexpr const char* kProgram = "watch-camera";
constexpr const char* kUsage = "Usage: watch-camera CAMERA [EVENT]\n";

/// Whoever takes a callback keeps a clone of it: so it holds nothing that may go before the camera is closed.
class CGoneCallback : public IDeviceOfflineCallback {
public:
    IEventCallback* Clone() override { return std::make_unique<CGoneCallback>(*this).release(); }
    // On a thread of the device's own. The device must not be closed here, but by the thread that has opened it.
    void OnDeviceOffline() override { std::cout << "the camera has gone; press Return" << std::endl; }
};

class CChangeCallback : public IFeatureControl::IFeatureCallback {
public:
    IFeatureCallback* Clone() override { return std::make_unique<CChangeCallback>(*this).release(); }
    // On the thread that has caused the change, for an event's data that of the camera's events.
    void OnFeatureChanged(GenApi_3_0::INode* pNode) override {
        std::cout << pNode->GetName().c_str() << " has changed" << std::endl;
    }
};

/// Lets the camera send the event, and takes what it sends into its features.
void WatchEvent(const COpenCamera& objCamera, const std::string& strEvent, CChangeCallback& objCallback) {
    IFeatureControl& objFeatures = objCamera.GetFeatures();
    objFeatures.DoSetEnum("EventSelector", objFeatures.DoGetEnumEntryValue("EventSelector", strEvent));
    objFeatures.DoSetEnum("EventNotification", objFeatures.DoGetEnumEntryValue("EventNotification", "On"));
    objFeatures.RegisterFeatureCallback("Event" + strEvent, &objCallback);
    objCamera.GetDevice()->StartRemoteDeviceEvent();
}

/// So that there is something to tell of. Closing the camera ends it.
void StartImages(const COpenCamera& objCamera) {
    IDataStream& objStream = *objCamera.GetDevice()->GetDataStreamList().at(0);
    objStream.DoOpenDataStream();
    TLClass::CBufferInitInfo objInitInfo;
    objInitInfo.SetPayloadSize(static_cast<std::uint64_t>(objCamera.GetFeatures().DoGetInt("PayloadSize")));
    objStream.DoStartDataStreamAcqusition(&objInitInfo);
    objCamera.GetFeatures().DoSendCommand("AcquisitionStart");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::string_view(argv[1]) == "--help") {
        std::cout << kUsage;
        return 0;
    }
    if (argc != 2 && argc != 3) {
        std::cerr << kUsage;
        return 2;
    }
    return RunExample(kProgram, [argc, argv] {
        const CSession objSession{std::chrono::milliseconds(500)};
        const COpenCamera objCamera(objSession.FindCamera(argv[1]));
        CGoneCallback objGone;
        CChangeCallback objChange;
        objCamera.GetDevice()->RegisterDeviceOfflineCallback(&objGone);
        objCamera.GetFeatures().RegisterFeatureCallback("ExposureTime", &objChange);
        WatchEvent(objCamera, argc == 3 ? argv[2] : "ExposureEnd", objChange);
        StartImages(objCamera);
        std::cout << "watching" << std::endl;
        std::cin.get();
        // Closing the camera ends its threads and drops the callbacks.
    });
}
