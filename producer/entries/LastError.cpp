#include "producer/entries/LastError.h"

#include <algorithm>
#include <cstddef>

namespace producer {

namespace {

thread_local LAST_ERROR t_objLastError;

}  // namespace

const LAST_ERROR& GetLastErrorOfThread() noexcept {
    return t_objLastError;
}

GC_ERROR KeepLastError(GC_ERROR nCode, std::string_view strEntry, std::string_view strText) noexcept {
    t_objLastError.Code = nCode;
    char* pEnd = t_objLastError.Text;
    char* const pLimit = t_objLastError.Text + sizeof(t_objLastError.Text) - 1;
    for (const std::string_view strPart : {strEntry, std::string_view(": "), strText}) {
        std::size_t nLength = std::min(strPart.size(), static_cast<std::size_t>(pLimit - pEnd));
        while (nLength < strPart.size() && nLength > 0 &&
               (static_cast<unsigned char>(strPart[nLength]) & 0xC0) == 0x80) {
            --nLength;
        }
        pEnd = std::copy_n(strPart.data(), nLength, pEnd);
    }
    *pEnd = '\0';
    return nCode;
}

void RestoreLastError(const LAST_ERROR& objKept) noexcept {
    t_objLastError = objKept;
}

}  // namespace producer
