#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "tests/producer_double/Monitor.h"
#include "tests/producer_double/ProducerControl.h"

namespace ProducerDouble {

/// One scripted change of an entry's calls. Owned by the producer until its reset.
class CRule final : public IRule {
public:
    using REFUSAL = std::pair<GC_ERROR, std::string>;

    CRule(MONITOR& objMonitor, std::string strEntry) : m_objMonitor(objMonitor), m_strEntry(std::move(strEntry)) {}

    IRule& For(std::string strModule) override;
    IRule& Call(std::size_t nCall) override;
    IRule& WithNumber(std::uint64_t nNumber) override;
    IRule& Fail(GC_ERROR nCode, std::string strText) override;
    IRule& FailAfterwards(GC_ERROR nCode, std::string strText) override;
    IRule& Answer(ANSWER objAnswer) override;
    IRule& Count(std::uint64_t nCount) override;
    IRule& Delay(std::chrono::milliseconds nDelay) override;
    IRule& Block() override;
    bool WaitUntilBlocked() override;
    void Release() override;
    void Remove() override;
    std::size_t Hits() const override;

    // Everything below expects the monitor's lock.
    /// Counts the call if it fits the conditions. @return whether the rule changes it
    /// @param fnNames  whether the call is on the module of a name, or has the text among its arguments
    bool Applies(const char* pszEntry, const std::optional<std::uint64_t>& nKeyNumber,
                 const std::function<bool(const std::string&)>& fnNames);
    /// Serves delay and block; gives up the lock meanwhile.
    void Hold(LOCK& lock);
    void Open();
    const std::optional<REFUSAL>& Refusal() const { return m_objRefusal; }
    const std::optional<REFUSAL>& LateRefusal() const { return m_objLateRefusal; }
    const std::optional<ANSWER>& ScriptedAnswer() const { return m_objAnswer; }
    const std::optional<std::uint64_t>& ScriptedCount() const { return m_nCount; }

private:
    template <class TSet>
    IRule& __Set(TSet fnSet, bool bArm = true);

    MONITOR& m_objMonitor;
    const std::string m_strEntry;
    bool m_bArmed = false;
    std::optional<std::string> m_strModule;
    std::optional<std::size_t> m_nCall;
    std::optional<std::uint64_t> m_nNumber;
    std::optional<REFUSAL> m_objRefusal;
    std::optional<REFUSAL> m_objLateRefusal;
    std::optional<ANSWER> m_objAnswer;
    std::optional<std::uint64_t> m_nCount;
    std::chrono::milliseconds m_nDelay{0};
    bool m_bBlocks = false;
    std::size_t m_nBlocked = 0;
    std::size_t m_nFitted = 0;
    std::size_t m_nHits = 0;
};

}  // namespace ProducerDouble
