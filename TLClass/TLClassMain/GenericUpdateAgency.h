#pragma once

#include <memory>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/IUpdateAgency.h"

class IParallelUpdater;
class ITL;

/// The update without a choice of how to look.
class IGenericUpdateAgency : public IUpdateAgency {};

/// Updates transport layers of any kind. Has no user yet.
///
/// Lives for one or more updates on the stack of its user. Updates run one after the other in the whole process.
class CGenericUpdateAgency : public IGenericUpdateAgency {
public:
    explicit CGenericUpdateAgency(std::vector<boost::shared_ptr<ITL>> vecTL);
    ~CGenericUpdateAgency() override;
    CGenericUpdateAgency(const CGenericUpdateAgency&) = delete;
    CGenericUpdateAgency& operator=(const CGenericUpdateAgency&) = delete;

    void DoUpdate(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) override;

private:
    std::unique_ptr<IParallelUpdater> m_pParallelUpdater;
};
