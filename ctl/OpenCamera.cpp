#include "ctl/OpenCamera.h"

#include "GenApi/Node.h"
#include "GenApi/NodeMap.h"
#include "GenApi/NodeMapRef.h"
#include "GenTL/GenTL.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "ctl/ErrorText.h"
#include "ctl/FeatureTree.h"
#include "ctl/Table.h"
#include "support/Address.h"
#include "support/ZrException.h"

namespace {

/// Whether a module's description was there and is no good, which the library tells by where it says so.
bool IsOfDescription(const std::exception& objException) {
    const auto* const pUnexpected = dynamic_cast<const CUnexpectedError*>(&objException);
    return pUnexpected != nullptr && pUnexpected->GetErrorCode() != GC_ERR_IO &&
           pUnexpected->GetFunction().starts_with("CXML");
}

std::string WhatToTry(const CAMERA& objCamera, const std::exception& objException) {
    if (GetStateText(objCamera) == "other subnet") {
        return ". Try norvikctl recover " + (objCamera.nMAC ? MACToString(*objCamera.nMAC) : "MAC") + " ADDRESS";
    }
    if (IsOfDescription(objException)) {
        return ". The camera hands out a description of its features that is damaged. Switch it off and on; if it does "
               "so again, its firmware must be written anew, with its vendor's tool";
    }
    return "";
}

}  // namespace

COpenCamera::COpenCamera(const CAMERA_OPTIONS& objOptions, std::uint32_t nAccessMode) {
    m_objCamera = m_objTree.FindCamera(objOptions);
    if (nAccessMode != DEVICE_ACCESS_READONLY) {
        m_pInterrupt = std::make_shared<CInterrupt>();
    }
    try {
        GetDevice()->DoOpenDevice(nAccessMode);
    } catch (const std::exception& objException) {
        throw CCommandError(
            ExitCodeOf(objException),
            Printable(m_objCamera.strID + " on " + m_objCamera.objAdapter.strName +
                      ": it can't be opened: " + ErrorText(objException) + WhatToTry(m_objCamera, objException)));
    }
    if (m_pInterrupt && m_pInterrupt->IsAsked()) {
        throw CCommandError(EXIT_CODE::Failure, "interrupted");
    }
}

GenApi_3_0::INodeMap& COpenCamera::GetNodeMap() const {
    GenApi_3_0::CNodeMapRef* const pNodeMapRef = GetDevice()->GetRemoteNodeMap();
    if (pNodeMapRef == nullptr || pNodeMapRef->_Ptr == nullptr) {
        throw CCommandError(EXIT_CODE::Failure, Printable(m_objCamera.strID) + " has no features");
    }
    return *pNodeMapRef->_Ptr;
}

GenApi_3_0::INode& COpenCamera::GetFeature(const std::string& strName) const {
    GenApi_3_0::INodeMap& objNodeMap = GetNodeMap();
    if (GenApi_3_0::INode* const pNode = objNodeMap.FindNode(strName)) {
        return *pNode;
    }
    std::string strSimilar;
    for (const std::string& strOther : FindSimilarFeatures(objNodeMap, strName)) {
        strSimilar += (strSimilar.empty() ? ". Is one of these meant: " : ", ") + strOther;
    }
    throw CCommandError(EXIT_CODE::Failure, Printable(m_objCamera.strID + " has no feature " + strName + strSimilar));
}

boost::shared_ptr<IDataStream> COpenCamera::OpenStream() const {
    const std::vector<boost::shared_ptr<IDataStream>> vecStream = GetDevice()->GetDataStreamList();
    if (vecStream.empty()) {
        throw CCommandError(EXIT_CODE::Failure, Printable(m_objCamera.strID) + " has no stream");
    }
    vecStream.front()->DoOpenDataStream();
    return vecStream.front();
}
