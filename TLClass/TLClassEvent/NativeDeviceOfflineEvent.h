#pragma once

#include "GenTL/GenTL.h"
#include "TLClass/TLClassEvent/RegisterEventAgency.h"
#include "TLClass/TLClassMain/UnCopyable.h"

class CGenTLLib;

/// The event by which producers of this system's own family tell that an open camera has gone. It carries no data: that
/// it comes is the message.
///
/// Part of CDeviceOfflineEvent, whose lock covers registering and unregistering; the wait runs on its thread meanwhile.
class CNativeDeviceOfflineEvent : public CUnCopyable {
public:
    /// @param pLib  not owned
    explicit CNativeDeviceOfflineEvent(CGenTLLib* pLib) : m_pLib(pLib) {}
    ~CNativeDeviceOfflineEvent() = default;

    /// A producer that lacks the event is no failure: it gets a line in the log, and IsRegistered stays false.
    /// @param hRemotePort  the camera's own port
    /// @throws CZrException  access denied, an invalid parameter, the device already gone
    void RegisterDeviceOfflineEvent(PORT_HANDLE hRemotePort);
    /// Refusals of the producer are logged.
    void UnRegisterDeviceOfflineEvent();

    /// Waits without limit.
    /// @return GC_ERR_SUCCESS when the camera has gone, GC_ERR_ABORT after EventKill; any other status is logged too
    GC_ERROR GetOfflineEvent();
    /// Ends a wait, or the next one if there is none.
    void EventKill();

    bool IsRegistered() const { return m_hEvent != nullptr; }

private:
    class CNativeGCRegisterEventAgency : public CRegisterEventAgency {
    public:
        CNativeGCRegisterEventAgency(CGenTLLib* pLib, PORT_HANDLE hRemotePort, EVENT_HANDLE& hEvent)
            : CRegisterEventAgency(pLib, hRemotePort, EVENT_ZR_DEVICE_OFFLINE, hEvent,
                                   "CNativeDeviceOfflineEvent::CNativeGCRegisterEventAgency") {}
    };

    CGenTLLib* const m_pLib;
    PORT_HANDLE m_hDevice = nullptr;
    EVENT_HANDLE m_hEvent = nullptr;  // changes only while no thread waits
};
