#include "TLClass/TLClassInfo/InterfaceInformationFromID.h"

#include <utility>

CInterfaceInformationFromID::CInterfaceInformationFromID(TL_HANDLE hTL, std::string strID, CGenTLLib* pLib)
    : m_hTL(hTL), m_strID(std::move(strID)), m_pLib(pLib) {}

GC_ERROR CInterfaceInformationFromID::_GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer,
                                               std::size_t* pSize) {
    return m_pLib->TLGetInterfaceInfo(m_hTL, m_strID.c_str(), static_cast<INTERFACE_INFO_CMD>(nCommand), pType, pBuffer,
                                      pSize);
}
