#pragma once

#include <cstdint>
#include <memory>

#include "support/CriticalSection.h"

/// One update of one module on a thread of its own.
///
/// Used for one update and dropped; whoever drops one whose thread still runs waits for it. The thread reads the
/// time-out and writes the result, while the one that started it asks.
class IUpdater {
public:
    IUpdater();
    virtual ~IUpdater();
    IUpdater(const IUpdater&) = delete;
    IUpdater& operator=(const IUpdater&) = delete;

    /// Starts the update. Does nothing while one runs. Without a thread to be had it counts as finished, with a line in
    /// the log.
    virtual void DoUpdate(std::uint64_t nTimeoutMs) = 0;
    virtual bool IsUpdateFinished() = 0;
    /// Asks for an early end of a running update, where the module offers that.
    virtual void DoStopUpdate() {}

    std::uint64_t GetTimeout() const;
    void SetTimeout(std::uint64_t nTimeoutMs);
    /// Good once the update has finished.
    bool IsChanged() const;
    void SetChanged(bool bChanged);

private:
    std::uint64_t m_nTimeoutMs = 0;
    std::unique_ptr<CCriticalSection> m_pcsTimeout;  // guards m_nTimeoutMs
    bool m_bChanged = false;
    std::unique_ptr<CCriticalSection> m_pcsChanged;  // guards m_bChanged
};
