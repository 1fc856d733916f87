#include "TLClass/TLClassMain/Device.h"

#include <exception>
#include <utility>

#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/Agency.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "support/Log.h"
#include "support/Text.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\Device";

}  // namespace

/// Registers the event of a camera that has gone.
class CDevice::CRegisterOfflineEventAgency : public CAgency {
public:
    CRegisterOfflineEventAgency(CDeviceOfflineEvent& objEvent, const std::atomic<PORT_HANDLE>& hRemotePort)
        : m_objEvent(objEvent) {
        m_objEvent.RegisterEvent(hRemotePort);
    }
    ~CRegisterOfflineEventAgency() {
        if (!m_bArmed) {
            return;
        }
        try {
            // The registration may be an earlier callback's, whose thread waits for the event: it ends too.
            m_objEvent.UnRegisterEvent();
        } catch (const std::exception& objException) {
            CLog::GetInstance()->Write(
                FormatFailure(kFile, __LINE__, "CDevice::CRegisterOfflineEventAgency::~CRegisterOfflineEventAgency",
                              objException.what()));
        }
    }

private:
    CDeviceOfflineEvent& m_objEvent;
};

/// Starts the thread that takes the camera's events.
class CDevice::CStartRemoteEventAgency : public CAgency {
public:
    CStartRemoteEventAgency(CRemoteDeviceEvent& objEvent, DEV_HANDLE hDevice, GenApi_3_0::CNodeMapRef* pNodeMapRef)
        : m_objEvent(objEvent) {
        m_objEvent.StartGetRemoteDeviceEventThread(hDevice, pNodeMapRef);
    }
    ~CStartRemoteEventAgency() {
        if (m_bArmed) {
            m_objEvent.StopGetRemoteDeviceEventThread();
        }
    }

private:
    CRemoteDeviceEvent& m_objEvent;
};

CDevice::CDevice(CGenTLLib* pLib, boost::shared_ptr<IInterface> pInterface, IF_HANDLE hInterface,
                 DEV_MODULE_INFO objInformation, COMMON_DEVICE_INFO objCommonInfo)
    : IDevice(pLib),
      m_pInterface(std::move(pInterface)),
      m_hInterface(hInterface),
      m_objInformation(std::move(objInformation)),
      m_objCommonInfo(std::move(objCommonInfo)),
      m_objDeviceOfflineEvent(pLib),
      m_objRemoteDeviceEvent(pLib),
      m_objRemoteXMLAnalyzer(pLib) {
    if (!m_pInterface) {
        throw CInvalidParameterError("Failed to create device object.This is an unknown exception.", kFile, __LINE__,
                                     "CDevice::CDevice");
    }
    m_objInformation.pCommonInfo = nullptr;
    m_objInformation.pSpecialInfo = nullptr;
}

CDevice::~CDevice() {
    // Left to the member, it would end behind the node map that it delivers into.
    m_objRemoteDeviceEvent.StopGetRemoteDeviceEventThread();
}

DEV_MODULE_INFO CDevice::GetDeviceInformation() const {
    const CScopedLock objLock(m_csRecords);
    return m_objInformation;
}

COMMON_DEVICE_INFO CDevice::GetCommonInformation() const {
    const CScopedLock objLock(m_csRecords);
    return m_objCommonInfo;
}

std::vector<boost::shared_ptr<IDataStream>> CDevice::GetDataStreamList() const {
    return _GetGcObjectList<IDataStream>();
}

void CDevice::UpdateInformation(const DEV_MODULE_INFO& objRecord) {
    const CScopedLock objLock(m_csRecords);
    m_objInformation = objRecord;
    m_objInformation.pCommonInfo = nullptr;
    m_objInformation.pSpecialInfo = nullptr;
    if (objRecord.pCommonInfo != nullptr) {
        m_objCommonInfo = *objRecord.pCommonInfo;
    }
}

