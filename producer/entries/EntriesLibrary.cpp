// The entries of the library itself: GCInitLib and its kin.

#include "producer/entries/Entry.h"
#include "producer/modules/SystemModule.h"

using namespace producer;

GC_ERROR GCInitLib(void) {
    return RunEntry("GCInitLib", [] { CLibrary::Get().Init(); });
}

GC_ERROR GCCloseLib(void) {
    return RunEntry("GCCloseLib", [] { CLibrary::Get().Close(); });
}

GC_ERROR GCGetInfo(TL_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize) {
    return RunEntry("GCGetInfo", [&] { GetProducerInfo(nCommand).Deliver(pType, pBuffer, pSize); });
}

GC_ERROR GCGetLastError(GC_ERROR* pCode, char* pszText, size_t* pSize) {
    // A failure of its own, such as a buffer that is too small, leaves what is told of: it is asked for again.
    const LAST_ERROR objKept = GetLastErrorOfThread();
    const GC_ERROR nResult = RunEntry("GCGetLastError", [&] {
        DeliverText(objKept.Text, pszText, pSize);
        if (pCode != nullptr) {
            *pCode = objKept.Code;
        }
    });
    if (nResult != GC_ERR_SUCCESS) {
        RestoreLastError(objKept);
    }
    return nResult;
}
