#include "tests/producer_double/Producer.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace ProducerDouble {

namespace {

constexpr std::chrono::seconds kPatience{10};

bool IsEntry(const std::string& strName) {
#define ENTRY_NAME(name, parameters) #name,
    static constexpr const char* kEntries[] = {GENTL_ENTRIES(ENTRY_NAME)};
#undef ENTRY_NAME
    return std::find(std::begin(kEntries), std::end(kEntries), strName) != std::end(kEntries);
}

}  // namespace

CProducer::CProducer() : m_pSystem(std::make_shared<CSystem>(m_objContext)) {}

CProducer& CProducer::Instance() {
    static CProducer s_objProducer;
    return s_objProducer;
}

// The world.

const std::string& CProducer::Name() const {
    return m_pSystem->Name();
}

IPortControl& CProducer::Port() {
    return m_pSystem->Port();
}

void CProducer::SetInfo(std::int32_t nCommand, ANSWER objAnswer) {
    m_pSystem->SetInfo(nCommand, std::move(objAnswer));
}

IInterfaceControl& CProducer::AddInterface(const std::string& strId) {
    LOCK lock = m_objContext.objMonitor.Enter();
    if (CInterface* pKnown = m_pSystem->Find(strId)) {
        m_pSystem->SetPresent(strId, true);
        return *pKnown;
    }
    const auto nNumber = static_cast<std::uint32_t>(m_pSystem->Interfaces().size() + 1);
    lock.unlock();
    auto pNew = std::make_shared<CInterface>(m_objContext, strId, nNumber);
    lock.lock();
    return m_pSystem->Add(std::move(pNew));
}

IProducerControl& CProducer::RemoveInterface(const std::string& strId) {
    const LOCK lock = m_objContext.objMonitor.Enter();
    m_pSystem->SetPresent(__Find(strId).Name(), false);
    return *this;
}

IInterfaceControl& CProducer::Interface(const std::string& strId) {
    const LOCK lock = m_objContext.objMonitor.Enter();
    return __Find(strId);
}

CInterface& CProducer::__Find(const std::string& strId) const {
    if (CInterface* pInterface = m_pSystem->Find(strId)) {
        return *pInterface;
    }
    throw std::out_of_range("there never was an interface " + strId);
}

CInterface& CProducer::__InterfaceOf(const std::string& strDeviceId) const {
    for (const auto& pInterface : m_pSystem->Interfaces()) {
        if (pInterface->Find(strDeviceId) != nullptr) {
            return *pInterface;
        }
    }
    throw std::out_of_range("no interface ever had a device " + strDeviceId);
}

IDeviceControl& CProducer::Device(const std::string& strId) {
    const LOCK lock = m_objContext.objMonitor.Enter();
    return *__InterfaceOf(strId).Find(strId);
}

IProducerControl& CProducer::Plug(const std::string& strId) {
    const LOCK lock = m_objContext.objMonitor.Enter();
    __InterfaceOf(strId).Find(strId)->Plug();
    return *this;
}

IProducerControl& CProducer::Unplug(const std::string& strId) {
    const LOCK lock = m_objContext.objMonitor.Enter();
    __InterfaceOf(strId).Find(strId)->Unplug();
    return *this;
}

IProducerControl& CProducer::Lists(std::optional<std::vector<std::string>> vecInterfaceId) {
    const LOCK lock = m_objContext.objMonitor.Enter();
    for (const std::string& strId : vecInterfaceId.value_or(std::vector<std::string>{})) {
        __Find(strId);
    }
    m_pSystem->SetScriptedList(std::move(vecInterfaceId));
    return *this;
}

IProducerControl& CProducer::SelectorMax(std::optional<std::int64_t> nMax) {
    const LOCK lock = m_objContext.objMonitor.Enter();
    m_pSystem->SetScriptedMax(nMax);
    return *this;
}

// Rules and records.

IRule& CProducer::On(const std::string& strEntry) {
    if (!IsEntry(strEntry)) {
        throw std::invalid_argument("a producer has no entry " + strEntry);
    }
    const LOCK lock = m_objContext.objMonitor.Enter();
    return *m_vecRule.emplace_back(std::make_unique<CRule>(m_objContext.objMonitor, strEntry));
}

std::vector<CALL> CProducer::Calls() const {
    const LOCK lock = m_objContext.objMonitor.Enter();
    return m_vecCall;
}

std::vector<CALL> CProducer::CallsOf(const std::string& strEntry) const {
    std::vector<CALL> vecCall = Calls();
    std::erase_if(vecCall, [&](const CALL& objCall) { return objCall.strEntry != strEntry; });
    return vecCall;
}

