#include "tests/producer_double/Call.h"

#include <charconv>
#include <cstring>

#include "tests/producer_double/Producer.h"

namespace ProducerDouble {

namespace {

[[noreturn]] void RefuseAs(const CRule::REFUSAL& objRefusal) {
    Refuse(objRefusal.first, objRefusal.second.empty() ? "scripted failure" : objRefusal.second);
}

}  // namespace

CProducer& CCall::Producer() {
    return CProducer::Instance();
}

// Arguments.

CCall& CCall::__Add(ARGUMENT objArgument) {
    m_arrArgument[m_nArguments++] = objArgument;
    return *this;
}

CCall& CCall::Text(const char* pszText) {
    return __Add(pszText);
}

CCall& CCall::Number(std::int64_t nNumber) {
    m_nKeyNumber = static_cast<std::uint64_t>(nNumber);
    return __Add(nNumber);
}

CCall& CCall::Address(std::uint64_t nAddress) {
    m_nKeyNumber = nAddress;
    return __Add(ADDRESS_ARGUMENT{nAddress});
}

CCall& CCall::Value(std::uint64_t nValue) {
    return __Add(nValue);
}

CCall& CCall::Out(const TARGET& objTarget) {
    m_objTarget = objTarget;
    return In(objTarget.pBuffer, objTarget.pSize != nullptr ? *objTarget.pSize : 0);
}

CCall& CCall::In(const void* pBuffer, std::size_t nSize) {
    __Add(BUFFER_ARGUMENT{pBuffer});
    return Value(nSize);
}

CCall& CCall::WorksClosed() {
    m_bWorksClosed = true;
    return *this;
}

bool CCall::__Names(const std::string& strName) const {
    const std::string* pModule = m_objProducer.Context().objHandles.NameOf(m_hModule);
    if (pModule != nullptr && *pModule == strName) {
        return true;
    }
    for (std::size_t i = 0; i < m_nArguments; ++i) {
        const auto ppText = std::get_if<const char*>(&m_arrArgument[i]);
        if (ppText != nullptr && *ppText != nullptr && strName == *ppText) {
            return true;
        }
    }
    return false;
}

std::string CCall::__TextOf(const ARGUMENT& objArgument) const {
    struct VISITOR {
        const CHandles& objHandles;

        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(HANDLE_ARGUMENT objHandle) const {
            const std::string* pName = objHandles.NameOf(objHandle.h);
            return objHandle.h == nullptr ? "null" : pName == nullptr ? "unknown" : *pName;
        }
        std::string operator()(const char* pszText) const { return pszText == nullptr ? "null" : pszText; }
        std::string operator()(std::int64_t nNumber) const { return std::to_string(nNumber); }
        std::string operator()(std::uint64_t nValue) const { return std::to_string(nValue); }
        std::string operator()(ADDRESS_ARGUMENT objAddress) const {
            char szText[17] = {};
            std::to_chars(szText, szText + 16, objAddress.nAddress, 16);
            return std::string("0x") + szText;
        }
        std::string operator()(BUFFER_ARGUMENT objBuffer) const {
            return objBuffer.pBuffer == nullptr ? "null" : "buffer";
        }
    };
    return std::visit(VISITOR{m_objProducer.Context().objHandles}, objArgument);
}

CALL CCall::Record() const {
    CALL objRecord;
    objRecord.strEntry = m_pszEntry;
    for (std::size_t i = 0; i < m_nArguments; ++i) {
        objRecord.vecArgument.push_back(__TextOf(m_arrArgument[i]));
    }
    objRecord.nThread = std::this_thread::get_id();
    return objRecord;
}

// The way through.

LOCK CCall::__Begin() {
    LOCK lock = m_objProducer.Context().objMonitor.Enter();
    m_objProducer.CallBegins(m_objProducer.IsRecording() ? std::optional(Record()) : std::nullopt);
    // By index: a hold gives up the lock, and a test may add rules meanwhile.
    for (std::size_t i = 0; i < m_objProducer.RuleCount(); ++i) {
        CRule& objRule = m_objProducer.Rule(i);
        if (!objRule.Applies(m_pszEntry, m_nKeyNumber,
                             [this](const std::string& strName) { return __Names(strName); })) {
            continue;
        }
        objRule.Hold(lock);
        if (m_pRefusing == nullptr && objRule.Refusal()) {
            m_pRefusing = &objRule;
        }
        if (m_pLateRefusing == nullptr && objRule.LateRefusal()) {
            m_pLateRefusing = &objRule;
        }
        if (m_pAnswering == nullptr && objRule.ScriptedAnswer()) {
            m_pAnswering = &objRule;
        }
        if (m_pCounting == nullptr && objRule.ScriptedCount()) {
            m_pCounting = &objRule;
        }
    }
    return lock;
}

bool CCall::__NeedsWork() {
    if (m_pRefusing != nullptr) {
        RefuseAs(*m_pRefusing->Refusal());
    }
    if (!m_bWorksClosed && !m_objProducer.IsUp()) {
        Refuse(GC_ERR_NOT_INITIALIZED, "GCInitLib hasn't been called");
    }
    if (m_pAnswering != nullptr) {
        PutAnswer(m_objTarget, *m_pAnswering->ScriptedAnswer());
        return false;
    }
    return true;
}

void CCall::__AfterWork() {
    if (m_pCounting != nullptr) {
        const auto Put = [nCount = *m_pCounting->ScriptedCount()](auto pCount) {
            if constexpr (!std::is_same_v<decltype(pCount), std::monostate>) {
                if (pCount != nullptr) {
                    *pCount = static_cast<std::remove_reference_t<decltype(*pCount)>>(nCount);
                }
            }
        };
        std::visit(Put, m_pCount);
    }
    if (m_pLateRefusing != nullptr) {
        RefuseAs(*m_pLateRefusing->LateRefusal());
    }
}

void CCall::__Fail(GC_ERROR nCode, const std::string& strText) {
    m_nResult = nCode;
    // Asking for the last error must not replace it.
    if (std::strcmp(m_pszEntry, "GCGetLastError") != 0) {
        m_objProducer.RememberError(nCode, strText);
    }
}

GC_ERROR CCall::__End(LOCK& lock) {
    if (!lock.owns_lock()) {
        lock.lock();
    }
    m_objProducer.CallEnds();
    return m_nResult;
}

}  // namespace ProducerDouble
