#pragma once

#include <array>
#include <cstdint>
#include <new>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "tests/producer_double/Answering.h"
#include "tests/producer_double/GenTLError.h"
#include "tests/producer_double/Monitor.h"
#include "tests/producer_double/Rule.h"

namespace ProducerDouble {

class CProducer;

/// One call of an entry, from its arguments to its result code. Lives on the stack of the entry and allocates nothing
/// while calls aren't recorded and no rule applies.
///
/// The entry names its arguments in their order and hands over its work; records, rules, the check for GCInitLib, the
/// lock, the last error and the net for exceptions are the same for all of them and stand here.
class CCall {
public:
    explicit CCall(const char* pszEntry) : m_pszEntry(pszEntry) {}
    CCall(const char* pszEntry, void* hModule) : m_pszEntry(pszEntry), m_hModule(hModule) {
        __Add(HANDLE_ARGUMENT{hModule});
    }

    CCall& Text(const char* pszText);
    CCall& Number(std::int64_t nNumber);     ///< the number that a rule's condition is about
    CCall& Address(std::uint64_t nAddress);  ///< the same, recorded in hexadecimal
    CCall& Value(std::uint64_t nValue);      ///< any further number
    CCall& Out(const TARGET& objTarget);     ///< a buffer to fill, with the size protocol
    CCall& Out(INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) { return Out(TARGET{pType, pBuffer, pSize}); }
    CCall& In(const void* pBuffer, std::size_t nSize);  ///< a buffer to read
    /// A number to give: 32 bits, a size or a flag.
    template <class TCount>
    CCall& Count(TCount* pCount) {
        m_pCount = pCount;
        return *this;
    }
    CCall& WorksClosed();  ///< doesn't need GCInitLib

    template <class TWork>  // (CProducer&) or (CProducer&, LOCK&), throws what it refuses
    GC_ERROR Do(TWork fnWork) {
        LOCK lock = __Begin();
        try {
            if (__NeedsWork()) {
                if constexpr (std::is_invocable_v<TWork, CProducer&, LOCK&>) {
                    fnWork(m_objProducer, lock);
                } else {
                    fnWork(m_objProducer);
                }
            }
            __AfterWork();
        } catch (const CGenTLError& e) {
            __Fail(e.Code(), e.Text());
        } catch (const std::bad_alloc&) {
            __Fail(GC_ERR_OUT_OF_MEMORY, "out of memory");
        }
        return __End(lock);
    }

    template <class TModule, class TWork>  // (TModule&) or (TModule&, LOCK&): on the open module of this kind
    GC_ERROR On(TWork fnWork) {
        return Do([&](auto& objProducer, LOCK& lock) {
            const auto pModule = objProducer.Context().objHandles.template Find<TModule>(m_hModule);  // over any wait
            if constexpr (std::is_invocable_v<TWork, TModule&, LOCK&>) {
                fnWork(*pModule, lock);
            } else {
                fnWork(*pModule);
            }
        });
    }

    GC_ERROR DoNothing() {
        return Do([](CProducer&) { Refuse(GC_ERR_NOT_IMPLEMENTED, "the double doesn't do this"); });
    }

    CALL Record() const;

private:
    struct HANDLE_ARGUMENT {
        void* h;
    };
    struct ADDRESS_ARGUMENT {
        std::uint64_t nAddress;
    };
    struct BUFFER_ARGUMENT {
        const void* pBuffer;
    };
    using ARGUMENT = std::variant<std::monostate, HANDLE_ARGUMENT, const char*, std::int64_t, std::uint64_t,
                                  ADDRESS_ARGUMENT, BUFFER_ARGUMENT>;

    bool __Names(const std::string& strName) const;
    CCall& __Add(ARGUMENT objArgument);
    std::string __TextOf(const ARGUMENT& objArgument) const;
    LOCK __Begin();
    bool __NeedsWork();
    void __AfterWork();
    void __Fail(GC_ERROR nCode, const std::string& strText);
    GC_ERROR __End(LOCK& lock);

    static CProducer& Producer();

    const char* const m_pszEntry;
    void* const m_hModule = nullptr;
    CProducer& m_objProducer = Producer();

    std::array<ARGUMENT, 8> m_arrArgument;
    std::size_t m_nArguments = 0;
    std::optional<std::uint64_t> m_nKeyNumber;
    TARGET m_objTarget;
    std::variant<std::monostate, std::uint32_t*, std::size_t*, bool8_t*> m_pCount;
    bool m_bWorksClosed = false;

    const CRule* m_pRefusing = nullptr;
    const CRule* m_pLateRefusing = nullptr;
    const CRule* m_pAnswering = nullptr;
    const CRule* m_pCounting = nullptr;
    GC_ERROR m_nResult = GC_ERR_SUCCESS;
};

}  // namespace ProducerDouble