void CDevice::SetSpecialDeviceIP(const std::string& strIP) {
    const CScopedLock objLock(m_csRecords);
    m_strSpecialIP = strIP;
}

std::string CDevice::GetSpecialDeviceIP() const {
    const CScopedLock objLock(m_csRecords);
    return m_strSpecialIP;
}

IFeatureControl* CDevice::GetRemoteFeatureControl() const {
    const CScopedLock objLock(m_csRecords);
    return m_pRemoteFeatureControl.get();
}

void CDevice::__SetRemoteFeatureControl(std::unique_ptr<IFeatureControl> pFeatureControl) {
    {
        const CScopedLock objLock(m_csRecords);
        m_pRemoteFeatureControl.swap(pFeatureControl);
    }
    // What was published before goes here, behind the lock: it calls into the node map.
    pFeatureControl.reset();
}

IDeviceOfflineCallback* CDevice::RegisterDeviceOfflineCallback(IEventCallback* pCallback) {
    CRegisterOfflineEventAgency objRegister(m_objDeviceOfflineEvent, m_hRemotePort);
    m_objDeviceOfflineEvent.StartGetDeviceOfflineEventThread();
    IDeviceOfflineCallback* const pRegistration = m_objDeviceOfflineEvent.RegisterDeviceOfflineCallback(pCallback);
    Dismiss(objRegister);
    return pRegistration;
}

void CDevice::UnregisterDeviceOfflineCallback(IDeviceOfflineCallback* pRegistration) {
    m_objDeviceOfflineEvent.UnregisterDeviceOfflineCallback(pRegistration);
}

bool CDevice::IsDeviceOffline() const {
    return m_objDeviceOfflineEvent.IsDeviceOffline();
}

std::uint64_t CDevice::GetEventNumInQueue() {
    return m_objRemoteDeviceEvent.GetEventNumInQueue();
}

void CDevice::FlushRemoteDeviceEvent() {
    m_objRemoteDeviceEvent.FlushRemoteDeviceEvent();
}

std::uint32_t CDevice::GetRemoteDeviceEventThreadId() const {
    return m_objRemoteDeviceEvent.GetThreadId();
}

std::uint32_t CDevice::GetDeviceOfflineEventThreadId() const {
    return m_objDeviceOfflineEvent.GetThreadId();
}

CNativeDeviceOfflineEvent* CDevice::GetNativeDeviceOfflineEvent() {
    return m_objDeviceOfflineEvent.GetNativeEvent();
}

void CDevice::StartRemoteDeviceEvent() {
    const CScopedLock objLock(m_csRemoteEvent);
    // What a device still has while it closes is about to go: then it counts as closed.
    CStartRemoteEventAgency objStart(m_objRemoteDeviceEvent, m_bMayStartRemoteEvent ? m_hDevice.load() : nullptr,
                                     m_bMayStartRemoteEvent ? GetRemoteNodeMap() : nullptr);
    Dismiss(objStart);
}

void CDevice::DoIpConfiguration(std::uint32_t nValue, std::string strText1, std::string strText2, std::string strText3,
                                std::string strText4) {
    const GC_ERROR nResult =
        m_pLib->IFIpConfiguration(m_hInterface, GetDeviceInformation().ID.c_str(), nValue, strText1.c_str(),
                                  strText2.c_str(), strText3.c_str(), strText4.c_str());
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, "CDevice::DoIpConfiguration");
}

void CDevice::DoForceIp(std::string strText1, std::string strText2, std::string strText3) {
    const GC_ERROR nResult = m_pLib->IFForceIp(m_hInterface, GetDeviceInformation().ID.c_str(), strText1.c_str(),
                                               strText2.c_str(), strText3.c_str());
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, "CDevice::DoForceIp");
}

void CDevice::DoResetDevice(std::uint32_t nValue) {
    const GC_ERROR nResult = m_pLib->IFResetDevice(m_hInterface, GetDeviceInformation().ID.c_str(), nValue);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, "CDevice::DoResetDevice");
}
