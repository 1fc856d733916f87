#pragma once

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "bench/Figure.h"

/// Times two ways to the same thing turn about, so that whatever else the machine does meets both.
class CTurns {
public:
    template <class Ours, class Limit>
    void Take(const Ours& funOurs, const Limit& funLimit) {
        const double fOurs = SecondsOf(funOurs);
        Add(fOurs, SecondsOf(funLimit));
    }
    void Add(double fOurs, double fLimit) {
        m_vecOurs.push_back(fOurs);
        m_vecLimit.push_back(fLimit);
    }

    /// For what waits: either way may be lucky.
    /// @param nCalls  how many each turn made; the figure is that of one
    FIGURE GetMedian(std::string strName, GOAL objGoal, int nCalls = 1) const {
        return {std::move(strName), GetMiddle(m_vecOurs) / nCalls, GetMiddle(m_vecLimit) / nCalls, objGoal};
    }
    /// For what computes: what slows a turn down is never the code.
    FIGURE GetFastest(std::string strName, GOAL objGoal, int nCalls = 1) const {
        return {std::move(strName), std::ranges::min(m_vecOurs) / nCalls, std::ranges::min(m_vecLimit) / nCalls,
                objGoal};
    }

    template <class Body>
    static double SecondsOf(const Body& funBody) {
        const auto tmStart = std::chrono::steady_clock::now();
        funBody();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - tmStart).count();
    }

private:
    static double GetMiddle(std::vector<double> vecSeconds) {
        const auto itMiddle = vecSeconds.begin() + static_cast<std::ptrdiff_t>(vecSeconds.size() / 2);
        std::ranges::nth_element(vecSeconds, itMiddle);
        return *itMiddle;
    }

    std::vector<double> m_vecOurs;
    std::vector<double> m_vecLimit;
};
