#pragma once

#include <string>

/// What a figure is held to.
struct GOAL {
    enum class EBound { None, AtMost, AtLeast };
    EBound Bound = EBound::None;
    double Value = 0;
};

constexpr GOAL AtMost(double fValue) {
    return {GOAL::EBound::AtMost, fValue};
}

constexpr GOAL AtLeast(double fValue) {
    return {GOAL::EBound::AtLeast, fValue};
}

/// One figure that docs/benchmarks.md quotes.
struct FIGURE {
    std::string Name;  ///< what is measured
    double Ours = 0;
    double Limit =
        0;      ///< what the same run took as the limit; 0 for a figure without one, which is held to its goal itself
    GOAL Goal;  ///< of the ratio, or else of the figure
    std::string Unit = "s";       ///< seconds are shown in the unit that suits them
    double Ratio = Ours / Limit;  ///< which may be a median of its own
};

/// Keeps a figure for PrintFigures.
void Report(FIGURE objFigure);

/// Prints what was reported as rows of a Markdown table: name, figure, limit, ratio, goal, verdict.
/// @return false if a goal was missed
bool PrintFigures();
