#include "tests/producer_double/Device.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace ProducerDouble {

namespace {

constexpr std::size_t kDefaultEventSize = 1024;

void PutBigEndian(BYTES& vecBytes, std::size_t nOffset, std::uint64_t nValue, std::size_t nLength) {
    for (std::size_t i = 0; i < nLength; ++i) {
        vecBytes[nOffset + i] = static_cast<std::byte>(nValue >> (8 * (nLength - 1 - i)));
    }
}

void PutField(BYTES& vecBytes, std::size_t nOffset, const std::string& strText, std::size_t nLength) {
    const BYTES vecText = BytesOf(strText.substr(0, nLength));
    std::copy(vecText.begin(), vecText.end(), vecBytes.begin() + static_cast<std::ptrdiff_t>(nOffset));
}

}  // namespace

bool ParseIp(const std::string& strText, std::uint32_t& nIp) {
    const char* p = strText.data();
    const char* const pEnd = p + strText.size();
    nIp = 0;
    for (int i = 0; i < 4; ++i) {
        std::uint8_t nOctet = 0;
        const auto result = std::from_chars(p, pEnd, nOctet);
        if (result.ec != std::errc{}) {
            return false;
        }
        nIp = (nIp << 8) | nOctet;
        p = result.ptr;
        if (i < 3 && (p == pEnd || *p++ != '.')) {
            return false;
        }
    }
    return p == pEnd;
}

// The camera.

CRemotePort::CRemotePort(CONTEXT& objContext, const std::string& strDevice)
    : CModule(objContext, strDevice + ":remote", "Device", "Device") {
    Port().AddText("DeviceVendorName", "Norvik").AddText("DeviceModelName", "Double").AddText("DeviceUserID", "", 16);
    Port().AddInteger("Width", 64, {1, 64}).AddInteger("Height", 48, {1, 48});
    Port().AddInteger("OffsetX", 0, {0, 63}).AddInteger("OffsetY", 0, {0, 47});
    Port().AddEnumeration("PixelFormat", 0x01080001, {{"Mono8", 0x01080001}, {"Mono16", 0x01100007}});
    Port().AddInteger("PayloadSize", 64 * 48).AddInteger("TLParamsLocked", 0, {0, 1}).AddFloat("ExposureTime", 1000.0);
    Port().AddCommand("AcquisitionStart").AddCommand("AcquisitionStop");
}

void CRemotePort::GoOffline() {
    m_bOffline = true;
    if (IsEventRegistered(EVENT_ZR_DEVICE_OFFLINE)) {
        m_queOffline.Push({});
    }
    _Changed();
}

void CRemotePort::ComeBack() {
    m_bOffline = false;
    m_queOffline.Clear();
}

void CRemotePort::CheckPortAccess(bool bWrite) const {
    if (m_bOffline) {
        Refuse(GC_ERR_ZR_DEVICE_OFFLINE, Name() + " is offline");
    }
    if (bWrite && m_bReadOnly) {
        Refuse(GC_ERR_ACCESS_DENIED, Name() + " was opened for reading");
    }
}

IEventQueue* CRemotePort::_QueueOf(EVENT_TYPE nType) {
    return nType == EVENT_ZR_DEVICE_OFFLINE ? &m_queOffline : nullptr;
}

// The device.

CDevice::CDevice(CONTEXT& objContext, const std::string& strId, GEV_ADDRESS objAddress)
    : CModule(objContext, strId, "TLDevice", "DevicePort"),
      m_pRemote(std::make_shared<CRemotePort>(objContext, strId)),
      m_objAddress(objAddress),
      m_strSerialNumber("SN-" + strId) {
    Port().AddText("DeviceID", strId).AddText("DeviceType", "GEV").AddInteger("StreamSelector", 0, {0, 0});
    m_queEvent.Declare(kDefaultEventSize, kDefaultEventSize);
    _DefaultInfo(DEVICE_INFO_ID, ANSWER::Text(strId));
    _DefaultInfo(DEVICE_INFO_TLTYPE, ANSWER::Text("GEV"));
    _DefaultInfo(DEVICE_INFO_DISPLAYNAME, ANSWER::Text(strId));
    _DefaultInfo(DEVICE_INFO_ACCESS_STATUS, ANSWER::Int32(DEVICE_ACCESS_STATUS_READWRITE));
    __DescribeIdentity();
    AddStream("stream-0");
}

void CDevice::__DescribeIdentity() {
    _DefaultInfo(DEVICE_INFO_VENDOR, ANSWER::Text(m_strVendor));
    _DefaultInfo(DEVICE_INFO_MODEL, ANSWER::Text(m_strModel));
}

IStreamControl& CDevice::AddStream(std::string strId) {
    auto pStream = std::make_shared<CStream>(_Context(), Name(), std::move(strId));
    const LOCK lock = _Enter();
    return *m_vecStream.emplace_back(std::move(pStream));
}

