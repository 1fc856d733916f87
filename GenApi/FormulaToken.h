#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace GenApi_3_0 {

enum class EFormulaToken : std::uint8_t {
    End,
    Number,
    Name,
    OpenParenthesis,
    CloseParenthesis,
    Comma,
    Question,
    Colon,
    Or,
    And,
    BitOr,
    BitXor,
    BitAnd,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessOrEqual,
    GreaterOrEqual,
    ShiftLeft,
    ShiftRight,
    Plus,
    Minus,
    Times,
    Divide,
    Modulo,
    Power,
    Complement,
    Not,
};

struct FORMULA_TOKEN {
    EFormulaToken Kind = EFormulaToken::End;
    std::size_t Position = 0;  ///< from 0
    std::string_view Text;
};

}  // namespace GenApi_3_0
