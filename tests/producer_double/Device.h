#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/producer_double/Module.h"
#include "tests/producer_double/Stream.h"

namespace ProducerDouble {

/// The camera behind a device: its registers, and the event that tells of its loss. Open as long as its device.
class CRemotePort : public CModule {
public:
    CRemotePort(CONTEXT& objContext, const std::string& strDevice);

    // Everything below expects the monitor's lock.
    void SetReadOnly(bool bReadOnly) { m_bReadOnly = bReadOnly; }
    void GoOffline();
    void ComeBack();
    void CheckPortAccess(bool bWrite) const override;

private:
    IEventQueue* _QueueOf(EVENT_TYPE nType) override;

    bool m_bReadOnly = false;
    bool m_bOffline = false;
    CRecordQueue m_queOffline;
};

/// One camera of the world, with the device module through which the consumer opens it.
///
/// Owned by the interface where it was first plugged in, which keeps it while it is unplugged.
class CDevice : public CModule, public IDeviceControl {
public:
    static constexpr const char* kVersion = "1.0.0";

    CDevice(CONTEXT& objContext, const std::string& strId, GEV_ADDRESS objAddress);

    IPortControl& Remote() override { return m_pRemote->Port(); }
    IStreamControl& AddStream(std::string strId) override;
    IStreamControl& Stream(const std::string& strId) override;
    IDeviceControl& Address(GEV_ADDRESS objAddress) override;
    IDeviceControl& Identity(std::string strVendor, std::string strModel, std::string strSerialNumber) override;
    IDeviceControl& UserId(std::string strUserId) override;
    IDeviceControl& Hide(bool bHidden) override;
    bool PushEvent(std::uint64_t nId, BYTES vecValue) override;
    void DeclareEventSizes(std::size_t nEvent, std::size_t nValue) override;

    // Everything below expects the monitor's lock.
    void* OpenWith(DEVICE_ACCESS_FLAGS nFlags);
    void Plug();
    void Unplug();
    bool IsPlugged() const { return m_bPlugged; }
    bool IsListed() const { return m_bPlugged && !m_bHidden; }
    bool IsAt(const std::string& strIp) const;
    void MoveTo(std::uint32_t nIp, std::uint32_t nMask, std::uint32_t nGateway);
    const GEV_ADDRESS& GevAddress() const { return m_objAddress; }
    const std::string& SerialNumber() const { return m_strSerialNumber; }
    const std::string& UserIdText() const { return m_strUserId; }
    const std::shared_ptr<CRemotePort>& RemotePort() const { return m_pRemote; }
    const std::vector<std::shared_ptr<CStream>>& Streams() const { return m_vecStream; }
    CStream* FindStream(const std::string& strId) const;
    /// The camera's discovery acknowledge, header and all, ZR_SPECIAL_DEVICE_REPLY_SIZE bytes.
    BYTES DiscoveryReply() const;

private:
    void _CloseChildren() override;
    IEventQueue* _QueueOf(EVENT_TYPE nType) override;
    void __DescribeIdentity();

    const std::shared_ptr<CRemotePort> m_pRemote;
    std::vector<std::shared_ptr<CStream>> m_vecStream;
    GEV_ADDRESS m_objAddress;
    std::string m_strVendor = "Norvik";
    std::string m_strModel = "Double";
    std::string m_strSerialNumber;
    std::string m_strUserId;
    bool m_bPlugged = false;
    bool m_bHidden = false;
    CRecordQueue m_queEvent;
};

/// "192.168.1.7" @return false if the text is no dotted address
bool ParseIp(const std::string& strText, std::uint32_t& nIp);

}  // namespace ProducerDouble
