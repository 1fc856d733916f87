#include "ctl/DoctorCommand.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "ctl/Json.h"
#include "ctl/Table.h"

namespace {

const char* TextOf(SEVERITY eSeverity) {
    switch (eSeverity) {
        case SEVERITY::Good:
            return "good";
        case SEVERITY::Hint:
            return "hint";
        case SEVERITY::Warning:
            return "warning";
        default:
            return "problem";
    }
}

}  // namespace

EXIT_CODE RunDoctor(const DOCTOR_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    const std::vector<FINDING> vecFinding = Diagnose(ReadHostFacts());
    if (objOptions.bJson) {
        WriteFindingsJson(objOutput.objOut, vecFinding);
    } else {
        WriteFindings(objOutput.objOut, vecFinding);
    }
    const bool bProblems = std::any_of(vecFinding.begin(), vecFinding.end(), [](const FINDING& objFinding) {
        return objFinding.eSeverity == SEVERITY::Problem;
    });
    return bProblems ? EXIT_CODE::ProblemsFound : EXIT_CODE::Success;
}

void WriteFindings(std::ostream& objOut, const std::vector<FINDING>& vecFinding) {
    constexpr std::size_t kSeverityWidth = 9;
    std::size_t nSubjectWidth = 0;
    for (const FINDING& objFinding : vecFinding) {
        nSubjectWidth = std::max(nSubjectWidth, objFinding.strSubject.size() + 2);
    }
    for (const FINDING& objFinding : vecFinding) {
        std::string strLine = TextOf(objFinding.eSeverity);
        strLine.resize(kSeverityWidth, ' ');
        strLine += objFinding.strSubject;
        strLine.resize(kSeverityWidth + nSubjectWidth, ' ');
        objOut << strLine << Printable(objFinding.strWhat) << '\n';
        if (!objFinding.strMend.empty()) {
            objOut << std::string(kSeverityWidth + nSubjectWidth, ' ') << "$ " << objFinding.strMend << '\n';
        }
    }
}

void WriteFindingsJson(std::ostream& objOut, const std::vector<FINDING>& vecFinding) {
    nlohmann::ordered_json objList = nlohmann::ordered_json::array();
    for (const FINDING& objFinding : vecFinding) {
        objList.push_back({{"severity", TextOf(objFinding.eSeverity)},
                           {"subject", objFinding.strSubject},
                           {"what", objFinding.strWhat},
                           {"mend", objFinding.strMend.empty() ? nlohmann::ordered_json()
                                                               : nlohmann::ordered_json(objFinding.strMend)}});
    }
    WriteJson(objOut, objList);
}