IStreamControl& CDevice::Stream(const std::string& strId) {
    const LOCK lock = _Enter();
    if (CStream* const pStream = FindStream(strId)) {
        return *pStream;
    }
    throw std::out_of_range(Name() + " has no stream " + strId);
}

CStream* CDevice::FindStream(const std::string& strId) const {
    const auto it = std::ranges::find(m_vecStream, strId, [](const auto& pStream) { return pStream->Id(); });
    return it == m_vecStream.end() ? nullptr : it->get();
}

IDeviceControl& CDevice::Address(GEV_ADDRESS objAddress) {
    const LOCK lock = _Enter();
    m_objAddress = objAddress;
    return *this;
}

IDeviceControl& CDevice::Identity(std::string strVendor, std::string strModel, std::string strSerialNumber) {
    {
        const LOCK lock = _Enter();
        m_strVendor = std::move(strVendor);
        m_strModel = std::move(strModel);
        m_strSerialNumber = std::move(strSerialNumber);
        __DescribeIdentity();
    }
    m_pRemote->Port().SetText("DeviceVendorName", m_strVendor).SetText("DeviceModelName", m_strModel);
    return *this;
}

IDeviceControl& CDevice::UserId(std::string strUserId) {
    {
        const LOCK lock = _Enter();
        m_strUserId = std::move(strUserId);
    }
    m_pRemote->Port().SetText("DeviceUserID", m_strUserId);
    return *this;
}

IDeviceControl& CDevice::Hide(bool bHidden) {
    const LOCK lock = _Enter();
    m_bHidden = bHidden;
    return *this;
}

bool CDevice::PushEvent(std::uint64_t nId, BYTES vecValue) {
    const LOCK lock = _Enter();
    if (!IsEventRegistered(EVENT_REMOTE_DEVICE)) {
        return false;
    }
    m_queEvent.Push(RemoteEventRecord(nId, vecValue));
    _Changed();
    return true;
}

void CDevice::DeclareEventSizes(std::size_t nEvent, std::size_t nValue) {
    const LOCK lock = _Enter();
    m_queEvent.Declare(nEvent, nValue);
}

void* CDevice::OpenWith(DEVICE_ACCESS_FLAGS nFlags) {
    if (nFlags != DEVICE_ACCESS_READONLY && nFlags != DEVICE_ACCESS_CONTROL && nFlags != DEVICE_ACCESS_EXCLUSIVE) {
        Refuse(GC_ERR_INVALID_PARAMETER, "there is no such access");
    }
    if (!m_bPlugged) {
        Refuse(GC_ERR_IO, Name() + " doesn't answer");
    }
    void* h = Open();
    m_pRemote->SetReadOnly(nFlags == DEVICE_ACCESS_READONLY);
    m_pRemote->ComeBack();
    m_pRemote->Open();
    return h;
}

void CDevice::_CloseChildren() {
    for (const auto& pStream : m_vecStream) {
        pStream->Close();
    }
    m_pRemote->Close();
    m_queEvent.Clear();
}

void CDevice::Plug() {
    m_bPlugged = true;
}

void CDevice::Unplug() {
    m_bPlugged = false;
    if (Handle() != nullptr) {
        m_pRemote->GoOffline();
    }
}

bool CDevice::IsAt(const std::string& strIp) const {
    std::uint32_t nIp = 0;
    return ParseIp(strIp, nIp) && nIp == m_objAddress.nIp;
}

void CDevice::MoveTo(std::uint32_t nIp, std::uint32_t nMask, std::uint32_t nGateway) {
    m_objAddress.nIp = nIp;
    m_objAddress.nMask = nMask;
    m_objAddress.nGateway = nGateway;
}

IEventQueue* CDevice::_QueueOf(EVENT_TYPE nType) {
    return nType == EVENT_REMOTE_DEVICE ? &m_queEvent : nullptr;
}

BYTES CDevice::DiscoveryReply() const {
    BYTES vecReply(ZR_SPECIAL_DEVICE_REPLY_SIZE);
    PutBigEndian(vecReply, 2, 0x0003, 2);  // DISCOVERY_ACK
    PutBigEndian(vecReply, 4, 0x00F8, 2);
    PutBigEndian(vecReply, 6, 1, 2);
    PutBigEndian(vecReply, 8, 2, 2);
    PutBigEndian(vecReply, 12, 0x80000001, 4);
    PutBigEndian(vecReply, 18, m_objAddress.nMac, 6);
    PutBigEndian(vecReply, 44, m_objAddress.nIp, 4);
    PutBigEndian(vecReply, 60, m_objAddress.nMask, 4);
    PutBigEndian(vecReply, 76, m_objAddress.nGateway, 4);
    PutField(vecReply, 80, m_strVendor, 32);
    PutField(vecReply, 112, m_strModel, 32);
    PutField(vecReply, 144, kVersion, 32);
    PutField(vecReply, 224, m_strSerialNumber, 16);
    PutField(vecReply, 240, m_strUserId, 16);
    return vecReply;
}

}  // namespace ProducerDouble
