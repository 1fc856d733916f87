#pragma once

#include <iosfwd>
#include <vector>

#include "ctl/CommandOutput.h"
#include "ctl/Diagnosis.h"
#include "ctl/ExitCode.h"

struct DOCTOR_OPTIONS {
    bool bJson = false;
};

/// Looks at this machine and tells what may keep cameras from being seen or frames from arriving, each with what mends
/// it. Changes nothing, and sends nothing.
EXIT_CODE RunDoctor(const DOCTOR_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput);

/// One line for each finding, with the command that mends it on the line below.
void WriteFindings(std::ostream& objOut, const std::vector<FINDING>& vecFinding);
/// A list of objects: "severity" ("good", "hint", "warning", "problem"), "subject", "what", "mend".
void WriteFindingsJson(std::ostream& objOut, const std::vector<FINDING>& vecFinding);
