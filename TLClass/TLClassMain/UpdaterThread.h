#pragma once

#include <cstdint>

#include "TLClass/TLClassMain/Updater.h"
#include "support/Thread.h"

// What the updaters of all kinds of module do alike.

/// One line of the log about an updater.
void LogUpdater(int nLine, const char* pFunction, const char* pText);

/// The body of DoUpdate: starts the thread, with the updater as its argument, unless it runs.
/// @param pUpdater   the updater as the thread's function expects it
/// @param pFunction  "Class::DoUpdate", for the log
template <typename UPDATER>
void StartUpdate(UPDATER* pUpdater, CThread& objThread, CThread::Entry pEntry, std::uint64_t nTimeoutMs,
                 const char* pFunction) {
    if (!pUpdater->IsUpdateFinished()) {
        return;
    }
    pUpdater->SetTimeout(nTimeoutMs);
    pUpdater->SetChanged(false);
    if (!objThread.Start(pUpdater, pEntry, kPriorityNormal)) {
        LogUpdater(__LINE__, pFunction, "Failed to start thread");
    }
}

/// The thread's function. An exception of the update isn't caught: it ends the process.
/// @param fnUpdate  void(UPDATER&, std::uint64_t nTimeoutMs, bool* pChanged)
template <typename UPDATER, typename UPDATE>
std::uint32_t RunUpdate(void* pArgument, const char* pFunction, const char* pNullText, UPDATE fnUpdate) {
    if (pArgument == nullptr) {
        LogUpdater(__LINE__, pFunction, pNullText);
        return 0;
    }
    auto* pUpdater = static_cast<UPDATER*>(pArgument);
    bool bChanged = false;
    fnUpdate(*pUpdater, pUpdater->GetTimeout(), &bChanged);
    pUpdater->SetChanged(bChanged);
    return 0;
}
