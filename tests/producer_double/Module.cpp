#include "tests/producer_double/Module.h"

namespace ProducerDouble {

CModule::CModule(CONTEXT& objContext, std::string strName, std::string strKind, std::string strPortName)
    : m_objContext(objContext),
      m_strName(std::move(strName)),
      m_objPort(objContext.objMonitor, m_strName, std::move(strKind), std::move(strPortName)) {}

void CModule::SetInfo(std::int32_t nCommand, ANSWER objAnswer) {
    const LOCK lock = _Enter();
    m_mapInfo[nCommand] = std::move(objAnswer);
}

void* CModule::Open() {
    if (m_hSelf != nullptr) {
        Refuse(GC_ERR_RESOURCE_IN_USE, m_strName + " is open already");
    }
    m_hSelf = m_objContext.objHandles.Open(shared_from_this());
    return m_hSelf;
}

void CModule::Close() {
    _CloseChildren();
    while (!m_mapEvent.empty()) {
        UnregisterEvent(m_mapEvent.begin()->first);
    }
    if (m_hSelf != nullptr) {
        m_objContext.objHandles.Close(m_hSelf);
    }
    m_hSelf = nullptr;
}

void CModule::GetInfo(std::int32_t nCommand, const TARGET& objTarget) {
    if (const auto it = m_mapInfo.find(nCommand); it != m_mapInfo.end()) {
        return PutAnswer(objTarget, it->second);
    }
    if (!_GetOwnInfo(nCommand, objTarget)) {
        Refuse(GC_ERR_NOT_IMPLEMENTED, m_strName + " doesn't know this info command");
    }
}

bool CModule::_GetOwnInfo(std::int32_t, const TARGET&) {
    return false;
}

void CModule::CheckPortAccess(bool) const {}

IEventQueue* CModule::_QueueOf(EVENT_TYPE) {
    return nullptr;
}

void* CModule::RegisterEvent(EVENT_TYPE nType) {
    IEventQueue* pQueue = _QueueOf(nType);
    if (pQueue == nullptr) {
        Refuse(GC_ERR_NOT_IMPLEMENTED, m_strName + " has no event of this type");
    }
    if (m_mapEvent.contains(nType)) {
        Refuse(GC_ERR_RESOURCE_IN_USE, "the event is registered already");
    }
    auto pEvent = std::make_shared<CEvent>(m_objContext, shared_from_this(), m_strName + "!" + std::to_string(nType),
                                           nType, *pQueue);
    void* hEvent = m_objContext.objHandles.Open(pEvent);
    m_mapEvent.emplace(nType, std::pair(hEvent, std::move(pEvent)));
    return hEvent;
}

void CModule::UnregisterEvent(EVENT_TYPE nType) {
    const auto it = m_mapEvent.find(nType);
    if (it == m_mapEvent.end()) {
        Refuse(GC_ERR_INVALID_PARAMETER, "no such event is registered");
    }
    it->second.second->Unregister();
    m_objContext.objHandles.Close(it->second.first);
    m_mapEvent.erase(it);
}

}  // namespace ProducerDouble
