#include "ctl/FeatureLimits.h"

#include <exception>
#include <limits>

#include "GenApi/Boolean.h"
#include "GenApi/Enumeration.h"
#include "GenApi/Float.h"
#include "GenApi/Integer.h"
#include "GenApi/IntegerText.h"
#include "GenApi/NodeCast.h"
#include "GenApi/String.h"
#include "ctl/NumberText.h"

namespace {

using namespace GenApi_3_0;

constexpr std::size_t kLongestEntries = 4096;  // all names together, in bytes

/// What every address lies within is no limit to tell of.
bool IsAnyAddress(IInteger& objInteger) {
    constexpr std::int64_t kLastIPv4 = 0xFFFF'FFFF;
    constexpr std::int64_t kLastMAC = 0xFFFF'FFFF'FFFF;
    const ERepresentation eRepresentation = objInteger.GetRepresentation();
    return objInteger.GetMin() <= 0 && ((eRepresentation == IPV4Address && objInteger.GetMax() >= kLastIPv4) ||
                                        (eRepresentation == MACAddress && objInteger.GetMax() >= kLastMAC));
}

FEATURE_LIMITS LimitsOf(IInteger& objInteger) {
    using LIMITS = std::numeric_limits<std::int64_t>;
    FEATURE_LIMITS objLimits;
    if ((objInteger.GetMin() != LIMITS::min() || objInteger.GetMax() != LIMITS::max()) && !IsAnyAddress(objInteger)) {
        const ERepresentation eRepresentation = objInteger.GetRepresentation();
        objLimits.strMin = FormatAs(objInteger.GetMin(), eRepresentation);
        objLimits.strMax = FormatAs(objInteger.GetMax(), eRepresentation);
        if (objInteger.GetIncMode() == fixedIncrement && objInteger.GetInc() != 1) {
            objLimits.strIncrement = std::to_string(objInteger.GetInc());
        }
    }
    return objLimits;
}

FEATURE_LIMITS LimitsOf(IFloat& objFloat) {
    FEATURE_LIMITS objLimits;
    objLimits.strMin = NumberText(objFloat.GetMin());
    objLimits.strMax = NumberText(objFloat.GetMax());
    objLimits.strIncrement = objFloat.HasInc() ? NumberText(objFloat.GetInc()) : "";
    return objLimits;
}

FEATURE_LIMITS LimitsOf(IEnumeration& objEnumeration) {
    StringList_t vecSymbolic;
    objEnumeration.GetSymbolics(vecSymbolic);
    FEATURE_LIMITS objLimits;
    std::size_t nLength = 0;
    for (const gcstring& strSymbolic : vecSymbolic) {
        if (nLength > kLongestEntries) {
            objLimits.bMoreEntries = true;
            break;
        }
        nLength += strSymbolic.str().size();
        objLimits.vecEntry.push_back(strSymbolic.str());
    }
    return objLimits;
}

}  // namespace

FEATURE_LIMITS ReadLimits(INode& objNode) {
    try {
        if (auto* pEnumeration = node_cast<IEnumeration>(&objNode)) {
            return LimitsOf(*pEnumeration);
        }
        if (auto* pInteger = node_cast<IInteger>(&objNode)) {
            return LimitsOf(*pInteger);
        }
        if (auto* pFloat = node_cast<IFloat>(&objNode)) {
            return LimitsOf(*pFloat);
        }
        FEATURE_LIMITS objLimits;
        if (node_cast<IBoolean>(&objNode) != nullptr) {
            objLimits.vecEntry = {"0", "1"};
        } else if (auto* pString = node_cast<IString>(&objNode)) {
            objLimits.nMaxLength = pString->GetMaxLength();
        }
        return objLimits;
    } catch (const std::exception&) {
        // They stand in features of their own, which may not be readable.
        return {};
    }
}

std::string DescribeLimits(const FEATURE_LIMITS& objLimits) {
    if (objLimits.nMaxLength) {
        return "up to " + std::to_string(*objLimits.nMaxLength) + " bytes";
    }
    if (!objLimits.strMax.empty()) {
        return objLimits.strMin + " to " + objLimits.strMax +
               (objLimits.strIncrement.empty() ? "" : " in steps of " + objLimits.strIncrement);
    }
    std::string strWords;
    for (const std::string& strEntry : objLimits.vecEntry) {
        strWords += (strWords.empty() ? "" : ", ") + strEntry;
    }
    return strWords + (objLimits.bMoreEntries ? ", ..." : "");
}
