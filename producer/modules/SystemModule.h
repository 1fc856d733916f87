#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "producer/modules/Children.h"
#include "producer/modules/InterfaceEntry.h"
#include "producer/modules/InterfaceModule.h"
#include "producer/modules/Module.h"

namespace producer {

/// Answers an info command about the producer as a whole, which needs no open module.
/// @throws CProducerError  GC_ERR_NOT_AVAILABLE for a command that isn't known
CInfoValue GetProducerInfo(TL_INFO_CMD nCommand);

/// The system module: the network adapters of this machine, one interface each.
///
/// Owned by the library while it is open. The list of interfaces changes in UpdateInterfaces alone; what it lists can
/// be opened and read whatever has become of the adapter.
class CSystemModule : public CModule {
public:
    /// @param funClosed  called last in the close
    explicit CSystemModule(std::function<void()> funClosed);

    std::uint32_t GetInterfaceCount() const;
    /// @throws CProducerError  GC_ERR_INVALID_INDEX
    std::string GetInterfaceId(std::uint32_t nIndex) const;
    /// @throws CProducerError  GC_ERR_INVALID_ID, GC_ERR_NOT_AVAILABLE
    CInfoValue GetInterfaceInfo(const std::string& strId, INTERFACE_INFO_CMD nCommand) const;

    /// Asks the kernel for the adapters.
    /// @return whether the list is another one than before
    bool UpdateInterfaces();

    /// @throws CProducerError  GC_ERR_INVALID_ID, GC_ERR_RESOURCE_IN_USE
    void* OpenInterface(const std::string& strId);

private:
    using LIST = std::vector<INTERFACE_ENTRY>;

    void AddSystemFeatures();
    void AddInterfaceFeatures();
    INTERFACE_ENTRY FindInterface(const std::string& strId) const;
    INTERFACE_ENTRY GetSelected() const;
    void Select(std::int64_t nIndex);
    void DoClose() noexcept override;

    const std::function<void()> m_funClosed;
    std::mutex m_mtxUpdate;        // held for a whole update; taken before m_mtxList
    mutable std::mutex m_mtxList;  // guards the two below
    LIST m_vecInterface;
    std::size_t m_nSelected = 0;  // inside the list, or 0
    CChildren<CInterfaceModule> m_objInterfaces;
};

}  // namespace producer
