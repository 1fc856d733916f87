#include "tests/soak/CallBook.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/soak/Sanitizer.h"

namespace {

using namespace std::chrono_literals;

struct KIND {
    const char* Name;
    std::chrono::milliseconds Bound;
};

/// In the order of ECall. A question that isn't answered takes 1.2 s; a feature takes a few, of which the first that
/// fails is the last.
constexpr std::array<KIND, kCallKinds> kKinds{{{"update", 2s},
                                               {"open", 5s},
                                               {"close", 5s},
                                               {"read", 3s},
                                               {"write", 3s},
                                               {"feature file", 10s},
                                               {"start", 5s},
                                               {"stop", 5s},
                                               {"frame", 500ms}}};

/// For a machine that has more to do than this.
constexpr auto kSlack = kIsSanitized ? 6s : 2s;
constexpr auto kHangs = 60s;
constexpr std::size_t kMostPrinted = 40;

double Milliseconds(CCallBook::Clock::duration tmDuration) {
    return std::chrono::duration<double, std::milli>(tmDuration).count();
}

}  // namespace

bool CCallBook::Expect(bool bHolds, const std::string& strComplaint) {
    if (!bHolds && m_nComplaints++ < kMostPrinted) {
        std::printf("WRONG: %s\n", strComplaint.c_str());
        std::fflush(stdout);
    }
    return bHolds;
}

CCallBook::Clock::time_point CCallBook::Begin(ECall eCall) {
    const auto tmStart = Clock::now();
    const std::lock_guard objLock(m_mtx);
    m_mapUnderWay[std::this_thread::get_id()] = {eCall, tmStart};
    return tmStart;
}

void CCallBook::End(ECall eCall, Clock::time_point tmStart, bool bGood) {
    const auto tmTook = Clock::now() - tmStart;
    const auto nKind = static_cast<std::size_t>(eCall);
    {
        const std::lock_guard objLock(m_mtx);
        m_mapUnderWay.erase(std::this_thread::get_id());
        COUNTS& objCounts = m_arrCounts[nKind];
        ++objCounts.Calls;
        objCounts.Refused += bGood ? 0 : 1;
        objCounts.Total += tmTook;
        objCounts.Longest = std::max(objCounts.Longest, tmTook);
    }
    Expect(tmTook <= kKinds[nKind].Bound + kSlack,
           std::string(kKinds[nKind].Name) + " took " + std::to_string(static_cast<int>(Milliseconds(tmTook))) + " ms");
}

void CCallBook::EndIfSomethingHangs() const {
    const std::lock_guard objLock(m_mtx);
    for (const auto& [nThread, objCall] : m_mapUnderWay) {
        if (Clock::now() - objCall.Since > kHangs) {
            std::printf("WRONG: a call hangs: %s\n", kKinds[static_cast<std::size_t>(objCall.Call)].Name);
            std::fflush(stdout);
            std::abort();
        }
    }
}

void CCallBook::Print() const {
    const std::lock_guard objLock(m_mtx);
    std::printf("\n%-14s %9s %9s %10s %12s\n", "CALL", "CALLS", "REFUSED", "MEAN ms", "LONGEST ms");
    for (std::size_t i = 0; i < kKinds.size(); ++i) {
        const COUNTS& objCounts = m_arrCounts[i];
        const double fMean =
            objCounts.Calls == 0 ? 0 : Milliseconds(objCounts.Total) / static_cast<double>(objCounts.Calls);
        std::printf("%-14s %9llu %9llu %10.1f %12.0f\n", kKinds[i].Name,
                    static_cast<unsigned long long>(objCounts.Calls),
                    static_cast<unsigned long long>(objCounts.Refused), fMean, Milliseconds(objCounts.Longest));
    }
}
