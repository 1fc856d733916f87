#include "TLClass/TLClassInfo/InterfaceID.h"

CInterfaceID::CInterfaceID(CGenTLLib* pLib, TL_HANDLE hTL, std::uint32_t nIndex) : CModuleID(hTL, nIndex, pLib) {}

GC_ERROR CInterfaceID::_GetID(char* pBuffer, std::size_t* pSize) {
    return m_pLib->TLGetInterfaceID(m_hParent, m_nIndex, pBuffer, pSize);
}
