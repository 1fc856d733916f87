#include "GenApi/FormulaError.h"

#include <algorithm>

#include "GenApi/GCException.h"

namespace GenApi_3_0 {

namespace {

constexpr std::size_t kExcerptBefore = 20;
constexpr std::size_t kExcerptBehind = 20;

/// The text around the position, in one printable line: hostile texts end up in logs.
std::string ExcerptOf(std::string_view strText, std::size_t nPosition) {
    const std::size_t nFirst = nPosition > kExcerptBefore ? nPosition - kExcerptBefore : 0;
    const std::size_t nEnd = std::min(strText.size(), nPosition + kExcerptBehind);
    std::string strExcerpt(strText.substr(nFirst, nEnd - nFirst));
    std::replace_if(
        strExcerpt.begin(), strExcerpt.end(), [](char c) { return c < ' ' || c == 127; }, ' ');
    return (nFirst > 0 ? "..." : "") + strExcerpt + (nEnd < strText.size() ? "..." : "");
}

}  // namespace

std::string DescribeFormulaPosition(std::string_view strName, std::size_t nPosition) {
    return "position " + std::to_string(nPosition + 1) + " of " +
           (strName.empty() ? "the formula" : "the formula's " + std::string(strName));
}

void ThrowFormulaTextError(const FORMULA_TEXT& objText, std::size_t nPosition, const std::string& strWhat) {
    GenICam_3_0::Throw<GenICam_3_0::InvalidArgumentException>(strWhat + " at " +
                                                              DescribeFormulaPosition(objText.Name, nPosition) +
                                                              ": \"" + ExcerptOf(objText.Text, nPosition) + "\"");
}

void ThrowFormulaCircle(const std::string& strPath) {
    GenICam_3_0::Throw<GenICam_3_0::LogicalErrorException>("the formula's Expressions lead in a circle: " + strPath);
}

void ThrowFormulaValueCount(std::size_t nGiven, std::size_t nWanted) {
    GenICam_3_0::Throw<GenICam_3_0::InvalidArgumentException>("the formula takes " + std::to_string(nWanted) +
                                                              " values, not " + std::to_string(nGiven));
}

void ThrowFormulaRunError(const std::string& strWhat) {
    GenICam_3_0::Throw<GenICam_3_0::RuntimeException>(strWhat);
}

}  // namespace GenApi_3_0
