#pragma once

#include <memory>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/Updater.h"
#include "support/Thread.h"

class IInterface;

/// Updates the devices of one interface.
class CIFUpdater : public IUpdater {
public:
    explicit CIFUpdater(boost::shared_ptr<IInterface> pInterface);
    ~CIFUpdater() override;

    void DoUpdate(std::uint64_t nTimeoutMs) override;
    bool IsUpdateFinished() override;
    /// Sends the interface the stop command, if it has one, while its thread waits in the producer. So it takes no lock
    /// of the interface.
    /// @throws CZrException  the interface has the command and refuses it
    void DoStopUpdate() override;

private:
    friend class CUpdaterInspection;  // lets a test start the thread's function without an updater

    static std::uint32_t __OnThreadInterfaceUpdate(void* pArgument);

    boost::shared_ptr<IInterface> m_pInterface;
    std::unique_ptr<CThread> m_pThread;  // goes first, and waits for the thread
};
