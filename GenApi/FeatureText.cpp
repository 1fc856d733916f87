#include "GenApi/FeatureText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string_view>

#include "GenApi/Boolean.h"
#include "GenApi/Enumeration.h"
#include "GenApi/Float.h"
#include "GenApi/Integer.h"
#include "GenApi/IntegerText.h"
#include "GenApi/Node.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {
namespace {

using TextVector = std::vector<std::string>;

constexpr std::string_view kFalse = "0";
constexpr std::string_view kTrue = "1";
constexpr std::string_view kHexMark = "0x";

std::optional<TextVector> TextsOf(IInteger& objSelector, std::size_t nMax) {
    TextVector vecText;
    if (objSelector.GetIncMode() == listIncrement) {
        const int64_autovector_t vecValue = objSelector.GetListOfValidValues();
        if (vecValue.size() > nMax) {
            return std::nullopt;
        }
        std::transform(vecValue.begin(), vecValue.end(), std::back_inserter(vecText), FormatInteger);
        return vecText;
    }
    const std::int64_t nFirst = objSelector.GetMin();
    const std::int64_t nLast = objSelector.GetMax();
    const auto nInc = static_cast<std::uint64_t>(std::max<std::int64_t>(objSelector.GetInc(), 1));
    if (nFirst > nLast) {
        return vecText;
    }
    // Without sign the difference fits, whatever the ends.
    const std::uint64_t nSteps = (static_cast<std::uint64_t>(nLast) - static_cast<std::uint64_t>(nFirst)) / nInc;
    if (nSteps >= nMax) {
        return std::nullopt;
    }
    for (std::uint64_t i = 0; i <= nSteps; ++i) {
        vecText.push_back(FormatInteger(static_cast<std::int64_t>(static_cast<std::uint64_t>(nFirst) + i * nInc)));
    }
    return vecText;
}

std::optional<TextVector> TextsOf(IEnumeration& objSelector, std::size_t nMax) {
    StringList_t vecSymbolic;
    objSelector.GetSymbolics(vecSymbolic);
    if (vecSymbolic.size() > nMax) {
        return std::nullopt;
    }
    TextVector vecText;
    std::transform(vecSymbolic.begin(), vecSymbolic.end(), std::back_inserter(vecText),
                   [](const gcstring& strSymbolic) { return strSymbolic.str(); });
    return vecText;
}

double OfFourBytes(double fValue) {
    return std::abs(fValue) <= static_cast<double>(std::numeric_limits<float>::max())
               ? static_cast<double>(static_cast<float>(fValue))
               : fValue;
}

/// @param strExact  begins with 0x, which the other may do without
bool AreSameDigits(std::string_view strText, std::string_view strExact) {
    strExact.remove_prefix(kHexMark.size());
    if (strText.starts_with("0x") || strText.starts_with("0X")) {
        strText.remove_prefix(kHexMark.size());
    }
    return std::equal(strText.begin(), strText.end(), strExact.begin(), strExact.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'F' ? static_cast<char>(a - 'A' + 'a') : a) == b;
    });
}

}  // namespace

std::string ExactText(IValue& objFeature) {
    // A node may have several interfaces, as registers with a number have; its kind tells the one that counts.
    switch (objFeature.GetNode()->GetPrincipalInterfaceType()) {
        case intfIInteger:
            return FormatInteger(dynamic_cast<IInteger&>(objFeature).GetValue());
        case intfIFloat:
            return FormatFloat(dynamic_cast<IFloat&>(objFeature).GetValue());
        case intfIBoolean:
            return std::string(dynamic_cast<IBoolean&>(objFeature).GetValue() ? kTrue : kFalse);
        default:
            return objFeature.ToString().str();
    }
}

bool IsSameValue(IValue& objFeature, std::string_view strText, std::string_view strExact) {
    switch (objFeature.GetNode()->GetPrincipalInterfaceType()) {
        case intfIInteger: {
            const auto nValue = ParseAs(strText, dynamic_cast<IInteger&>(objFeature).GetRepresentation());
            return nValue && FormatInteger(*nValue) == strExact;
        }
        case intfIFloat: {
            const auto fValue = ParseFloat(strText);
            return fValue && (FormatFloat(*fValue) == strExact || FormatFloat(OfFourBytes(*fValue)) == strExact);
        }
        case intfIBoolean:
            return ParseBoolean(strText) == ParseBoolean(strExact);
        case intfIRegister:
            return AreSameDigits(TrimXmlSpace(strText), strExact);
        case intfIString:
            return strText == strExact;
        default:
            return TrimXmlSpace(strText) == strExact;
    }
}

std::optional<TextVector> ExactTextsOfAllValues(IValue& objSelector, std::size_t nMax) {
    switch (objSelector.GetNode()->GetPrincipalInterfaceType()) {
        case intfIInteger:
            return TextsOf(dynamic_cast<IInteger&>(objSelector), nMax);
        case intfIEnumeration:
            return TextsOf(dynamic_cast<IEnumeration&>(objSelector), nMax);
        case intfIBoolean:
            return nMax < 2 ? std::nullopt : std::optional(TextVector{std::string(kFalse), std::string(kTrue)});
        default:
            return TextVector{ExactText(objSelector)};
    }
}

}  // namespace GenApi_3_0
