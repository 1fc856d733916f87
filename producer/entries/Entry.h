#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "GenTL/GenTL.h"
#include "producer/ProducerError.h"
#include "producer/entries/LastError.h"
#include "producer/entries/Library.h"
#include "producer/modules/HandleTable.h"
#include "producer/modules/InfoValue.h"

// What every entry of the library has in common.

namespace producer {

/// Runs the body of an entry. Whatever it throws becomes a result and the thread's last error: no exception crosses the
/// interface.
/// @param pszEntry  the entry's name, for the error's text
template <class TBody>
GC_ERROR RunEntry(const char* pszEntry, TBody funBody) noexcept {
    try {
        funBody();
        return GC_ERR_SUCCESS;
    } catch (const CProducerError& objError) {
        return KeepLastError(objError.GetCode(), pszEntry, objError.what());
    } catch (const std::bad_alloc&) {
        return KeepLastError(GC_ERR_OUT_OF_MEMORY, pszEntry, "there is no memory left");
    } catch (const std::exception& objError) {
        return KeepLastError(GC_ERR_ERROR, pszEntry, objError.what());
    } catch (...) {
        return KeepLastError(GC_ERR_ERROR, pszEntry, "failed for an unknown reason");
    }
}

/// As RunEntry, for the entries that need GCInitLib before them.
template <class TBody>
GC_ERROR RunInitialisedEntry(const char* pszEntry, TBody funBody) noexcept {
    return RunEntry(pszEntry, [&] {
        CLibrary::Get().RequireInit();
        funBody();
    });
}

/// Finds the module, port or event that a handle names. It lives at least as long as the result.
/// @throws CProducerError  GC_ERR_INVALID_HANDLE
template <class TKind>
std::shared_ptr<TKind> Require(const void* hHandle) {
    return CHandleTable::Get().Require<TKind>(hHandle);
}

/// Closes the module that a handle names; the handle is unknown from the first moment on.
/// @throws CProducerError  GC_ERR_INVALID_HANDLE
template <class TModule>
void CloseModule(const void* hHandle) {
    CHandleTable::Get().RequireAndTake<TModule>(hHandle)->Close();
}

/// @throws CProducerError  GC_ERR_INVALID_PARAMETER for a null pointer
template <class T>
T& RequireOut(T* pOut, const char* pszWhat) {
    if (pOut == nullptr) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, std::string("the pointer to ") + pszWhat + " is null");
    }
    return *pOut;
}

/// @throws CProducerError  GC_ERR_INVALID_PARAMETER for a null text
inline std::string RequireText(const char* pszText, const char* pszWhat) {
    return &RequireOut(pszText, pszWhat);
}

/// Hands out a text by the size protocol.
inline void DeliverText(std::string strText, char* pszBuffer, std::size_t* pSize) {
    CInfoValue::Text(std::move(strText)).Deliver(nullptr, pszBuffer, pSize);
}

}  // namespace producer
