#include "tests/producer_double/Rule.h"

#include <thread>

namespace ProducerDouble {

namespace {

constexpr std::chrono::seconds kPatience{10};

}  // namespace

template <class TSet>
IRule& CRule::__Set(TSet fnSet, bool bArm) {
    const LOCK lock = m_objMonitor.Enter();
    fnSet();
    m_bArmed = m_bArmed || bArm;
    return *this;
}

IRule& CRule::For(std::string strModule) {
    return __Set([&] { m_strModule = std::move(strModule); }, false);
}

IRule& CRule::Call(std::size_t nCall) {
    return __Set([&] { m_nCall = nCall; }, false);
}

IRule& CRule::WithNumber(std::uint64_t nNumber) {
    return __Set([&] { m_nNumber = nNumber; }, false);
}

IRule& CRule::Fail(GC_ERROR nCode, std::string strText) {
    return __Set([&] { m_objRefusal = REFUSAL(nCode, std::move(strText)); });
}

IRule& CRule::FailAfterwards(GC_ERROR nCode, std::string strText) {
    return __Set([&] { m_objLateRefusal = REFUSAL(nCode, std::move(strText)); });
}

IRule& CRule::Answer(ANSWER objAnswer) {
    return __Set([&] { m_objAnswer = std::move(objAnswer); });
}

IRule& CRule::Count(std::uint64_t nCount) {
    return __Set([&] { m_nCount = nCount; });
}

IRule& CRule::Delay(std::chrono::milliseconds nDelay) {
    return __Set([&] { m_nDelay = nDelay; });
}

IRule& CRule::Block() {
    return __Set([&] { m_bBlocks = true; });
}

bool CRule::WaitUntilBlocked() {
    LOCK lock = m_objMonitor.Enter();
    return m_objMonitor.changed.wait_for(lock, kPatience, [this] { return m_nBlocked > 0; });
}

void CRule::Release() {
    const LOCK lock = m_objMonitor.Enter();
    Open();
}

void CRule::Remove() {
    const LOCK lock = m_objMonitor.Enter();
    m_bArmed = false;
    Open();
}

std::size_t CRule::Hits() const {
    const LOCK lock = m_objMonitor.Enter();
    return m_nHits;
}

bool CRule::Applies(const char* pszEntry, const std::optional<std::uint64_t>& nKeyNumber,
                    const std::function<bool(const std::string&)>& fnNames) {
    if (!m_bArmed || m_strEntry != pszEntry || (m_strModule && !fnNames(*m_strModule)) ||
        (m_nNumber && nKeyNumber != m_nNumber)) {
        return false;
    }
    ++m_nFitted;
    if (m_nCall && *m_nCall != m_nFitted) {
        return false;
    }
    ++m_nHits;
    return true;
}

void CRule::Hold(LOCK& lock) {
    if (m_nDelay.count() > 0) {
        const auto nDelay = m_nDelay;
        lock.unlock();
        std::this_thread::sleep_for(nDelay);
        lock.lock();
    }
    if (!m_bBlocks) {
        return;
    }
    ++m_nBlocked;
    m_objMonitor.changed.notify_all();
    m_objMonitor.changed.wait(lock, [this] { return !m_bBlocks; });
    --m_nBlocked;
}

void CRule::Open() {
    m_bBlocks = false;
    m_objMonitor.changed.notify_all();
}

}  // namespace ProducerDouble
