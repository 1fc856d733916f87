#include "GenApi/FormulaArithmetic.h"

#include <cmath>
#include <limits>
#include <string>

#include "GenApi/FormulaError.h"

namespace GenApi_3_0 {

namespace {

using Operation = EFormulaOperation;

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();

// Wrapping arithmetic: defined for unsigned numbers, and the conversion back is the bit pattern.
std::uint64_t Bits(std::int64_t nValue) {
    return static_cast<std::uint64_t>(nValue);
}
std::int64_t FromBits(std::uint64_t nValue) {
    return static_cast<std::int64_t>(nValue);
}

[[noreturn]] void ThrowUnknownOperation() {
    throw CFormulaFault("a step that its place in the program doesn't allow");
}

std::int64_t DivideIntegers(std::int64_t nLeft, std::int64_t nRight) {
    if (nRight == 0) {
        throw CFormulaFault("division by zero");
    }
    if (nLeft == kMin && nRight == -1) {
        throw CFormulaFault("the quotient doesn't fit into 64 bits");
    }
    return nLeft / nRight;
}

std::int64_t ModuloOfIntegers(std::int64_t nLeft, std::int64_t nRight) {
    if (nRight == 0) {
        throw CFormulaFault("modulo by zero");
    }
    return nRight == -1 ? 0 : nLeft % nRight;  // the processor traps on INT64_MIN % -1
}

int ShiftCount(std::int64_t nCount) {
    if (nCount < 0 || nCount > 63) {
        throw CFormulaFault("a shift by " + std::to_string(nCount) + " bits, 0 to 63 are possible");
    }
    return static_cast<int>(nCount);
}

std::int64_t PowerOfIntegers(std::int64_t nBase, std::int64_t nExponent) {
    if (nExponent < 0) {
        if (nBase == 0) {
            throw CFormulaFault("0 to a negative power");
        }
        const std::int64_t nMagnitudeOne = nExponent % 2 == 0 ? 1 : nBase;
        return nBase == 1 || nBase == -1 ? nMagnitudeOne : 0;  // 1 / base**n, cut towards zero
    }
    std::uint64_t nResult = 1;
    std::uint64_t nSquare = Bits(nBase);
    for (std::uint64_t nLeft = Bits(nExponent); nLeft != 0; nLeft >>= 1) {
        if ((nLeft & 1) != 0) {
            nResult *= nSquare;
        }
        nSquare *= nSquare;
    }
    return FromBits(nResult);
}

std::int64_t SquareRootOfInteger(std::int64_t nValue) {
    if (nValue < 0) {
        throw CFormulaFault("the square root of a negative number");
    }
    // The square root in double is at most one off for numbers of 64 bits.
    auto nRoot = static_cast<std::uint64_t>(std::sqrt(static_cast<double>(nValue)));
    while (nRoot * nRoot > Bits(nValue)) {
        --nRoot;
    }
    while ((nRoot + 1) * (nRoot + 1) <= Bits(nValue)) {
        ++nRoot;
    }
    return FromBits(nRoot);
}

std::int64_t AbsoluteOfInteger(std::int64_t nValue) {
    if (nValue == kMin) {
        throw CFormulaFault("the absolute value doesn't fit into 64 bits");
    }
    return nValue < 0 ? -nValue : nValue;
}

/// To a multiple of 10**-nDecimals, halves away from zero.
std::int64_t RoundInteger(std::int64_t nValue, std::int64_t nDecimals) {
    if (nDecimals >= 0) {
        return nValue;
    }
    constexpr std::int64_t kMaxDecimals = 18;  // the largest power of ten below 2**63
    if (nDecimals < -kMaxDecimals) {
        throw CFormulaFault("a precision of " + std::to_string(nDecimals) + " decimals, -18 is the lowest");
    }
    const std::int64_t nUnit = PowerOfIntegers(10, -nDecimals);
    const std::int64_t nRest = nValue % nUnit;
    const std::int64_t nMagnitude = nRest < 0 ? -nRest : nRest;
    const bool bUp = nMagnitude >= nUnit - nMagnitude;
    std::int64_t nResult = nValue - nRest;
    if (bUp && __builtin_add_overflow(nResult, nRest < 0 ? -nUnit : nUnit, &nResult)) {
        throw CFormulaFault("the rounded value doesn't fit into 64 bits");
    }
    return nResult;
}

double RoundTo(double fValue, double fDecimals) {
    constexpr double kMaxDecimals = 300;  // 10**300 and its inverse are normal numbers
    if (!(std::fabs(fDecimals) <= kMaxDecimals)) {
        throw CFormulaFault("a precision beyond 300 decimals");
    }
    const double fScale = std::pow(10.0, std::fabs(std::trunc(fDecimals)));
    if (fDecimals < 0) {
        return std::round(fValue / fScale) * fScale;
    }
    const double fScaled = fValue * fScale;
    constexpr double kWithoutFraction = 4503599627370496.0;  // 2**52: such numbers are integers already
    return std::fabs(fScaled) < kWithoutFraction ? std::round(fScaled) / fScale : fValue;
}

double DivideFloats(double fLeft, double fRight) {
    if (fRight == 0) {
        throw CFormulaFault("division by zero");
    }
    return fLeft / fRight;
}

double ModuloOfFloats(double fLeft, double fRight) {
    if (fRight == 0) {
        throw CFormulaFault("modulo by zero");
    }
    return std::fmod(fLeft, fRight);
}

double PowerOfFloats(double fBase, double fExponent) {
    if (fBase == 0 && fExponent < 0) {
        throw CFormulaFault("0 to a negative power");
    }
    return std::pow(fBase, fExponent);
}

double Logarithm(double fValue, double (*pLogarithm)(double)) {
    if (fValue <= 0) {
        throw CFormulaFault("the logarithm of a number that isn't positive");
    }
    return pLogarithm(fValue);
}

double SignOf(double fValue) {
    if (std::isnan(fValue)) {
        return fValue;
    }
    return fValue > 0 ? 1 : fValue < 0 ? -1 : 0;
}

double OneFloat(Operation nOperation, double fValue) {
    switch (nOperation) {
        case Operation::ToBool:
            return fValue != 0 ? 1 : 0;
        case Operation::Not:
            return fValue == 0 ? 1 : 0;
        case Operation::Complement:
            return static_cast<double>(~ConvertToInteger(fValue));
        case Operation::Negate:
            return -fValue;
        case Operation::Absolute:
            return std::fabs(fValue);
        case Operation::Sign:
            return SignOf(fValue);
        case Operation::SquareRoot:
            return std::sqrt(fValue);
        case Operation::Truncate:
            return std::trunc(fValue);
        case Operation::Floor:
            return std::floor(fValue);
        case Operation::Ceil:
            return std::ceil(fValue);
        case Operation::Round:
            return std::round(fValue);
        case Operation::Sine:
            return std::sin(fValue);
        case Operation::Cosine:
            return std::cos(fValue);
        case Operation::Tangent:
            return std::tan(fValue);
        case Operation::ArcSine:
            return std::asin(fValue);
        case Operation::ArcCosine:
            return std::acos(fValue);
        case Operation::ArcTangent:
            return std::atan(fValue);
        case Operation::Exponential:
            return std::exp(fValue);
        case Operation::NaturalLogarithm:
            return Logarithm(fValue, std::log);
        case Operation::DecimalLogarithm:
            return Logarithm(fValue, std::log10);
        default:
            ThrowUnknownOperation();
    }
}

double TwoFloats(Operation nOperation, double fLeft, double fRight) {
    switch (nOperation) {
        case Operation::RoundTo:
            return RoundTo(fLeft, fRight);
        case Operation::Power:
            return PowerOfFloats(fLeft, fRight);
        case Operation::Multiply:
            return fLeft * fRight;
        case Operation::Divide:
            return DivideFloats(fLeft, fRight);
        case Operation::Modulo:
            return ModuloOfFloats(fLeft, fRight);
        case Operation::Add:
            return fLeft + fRight;
        case Operation::Subtract:
            return fLeft - fRight;
        case Operation::Less:
            return fLeft < fRight;
        case Operation::Greater:
            return fLeft > fRight;
        case Operation::LessOrEqual:
            return fLeft <= fRight;
        case Operation::GreaterOrEqual:
            return fLeft >= fRight;
        case Operation::Equal:
            return fLeft == fRight;
        case Operation::NotEqual:
            return fLeft != fRight;
        default:
            return static_cast<double>(ApplyToTwo(nOperation, ConvertToInteger(fLeft), ConvertToInteger(fRight)));
    }
}

}  // namespace

std::int64_t ConvertToInteger(double fValue) {
    constexpr double kLimit = 9223372036854775808.0;  // 2**63, exact in double
    if (!(fValue >= -kLimit && fValue < kLimit)) {
        throw CFormulaFault("the value doesn't fit into a 64-bit integer");
    }
    return static_cast<std::int64_t>(fValue);
}

std::int64_t ApplyToOne(EFormulaOperation nOperation, std::int64_t nValue) {
    switch (nOperation) {
        case Operation::ToBool:
            return nValue != 0;
        case Operation::Not:
            return nValue == 0;
        case Operation::Complement:
            return ~nValue;
        case Operation::Negate:
            return FromBits(0 - Bits(nValue));
        case Operation::Absolute:
            return AbsoluteOfInteger(nValue);
        case Operation::Sign:
            return nValue > 0 ? 1 : nValue < 0 ? -1 : 0;
        case Operation::SquareRoot:
            return SquareRootOfInteger(nValue);
        case Operation::Truncate:
        case Operation::Floor:
        case Operation::Ceil:
        case Operation::Round:
            return nValue;
        default:
            return ConvertToInteger(ApplyToOne(nOperation, static_cast<double>(nValue)));
    }
}

double ApplyToOne(EFormulaOperation nOperation, double fValue) {
    const double fResult = OneFloat(nOperation, fValue);
    if (std::isnan(fResult) && !std::isnan(fValue)) {
        throw CFormulaFault("the argument lies outside the function's domain");
    }
    return fResult;
}

std::int64_t ApplyToTwo(EFormulaOperation nOperation, std::int64_t nLeft, std::int64_t nRight) {
    switch (nOperation) {
        case Operation::RoundTo:
            return RoundInteger(nLeft, nRight);
        case Operation::Power:
            return PowerOfIntegers(nLeft, nRight);
        case Operation::Multiply:
            return FromBits(Bits(nLeft) * Bits(nRight));
        case Operation::Divide:
            return DivideIntegers(nLeft, nRight);
        case Operation::Modulo:
            return ModuloOfIntegers(nLeft, nRight);
        case Operation::Add:
            return FromBits(Bits(nLeft) + Bits(nRight));
        case Operation::Subtract:
            return FromBits(Bits(nLeft) - Bits(nRight));
        case Operation::ShiftLeft:
            return nLeft << ShiftCount(nRight);
        case Operation::ShiftRight:
            return nLeft >> ShiftCount(nRight);
        case Operation::Less:
            return nLeft < nRight;
        case Operation::Greater:
            return nLeft > nRight;
        case Operation::LessOrEqual:
            return nLeft <= nRight;
        case Operation::GreaterOrEqual:
            return nLeft >= nRight;
        case Operation::Equal:
            return nLeft == nRight;
        case Operation::NotEqual:
            return nLeft != nRight;
        case Operation::BitAnd:
            return nLeft & nRight;
        case Operation::BitXor:
            return nLeft ^ nRight;
        case Operation::BitOr:
            return nLeft | nRight;
        default:
            ThrowUnknownOperation();
    }
}

double ApplyToTwo(EFormulaOperation nOperation, double fLeft, double fRight) {
    const double fResult = TwoFloats(nOperation, fLeft, fRight);
    if (std::isnan(fResult) && !std::isnan(fLeft) && !std::isnan(fRight)) {
        throw CFormulaFault("the operands have no result");
    }
    return fResult;
}

}  // namespace GenApi_3_0
