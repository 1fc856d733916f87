#pragma once

#include <memory>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/Updater.h"
#include "support/Thread.h"

class ITL;

/// Updates the interfaces of one transport layer.
class CTLUpdater : public IUpdater {
public:
    explicit CTLUpdater(boost::shared_ptr<ITL> pTL);
    ~CTLUpdater() override;

    void DoUpdate(std::uint64_t nTimeoutMs) override;
    bool IsUpdateFinished() override;

private:
    friend class CUpdaterInspection;  // lets a test start the thread's function without an updater

    static std::uint32_t __OnThreadTLUpdate(void* pArgument);

    boost::shared_ptr<ITL> m_pTL;
    std::unique_ptr<CThread> m_pThread;  // goes first, and waits for the thread
};
