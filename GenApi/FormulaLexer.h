#pragma once

#include "GenApi/FormulaError.h"
#include "GenApi/FormulaToken.h"

namespace GenApi_3_0 {

/// Cuts one text of a formula into tokens, left to right. The tokens are views of the text, which must outlive them.
class CFormulaLexer {
public:
    explicit CFormulaLexer(const FORMULA_TEXT& objText) : m_objText(objText) {}

    /// The next token, or End again and again behind the last.
    /// @throws GenICam_3_0::InvalidArgumentException  a character that starts no token, a malformed number
    FORMULA_TOKEN Next();

    /// Whether the next character that isn't white space is an opening parenthesis. Nothing is taken.
    bool IsCallNext() const;

private:
    std::size_t SkipSpace(std::size_t nPosition) const;
    std::size_t EndOfNumber(std::size_t nStart) const;
    std::size_t EndOfName(std::size_t nStart) const;
    char At(std::size_t nPosition) const;

    FORMULA_TEXT m_objText;
    std::size_t m_nPosition = 0;
};

}  // namespace GenApi_3_0
