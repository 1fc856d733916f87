#pragma once

#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tests/producer_double/Handles.h"
#include "tests/producer_double/Rule.h"
#include "tests/producer_double/System.h"

namespace ProducerDouble {

/// The double itself: the system and its world, the rules, the records, the last error of each thread.
///
/// One for each loaded library, alive as long as the library is loaded.
class CProducer : public IProducerControl {
public:
    static CProducer& Instance();

    const std::string& Name() const override;
    IPortControl& Port() override;
    void SetInfo(std::int32_t nCommand, ANSWER objAnswer) override;
    IInterfaceControl& AddInterface(const std::string& strId) override;
    IProducerControl& RemoveInterface(const std::string& strId) override;
    IInterfaceControl& Interface(const std::string& strId) override;
    IDeviceControl& Device(const std::string& strId) override;
    IProducerControl& Plug(const std::string& strId) override;
    IProducerControl& Unplug(const std::string& strId) override;
    IProducerControl& Lists(std::optional<std::vector<std::string>> vecInterfaceId) override;
    IProducerControl& SelectorMax(std::optional<std::int64_t> nMax) override;
    IRule& On(const std::string& strEntry) override;
    std::vector<CALL> Calls() const override;
    std::vector<CALL> CallsOf(const std::string& strEntry) const override;
    std::size_t Count(const std::string& strEntry) const override;
    bool WaitForCalls(const std::string& strEntry, std::size_t nCalls) override;
    bool WaitForEventWaiters(const std::string& strEvent, std::size_t nWaiters) override;
    void ClearCalls() override;
    void RecordCalls(bool bRecord) override;
    std::vector<std::string> OpenModules() const override;
    std::vector<std::string> RegisteredEvents() const override;
    bool IsInitialised() const override;
    void Reset() override;

    // Everything below expects the monitor's lock.
    CONTEXT& Context() { return m_objContext; }
    CSystem& System() { return *m_pSystem; }
    bool IsUp() const { return m_bInitialised; }
    void Initialise();
    void Uninitialise();
    bool IsRecording() const { return m_bRecord; }
    /// @param objRecord  nothing while calls aren't recorded
    void CallBegins(std::optional<CALL> objRecord);
    void CallEnds();
    std::size_t RuleCount() const { return m_vecRule.size(); }
    CRule& Rule(std::size_t nIndex) { return *m_vecRule[nIndex]; }
    void RememberError(GC_ERROR nCode, const std::string& strText);
    std::pair<GC_ERROR, std::string> LastError() const;

private:
    CProducer();

    CInterface& __Find(const std::string& strId) const;
    CInterface& __InterfaceOf(const std::string& strDeviceId) const;
    template <class TIsMeant>
    std::vector<std::string> __NamesOf(TIsMeant fnIsMeant) const;  ///< of what has handles
    std::size_t __Count(const std::string& strEntry) const;
    void __ForgetCalls();

    CONTEXT m_objContext;
    std::shared_ptr<CSystem> m_pSystem;
    bool m_bInitialised = false;
    std::vector<std::unique_ptr<CRule>> m_vecRule;
    bool m_bRecord = true;
    std::vector<CALL> m_vecCall;
    std::unordered_map<std::string, std::size_t> m_mapCount;  // of the records held, by entry
    std::size_t m_nCallsInside = 0;
    std::unordered_map<std::thread::id, std::pair<GC_ERROR, std::string>> m_mapLastError;
};

}  // namespace ProducerDouble
