#include "camera/ControlChannel.h"

#include <algorithm>
#include <chrono>

#include "gev/Bootstrap.h"

namespace camera {
namespace {

namespace boot = gev::bootstrap;
using gev::EGvcpStatus;

}  // namespace

bool CControlChannel::MayRead(const ENDPOINT& objFrom) const {
    const bool bExclusive =
        (m_objDevice.Registers().Get(boot::kControlChannelPrivilege) & boot::kPrivilegeExclusive) != 0;
    return !bExclusive || !IsForeign(objFrom);
}

EGvcpStatus CControlChannel::SetPrivilege(const ENDPOINT& objFrom, std::uint32_t nPrivilege, TIME tNow) {
    if (IsForeign(objFrom)) {
        return EGvcpStatus::AccessDenied;
    }
    if ((nPrivilege & ~(boot::kPrivilegeControl | boot::kPrivilegeExclusive)) != 0) {
        return EGvcpStatus::InvalidParameter;
    }
    if (nPrivilege == 0) {
        Drop();
        return EGvcpStatus::Success;
    }
    m_objHolder = objFrom;
    m_tLastBeat = tNow;
    CRegisterSpace& objRegisters = m_objDevice.Registers();
    // With exclusive access the other bit doesn't count.
    const bool bExclusive = (nPrivilege & boot::kPrivilegeExclusive) != 0;
    objRegisters.Set(boot::kControlChannelPrivilege, bExclusive ? boot::kPrivilegeExclusive : boot::kPrivilegeControl);
    objRegisters.Set(boot::kPrimaryApplicationPort, objFrom.Port);
    objRegisters.Set(boot::kPrimaryApplicationIP, objFrom.Address);
    return EGvcpStatus::Success;
}

void CControlChannel::Beat(const ENDPOINT& objFrom, TIME tNow) {
    if (IsHeldBy(objFrom)) {
        m_tLastBeat = tNow;
    }
}

void CControlChannel::Drop() {
    m_objHolder.reset();
    CRegisterSpace& objRegisters = m_objDevice.Registers();
    objRegisters.Set(boot::kControlChannelPrivilege, 0);
    objRegisters.Set(boot::kPrimaryApplicationPort, 0);
    objRegisters.Set(boot::kPrimaryApplicationIP, 0);
    m_objDevice.CloseChannels();
}

bool CControlChannel::Advance(TIME tNow) {
    const auto tEnd = NextTime();
    if (!tEnd || tNow < *tEnd) {
        return false;
    }
    Drop();
    return true;
}

std::optional<TIME> CControlChannel::NextTime() const {
    const CRegisterSpace& objRegisters = m_objDevice.Registers();
    const bool bDisabled = (objRegisters.Get(boot::kGvcpConfiguration) & boot::kGvcpConfigurationHeartbeatDisable) != 0;
    if (!IsHeld() || bDisabled) {
        return std::nullopt;
    }
    const std::uint32_t nTimeout = std::max(objRegisters.Get(boot::kHeartbeatTimeout), boot::kHeartbeatTimeoutLeastMs);
    return m_tLastBeat + std::chrono::milliseconds(nTimeout);
}

}  // namespace camera
