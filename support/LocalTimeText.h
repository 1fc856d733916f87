#pragma once

#include <cstddef>
#include <ctime>
#include <string>

/// The local time as text, "2012-03-04 05:06:07.089 " with its trailing blank.
///
/// The calendar is worked out once for each second, so that a caller in a loop pays little. Not for two threads at
/// once.
class CLocalTimeText {
public:
    /// Appends the time of now.
    void AppendTo(std::string& strText);

private:
    void __BuildSecond(std::time_t nSecond);

    static constexpr std::size_t kCapacity = 64;  // more than any year can need

    std::time_t m_nSecond = -1;      // the second that m_arrText tells
    char m_arrText[kCapacity] = {};  // up to the point before the milliseconds
    std::size_t m_nLength = 0;
};
