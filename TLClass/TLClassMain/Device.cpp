#include "TLClass/TLClassMain/Device.h"

#include <utility>

#include "TLClass/TLClassMain/IDataStream.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\Device";

[[noreturn]] void ThrowNotImplemented(const char* pFunction, int nLine = __builtin_LINE()) {
    throw CNotImplementedError("Not implemented for devices yet", kFile, nLine, pFunction);
}

}  // namespace

CDevice::CDevice(CGenTLLib* pLib, boost::shared_ptr<IInterface> pInterface, IF_HANDLE hInterface,
                 DEV_MODULE_INFO objInformation, COMMON_DEVICE_INFO objCommonInfo)
    : IDevice(pLib),
      m_pInterface(std::move(pInterface)),
      m_hInterface(hInterface),
      m_objInformation(std::move(objInformation)),
      m_objCommonInfo(std::move(objCommonInfo)) {
    if (!m_pInterface) {
        throw CInvalidParameterError("Failed to create device object.This is an unknown exception.", kFile, __LINE__,
                                     "CDevice::CDevice");
    }
    m_objInformation.pCommonInfo = nullptr;
    m_objInformation.pSpecialInfo = nullptr;
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

void CDevice::DoCloseDevice() {
    if (!m_bOpened) {
        return;
    }
    ThrowNotImplemented("CDevice::DoCloseDevice");
}

void CDevice::DoOpenDevice(std::uint32_t /*nAccessMode*/) {
    ThrowNotImplemented("CDevice::DoOpenDevice");
}

IDeviceOfflineCallback* CDevice::RegisterDeviceOfflineCallback(IEventCallback* /*pCallback*/) {
    ThrowNotImplemented("CDevice::RegisterDeviceOfflineCallback");
}

void CDevice::UnregisterDeviceOfflineCallback(IDeviceOfflineCallback* /*pRegistration*/) {
    ThrowNotImplemented("CDevice::UnregisterDeviceOfflineCallback");
}

bool CDevice::IsDeviceOffline() const {
    ThrowNotImplemented("CDevice::IsDeviceOffline");
}

std::uint64_t CDevice::GetEventNumInQueue() {
    ThrowNotImplemented("CDevice::GetEventNumInQueue");
}

void CDevice::FlushRemoteDeviceEvent() {
    ThrowNotImplemented("CDevice::FlushRemoteDeviceEvent");
}

std::uint32_t CDevice::GetRemoteDeviceEventThreadId() const {
    ThrowNotImplemented("CDevice::GetRemoteDeviceEventThreadId");
}

std::uint32_t CDevice::GetDeviceOfflineEventThreadId() const {
    ThrowNotImplemented("CDevice::GetDeviceOfflineEventThreadId");
}

void CDevice::StartRemoteDeviceEvent() {
    ThrowNotImplemented("CDevice::StartRemoteDeviceEvent");
}

void CDevice::DoIpConfiguration(std::uint32_t /*nValue*/, std::string /*strText1*/, std::string /*strText2*/,
                                std::string /*strText3*/, std::string /*strText4*/) {
    ThrowNotImplemented("CDevice::DoIpConfiguration");
}

void CDevice::DoForceIp(std::string /*strText1*/, std::string /*strText2*/, std::string /*strText3*/) {
    ThrowNotImplemented("CDevice::DoForceIp");
}

void CDevice::DoResetDevice(std::uint32_t /*nValue*/) {
    ThrowNotImplemented("CDevice::DoResetDevice");
}

CNativeDeviceOfflineEvent* CDevice::GetNativeDeviceOfflineEvent() {
    ThrowNotImplemented("CDevice::GetNativeDeviceOfflineEvent");
}
