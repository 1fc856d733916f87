#include "camera/IPConfiguration.h"

#include "gev/Bootstrap.h"

namespace camera {
namespace {

namespace boot = gev::bootstrap;
using gev::EGvcpStatus;

/// 169.254.1.0 to 169.254.254.255, as the first and the last 256 addresses of the block are reserved.
/// Source: RFC 3927, 2.1.
IP_SETTING MakeLinkLocal(gev::CMACAddress objMAC) {
    const std::uint32_t nLow = objMAC.GetLow();
    const std::uint32_t nThird = 1 + ((nLow >> 8 & 0xFF) ^ (nLow >> 16 & 0xFF)) % 254;
    return {gev::MakeIPv4(169, 254, static_cast<std::uint8_t>(nThird), static_cast<std::uint8_t>(nLow)),
            gev::MakeIPv4(255, 255, 0, 0), 0};
}

}  // namespace

CIPConfiguration::CIPConfiguration(CRegisterSpace& objRegisters, IAdapter& objAdapter, gev::CMACAddress objMAC,
                                   std::chrono::milliseconds nDuration)
    : m_objRegisters(objRegisters), m_objAdapter(objAdapter), m_objMAC(objMAC), m_nDuration(nDuration) {
    m_objRegisters.Set(boot::kCurrentIPConfiguration,
                       m_objRegisters.Get(boot::kCurrentIPConfiguration) | boot::kIPConfigurationLinkLocal);
}

void CIPConfiguration::Begin(const CAMERA_CONFIGURATION& objConfiguration) {
    if (objConfiguration.Persistent && !objConfiguration.State) {
        Store(*objConfiguration.Persistent);
    }
    Apply(objConfiguration.IP ? *objConfiguration.IP : Choose());
}

void CIPConfiguration::Restart(TIME tNow) {
    Apply({});
    m_tDone = tNow + m_nDuration;
}

EGvcpStatus CIPConfiguration::Force(const IP_SETTING& objSetting) {
    if (!IsUsable(objSetting)) {
        return EGvcpStatus::InvalidParameter;
    }
    m_tDone.reset();
    Apply(objSetting);
    return EGvcpStatus::Success;
}

EGvcpStatus CIPConfiguration::Store(const IP_SETTING& objSetting) {
    if (!IsUsable(objSetting)) {
        return EGvcpStatus::InvalidParameter;
    }
    m_objRegisters.Set(boot::kPersistentIP, objSetting.Address);
    m_objRegisters.Set(boot::kPersistentSubnetMask, objSetting.Mask);
    m_objRegisters.Set(boot::kPersistentGateway, objSetting.Gateway);
    m_objRegisters.Set(boot::kCurrentIPConfiguration,
                       m_objRegisters.Get(boot::kCurrentIPConfiguration) | boot::kIPConfigurationPersistent);
    return EGvcpStatus::Success;
}

bool CIPConfiguration::Advance(TIME tNow) {
    if (!m_tDone || tNow < *m_tDone) {
        return false;
    }
    m_tDone.reset();
    Apply(Choose());
    return true;
}

IP_SETTING CIPConfiguration::Choose() const {
    const IP_SETTING objPersistent = {m_objRegisters.Get(boot::kPersistentIP),
                                      m_objRegisters.Get(boot::kPersistentSubnetMask),
                                      m_objRegisters.Get(boot::kPersistentGateway)};
    const bool bPersistent =
        (m_objRegisters.Get(boot::kCurrentIPConfiguration) & boot::kIPConfigurationPersistent) != 0;
    return bPersistent && IsUsable(objPersistent) ? objPersistent : MakeLinkLocal(m_objMAC);
}

void CIPConfiguration::Apply(const IP_SETTING& objSetting) {
    if (objSetting.Address != 0) {
        m_objAdapter.SetAddress(objSetting.Address, objSetting.Mask);
    } else {
        m_objAdapter.RemoveAddresses();
    }
    m_objRegisters.Set(boot::kCurrentIP, objSetting.Address);
    m_objRegisters.Set(boot::kCurrentSubnetMask, objSetting.Mask);
    m_objRegisters.Set(boot::kCurrentGateway, objSetting.Gateway);
}

IP_SETTING CIPConfiguration::GetCurrent() const {
    return {m_objRegisters.Get(boot::kCurrentIP), m_objRegisters.Get(boot::kCurrentSubnetMask),
            m_objRegisters.Get(boot::kCurrentGateway)};
}

bool CIPConfiguration::IsMine(std::uint32_t nDestination) const {
    if (nDestination == kLimitedBroadcast) {
        return true;
    }
    const IP_SETTING objCurrent = GetCurrent();
    return objCurrent.Address != 0 &&
           (nDestination == objCurrent.Address || nDestination == (objCurrent.Address | ~objCurrent.Mask));
}

bool CIPConfiguration::IsNeighbour(std::uint32_t nAddress) const {
    const IP_SETTING objCurrent = GetCurrent();
    return objCurrent.Address != 0 && ((nAddress ^ objCurrent.Address) & objCurrent.Mask) == 0;
}

}  // namespace camera
