// A producer of one entry that does nothing, so that what is left to measure is the call itself.

#include "GenTL/GenTL.h"

GC_ERROR GC_CALLTYPE GCReadPort(PORT_HANDLE, uint64_t, void*, size_t*) {
    return GC_ERR_SUCCESS;
}
