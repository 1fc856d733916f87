#include <stdexcept>
#include <string>

#include <boost/scoped_ptr.hpp>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/Agency.h"

namespace {

/// Writes its name when it acquires and, unless it was dismissed, the same in brackets when it undoes that.
class CTracedAgency : public CAgency {
public:
    CTracedAgency(const std::string& strName, std::string* pTrace) : m_strName(strName), m_pTrace(pTrace) {
        *m_pTrace += m_strName;
    }
    ~CTracedAgency() {
        if (m_bArmed) {
            *m_pTrace += "(" + m_strName + ")";
        }
    }

private:
    std::string m_strName;
    std::string* m_pTrace;
};

void Open(std::string* pTrace, bool bFail) {
    const boost::scoped_ptr<CTracedAgency> pFirst(new CTracedAgency("a", pTrace));
    const boost::scoped_ptr<CTracedAgency> pSecond(new CTracedAgency("b", pTrace));
    if (bFail) {
        throw std::runtime_error("the last step failed");
    }
    Dismiss(*pFirst);
    Dismiss(*pSecond);
}

TEST(Agency, FailedOperationUndoesItsStepsInReverse) {
    std::string strTrace;
    EXPECT_THROW(Open(&strTrace, true), std::runtime_error);
    EXPECT_EQ(strTrace, "ab(b)(a)");
}

TEST(Agency, DismissedAgencyLeavesWhatItAcquired) {
    std::string strTrace;
    Open(&strTrace, false);
    EXPECT_EQ(strTrace, "ab");
}

}  // namespace
