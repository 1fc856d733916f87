#include "TLClass/TLClassInfo/TLInfomationFromEmpty.h"

CTLInfomationFromEmpty::CTLInfomationFromEmpty(CGenTLLib* pLib) : m_pLib(pLib) {}

GC_ERROR CTLInfomationFromEmpty::_GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer,
                                          std::size_t* pSize) {
    return m_pLib->GCGetInfo(static_cast<TL_INFO_CMD>(nCommand), pType, pBuffer, pSize);
}
