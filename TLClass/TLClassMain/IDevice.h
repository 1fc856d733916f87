#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "GenApi/NodeMapRef.h"
#include "GenTL/GenTL.h"
#include "TLClass/TLClassInfo/CommonDeviceInfo.h"
#include "TLClass/TLClassInfo/DevModuleInfo.h"
#include "TLClass/TLClassMain/GcObject.h"

class CGenTLLib;
class IDataStream;
class IDeviceOfflineCallback;
class IEventCallback;
class IFeatureControl;
class IInterface;

/// A device module: one camera, known from the first update that lists it, and open or closed from then on.
///
/// Made closed and owned by its interface; whoever opened it closes it. Any thread may call.
class IDevice : public CGcObject {
public:
    /// Opens the device in the producer, loads its two node maps and lists its data streams. Does nothing if it is open
    /// in the same mode.
    /// @param nAccessMode  one of DEVICE_ACCESS_FLAGS_LIST
    /// @throws CInvalidAccessError  it is open in another mode, or another application has it
    /// @throws CZrException         anything else that failed; the device stays closed
    virtual void DoOpenDevice(std::uint32_t nAccessMode) = 0;
    /// Stops and closes everything of the device; the object stays and can be opened again. Does nothing if it is
    /// closed.
    /// @throws CInvalidCallError  called by a callback of an event of the device, on the event's thread
    virtual void DoCloseDevice() = 0;
    virtual bool IsOpened() const = 0;

    virtual DEV_MODULE_INFO GetDeviceInformation() const = 0;
    virtual COMMON_DEVICE_INFO GetCommonInformation() const = 0;

    /// Empty while closed.
    virtual std::vector<boost::shared_ptr<IDataStream>> GetDataStreamList() const = 0;
    virtual boost::shared_ptr<IInterface> GetInterface() const = 0;

    // The camera's own features, node map and description, as opposed to those of the device module, which the base
    // class has. Null or empty while closed; not the caller's.
    virtual IFeatureControl* GetRemoteFeatureControl() const = 0;
    virtual GenApi_3_0::CNodeMapRef* GetRemoteNodeMap() const = 0;
    virtual std::string GetRemoteXML() const = 0;

    /// The mode of the last successful open, DEVICE_ACCESS_NONE before the first.
    virtual std::uint32_t GetAccessMode() const = 0;

    /// Registers a clone of the callback, which is called once when the camera has gone. On a closed device it is only
    /// kept: the next registration on the open device lets it be called too.
    /// @return the registration, owned by the device until the close; null for a callback of another kind
    virtual IDeviceOfflineCallback* RegisterDeviceOfflineCallback(IEventCallback* pCallback) = 0;
    virtual void UnregisterDeviceOfflineCallback(IDeviceOfflineCallback* pRegistration) = 0;
    /// Whether the camera has gone. Only told while a callback is registered on the open device; false again after the
    /// close. Until that the device counts as open, and an opening does nothing.
    virtual bool IsDeviceOffline() const = 0;

    /// The events of the camera that wait to be delivered.
    virtual std::uint64_t GetEventNumInQueue() = 0;
    virtual void FlushRemoteDeviceEvent() = 0;

    /// The device in the producer; null while closed.
    virtual DEV_HANDLE GetHandle() const = 0;
    /// The camera's own port; null while closed.
    virtual PORT_HANDLE GetRemotePortHandle() const = 0;
    virtual CGenTLLib* GetLib() const = 0;

    virtual std::uint32_t GetRemoteDeviceEventThreadId() const = 0;
    virtual std::uint32_t GetDeviceOfflineEventThreadId() const = 0;
    /// Lets the camera's own events reach its features, until the close. A producer without them is a line in the log.
    virtual void StartRemoteDeviceEvent() = 0;

    // Entries of this family of producers alone, for a closed device as well: the producer reaches the camera through
    // the interface. What the value and the texts mean is the producer's: docs/producer.md tells of the bundled one,
    // whose DoForceIp takes address, mask and gateway, the last of them empty for none.
    virtual void DoIpConfiguration(std::uint32_t nValue, std::string strText1, std::string strText2,
                                   std::string strText3, std::string strText4) = 0;
    virtual void DoForceIp(std::string strText1, std::string strText2, std::string strText3) = 0;
    virtual void DoResetDevice(std::uint32_t nValue) = 0;

    /// Takes over what an update has read.
    /// @param objRecord  its two pointers are looked at, not kept
    virtual void UpdateInformation(const DEV_MODULE_INFO& objRecord) = 0;

    // A special device is one that was asked for by its address. It stays in the list though no update finds it.
    virtual void SetSpecialDevice(bool bSpecial) = 0;
    virtual void SetSpecialDeviceIP(const std::string& strIP) = 0;
    virtual std::string GetSpecialDeviceIP() const = 0;
    virtual bool IsSpecialDevice() const = 0;

protected:
    using CGcObject::CGcObject;
};
