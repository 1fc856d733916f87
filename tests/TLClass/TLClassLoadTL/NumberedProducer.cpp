// A producer whose every entry answers its place in the table, above a base that tells two builds of it apart.

#include "GenTL/GenTL.h"

static const int kFirst = __COUNTER__ + 1;

#define NUMBERED_ENTRY(NAME, PARAMETERS)                        \
    GC_ERROR GC_CALLTYPE NAME PARAMETERS {                      \
        return NUMBERED_PRODUCER_BASE + (__COUNTER__ - kFirst); \
    }
GENTL_ENTRIES(NUMBERED_ENTRY)
