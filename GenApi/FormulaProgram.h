#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace GenApi_3_0 {

/// What one step of a compiled formula does to the stack of values. Operand is explained where there is one.
enum class EFormulaOperation : std::uint8_t {
    // Values
    PushLiteral,     ///< Operand: index into the literals
    PushVariable,    ///< Operand: index into VariableNames
    PushExpression,  ///< Operand: index into Expressions; runs it unless this evaluation has done so already
    // Flow
    Jump,         ///< Operand: next step
    JumpIfFalse,  ///< takes the condition off; Operand: next step if it is 0
    AndElseJump,  ///< 0 stays and jumps to Operand; anything else is taken off
    OrElseJump,   ///< anything but 0 becomes 1 and jumps to Operand; 0 is taken off
    Return,       ///< the end of the formula or of an Expression
    // One operand
    ToBool,
    Not,
    Complement,
    Negate,
    Absolute,
    Sign,
    SquareRoot,
    Truncate,
    Floor,
    Ceil,
    Round,
    Sine,
    Cosine,
    Tangent,
    ArcSine,
    ArcCosine,
    ArcTangent,
    Exponential,
    NaturalLogarithm,
    DecimalLogarithm,
    // Two operands
    RoundTo,
    Power,
    Multiply,
    Divide,
    Modulo,
    Add,
    Subtract,
    ShiftLeft,
    ShiftRight,
    Less,
    Greater,
    LessOrEqual,
    GreaterOrEqual,
    Equal,
    NotEqual,
    BitAnd,
    BitXor,
    BitOr,
};

struct FORMULA_STEP {
    EFormulaOperation Operation;
    std::uint32_t Operand;   ///< see EFormulaOperation, else 0
    std::uint32_t Position;  ///< of the token in its text, from 0
};

/// Where the steps of an Expression begin. They end with a Return.
struct FORMULA_SUBPROGRAM {
    std::string Name;
    std::uint32_t FirstStep;
};

/// The steps of a compiled formula: the main text's from step 0 to its Return, then those of each Expression that is
/// needed. The compiler guarantees that every operand is a valid index, that the Expressions lead in no circle and that
/// no run needs more values at once than kMaxValuesAtOnce; the evaluator relies on it.
struct FORMULA_PROGRAM {
    std::vector<FORMULA_STEP> Steps;
    std::vector<std::string> VariableNames;
    std::vector<FORMULA_SUBPROGRAM> Expressions;
};

}  // namespace GenApi_3_0
