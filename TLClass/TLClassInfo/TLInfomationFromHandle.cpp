#include "TLClass/TLClassInfo/TLInfomationFromHandle.h"

CTLInfomationFromHandle::CTLInfomationFromHandle(CGenTLLib* pLib, TL_HANDLE hTL) : m_pLib(pLib), m_hTL(hTL) {}

GC_ERROR CTLInfomationFromHandle::_GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer,
                                           std::size_t* pSize) {
    return m_pLib->TLGetInfo(m_hTL, static_cast<TL_INFO_CMD>(nCommand), pType, pBuffer, pSize);
}
