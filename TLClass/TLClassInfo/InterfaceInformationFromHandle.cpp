#include "TLClass/TLClassInfo/InterfaceInformationFromHandle.h"

CInterfaceInformationFromHandle::CInterfaceInformationFromHandle(CGenTLLib* pLib, IF_HANDLE hInterface)
    : m_pLib(pLib), m_hInterface(hInterface) {}

GC_ERROR CInterfaceInformationFromHandle::_GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer,
                                                   std::size_t* pSize) {
    return m_pLib->IFGetInfo(m_hInterface, static_cast<INTERFACE_INFO_CMD>(nCommand), pType, pBuffer, pSize);
}
