#include "GenApi/ConverterFormulas.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"
#include "GenApi/PropertyReader.h"

namespace GenApi_3_0 {

template <class Value>
bool CConverterFormulas<Value>::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    switch (objProperty.Tag) {
        case ETag::FormulaTo:
            m_objTo.SetText(objProperty.Text);
            return true;
        case ETag::FormulaFrom:
            m_objFrom.SetText(objProperty.Text);
            return true;
        case ETag::pValue:
            m_pValue = objReader.Node(objProperty, ELink::Value, EWanted::Number);
            return true;
        case ETag::Slope:
            m_eSlope = objReader.Word<ESlope>(objProperty, {{"Increasing", Increasing},
                                                            {"Decreasing", Decreasing},
                                                            {"Varying", Varying},
                                                            {"Automatic", Automatic}});
            return true;
        case ETag::IsLinear:
            m_bLinear = objReader.YesNo(objProperty);
            return true;
        default:
            return m_objInputs.Apply(objProperty, objReader);
    }
}

template <class Value>
void CConverterFormulas<Value>::Complete(CPropertyReader& objReader) {
    if (m_pValue == nullptr) {
        GenICam_3_0::Throw<GenICam_3_0::PropertyException>(m_objOwner.Subject() + " has no pValue to convert");
    }
    m_objInputs.LinkLimits(m_objFrom.Text(), objReader);
}

template <class Value>
EAccessMode CConverterFormulas<Value>::AccessMode() const {
    return m_objInputs.AreReadable() ? m_pValue->AccessMode() : Combine(m_pValue->AccessMode(), NA);
}

template <class Value>
Value CConverterFormulas<Value>::Read(bool bIgnoreCache) {
    if constexpr (std::is_same_v<Value, double>) {
        return m_objFrom.Evaluate(bIgnoreCache, m_pValue->ReadFloat(bIgnoreCache));
    } else {
        return m_objFrom.Evaluate(bIgnoreCache, m_pValue->ReadInt(bIgnoreCache));
    }
}

template <class Value>
void CConverterFormulas<Value>::Write(Value value, bool bVerify) {
    Value raw = m_objTo.Evaluate(false, value);
    if constexpr (std::is_same_v<Value, double>) {
        if (bVerify) {
            raw = PulledInside(raw);
        }
        m_pValue->WriteFloat(raw, bVerify);
    } else {
        m_pValue->WriteInt(raw, bVerify);
    }
}

// The node's own maximum, sent back through the formula, may miss the maximum below by a rounding error.
template <class Value>
Value CConverterFormulas<Value>::PulledInside(Value raw) const {
    if (!std::isfinite(static_cast<double>(raw))) {
        return raw;  // its error would be as large as itself, so that any limit would be near
    }
    constexpr double kTolerance = 1e-9;
    const double fTolerance = kTolerance * std::abs(static_cast<double>(raw));
    for (const Value limit : {SourceMin(), SourceMax()}) {
        if (std::abs(static_cast<double>(raw) - static_cast<double>(limit)) <= fTolerance) {
            return limit;
        }
    }
    return raw;
}

template <class Value>
Value CConverterFormulas<Value>::SourceMin() const {
    if constexpr (std::is_same_v<Value, double>) {
        return m_pValue->MinFloat();
    } else {
        return m_pValue->MinInt();
    }
}

template <class Value>
Value CConverterFormulas<Value>::SourceMax() const {
    if constexpr (std::is_same_v<Value, double>) {
        return m_pValue->MaxFloat();
    } else {
        return m_pValue->MaxInt();
    }
}

/// The source's maximum; where increments hold, the last value that they lead to, since in a falling formula the others
/// count from that.
template <class Value>
Value CConverterFormulas<Value>::LastStep() const {
    if constexpr (std::is_same_v<Value, std::int64_t>) {
        const std::int64_t nMin = SourceMin();
        const std::int64_t nMax = SourceMax();
        const std::int64_t nInc = m_pValue->IncInt();
        if (m_bLinear && nInc > 1 && nMin < nMax) {
            // Without sign the difference fits, whatever the ends.
            const std::uint64_t nBeyond = (static_cast<std::uint64_t>(nMax) - static_cast<std::uint64_t>(nMin)) %
                                          static_cast<std::uint64_t>(nInc);
            return static_cast<std::int64_t>(static_cast<std::uint64_t>(nMax) - nBeyond);
        }
    }
    return SourceMax();
}

template <class Value>
std::pair<Value, Value> CConverterFormulas<Value>::Limits() {
    constexpr std::pair kNone{std::numeric_limits<Value>::lowest(), std::numeric_limits<Value>::max()};
    // An end that no number lies beyond is none, and a formula would carry it round to the other side. Numbers of
    // floating point have infinity for that.
    const bool bNoMin = SourceMin() == kNone.first;
    const bool bNoMax = SourceMax() == kNone.second;
    const bool bNoLimits = std::is_same_v<Value, double> ? bNoMin && bNoMax : bNoMin || bNoMax;
    if (m_eSlope == Varying || bNoLimits) {
        return kNone;  // the ends of the one side say nothing about the ends of the other
    }
    Value first{};
    Value last{};
    try {
        first = m_objFrom.Evaluate(false, SourceMin());
        last = m_objFrom.Evaluate(false, LastStep());
    } catch (const GenICam_3_0::RuntimeException&) {
        return kNone;  // a formula like 1/TO has no value at one of the ends
    }
    if constexpr (std::is_same_v<Value, double>) {
        if (std::isnan(first) || std::isnan(last)) {
            return kNone;
        }
    }
    if (m_eSlope == Increasing) {
        return {first, last};
    }
    if (m_eSlope == Decreasing) {
        return {last, first};
    }
    return {std::min(first, last), std::max(first, last)};
}

template <class Value>
Value CConverterFormulas<Value>::Increment() {
    if (!m_bLinear) {
        return 0;
    }
    Value step{};
    if constexpr (std::is_same_v<Value, double>) {
        step = m_pValue->IncFloat();
        if (!(step > 0)) {
            if (m_pValue->GetPrincipalInterfaceType() == intfIFloat) {
                return 0;
            }
            step = static_cast<double>(m_pValue->IncInt());
        }
        return std::abs(m_objFrom.Evaluate(false, SourceMin() + step) - m_objFrom.Evaluate(false, SourceMin()));
    } else {
        step = m_pValue->IncInt();
        const auto nFirst = static_cast<std::uint64_t>(m_objFrom.Evaluate(false, SourceMin()));
        const auto nSecond = static_cast<std::uint64_t>(m_objFrom.Evaluate(
            false,
            static_cast<std::int64_t>(static_cast<std::uint64_t>(SourceMin()) + static_cast<std::uint64_t>(step))));
        const auto nDistance = static_cast<std::int64_t>(nSecond - nFirst);
        return nDistance == std::numeric_limits<std::int64_t>::min() ? 0 : std::abs(nDistance);
    }
}

template class CConverterFormulas<std::int64_t>;
template class CConverterFormulas<double>;

}  // namespace GenApi_3_0
