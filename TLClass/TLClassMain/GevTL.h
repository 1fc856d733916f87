#pragma once

#include <vector>

#include "TLClass/TLClassInfo/GevIFInfo.h"
#include "TLClass/TLClassInfo/GevTLInfo.h"
#include "TLClass/TLClassMain/TL.h"

/// A transport layer for GigE Vision: knows its version of the standard and the addresses of its adapters.
class CGevTL : public CTL {
public:
    using CTL::CTL;

    GEV_TL_INFO GetGevTLInfo() const;
    /// One record for each interface, as read at the last list update.
    std::vector<GEV_IF_INFO> GetInterfaceSpecialInfo() const;

protected:
    void _InitSpecialInfo(IFeatureControl* pFeatureControl) override;
    std::vector<SPECIAL_INFO*> _GetInterfaceSpecialInfoList(std::size_t nCount) override;
    void _ClearSpecialInfo() override;
    void _UpdateInterfaceSpecialInfo(IFeatureControl* pFeatureControl) override;
    void _ClearInterfaceSpecialInfo() override;

private:
    // Both are guarded by m_csRecords. The vector changes only under m_csUpdate, which makes pointers into it good for
    // the length of an update.
    std::vector<GEV_IF_INFO> m_vecInterfaceSpecialInfo;
    GEV_TL_INFO m_objGevTLInfo;
};
