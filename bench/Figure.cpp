#include "bench/Figure.h"

#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

namespace {

std::vector<FIGURE>& Reported() {
    static std::vector<FIGURE> s_vecFigure;
    return s_vecFigure;
}

/// With three digits, or all of those before the point.
std::string NumberText(double fValue) {
    const int nDecimals = fValue == std::floor(fValue) || fValue >= 100 ? 0 : fValue >= 10 ? 1 : 2;
    char szText[64];
    std::snprintf(szText, sizeof szText, "%.*f", nDecimals, fValue);
    return szText;
}

std::string QuantityText(double fValue, const std::string& strUnit) {
    if (strUnit != "s" || fValue == 0) {
        return strUnit.empty() ? NumberText(fValue) : NumberText(fValue) + ' ' + strUnit;
    }
    static constexpr struct {
        double fSeconds;
        const char* pUnit;
    } kUnits[] = {{1, " s"}, {1e-3, " ms"}, {1e-6, " µs"}};
    for (const auto& objUnit : kUnits) {
        if (fValue >= objUnit.fSeconds) {
            return NumberText(fValue / objUnit.fSeconds) + objUnit.pUnit;
        }
    }
    return NumberText(fValue * 1e9) + " ns";
}

}  // namespace

void Report(FIGURE objFigure) {
    Reported().push_back(std::move(objFigure));
}

bool PrintFigures() {
    bool bAllHeld = true;
    for (const FIGURE& objFigure : Reported()) {
        const bool bHasLimit = objFigure.Limit != 0;
        const double fHeld = bHasLimit ? objFigure.Ratio : objFigure.Ours;
        const GOAL& objGoal = objFigure.Goal;
        const bool bAtMost = objGoal.Bound == GOAL::EBound::AtMost;
        const bool bHeld =
            objGoal.Bound == GOAL::EBound::None || (bAtMost ? fHeld <= objGoal.Value : fHeld >= objGoal.Value);
        std::string strGoal;
        if (objGoal.Bound != GOAL::EBound::None) {
            strGoal = bAtMost ? "at most " : "at least ";
            strGoal += bHasLimit ? NumberText(objGoal.Value) : QuantityText(objGoal.Value, objFigure.Unit);
        }
        std::printf("| %s | %s | %s | %s | %s | %s |\n", objFigure.Name.c_str(),
                    QuantityText(objFigure.Ours, objFigure.Unit).c_str(),
                    bHasLimit ? QuantityText(objFigure.Limit, objFigure.Unit).c_str() : "",
                    bHasLimit ? NumberText(objFigure.Ratio).c_str() : "", strGoal.c_str(),
                    strGoal.empty() ? ""
                    : bHeld         ? "held"
                                    : "missed");
        bAllHeld = bAllHeld && bHeld;
    }
    return bAllHeld;
}
