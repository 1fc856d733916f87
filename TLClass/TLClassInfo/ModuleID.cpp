#include "TLClass/TLClassInfo/ModuleID.h"

#include <optional>

#include "TLClass/TLClassLoadTL/ProducerText.h"

CModuleID::CModuleID(void* hParent, std::uint32_t nIndex, CGenTLLib* pLib)
    : m_hParent(hParent), m_nIndex(nIndex), m_pLib(pLib) {}

std::string CModuleID::GetID() {
    const auto fnCall = [this](char* pBuffer, std::size_t* pSize) { return _GetID(pBuffer, pSize); };
    const std::size_t nSize = AskProducerTextSize(fnCall).value_or(0);
    if (nSize == 0) {
        return {};
    }
    return FetchProducerText(nSize, fnCall).value_or(std::string());
}
