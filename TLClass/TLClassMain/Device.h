#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "TLClass/TLClassEvent/DeviceOfflineEvent.h"
#include "TLClass/TLClassEvent/RemoteDeviceEvent.h"
#include "TLClass/TLClassMain/IDevice.h"

class CGenTLLib;
class CNativeDeviceOfflineEvent;

/// One camera: its records, as its interface's updates see them, and all that is open of it.
///
/// An open device holds its handle and the camera's port in the producer, two node maps with a feature control each
/// (those of the base class are the device module's, the remote ones the camera's), and a closed data stream for each
/// that the producer counts. No event is registered and no stream is opened until somebody asks for it.
///
/// Opening and closing exclude each other. A closing waits for the threads of the events, so their callbacks are
/// refused one; a callback of a stream's frames must not ask for it either.
class CDevice : public IDevice {
public:
    /// @param pInterface      the parent
    /// @param objInformation  its pointers aren't kept
    /// @throws CInvalidParameterError  the parent is empty: it has left its own parent's list
    CDevice(CGenTLLib* pLib, boost::shared_ptr<IInterface> pInterface, IF_HANDLE hInterface,
            DEV_MODULE_INFO objInformation, COMMON_DEVICE_INFO objCommonInfo);
    /// Ends the threads of the events, should it be open; closes nothing.
    ~CDevice() override;

    void DoOpenDevice(std::uint32_t nAccessMode) override;
    void DoCloseDevice() override;
    bool IsOpened() const override { return m_bOpened; }

    DEV_MODULE_INFO GetDeviceInformation() const override;
    COMMON_DEVICE_INFO GetCommonInformation() const override;
    std::vector<boost::shared_ptr<IDataStream>> GetDataStreamList() const override;
    boost::shared_ptr<IInterface> GetInterface() const override { return m_pInterface; }

    IFeatureControl* GetRemoteFeatureControl() const override;
    GenApi_3_0::CNodeMapRef* GetRemoteNodeMap() const override { return m_objRemoteXMLAnalyzer.GetNodeMapRef(); }
    std::string GetRemoteXML() const override { return m_objRemoteXMLAnalyzer.GetXML(); }
    std::uint32_t GetAccessMode() const override { return m_nAccessMode; }

    IDeviceOfflineCallback* RegisterDeviceOfflineCallback(IEventCallback* pCallback) override;
    void UnregisterDeviceOfflineCallback(IDeviceOfflineCallback* pRegistration) override;
    bool IsDeviceOffline() const override;
    std::uint64_t GetEventNumInQueue() override;
    void FlushRemoteDeviceEvent() override;

    DEV_HANDLE GetHandle() const override { return m_hDevice; }
    PORT_HANDLE GetRemotePortHandle() const override { return m_hRemotePort; }
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
    class CCloseDeviceHandleAfterOpenFailure;
    class CIFOpenDeviceAgency;
    class CUpdateDSListAgency;
    class CRegisterOfflineEventAgency;
    class CStartRemoteEventAgency;

    std::string __GetOpenID() const;
    PORT_HANDLE __GetPort(DEV_HANDLE hDevice) const;
    void __UpdateDSList(DEV_HANDLE hDevice);
    void __SetRemoteFeatureControl(std::unique_ptr<IFeatureControl> pFeatureControl);

    const boost::shared_ptr<IInterface> m_pInterface;
    const IF_HANDLE m_hInterface;
    std::atomic<DEV_HANDLE> m_hDevice = nullptr;
    std::atomic<PORT_HANDLE> m_hRemotePort = nullptr;
    DEV_MODULE_INFO m_objInformation;    // guarded by m_csRecords
    COMMON_DEVICE_INFO m_objCommonInfo;  // guarded by m_csRecords
    std::atomic<bool> m_bOpened = false;
    std::atomic<std::uint32_t> m_nAccessMode = DEVICE_ACCESS_NONE;  // of the last successful open
    // While open. Who left the list open is closed by its owner, who may do so behind the end of the manager. The
    // events' threads call it, so it stands before them.
    boost::shared_ptr<CGenTLLib> m_pOpenLib;
    CDeviceOfflineEvent m_objDeviceOfflineEvent;
    CRemoteDeviceEvent m_objRemoteDeviceEvent;
    CCriticalSection m_csRemoteEvent;     // held for a start, and for the stop of a closing, behind m_csDevice
    bool m_bMayStartRemoteEvent = false;  // guarded by m_csRemoteEvent; no more from the stop of a closing on
    CXMLAnalyzer m_objRemoteXMLAnalyzer;
    std::unique_ptr<IFeatureControl> m_pRemoteFeatureControl;  // guarded by m_csRecords
    CCriticalSection m_csDevice;  // held for a whole opening or closing; the parent's m_csDeviceList is taken behind it
    std::atomic<bool> m_bSpecialDevice = false;
    std::string m_strSpecialIP;  // guarded by m_csRecords
};
