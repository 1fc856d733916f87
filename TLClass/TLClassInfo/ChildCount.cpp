#include "TLClass/TLClassInfo/ChildCount.h"

#include "support/Text.h"
#include "support/ZrException.h"

void CheckChildCount(std::uint32_t nCount, const std::string& strFile, int nLine, const std::string& strFunction) {
    if (nCount > kMaxChildCount) {
        throw CUnexpectedError(
            -1, Format("The TL library counts %u children of a module, more than %u", nCount, kMaxChildCount), strFile,
            nLine, strFunction);
    }
}
