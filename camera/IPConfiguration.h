#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "camera/CameraConfiguration.h"
#include "camera/Device.h"
#include "camera/RegisterSpace.h"
#include "gev/Address.h"
#include "gev/GvcpStatus.h"

namespace camera {

/// What carries an address: the camera's adapter, or a test's note of it.
class IAdapter {
public:
    virtual ~IAdapter() = default;
    virtual void SetAddress(std::uint32_t nAddress, std::uint32_t nMask) = 0;
    virtual void RemoveAddresses() = 0;
};

/// The camera's address: where it comes from, and the registers that tell it. Persistent configuration comes first, if
/// it is switched on and makes sense, then a link-local address made of the MAC.
class CIPConfiguration {
public:
    /// @param objRegisters, objAdapter  must outlive this
    CIPConfiguration(CRegisterSpace& objRegisters, IAdapter& objAdapter, gev::CMACAddress objMAC,
                     std::chrono::milliseconds nDuration);

    /// Comes up at once, on the address that the configuration names or else by the usual order.
    void Begin(const CAMERA_CONFIGURATION& objConfiguration);

    /// Gives the address up and starts anew; the camera is not to be reached until it is done.
    void Restart(TIME tNow);

    /// Takes an address at once, until the next start.
    /// @return InvalidParameter for one that no host may have
    gev::EGvcpStatus Force(const IP_SETTING& objSetting);

    /// Stores a persistent configuration and switches it on; the address of now stays.
    gev::EGvcpStatus Store(const IP_SETTING& objSetting);

    /// Ends a restart whose time has come.
    /// @return whether it did
    bool Advance(TIME tNow);
    [[nodiscard]] std::optional<TIME> NextTime() const { return m_tDone; }

    /// Whether a restart is under way.
    [[nodiscard]] bool IsUnderWay() const { return m_tDone.has_value(); }
    [[nodiscard]] IP_SETTING GetCurrent() const;
    /// Whether a datagram to this address is for the camera.
    [[nodiscard]] bool IsMine(std::uint32_t nDestination) const;
    /// Whether a host lies in the camera's subnet.
    [[nodiscard]] bool IsNeighbour(std::uint32_t nAddress) const;

private:
    [[nodiscard]] IP_SETTING Choose() const;
    void Apply(const IP_SETTING& objSetting);

    CRegisterSpace& m_objRegisters;
    IAdapter& m_objAdapter;
    gev::CMACAddress m_objMAC;
    std::chrono::milliseconds m_nDuration;
    std::optional<TIME> m_tDone;  // end of a restart
};

inline constexpr std::uint32_t kLimitedBroadcast = 0xFFFFFFFF;

}  // namespace camera
