#include "TLClass/TLClassMain/GevTL.h"

#include "TLClass/TLClassInfo/GevInformation.h"

GEV_TL_INFO CGevTL::GetGevTLInfo() const {
    const CScopedLock objLock(m_csRecords);
    return m_objGevTLInfo;
}

std::vector<GEV_IF_INFO> CGevTL::GetInterfaceSpecialInfo() const {
    const CScopedLock objLock(m_csRecords);
    return m_vecInterfaceSpecialInfo;
}

void CGevTL::_InitSpecialInfo(IFeatureControl* pFeatureControl) {
    const GEV_TL_INFO objGevTLInfo = CGevInformation::ReadGevTLInfo(pFeatureControl);
    const CScopedLock objLock(m_csRecords);
    m_objGevTLInfo = objGevTLInfo;
}

// The count isn't looked at: a producer whose selector counts otherwise than its list fails the update.
std::vector<SPECIAL_INFO*> CGevTL::_GetInterfaceSpecialInfoList(std::size_t /*nCount*/) {
    std::vector<SPECIAL_INFO*> vecSpecialInfo;
    for (GEV_IF_INFO& objInfo : m_vecInterfaceSpecialInfo) {
        vecSpecialInfo.push_back(&objInfo);
    }
    return vecSpecialInfo;
}

void CGevTL::_ClearSpecialInfo() {
    const CScopedLock objLock(m_csRecords);
    m_objGevTLInfo = GEV_TL_INFO();
}

void CGevTL::_UpdateInterfaceSpecialInfo(IFeatureControl* pFeatureControl) {
    std::vector<GEV_IF_INFO> vecSpecialInfo = CGevInformation::ReadGevInterfaceInfoList(pFeatureControl);
    const CScopedLock objLock(m_csRecords);
    m_vecInterfaceSpecialInfo.swap(vecSpecialInfo);
}

void CGevTL::_ClearInterfaceSpecialInfo() {
    const CScopedLock objLock(m_csRecords);
    m_vecInterfaceSpecialInfo.clear();
}
