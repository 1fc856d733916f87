#pragma once

#include <vector>

#include "TLClass/TLClassMain/IParallelUpdater.h"

class CGevTL;
class ITL;

/// For GigE Vision: an interface without an address can't broadcast, and one of another kind is left out.
class CGevParallelUpdater : public IParallelUpdater {
public:
    explicit CGevParallelUpdater(std::vector<boost::shared_ptr<CGevTL>> vecTL);

    void DoUpdateTLs(std::uint64_t nTimeoutMs, bool* pChanged) override;
    void DoUpdateInterfaces(std::uint64_t nTimeoutMs, std::uint64_t nDelayMs, bool* pChanged) override;
    std::vector<boost::shared_ptr<IInterface>> GetInterfaceList() const override;

private:
    std::vector<boost::shared_ptr<IInterface>> __UpdateAddressless() const;

    std::vector<boost::shared_ptr<ITL>> m_vecTL;
};
