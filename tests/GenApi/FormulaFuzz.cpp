// A formula of both arithmetics from the text before the first zero byte; further pairs of zero-terminated texts are
// names and texts of Constants (a name that begins with K) and Expressions.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "GenApi/Formula.h"
#include "GenApi/GCException.h"

namespace {

constexpr std::size_t kVariableValues = 8;

template <class Value>
void CompileAndEvaluate(const GenApi_3_0::FORMULA_SOURCE& objSource, const std::vector<Value>& vecPool) {
    try {
        const GenApi_3_0::CFormula<Value> objFormula(objSource);
        for (std::size_t nShift = 0; nShift < kVariableValues; ++nShift) {
            std::vector<Value> vecValues(objFormula.GetVariableNames().size());
            for (std::size_t i = 0; i < vecValues.size(); ++i) {
                vecValues[i] = vecPool[(i + nShift) % vecPool.size()];
            }
            try {
                objFormula.Evaluate(vecValues);
            } catch (const GenICam_3_0::RuntimeException&) {
            }
        }
    } catch (const GenICam_3_0::InvalidArgumentException&) {
    } catch (const GenICam_3_0::LogicalErrorException&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    std::string_view strRest(reinterpret_cast<const char*>(pData), nSize);
    const auto TakeText = [&strRest] {
        const std::string_view strText = strRest.substr(0, strRest.find('\0'));
        strRest.remove_prefix(std::min(strRest.size(), strText.size() + 1));
        return std::string(strText);
    };
    GenApi_3_0::FORMULA_SOURCE objSource{TakeText(), {"A", "B", "C", "VAR"}, {}, {}};
    while (!strRest.empty()) {
        const std::string strName = TakeText();
        auto& vecDefinitions = strName.starts_with('K') ? objSource.Constants : objSource.Expressions;
        vecDefinitions.push_back({strName, TakeText()});
    }
    CompileAndEvaluate<std::int64_t>(objSource, {0, 1, -1, 63, 64, INT64_MIN, INT64_MAX, 0x12345678});
    CompileAndEvaluate<double>(objSource, {0.0, 1.0, -1.0, 0.5, 64.0, -9.3e18, 9.3e18, 1e308});
    return 0;
}
