#include "TLClass/TLClassInfo/AllInterfaceInformationFromTLHandle.h"

#include "TLClass/TLClassInfo/AllInformation.h"
#include "TLClass/TLClassInfo/InterfaceID.h"
#include "TLClass/TLClassInfo/InterfaceInformationFromID.h"

std::vector<IF_MODULE_INFO> CAllInterfaceInformationFromTLHandle::GetAllInterfaceInformation() {
    return ReadAllInformation<IF_MODULE_INFO, CInterfaceID, CInterfaceInformationFromID>(
        m_pLib, m_hTL, [this](std::uint32_t* pCount) { return m_pLib->TLGetNumInterfaces(m_hTL, pCount); },
        "..\\..\\..\\TLClass\\TLClassInfo\\AllInterfaceInformationFromTLHandle", 46,
        "CAllInterfaceInformationFromTLHandle::GetAllInterfaceInformation");
}
