#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassFeature/FeatureControl.h"
#include "TLClass/TLClassInfo/ChildCount.h"
#include "TLClass/TLClassInfo/DataStreamID.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/Agency.h"
#include "TLClass/TLClassMain/DataStreamFactory.h"
#include "TLClass/TLClassMain/Device.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "TLClass/TLClassMain/ITLManager.h"
#include "TLClass/TLClassMain/Interface.h"
#include "TLClass/TLClassXML/LoadXMLAgency.h"
#include "support/Environment.h"
#include "support/ZrException.h"

// How a device opens and closes. Apart from its other operations, for the interface makes devices and opening one takes
// the interface's lock.

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\Device";

// Libraries that a producer loads with a device look for their files here.
constexpr const char* kImageProcessingVariable = "QK_WyImageProcEnvPath";
constexpr const char* kImageProcessingDefault = "c:\\";

}  // namespace

/// Closes the handle of a producer that gives one with its refusal. A constructor that throws has no destructor.
class CDevice::CCloseDeviceHandleAfterOpenFailure : public CUnCopyable {
public:
    CCloseDeviceHandleAfterOpenFailure(GC_ERROR nResult, DEV_HANDLE& hDevice, CGenTLLib* pLib)
        : m_nResult(nResult), m_hDevice(hDevice), m_pLib(pLib) {}
    ~CCloseDeviceHandleAfterOpenFailure() {
        if (m_nResult == GC_ERR_SUCCESS || m_hDevice == nullptr) {
            return;
        }
        CGenTLErrorCodeVerifier::LogIfFailed(
            m_pLib->DevClose(m_hDevice), m_pLib, kFile, __LINE__,
            "CDevice::CCloseDeviceHandleAfterOpenFailure::~CCloseDeviceHandleAfterOpenFailure");
        m_hDevice = nullptr;
    }

private:
    GC_ERROR m_nResult;
    DEV_HANDLE& m_hDevice;
    CGenTLLib* m_pLib;
};

/// Opens the device in the producer.
class CDevice::CIFOpenDeviceAgency : public CAgency {
public:
    CIFOpenDeviceAgency(CGenTLLib* pLib, IF_HANDLE hInterface, const std::string& strID, std::uint32_t nAccessMode)
        : m_pLib(pLib) {
        const GC_ERROR nResult =
            m_pLib->IFOpenDevice(hInterface, strID.c_str(), static_cast<DEVICE_ACCESS_FLAGS>(nAccessMode), &m_hDevice);
        const CCloseDeviceHandleAfterOpenFailure objGuard(nResult, m_hDevice, m_pLib);
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__,
                                                        "CDevice::CIFOpenDeviceAgency::CIFOpenDeviceAgency");
    }
    ~CIFOpenDeviceAgency() {
        if (m_bArmed) {
            CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->DevClose(m_hDevice), m_pLib, kFile, __LINE__,
                                                 "CDevice::CIFOpenDeviceAgency::~CIFOpenDeviceAgency");
        }
    }

    DEV_HANDLE GetHandle() const { return m_hDevice; }

private:
    CGenTLLib* m_pLib;
    DEV_HANDLE m_hDevice = nullptr;
};

/// Lists the data streams.
class CDevice::CUpdateDSListAgency : public CAgency {
public:
    CUpdateDSListAgency(CDevice& objDevice, DEV_HANDLE hDevice) : m_objDevice(objDevice) {
        try {
            m_objDevice.__UpdateDSList(hDevice);
        } catch (...) {
            // No destructor runs for an agency whose constructor failed, and some of the streams are listed.
            m_objDevice.ClearGcObjectList();
            throw;
        }
    }
    ~CUpdateDSListAgency() {
        if (m_bArmed) {
            m_objDevice.ClearGcObjectList();
        }
    }

private:
    CDevice& m_objDevice;
};

void CDevice::DoOpenDevice(std::uint32_t nAccessMode) {
    const CScopedLock objLock(m_csDevice);
    if (m_bOpened) {
        if (nAccessMode != m_nAccessMode) {
            throw CInvalidAccessError("The device has already been opened", kFile, __LINE__, "CDevice::DoOpenDevice");
        }
        return;
    }
    SetEnvironmentIfMissing(kImageProcessingVariable, kImageProcessingDefault);
    CIFOpenDeviceAgency objOpen(m_pLib, m_hInterface, __GetOpenID(), nAccessMode);
    CLoadXMLAgency objLoad(m_objXMLAnalyzer, objOpen.GetHandle());
    auto pFeatureControl = std::make_unique<CFeatureControl>(m_objXMLAnalyzer.GetNodeMapRef());
    const PORT_HANDLE hRemotePort = __GetPort(objOpen.GetHandle());
    CLoadXMLAgency objRemoteLoad(m_objRemoteXMLAnalyzer, hRemotePort);
    auto pRemoteFeatureControl = std::make_unique<CFeatureControl>(m_objRemoteXMLAnalyzer.GetNodeMapRef());
    // From here on no update of the parent drops this object without knowing that it is open.
    const CScopedLock objListLock(boost::dynamic_pointer_cast<CInterface>(m_pInterface)->GetDeviceListLock());
    CUpdateDSListAgency objStreams(*this, objOpen.GetHandle());
    Dismiss(objStreams);
    Dismiss(objRemoteLoad);
    Dismiss(objLoad);
    Dismiss(objOpen);
    __SetRemoteFeatureControl(std::move(pRemoteFeatureControl));
    _SetFeatureControl(std::move(pFeatureControl));
    m_pOpenLib = FindLib(m_pLib);
    m_hDevice = objOpen.GetHandle();
    m_hRemotePort = hRemotePort;
    m_nAccessMode = nAccessMode;
    m_bOpened = true;
    const CScopedLock objRemoteEventLock(m_csRemoteEvent);
    m_bMayStartRemoteEvent = true;
}

