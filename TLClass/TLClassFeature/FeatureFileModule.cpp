#include "TLClass/TLClassFeature/FeatureFileModule.h"

#include <stdexcept>

#include "TLClass/TLClassFeature/FeatureFile.h"
#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassMain/IInterface.h"

namespace {

void Require(bool bHolds, const char* pMessage) {
    if (!bHolds) {
        throw std::runtime_error(pMessage);
    }
}

CFeatureFile MakeFeatureFile(GenApi_3_0::CNodeMapRef* pRemote, GenApi_3_0::CNodeMapRef* pLocal,
                             GenApi_3_0::CNodeMapRef* pStream) {
    Require(pRemote != nullptr && pLocal != nullptr && pStream != nullptr, "Invalid feature node maps");
    return {pRemote, pLocal, pStream};
}

CFeatureFile FeatureFileOf(const boost::shared_ptr<IDevice>& pDevice) {
    Require(pDevice != nullptr, "Invalid device");
    const auto vecDataStream = pDevice->GetDataStreamList();
    Require(!vecDataStream.empty(), "No valid stream. The device may be closed.");
    return MakeFeatureFile(pDevice->GetRemoteNodeMap(), pDevice->GetNodeMap(), vecDataStream.front()->GetNodeMap());
}

CFeatureFile FeatureFileOf(const boost::shared_ptr<IInterface>& pInterface) {
    Require(pInterface != nullptr, "Invalid device");
    Require(!pInterface->GetDeviceList().empty(), "No valid stream. The device may be closed.");
    GenApi_3_0::CNodeMapRef* const pNodeMap = pInterface->GetNodeMap();
    return MakeFeatureFile(pNodeMap, pNodeMap, pNodeMap);
}

/// Whether the camera is told where a row of settings begins and ends, so that it can judge them together.
bool HasStreamingBrackets(IFeatureControl& objRemote) {
    return objRemote.IsFeatureImplemented("DeviceRegistersStreamingStart") &&
           objRemote.IsFeatureImplemented("DeviceRegistersStreamingEnd");
}

}  // namespace

void SaveDeviceFeatures(const boost::shared_ptr<IDevice>& pDevice, std::ostream& stream,
                        std::vector<std::string>* pError) {
    FeatureFileOf(pDevice).Save(stream, pError);
}

std::vector<std::string> LoadDeviceFeatures(const boost::shared_ptr<IDevice>& pDevice, std::istream& stream,
                                            bool bVerify) {
    const CFeatureFile objFile = FeatureFileOf(pDevice);
    IFeatureControl* const pRemote = pDevice->GetRemoteFeatureControl();
    Require(pRemote != nullptr, "Invalid feature node maps");  // closed meanwhile
    if (!HasStreamingBrackets(*pRemote)) {
        objFile.Load(stream, bVerify);
    }
    return objFile.Load(stream, bVerify);
}

FEATURE_FILE_COMPARISON CompareDeviceFeatures(const boost::shared_ptr<IDevice>& pDevice, std::istream& stream) {
    return FeatureFileOf(pDevice).Compare(stream);
}

void SaveInterfaceFeatures(const boost::shared_ptr<IInterface>& pInterface, std::ostream& stream,
                           std::vector<std::string>* pError) {
    FeatureFileOf(pInterface).Save(stream, pError);
}

std::vector<std::string> LoadInterfaceFeatures(const boost::shared_ptr<IInterface>& pInterface, std::istream& stream,
                                               bool bVerify) {
    return FeatureFileOf(pInterface).Load(stream, bVerify);
}