std::size_t CProducer::Count(const std::string& strEntry) const {
    const LOCK lock = m_objContext.objMonitor.Enter();
    return __Count(strEntry);
}

std::size_t CProducer::__Count(const std::string& strEntry) const {
    const auto it = m_mapCount.find(strEntry);
    return it == m_mapCount.end() ? 0 : it->second;
}

bool CProducer::WaitForCalls(const std::string& strEntry, std::size_t nCalls) {
    LOCK lock = m_objContext.objMonitor.Enter();
    return m_objContext.objMonitor.changed.wait_for(lock, kPatience, [&] { return __Count(strEntry) >= nCalls; });
}

bool CProducer::WaitForEventWaiters(const std::string& strEvent, std::size_t nWaiters) {
    LOCK lock = m_objContext.objMonitor.Enter();
    return m_objContext.objMonitor.changed.wait_for(lock, kPatience, [&] {
        for (const auto& [h, pHandled] : m_objContext.objHandles.All()) {
            const auto pEvent = std::dynamic_pointer_cast<CEvent>(pHandled);
            if (pEvent != nullptr && pEvent->HandledName() == strEvent && pEvent->Waiters() >= nWaiters) {
                return true;
            }
        }
        return false;
    });
}

void CProducer::ClearCalls() {
    const LOCK lock = m_objContext.objMonitor.Enter();
    __ForgetCalls();
}

void CProducer::__ForgetCalls() {
    m_vecCall.clear();
    m_mapCount.clear();
}

void CProducer::RecordCalls(bool bRecord) {
    const LOCK lock = m_objContext.objMonitor.Enter();
    m_bRecord = bRecord;
}

void CProducer::CallBegins(std::optional<CALL> objRecord) {
    ++m_nCallsInside;
    if (!objRecord) {
        return;
    }
    m_vecCall.push_back(*std::move(objRecord));
    ++m_mapCount[m_vecCall.back().strEntry];
    m_objContext.objMonitor.changed.notify_all();
}

void CProducer::CallEnds() {
    --m_nCallsInside;
    if (m_nCallsInside == 0) {
        m_objContext.objMonitor.changed.notify_all();
    }
}

void CProducer::RememberError(GC_ERROR nCode, const std::string& strText) {
    m_mapLastError[std::this_thread::get_id()] = {nCode, strText};
}

std::pair<GC_ERROR, std::string> CProducer::LastError() const {
    const auto it = m_mapLastError.find(std::this_thread::get_id());
    return it == m_mapLastError.end() ? std::pair<GC_ERROR, std::string>(GC_ERR_SUCCESS, "no error") : it->second;
}

// The consumer's side.

void CProducer::Initialise() {
    if (m_bInitialised) {
        Refuse(GC_ERR_RESOURCE_IN_USE, "GCInitLib has been called already");
    }
    m_bInitialised = true;
}

void CProducer::Uninitialise() {
    m_pSystem->Close();
    m_bInitialised = false;
}

std::vector<std::string> CProducer::OpenModules() const {
    // A remote port is no module of its own: it opens and closes with its device.
    return __NamesOf([](CHandled* pHandled) {
        return dynamic_cast<CModule*>(pHandled) != nullptr && dynamic_cast<CRemotePort*>(pHandled) == nullptr;
    });
}

std::vector<std::string> CProducer::RegisteredEvents() const {
    return __NamesOf([](CHandled* pHandled) { return dynamic_cast<CEvent*>(pHandled) != nullptr; });
}

template <class TIsMeant>
std::vector<std::string> CProducer::__NamesOf(TIsMeant fnIsMeant) const {
    const LOCK lock = m_objContext.objMonitor.Enter();
    std::vector<std::string> vecName;
    for (const auto& [h, pHandled] : m_objContext.objHandles.All()) {
        if (fnIsMeant(pHandled.get())) {
            vecName.push_back(pHandled->HandledName());
        }
    }
    return vecName;
}

bool CProducer::IsInitialised() const {
    const LOCK lock = m_objContext.objMonitor.Enter();
    return m_bInitialised;
}

void CProducer::Reset() {
    auto pSystem = std::make_shared<CSystem>(m_objContext);  // takes the lock itself
    LOCK lock = m_objContext.objMonitor.Enter();
    for (const auto& pRule : m_vecRule) {
        pRule->Open();
    }
    m_pSystem->Close();
    m_objContext.objMonitor.changed.wait(lock, [this] { return m_nCallsInside == 0; });
    m_pSystem->Close();  // what a call that was held opened after all
    m_bInitialised = false;
    m_vecRule.clear();
    m_bRecord = true;
    __ForgetCalls();
    m_mapLastError.clear();
    m_pSystem.swap(pSystem);
}

}  // namespace ProducerDouble
