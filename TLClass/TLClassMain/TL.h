#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

#include "TLClass/TLClassInfo/IFModuleInfo.h"
#include "TLClass/TLClassInfo/SpecialInfo.h"
#include "TLClass/TLClassMain/Agency.h"
#include "TLClass/TLClassMain/ITL.h"

class CInterface;

/// The system module of one producer. A transport layer of a kind of its own derives from it and fills in what is
/// special about that kind; here the operations for that do nothing.
class CTL : public ITL {
public:
    CTL(CGenTLLib* pLib, TL_MODULE_INFO objInformation);

    void DoUpdateInterfaceList(std::uint64_t nTimeoutMs, bool* pChanged) override;
    TL_MODULE_INFO GetTLInformation() const override;
    std::vector<boost::shared_ptr<IInterface>> GetInterfaceList() const override;
    std::vector<boost::shared_ptr<IInterface>> GetRemovedInterfaceList() const override;
    TL_HANDLE GetHandle() const override { return m_hTL; }

    /// @throws CZrException  by the result of the producer, or because its description can't be loaded
    virtual void DoOpenTL();
    /// Closes also the interfaces that have left the list. Waits for an update that is under way.
    virtual void DoCloseTL();
    virtual bool IsOpened() const { return m_bOpened; }

protected:
    /// Reads what is special about the module itself, while it opens.
    virtual void _InitSpecialInfo(IFeatureControl* pFeatureControl);
    /// One record for each interface, in the order of the system's selector.
    /// @param nCount  how many interfaces there are
    virtual std::vector<SPECIAL_INFO*> _GetInterfaceSpecialInfoList(std::size_t nCount);
    virtual void _ClearSpecialInfo();
    /// Reads what is special about each interface, during a list update.
    virtual void _UpdateInterfaceSpecialInfo(IFeatureControl* pFeatureControl);
    virtual void _ClearInterfaceSpecialInfo();

private:
    class CTLOpenAgency;
    class CInterfaceSpecialInfoAgency;

    using INTERFACE_LIST = std::vector<boost::shared_ptr<CInterface>>;

    bool __DoUpdateInProducer(std::uint64_t nTimeoutMs, bool* pChanged);
    void __AttachSpecialInfo(std::vector<IF_MODULE_INFO>& vecRecord);
    INTERFACE_LIST __GetCandidates() const;
    INTERFACE_LIST __MergeInterfaces(const std::vector<IF_MODULE_INFO>& vecRecord, const INTERFACE_LIST& vecCandidate);
    static INTERFACE_LIST __GetVanishedInterfaces(const INTERFACE_LIST& vecCandidate, const INTERFACE_LIST& vecNew);
    void __OpenInterfaces(const INTERFACE_LIST& vecNew, const INTERFACE_LIST& vecCandidate);
    void __TakeBackInterfaces(const INTERFACE_LIST& vecNew, const INTERFACE_LIST& vecCandidate);
    INTERFACE_LIST __ExchangeRemoved(INTERFACE_LIST vecRemoved);

    TL_MODULE_INFO m_objInformation;  // guarded by m_csRecords
    std::atomic<TL_HANDLE> m_hTL = nullptr;
    std::atomic<bool> m_bOpened = false;
    CCriticalSection m_csUpdate;           // held for a whole list update, and while the module closes
    INTERFACE_LIST m_vecRemovedInterface;  // still open; left the list
    mutable CCriticalSection m_csRemoved;  // guards m_vecRemovedInterface
};
