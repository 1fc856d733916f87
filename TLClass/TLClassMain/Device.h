#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "TLClass/TLClassMain/IDevice.h"

class CNativeDeviceOfflineEvent;

/// One camera as its interface's updates see it: records, identity, and whether it is special.
///
/// A device can't be opened yet: every operation that needs an open one throws CNotImplementedError, and what can be
/// asked of a closed one answers as for a closed one.
class CDevice : public IDevice {
public:
    /// @param pInterface      the parent
    /// @param objInformation  its pointers aren't kept
    /// @throws CInvalidParameterError  the parent is empty: it has left its own parent's list
    CDevice(CGenTLLib* pLib, boost::shared_ptr<IInterface> pInterface, IF_HANDLE hInterface,
            DEV_MODULE_INFO objInformation, COMMON_DEVICE_INFO objCommonInfo);

    void DoOpenDevice(std::uint32_t nAccessMode) override;
    void DoCloseDevice() override;
    bool IsOpened() const override { return m_bOpened; }

    DEV_MODULE_INFO GetDeviceInformation() const override;
    COMMON_DEVICE_INFO GetCommonInformation() const override;
    std::vector<boost::shared_ptr<IDataStream>> GetDataStreamList() const override;
    boost::shared_ptr<IInterface> GetInterface() const override { return m_pInterface; }

    IFeatureControl* GetRemoteFeatureControl() const override { return nullptr; }
    GenApi_3_0::CNodeMapRef* GetRemoteNodeMap() const override { return nullptr; }
    std::string GetRemoteXML() const override { return {}; }
    std::uint32_t GetAccessMode() const override { return DEVICE_ACCESS_NONE; }

    IDeviceOfflineCallback* RegisterDeviceOfflineCallback(IEventCallback* pCallback) override;
    void UnregisterDeviceOfflineCallback(IDeviceOfflineCallback* pRegistration) override;
    bool IsDeviceOffline() const override;
    std::uint64_t GetEventNumInQueue() override;
    void FlushRemoteDeviceEvent() override;

    DEV_HANDLE GetHandle() const override { return nullptr; }
    PORT_HANDLE GetRemotePortHandle() const override { return nullptr; }
    CGenTLLib* GetLib() const override { return m_pLib; }

    std::uint32_t GetRemoteDeviceEventThreadId() const override;
    std::uint32_t GetDeviceOfflineEventThreadId() const override;
    void StartRemoteDeviceEvent() override;

    void DoIpConfiguration(std::uint32_t nValue, std::string strText1, std::string strText2, std::string strText3,
                           std::string strText4) override;
    void DoForceIp(std::string strText1, std::string strText2, std::string strText3) override;
    void DoResetDevice(std::uint32_t nValue) override;

    void UpdateInformation(const DEV_MODULE_INFO& objRecord) override;

    void SetSpecialDevice(bool bSpecial) override { m_bSpecialDevice = bSpecial; }
    void SetSpecialDeviceIP(const std::string& strIP) override;
    std::string GetSpecialDeviceIP() const override;
    bool IsSpecialDevice() const override { return m_bSpecialDevice; }

    /// The node map of the device module, as opposed to that of the camera. Null while closed; not the caller's.
    virtual GenApi_3_0::CNodeMapRef* GetLocalNodeMap() const { return GetNodeMap(); }
    virtual CNativeDeviceOfflineEvent* GetNativeDeviceOfflineEvent();

private:
    const boost::shared_ptr<IInterface> m_pInterface;
    [[maybe_unused]] const IF_HANDLE m_hInterface;  // for the opening, which is yet to come
    DEV_MODULE_INFO m_objInformation;               // guarded by m_csRecords
    COMMON_DEVICE_INFO m_objCommonInfo;             // guarded by m_csRecords
    std::atomic<bool> m_bOpened = false;
    std::atomic<bool> m_bSpecialDevice = false;
    std::string m_strSpecialIP;  // guarded by m_csRecords
};
