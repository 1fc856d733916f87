#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "producer/modules/Children.h"
#include "producer/modules/SystemModule.h"

namespace producer {

/// The producer between GCInitLib and GCCloseLib, with the system module when it is open.
///
/// One for the process, never destroyed: threads of the consumer may run while the process exits. Any thread may call.
class CLibrary {
public:
    static CLibrary& Get();

    /// @throws CProducerError  GC_ERR_RESOURCE_IN_USE, when it is initialised already
    void Init();
    /// Closes everything that is open.
    /// @throws CProducerError  GC_ERR_NOT_INITIALIZED
    void Close();
    /// @throws CProducerError  GC_ERR_NOT_INITIALIZED
    void RequireInit() const;

    /// @throws CProducerError  GC_ERR_RESOURCE_IN_USE, while it is open
    void* OpenSystem();

private:
    using SYSTEMS = CChildren<CSystemModule>;

    mutable std::mutex m_mtxLibrary;      // guards the one below; outermost of all locks, not held while modules close
    std::shared_ptr<SYSTEMS> m_pSystems;  // null unless initialised
    std::atomic<bool> m_bInitialised = false;
};

}  // namespace producer
