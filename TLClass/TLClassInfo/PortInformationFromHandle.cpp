#include "TLClass/TLClassInfo/PortInformationFromHandle.h"

CPortInformationFromHandle::CPortInformationFromHandle(CGenTLLib* pLib, PORT_HANDLE hPort)
    : m_pLib(pLib), m_hPort(hPort) {}

GC_ERROR CPortInformationFromHandle::_GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer,
                                              std::size_t* pSize) {
    return m_pLib->GCGetPortInfo(m_hPort, static_cast<PORT_INFO_CMD>(nCommand), pType, pBuffer, pSize);
}

PORT_MODULE_INFO CPortInformationFromHandle::GetInformation() {
    PORT_MODULE_INFO objInformation;
    _GetStringInfo({PORT_INFO_ID, PORT_INFO_PORTNAME}, {&objInformation.PortID, &objInformation.PortName},
                   {&objInformation.PortIDValid, &objInformation.PortNameValid});
    return objInformation;
}
