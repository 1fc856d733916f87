#pragma once

#include <string>
#include <vector>

#include "ctl/HostFacts.h"

/// How much a finding matters: nothing wrong; something might be better; it may cost frames, or hide some cameras; it
/// keeps cameras from being seen.
enum class SEVERITY { Good, Hint, Warning, Problem };

struct FINDING {
    SEVERITY eSeverity = SEVERITY::Good;
    std::string strSubject;  ///< an adapter's name, or what else was looked at
    std::string strWhat;
    std::string strMend;  ///< the command line that mends it; empty where there is nothing to mend or no one command
};

/// Tells good from bad, adapter by adapter, then the machine as a whole.
std::vector<FINDING> Diagnose(const HOST_FACTS& objFacts);
