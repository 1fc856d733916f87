#pragma once

#include <vector>

#include "TLClass/TLClassMain/IParallelUpdater.h"

class ITL;

/// For transport layers of any kind: every interface is updated.
class CGenericParallelUpdater : public IParallelUpdater {
public:
    explicit CGenericParallelUpdater(std::vector<boost::shared_ptr<ITL>> vecTL);

    void DoUpdateTLs(std::uint64_t nTimeoutMs, bool* pChanged) override;
    void DoUpdateInterfaces(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) override;
    std::vector<boost::shared_ptr<IInterface>> GetInterfaceList() const override;

private:
    std::vector<boost::shared_ptr<ITL>> m_vecTL;
};
