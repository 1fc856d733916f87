#include "GenApi/IntegerValue.h"

#include <algorithm>
#include <limits>
#include <string>

#include "GenApi/GCException.h"
#include "GenApi/IntegerText.h"
#include "GenApi/NumberProperties.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::OutOfRangeException;
using GenICam_3_0::Throw;

}  // namespace

bool CIntegerValue::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    if (objProperty.Tag == ETag::Representation) {
        m_eRepresentation = ReadRepresentation(objProperty, objReader);
        return true;
    }
    return CNodeImpl::Apply(objProperty, objReader);
}

void CIntegerValue::WriteInt(std::int64_t nValue, bool bVerify) {
    const CEvaluation objStep(Context(), Name());
    if (bVerify) {
        CheckRange(nValue);
    }
    CChange objChange(Context());
    // Whatever becomes of the write, the value cached so far counts no more.
    State().ValueValid = false;
    StoreInt(nValue, bVerify);
    objChange.Finish();
}

void CIntegerValue::SetValue(std::int64_t Value, bool Verify) {
    CChange objChange(Context());
    if (Verify) {
        RequireWritable();
    }
    WriteInt(Value, Verify);
    objChange.Finish();
}

std::int64_t CIntegerValue::GetValue(bool Verify, bool IgnoreCache) {
    const AutoLock objLock(Context().Lock());
    RequireReadable();
    const std::int64_t nValue = ReadInt(IgnoreCache);
    if (Verify) {
        const LIMITS objLimits = Limits();
        if (nValue < objLimits.Min || nValue > objLimits.Max) {
            CheckRange(nValue);
        }
    }
    return nValue;
}

CIntegerValue::LIMITS CIntegerValue::Limits() {
    LIMITS objLimits{MinInt(), MaxInt()};
    if (m_pImposed != nullptr) {
        if (m_pImposed->Min > objLimits.Min) {
            objLimits.Min = AtOrAbove(m_pImposed->Min, objLimits.Min);
        }
        objLimits.Max = std::min(objLimits.Max, m_pImposed->Max);
    }
    return objLimits;
}

/// The increments go on from the minimum that the description gives, whatever is imposed.
/// @return the least value that is a whole number of increments above nMin, and nImposed or more
std::int64_t CIntegerValue::AtOrAbove(std::int64_t nImposed, std::int64_t nMin) {
    if (ValidValues() != nullptr) {
        return nImposed;
    }
    const auto nInc = static_cast<std::uint64_t>(std::max<std::int64_t>(IncInt(), 1));
    const std::uint64_t nBeyond = (static_cast<std::uint64_t>(nImposed) - static_cast<std::uint64_t>(nMin)) % nInc;
    std::int64_t nValue = nImposed;
    if (nBeyond != 0 && __builtin_add_overflow(nImposed, nInc - nBeyond, &nValue)) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return nValue;
}

void CIntegerValue::CheckRange(std::int64_t nValue) {
    const LIMITS objLimits = Limits();
    if (nValue < objLimits.Min) {
        ThrowOutOfRange(nValue, "below its minimum " + FormatInteger(objLimits.Min));
    }
    if (nValue > objLimits.Max) {
        ThrowOutOfRange(nValue, "above its maximum " + FormatInteger(objLimits.Max));
    }
    if (const auto* pValid = ValidValues()) {
        if (!std::binary_search(pValid->begin(), pValid->end(), nValue)) {
            ThrowOutOfRange(nValue, "not one of its valid values");
        }
        return;
    }
    const std::int64_t nInc = IncInt();
    // In unsigned arithmetic, since the distance may be more than a signed one can hold.
    const std::uint64_t nDistance = static_cast<std::uint64_t>(nValue) - static_cast<std::uint64_t>(objLimits.Min);
    if (nInc > 1 && nDistance % static_cast<std::uint64_t>(nInc) != 0) {
        ThrowOutOfRange(nValue, "not a whole number of increments of " + FormatInteger(nInc) + " above its minimum " +
                                    FormatInteger(objLimits.Min));
    }
}

void CIntegerValue::ThrowOutOfRange(std::int64_t nValue, const std::string& strWhy) const {
    Throw<OutOfRangeException>(Subject() + ": the value " + FormatInteger(nValue) + " is " + strWhy);
}

std::int64_t CIntegerValue::GetMin() {
    const AutoLock objLock(Context().Lock());
    return Limits().Min;
}

std::int64_t CIntegerValue::GetMax() {
    const AutoLock objLock(Context().Lock());
    return Limits().Max;
}

std::int64_t CIntegerValue::GetInc() {
    const AutoLock objLock(Context().Lock());
    return std::max<std::int64_t>(IncInt(), 1);
}

EIncMode CIntegerValue::GetIncMode() {
    const AutoLock objLock(Context().Lock());
    return ValidValues() != nullptr ? listIncrement : fixedIncrement;
}

int64_autovector_t CIntegerValue::GetListOfValidValues(bool bounded) {
    const AutoLock objLock(Context().Lock());
    int64_autovector_t vecValue;
    if (const auto* pValid = ValidValues()) {
        const LIMITS objLimits =
            bounded ? Limits()
                    : LIMITS{std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()};
        std::copy_if(pValid->begin(), pValid->end(), std::back_inserter(vecValue),
                     [&objLimits](std::int64_t n) { return n >= objLimits.Min && n <= objLimits.Max; });
    }
    return vecValue;
}

ERepresentation CIntegerValue::GetRepresentation() {
    return m_eRepresentation;
}

gcstring CIntegerValue::GetUnit() {
    return gcstring(TextOf(ETag::Unit));
}

CIntegerValue::LIMITS& CIntegerValue::Imposed() {
    if (m_pImposed == nullptr) {
        m_pImposed = std::make_unique<LIMITS>(
            LIMITS{std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()});
    }
    return *m_pImposed;
}

void CIntegerValue::ImposeMin(std::int64_t Value) {
    CChange objChange(Context());
    Imposed().Min = Value;
    objChange.Invalidated(Number(), kDirtyLimits);
    objChange.Finish();
}

void CIntegerValue::ImposeMax(std::int64_t Value) {
    CChange objChange(Context());
    Imposed().Max = Value;
    objChange.Invalidated(Number(), kDirtyLimits);
    objChange.Finish();
}

gcstring CIntegerValue::ToString(bool Verify, bool IgnoreCache) {
    return FormatAs(GetValue(Verify, IgnoreCache), m_eRepresentation);
}

void CIntegerValue::FromString(const gcstring& ValueStr, bool Verify) {
    const auto nValue = ParseAs(ValueStr.view(), m_eRepresentation);
    if (!nValue) {
        Throw<InvalidArgumentException>(Subject() + ": '" + ValueStr.str() + "' isn't a 64-bit integer");
    }
    SetValue(*nValue, Verify);
}

bool CIntegerValue::IsValueCacheValid() const {
    const AutoLock objLock(Context().Lock());
    return State().ValueValid;
}

}  // namespace GenApi_3_0
