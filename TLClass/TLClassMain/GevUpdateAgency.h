#pragma once

#include <memory>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/IUpdateAgency.h"

class CGevTL;
class IParallelUpdater;

/// The update with GigE Vision's choice of broadcasts; DoUpdate takes the directed one.
class IGevUpdateAgency : public IUpdateAgency {
public:
    /// To 255.255.255.255, which reaches cameras whose own address doesn't fit the adapter's.
    virtual void DoLimitedBroadcastUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) = 0;
    /// To the broadcast address of each adapter's subnet.
    virtual void DoDirectedSubnetBroadcastUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) = 0;
};

/// Updates GigE Vision transport layers: tells each adapter how to broadcast and lets all of them look at once.
///
/// Lives for one or more updates on the stack of its user. Updates run one after the other in the whole process.
class CGevUpdateAgency : public IGevUpdateAgency {
public:
    explicit CGevUpdateAgency(std::vector<boost::shared_ptr<CGevTL>> vecTL);
    ~CGevUpdateAgency() override;
    CGevUpdateAgency(const CGevUpdateAgency&) = delete;
    CGevUpdateAgency& operator=(const CGevUpdateAgency&) = delete;

    void DoUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) override;
    void DoLimitedBroadcastUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) override;
    void DoDirectedSubnetBroadcastUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) override;

private:
    void __DoUpdate(const std::string& strMode, std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged);

    std::unique_ptr<IParallelUpdater> m_pParallelUpdater;
};
