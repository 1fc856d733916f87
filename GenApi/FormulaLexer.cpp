#include "GenApi/FormulaLexer.h"

#include <string>

namespace GenApi_3_0 {

namespace {

// The C classification functions depend on the locale.
bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
bool IsNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsNamePart(char c) {
    return IsNameStart(c) || IsDigit(c);
}

struct OPERATOR_TEXT {
    std::string_view Text;
    EFormulaToken Kind;
};

// Longer texts before those that they begin with.
constexpr OPERATOR_TEXT kOperators[] = {
    {"||", EFormulaToken::Or},
    {"&&", EFormulaToken::And},
    {"**", EFormulaToken::Power},
    {"<>", EFormulaToken::NotEqual},
    {"!=", EFormulaToken::NotEqual},
    {"==", EFormulaToken::Equal},
    {"<=", EFormulaToken::LessOrEqual},
    {">=", EFormulaToken::GreaterOrEqual},
    {"<<", EFormulaToken::ShiftLeft},
    {">>", EFormulaToken::ShiftRight},
    {"=", EFormulaToken::Equal},
    {"<", EFormulaToken::Less},
    {">", EFormulaToken::Greater},
    {"|", EFormulaToken::BitOr},
    {"^", EFormulaToken::BitXor},
    {"&", EFormulaToken::BitAnd},
    {"+", EFormulaToken::Plus},
    {"-", EFormulaToken::Minus},
    {"*", EFormulaToken::Times},
    {"/", EFormulaToken::Divide},
    {"%", EFormulaToken::Modulo},
    {"~", EFormulaToken::Complement},
    {"!", EFormulaToken::Not},
    {"?", EFormulaToken::Question},
    {":", EFormulaToken::Colon},
    {"(", EFormulaToken::OpenParenthesis},
    {")", EFormulaToken::CloseParenthesis},
    {",", EFormulaToken::Comma},
};

std::string DescribeCharacter(char c) {
    if (c > ' ' && c < 127) {
        return std::string("'") + c + "'";
    }
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto nByte = static_cast<unsigned char>(c);
    return std::string("byte 0x") + kDigits[nByte >> 4] + kDigits[nByte & 15];
}

}  // namespace

FORMULA_TOKEN CFormulaLexer::Next() {
    const std::size_t nStart = SkipSpace(m_nPosition);
    m_nPosition = nStart;
    if (nStart == m_objText.Text.size()) {
        return {EFormulaToken::End, nStart, {}};
    }
    const auto Take = [this, nStart](EFormulaToken nKind, std::size_t nEnd) {
        m_nPosition = nEnd;
        return FORMULA_TOKEN{nKind, nStart, m_objText.Text.substr(nStart, nEnd - nStart)};
    };
    const char c = At(nStart);
    if (IsDigit(c) || (c == '.' && IsDigit(At(nStart + 1)))) {
        return Take(EFormulaToken::Number, EndOfNumber(nStart));
    }
    if (IsNameStart(c)) {
        return Take(EFormulaToken::Name, EndOfName(nStart));
    }
    for (const auto& objOperator : kOperators) {
        if (m_objText.Text.substr(nStart).starts_with(objOperator.Text)) {
            return Take(objOperator.Kind, nStart + objOperator.Text.size());
        }
    }
    ThrowFormulaTextError(m_objText, nStart, "no part of a formula begins with " + DescribeCharacter(c));
}

bool CFormulaLexer::IsCallNext() const {
    return At(SkipSpace(m_nPosition)) == '(';
}

std::size_t CFormulaLexer::SkipSpace(std::size_t nPosition) const {
    while (nPosition < m_objText.Text.size() && IsSpace(m_objText.Text[nPosition])) {
        ++nPosition;
    }
    return nPosition;
}

std::size_t CFormulaLexer::EndOfNumber(std::size_t nStart) const {
    std::size_t nEnd = nStart;
    const auto SkipDigits = [this, &nEnd](bool (*pIsDigit)(char)) {
        const std::size_t nFirst = nEnd;
        while (pIsDigit(At(nEnd))) {
            ++nEnd;
        }
        return nEnd > nFirst;
    };
    bool bComplete = true;
    if (At(nStart) == '0' && (At(nStart + 1) == 'x' || At(nStart + 1) == 'X')) {
        nEnd += 2;
        bComplete = SkipDigits(IsHexDigit);
    } else {
        SkipDigits(IsDigit);
        if (At(nEnd) == '.') {
            ++nEnd;
            SkipDigits(IsDigit);
        }
        if (At(nEnd) == 'e' || At(nEnd) == 'E') {
            ++nEnd;
            if (At(nEnd) == '+' || At(nEnd) == '-') {
                ++nEnd;
            }
            bComplete = SkipDigits(IsDigit);
        }
    }
    if (!bComplete || IsNamePart(At(nEnd)) || At(nEnd) == '.') {
        ThrowFormulaTextError(m_objText, nStart, "malformed number");
    }
    return nEnd;
}

std::size_t CFormulaLexer::EndOfName(std::size_t nStart) const {
    std::size_t nEnd = nStart + 1;
    // A member's name may begin with a digit, as names of enumeration entries do.
    while (IsNamePart(At(nEnd)) || (At(nEnd) == '.' && IsNamePart(At(nEnd + 1)))) {
        ++nEnd;
    }
    return nEnd;
}

char CFormulaLexer::At(std::size_t nPosition) const {
    return nPosition < m_objText.Text.size() ? m_objText.Text[nPosition] : '\0';
}

}  // namespace GenApi_3_0
