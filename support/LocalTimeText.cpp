#include "support/LocalTimeText.h"

#include <algorithm>
#include <chrono>

#include "support/Environment.h"
#include "support/ScopedLock.h"
#include "support/Text.h"

void CLocalTimeText::AppendTo(std::string& strText) {
    using std::chrono::system_clock;
    const auto objNow = system_clock::now();
    const auto objSecond = std::chrono::floor<std::chrono::seconds>(objNow);
    const std::time_t nSecond = system_clock::to_time_t(objSecond);
    if (nSecond != m_nSecond) {
        __BuildSecond(nSecond);
    }

    const auto nMs = std::chrono::floor<std::chrono::milliseconds>(objNow - objSecond).count();
    const char arrMs[] = {static_cast<char>('0' + nMs / 100), static_cast<char>('0' + nMs / 10 % 10),
                          static_cast<char>('0' + nMs % 10), ' '};
    strText.append(m_arrText, m_nLength).append(arrMs, sizeof arrMs);
}

void CLocalTimeText::__BuildSecond(std::time_t nSecond) {
    std::tm objTime{};
    {
        // The time zone comes from the environment.
        const CScopedLock objLock(GetEnvironmentLock());
        localtime_r(&nSecond, &objTime);
    }
    const std::string strSecond = Format("%04d-%02d-%02d %02d:%02d:%02d.", objTime.tm_year + 1900, objTime.tm_mon + 1,
                                         objTime.tm_mday, objTime.tm_hour, objTime.tm_min, objTime.tm_sec);
    m_nLength = strSecond.copy(m_arrText, kCapacity);
    m_nSecond = nSecond;
}
