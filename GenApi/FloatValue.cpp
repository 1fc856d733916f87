#include "GenApi/FloatValue.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "GenApi/GCException.h"
#include "GenApi/NumberProperties.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::OutOfRangeException;
using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kHighest = std::numeric_limits<double>::max();
constexpr std::int64_t kDefaultPrecision = 6;

}  // namespace

bool CFloatValue::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    if (objProperty.Tag == ETag::Representation) {
        m_eRepresentation = ReadRepresentation(objProperty, objReader);
        return true;
    }
    return CNodeImpl::Apply(objProperty, objReader);
}

std::int64_t CFloatValue::ReadInt(bool bIgnoreCache) {
    const double fValue = ReadFloat(bIgnoreCache);
    const auto nValue = RoundToInteger(fValue);
    if (!nValue) {
        Throw<OutOfRangeException>(Subject() + ": the value " + FormatFloat(fValue) + " doesn't fit into an integer");
    }
    return *nValue;
}

void CFloatValue::WriteFloat(double fValue, bool bVerify) {
    const CEvaluation objStep(Context(), Name());
    if (bVerify) {
        CheckRange(fValue);
    }
    CChange objChange(Context());
    // Whatever becomes of the write, the value cached so far counts no more.
    State().ValueValid = false;
    StoreFloat(fValue, bVerify);
    objChange.Finish();
}

double CFloatValue::MinFloat() {
    return kLowest;
}

double CFloatValue::MaxFloat() {
    return kHighest;
}

std::int64_t CFloatValue::MinInt() {
    return SaturateToInteger(std::ceil(MinFloat()));
}

std::int64_t CFloatValue::MaxInt() {
    return SaturateToInteger(std::floor(MaxFloat()));
}

void CFloatValue::SetValue(double Value, bool Verify) {
    CChange objChange(Context());
    if (Verify) {
        RequireWritable();
    }
    WriteFloat(Value, Verify);
    objChange.Finish();
}

double CFloatValue::GetValue(bool Verify, bool IgnoreCache) {
    const AutoLock objLock(Context().Lock());
    RequireReadable();
    const double fValue = ReadFloat(IgnoreCache);
    if (Verify) {
        const LIMITS objLimits = Limits();
        if (!(fValue >= objLimits.Min && fValue <= objLimits.Max)) {
            ThrowOutOfRange(fValue,
                            "outside its limits " + FormatFloat(objLimits.Min) + " and " + FormatFloat(objLimits.Max));
        }
    }
    return fValue;
}

CFloatValue::LIMITS CFloatValue::Limits() {
    LIMITS objLimits{MinFloat(), MaxFloat()};
    if (m_pImposed != nullptr) {
        objLimits.Min = std::max(objLimits.Min, m_pImposed->Min);
        objLimits.Max = std::min(objLimits.Max, m_pImposed->Max);
    }
    return objLimits;
}

void CFloatValue::CheckRange(double fValue) {
    const LIMITS objLimits = Limits();
    if (std::isnan(fValue)) {
        ThrowOutOfRange(fValue, "no number");
    }
    if (fValue < objLimits.Min) {
        ThrowOutOfRange(fValue, "below its minimum " + FormatFloat(objLimits.Min));
    }
    if (fValue > objLimits.Max) {
        ThrowOutOfRange(fValue, "above its maximum " + FormatFloat(objLimits.Max));
    }
    const auto* pValid = ValidValues();
    if (pValid != nullptr && !std::binary_search(pValid->begin(), pValid->end(), fValue)) {
        ThrowOutOfRange(fValue, "not one of its valid values");
    }
}

void CFloatValue::ThrowOutOfRange(double fValue, const std::string& strWhy) const {
    Throw<OutOfRangeException>(Subject() + ": the value " + FormatFloat(fValue) + " is " + strWhy);
}

double CFloatValue::GetMin() {
    const AutoLock objLock(Context().Lock());
    return Limits().Min;
}

double CFloatValue::GetMax() {
    const AutoLock objLock(Context().Lock());
    return Limits().Max;
}

bool CFloatValue::HasInc() {
    const AutoLock objLock(Context().Lock());
    return ValidValues() == nullptr && IncFloat() > 0;
}

EIncMode CFloatValue::GetIncMode() {
    const AutoLock objLock(Context().Lock());
    if (ValidValues() != nullptr) {
        return listIncrement;
    }
    return IncFloat() > 0 ? fixedIncrement : noIncrement;
}

double CFloatValue::GetInc() {
    const AutoLock objLock(Context().Lock());
    const double fInc = IncFloat();
    if (!(fInc > 0)) {
        Throw<RuntimeException>(Subject() + " has no increment");
    }
    return fInc;
}

double_autovector_t CFloatValue::GetListOfValidValues(bool bounded) {
    const AutoLock objLock(Context().Lock());
    double_autovector_t vecValue;
    if (const auto* pValid = ValidValues()) {
        const LIMITS objLimits = bounded ? Limits() : LIMITS{kLowest, kHighest};
        std::copy_if(pValid->begin(), pValid->end(), std::back_inserter(vecValue),
                     [&objLimits](double f) { return f >= objLimits.Min && f <= objLimits.Max; });
    }
    return vecValue;
}

ERepresentation CFloatValue::GetRepresentation() {
    return m_eRepresentation;
}

gcstring CFloatValue::GetUnit() const {
    return gcstring(TextOf(ETag::Unit));
}

EDisplayNotation CFloatValue::GetDisplayNotation() const {
    const std::string_view strText = TextOf(ETag::DisplayNotation);
    if (strText == "Fixed") {
        return fnFixed;
    }
    return strText == "Scientific" ? fnScientific : fnAutomatic;
}

std::int64_t CFloatValue::GetDisplayPrecision() const {
    return ParseInteger(TextOf(ETag::DisplayPrecision)).value_or(kDefaultPrecision);
}

CFloatValue::LIMITS& CFloatValue::Imposed() {
    if (m_pImposed == nullptr) {
        m_pImposed = std::make_unique<LIMITS>(LIMITS{kLowest, kHighest});
    }
    return *m_pImposed;
}

void CFloatValue::ImposeMin(double Value) {
    CChange objChange(Context());
    Imposed().Min = Value;
    objChange.Invalidated(Number(), kDirtyLimits);
    objChange.Finish();
}

void CFloatValue::ImposeMax(double Value) {
    CChange objChange(Context());
    Imposed().Max = Value;
    objChange.Invalidated(Number(), kDirtyLimits);
    objChange.Finish();
}

// The notation and precision of the description are for showing: a text that is stored must read back as the same
// value.
gcstring CFloatValue::ToString(bool Verify, bool IgnoreCache) {
    return FormatFloat(GetValue(Verify, IgnoreCache));
}

void CFloatValue::FromString(const gcstring& ValueStr, bool Verify) {
    const auto fValue = ParseFloat(ValueStr.view());
    if (!fValue) {
        Throw<InvalidArgumentException>(Subject() + ": '" + ValueStr.str() + "' isn't a number");
    }
    SetValue(*fValue, Verify);
}

bool CFloatValue::IsValueCacheValid() const {
    const AutoLock objLock(Context().Lock());
    return State().ValueValid;
}

}  // namespace GenApi_3_0
