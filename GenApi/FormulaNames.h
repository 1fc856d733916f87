#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "GenApi/FormulaError.h"
#include "GenApi/FormulaNumber.h"
#include "GenApi/FormulaSource.h"

namespace GenApi_3_0 {

enum class EFormulaName : std::uint8_t { Variable, Constant, Expression };

/// What a name stands for.
struct FORMULA_NAME {
    EFormulaName Kind;
    std::size_t Index;       ///< into the used variables, literals or used Expressions
    bool IsNegated = false;  ///< a Constant whose text begins with a minus
};

/// A literal with the place that an error about it names.
struct FORMULA_LITERAL_USE {
    FORMULA_LITERAL Literal;
    FORMULA_TEXT Text;
    std::size_t Position;
};

/// The names that a formula may use, and the lists of those that it does use, in the order of their first use.
///
/// Lives as long as one compilation; keeps views of the source.
class CFormulaNames {
public:
    /// @throws GenICam_3_0::InvalidArgumentException  a name that stands for two things, or too many names
    explicit CFormulaNames(const FORMULA_SOURCE& objSource);

    /// Notes the use of a name in a formula.
    /// @throws CFormulaFault  the name is unknown, or too many Expressions are in use
    /// @throws GenICam_3_0::InvalidArgumentException  the name is a Constant whose text isn't a number
    FORMULA_NAME Use(std::string_view strName, const FORMULA_TEXT& objText, std::size_t nPosition);

    /// Notes a literal. @return  its index
    std::size_t AddLiteral(const FORMULA_LITERAL& objLiteral, const FORMULA_TEXT& objText, std::size_t nPosition);

    const std::vector<std::string>& GetUsedVariables() const { return m_vecUsedVariables; }
    const std::vector<FORMULA_TEXT>& GetUsedExpressions() const { return m_vecUsedExpressions; }
    const std::vector<FORMULA_LITERAL_USE>& GetLiterals() const { return m_vecLiterals; }

    /// Counts a text that has come into use. @throws CFormulaFault  kMaxFormulaLength is reached
    void CountLength(std::string_view strText);

private:
    struct DECLARED {
        EFormulaName Kind;
        std::string_view Text;  // of a Constant or an Expression
    };

    void Declare(EFormulaName nKind, const std::vector<FORMULA_DEFINITION>& vecDefinitions);
    FORMULA_NAME UseVariable(std::string_view strName);
    FORMULA_NAME UseDeclared(std::string_view strName, const DECLARED& objDeclared);
    FORMULA_NAME ReadConstant(const FORMULA_TEXT& objText);

    std::unordered_map<std::string_view, DECLARED> m_mapDeclared;
    std::unordered_map<std::string_view, FORMULA_NAME> m_mapUsed;
    std::vector<std::string> m_vecUsedVariables;
    std::vector<FORMULA_TEXT> m_vecUsedExpressions;
    std::vector<FORMULA_LITERAL_USE> m_vecLiterals;
    std::size_t m_nLength = 0;
};

}  // namespace GenApi_3_0
