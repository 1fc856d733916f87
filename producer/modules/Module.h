#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "producer/modules/Port.h"
#include "producer/modules/RegisterMap.h"

namespace producer {

/// The version of the producer, and the vendor of its modules.
inline constexpr const char* kVendor = "Norvik";
inline constexpr const char* kProducerVersion = NORVIK_VERSION;

/// A module of the GenTL hierarchy: a handle, a register space of its own with its description, and events.
///
/// Held by its parent (CChildren) while it is open, by the handle table, and by every call that is under way: it dies
/// with the last of them. Any thread may call any operation, also while another closes it.
class CModule : public CPort {
public:
    /// Gives the module its handle, under which it can be reached from then on. Called once, by who made it.
    /// @throws CProducerError  GC_ERR_RESOURCE_EXHAUSTED
    void* Publish(const std::shared_ptr<CModule>& pThis);

    /// Closes the module and what is open below it: its handle and theirs become unknown, every wait on it ends.
    /// Of several callers the later ones wait for the first.
    void Close() noexcept;

    bool IsClosing() const { return m_bClosing; }
    void* GetHandle() const { return m_hModule; }

    void Read(std::uint64_t nAddress, std::span<std::byte> spanBuffer) override;
    void Write(std::uint64_t nAddress, std::span<const std::byte> spanBuffer) override;
    std::vector<URL_FACTS> GetUrls() override;
    PORT_FACTS GetPortFacts() const override;

protected:
    /// @param strModule  the module's kind, in the standard's words
    CModule(std::string strModule, std::string strId, DESCRIPTION_HEADER objHeader);

    /// The features. A derived constructor fills them and calls Finish.
    CRegisterMap& GetRegisters() { return m_objRegisters; }
    const std::string& GetModuleId() const { return m_strId; }

    /// What the module itself has to end, once: waits first, then its children, then its resources.
    virtual void DoClose() noexcept = 0;

    /// @throws CProducerError  GC_ERR_INVALID_HANDLE after the close began
    void RequireOpen() const;

private:
    const std::string m_strModule;
    const std::string m_strId;
    CRegisterMap m_objRegisters;
    std::atomic<void*> m_hModule = nullptr;
    std::atomic<bool> m_bClosing = false;
    std::mutex m_mtxClose;  // held for the whole close; guards m_bClosed
    bool m_bClosed = false;
};

}  // namespace producer
