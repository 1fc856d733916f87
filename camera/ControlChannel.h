#pragma once

#include <cstdint>
#include <optional>

#include "camera/Answering.h"
#include "camera/Device.h"
#include "gev/GvcpStatus.h"

namespace camera {

/// Who controls the camera, and how long still.
///
/// An application takes the privilege by writing its register, and keeps it by any command within the heartbeat
/// time-out. When it gives it up or falls silent, all its channels are closed.
class CControlChannel {
public:
    /// @param objDevice  must outlive this
    explicit CControlChannel(CDevice& objDevice) : m_objDevice(objDevice) {}

    [[nodiscard]] bool IsHeld() const { return m_objHolder.has_value(); }
    [[nodiscard]] bool IsHeldBy(const ENDPOINT& objFrom) const { return m_objHolder == objFrom; }
    /// Whether somebody else has it.
    [[nodiscard]] bool IsForeign(const ENDPOINT& objFrom) const { return IsHeld() && !IsHeldBy(objFrom); }
    /// All may read, unless another has exclusive access.
    [[nodiscard]] bool MayRead(const ENDPOINT& objFrom) const;

    /// A write to the register of the privilege.
    /// @return AccessDenied while another has it, InvalidParameter for a privilege that there isn't
    gev::EGvcpStatus SetPrivilege(const ENDPOINT& objFrom, std::uint32_t nPrivilege, TIME tNow);

    /// A command came from there.
    void Beat(const ENDPOINT& objFrom, TIME tNow);

    /// Takes the privilege from whoever has it.
    void Drop();

    /// Drops the privilege of a holder who has been silent too long.
    /// @return whether that happened
    bool Advance(TIME tNow);
    /// When the present holder loses it, if it stays silent.
    [[nodiscard]] std::optional<TIME> NextTime() const;

private:
    CDevice& m_objDevice;
    std::optional<ENDPOINT> m_objHolder;
    TIME m_tLastBeat{};
};

}  // namespace camera
