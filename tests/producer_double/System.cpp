#include "tests/producer_double/System.h"

namespace ProducerDouble {

namespace {

constexpr const char* kSelector = "InterfaceSelector";

}  // namespace

CSystem::CSystem(CONTEXT& objContext) : CModule(objContext, "tl", "TLSystem", "TLPort") {
    Port().AddText("TLID", "tl").AddInteger("GevVersionMajor", 2).AddInteger("GevVersionMinor", 0);
    Port().AddSelector(kSelector);
    Port().AddListFeature(kSelector, "InterfaceID", FEATURE::KIND::Text);
    for (const char* pszNumber : {"GevInterfaceDefaultGateway", "GevInterfaceDefaultIPAddress",
                                  "GevInterfaceDefaultSubnetMask", "GevInterfaceMACAddress"}) {
        Port().AddListFeature(kSelector, pszNumber, FEATURE::KIND::Integer);
    }
    _DefaultInfo(TL_INFO_ID, ANSWER::Text("tl"));
    _DefaultInfo(TL_INFO_VENDOR, ANSWER::Text("Norvik"));
    _DefaultInfo(TL_INFO_MODEL, ANSWER::Text("Double"));
    _DefaultInfo(TL_INFO_VERSION, ANSWER::Text("1.0.0"));
    _DefaultInfo(TL_INFO_TLTYPE, ANSWER::Text("GEV"));
    _DefaultInfo(TL_INFO_NAME, ANSWER::Text("Double.cti"));
    _DefaultInfo(TL_INFO_PATHNAME, ANSWER::Text("/opt/double/Double.cti"));
    _DefaultInfo(TL_INFO_DISPLAYNAME, ANSWER::Text("Producer double"));
}

bool CSystem::UpdateList() {
    std::vector<std::shared_ptr<CInterface>> vecNew;
    for (const std::string& strId : m_vecScriptedList.value_or(m_vecPresent)) {
        for (const auto& pInterface : m_vecInterface) {
            if (pInterface->Name() == strId) {
                vecNew.push_back(pInterface);
            }
        }
    }
    const bool bChanged = vecNew != m_vecList;
    m_vecList = std::move(vecNew);
    __FillListFeatures();
    return bChanged;
}

void CSystem::__FillListFeatures() {
    const auto SetNumber = [&](const char* pszFeature, auto GEV_ADDRESS::*pField) {
        Port().SetList(pszFeature, m_vecList, [=](const CInterface& m) { return m.GevAddress().*pField; });
    };
    Port().SetSelectorMax(kSelector, m_nScriptedMax.value_or(static_cast<std::int64_t>(m_vecList.size()) - 1));
    Port().SetList("InterfaceID", m_vecList, [](const CInterface& m) { return m.Name(); });
    SetNumber("GevInterfaceDefaultGateway", &GEV_ADDRESS::nGateway);
    SetNumber("GevInterfaceDefaultIPAddress", &GEV_ADDRESS::nIp);
    SetNumber("GevInterfaceDefaultSubnetMask", &GEV_ADDRESS::nMask);
    SetNumber("GevInterfaceMACAddress", &GEV_ADDRESS::nMac);
}

CInterface& CSystem::Listed(std::size_t nIndex) const {
    if (nIndex >= m_vecList.size()) {
        Refuse(GC_ERR_INVALID_INDEX, "the system lists no interface of this index");
    }
    return *m_vecList[nIndex];
}

CInterface& CSystem::Listed(const std::string& strId) const {
    for (const auto& pInterface : m_vecList) {
        if (pInterface->Name() == strId) {
            return *pInterface;
        }
    }
    Refuse(GC_ERR_INVALID_ID, "the system lists no interface " + strId);
}

CInterface* CSystem::Find(const std::string& strId) const {
    for (const auto& pInterface : m_vecInterface) {
        if (pInterface->Name() == strId) {
            return pInterface.get();
        }
    }
    return nullptr;
}

CInterface& CSystem::Add(std::shared_ptr<CInterface> pInterface) {
    SetPresent(pInterface->Name(), true);
    return *m_vecInterface.emplace_back(std::move(pInterface));
}

void CSystem::SetPresent(const std::string& strId, bool bPresent) {
    std::erase(m_vecPresent, strId);
    if (bPresent) {
        m_vecPresent.push_back(strId);
    }
}

void CSystem::_CloseChildren() {
    for (const auto& pInterface : m_vecInterface) {
        pInterface->Close();
    }
    m_vecList.clear();  // the next one to open it starts without a list
    __FillListFeatures();
}

}  // namespace ProducerDouble