std::string CDevice::__GetOpenID() const {
    return m_bSpecialDevice ? "IP::" + GetSpecialDeviceIP() : GetDeviceInformation().ID;
}

PORT_HANDLE CDevice::__GetPort(DEV_HANDLE hDevice) const {
    PORT_HANDLE hRemotePort = nullptr;
    const GC_ERROR nResult = m_pLib->DevGetPort(hDevice, &hRemotePort);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, "CDevice::DoOpenDevice");
    return hRemotePort;
}

void CDevice::__UpdateDSList(DEV_HANDLE hDevice) {
    constexpr const char* kFunction = "CDevice::__UpdateDSList";
    std::uint32_t nCount = 0;
    const GC_ERROR nResult = m_pLib->DevGetNumDataStreams(hDevice, &nCount);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, kFunction);
    CheckChildCount(nCount, kFile, __LINE__, kFunction);
    // Empty if an update of the parent has dropped this device: no stream can be made then.
    const auto pSelf = boost::dynamic_pointer_cast<IDevice>(m_pInterface->FindGcObject(this));
    for (std::uint32_t i = 0; i < nCount; ++i) {
        const std::string strID = CDataStreamID(m_pLib, hDevice, i).GetID();
        AddGcObject(CGcObjectPointer(CDataStreamFactory::CreateDataStream(m_pLib, pSelf, hDevice, strID)));
    }
}

void CDevice::DoCloseDevice() {
    // Neither thread can wait for its own end, nor for one who closes already, and that of the camera's events stands
    // in the node map that would go.
    if (m_objRemoteDeviceEvent.IsInCallback() || m_objDeviceOfflineEvent.IsInCallback()) {
        throw CInvalidCallError("A callback of a device's event can't close the device", kFile, __LINE__,
                                "CDevice::DoCloseDevice");
    }
    const CScopedLock objLock(m_csDevice);
    if (!m_bOpened) {
        return;
    }
    GetRemoteFeatureControl()->UnregisterAllFeatureCallbacks();
    GetFeatureControl()->UnregisterAllFeatureCallbacks();
    m_objDeviceOfflineEvent.UnregisterAllCallback();
    // All streams are stopped before the first is closed. Their owners may have kept them, and would open them anew.
    const std::vector<boost::shared_ptr<IDataStream>> vecStream = GetDataStreamList();
    for (const boost::shared_ptr<IDataStream>& pStream : vecStream) {
        pStream->ForbidOpening();
    }
    for (const boost::shared_ptr<IDataStream>& pStream : vecStream) {
        pStream->StopGetNewBuffer();
        pStream->StopTLAcquisition();
    }
    for (const boost::shared_ptr<IDataStream>& pStream : vecStream) {
        pStream->DoCloseDataStream();
    }
    ClearGcObjectList();
    // The events' threads call into the node maps, so they end before these go.
    {
        const CScopedLock objRemoteEventLock(m_csRemoteEvent);
        m_bMayStartRemoteEvent = false;
        m_objRemoteDeviceEvent.StopGetRemoteDeviceEventThread();
    }
    m_hRemotePort = nullptr;  // from here on nobody registers the event on it
    m_objDeviceOfflineEvent.StopGetDeviceOfflineEventThread();
    m_objDeviceOfflineEvent.UnRegisterEvent();
    m_objDeviceOfflineEvent.ClearOfflineFlag();
    __SetRemoteFeatureControl(nullptr);
    m_objRemoteXMLAnalyzer.Clear();
    _SetFeatureControl(nullptr);
    m_objXMLAnalyzer.Clear();
    CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->DevClose(m_hDevice), m_pLib, kFile, __LINE__,
                                         "CDevice::DoCloseDevice");
    m_bOpened = false;
    m_hDevice = nullptr;
    boost::dynamic_pointer_cast<CInterface>(m_pInterface)->DropClosedDevices();
    m_pOpenLib.reset();
}
