#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/producer_double/Device.h"
#include "tests/producer_double/Module.h"

namespace ProducerDouble {

/// One network adapter: the cameras of the world that are or were behind it, and the consumer's list of them.
class CInterface : public CModule, public IInterfaceControl {
public:
    /// @param nNumber  gives the adapter and its cameras addresses of their own: 192.168.nNumber.1 and so on
    CInterface(CONTEXT& objContext, const std::string& strId, std::uint32_t nNumber);

    IDeviceControl& Plug(const std::string& strId) override;
    IInterfaceControl& Unplug(const std::string& strId) override;
    IDeviceControl& Device(const std::string& strId) override;
    IInterfaceControl& Lists(std::optional<std::vector<std::string>> vecId) override;
    IInterfaceControl& Address(GEV_ADDRESS objAddress) override;
    IInterfaceControl& WaitWholeWindow(bool bWait) override;
    IInterfaceControl& SelectorMax(std::optional<std::int64_t> nMax) override;

    // Everything below expects the monitor's lock.
    /// @return whether the list has changed
    bool UpdateList(LOCK& lock, std::uint64_t nTimeoutMs);
    const std::vector<std::shared_ptr<CDevice>>& List() const { return m_vecList; }
    CDevice& Listed(std::size_t nIndex) const;
    CDevice& Listed(const std::string& strId) const;
    /// By its ID, or by "IP::" and its address, listed or not.
    CDevice& ForOpening(const std::string& strId) const;
    CDevice& Answering(const std::string& strIp) const;
    CDevice* Find(const std::string& strId) const;
    const GEV_ADDRESS& GevAddress() const { return m_objAddress; }

private:
    void _CloseChildren() override;
    CDevice& __Known(const std::string& strId) const;
    std::vector<std::shared_ptr<CDevice>> __Visible() const;
    void __FillListFeatures();

    const std::uint32_t m_nNumber;
    std::vector<std::shared_ptr<CDevice>> m_vecDevice;  // the world's
    std::vector<std::shared_ptr<CDevice>> m_vecList;    // the consumer's
    std::optional<std::vector<std::string>> m_vecScriptedList;
    std::optional<std::int64_t> m_nScriptedMax;
    GEV_ADDRESS m_objAddress;
    bool m_bWaitWholeWindow = false;
    bool m_bStopRequested = false;
};

}  // namespace ProducerDouble
