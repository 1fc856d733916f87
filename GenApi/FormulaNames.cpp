#include "GenApi/FormulaNames.h"

#include "GenApi/FormulaLexer.h"
#include "GenApi/FormulaLimits.h"

namespace GenApi_3_0 {

CFormulaNames::CFormulaNames(const FORMULA_SOURCE& objSource) {
    if (objSource.Variables.size() + objSource.Constants.size() + objSource.Expressions.size() > kMaxFormulaNames) {
        ThrowFormulaTextError({{}, objSource.Text}, 0,
                              "more than " + std::to_string(kMaxFormulaNames) + " names are given");
    }
    for (const auto& strName : objSource.Variables) {
        m_mapDeclared.try_emplace(strName,
                                  DECLARED{EFormulaName::Variable, {}});  // a repeated variable is the same one
    }
    Declare(EFormulaName::Constant, objSource.Constants);
    Declare(EFormulaName::Expression, objSource.Expressions);
}

void CFormulaNames::Declare(EFormulaName nKind, const std::vector<FORMULA_DEFINITION>& vecDefinitions) {
    for (const auto& objDefinition : vecDefinitions) {
        if (!m_mapDeclared.try_emplace(objDefinition.Name, DECLARED{nKind, objDefinition.Text}).second) {
            ThrowFormulaTextError({objDefinition.Name, objDefinition.Text}, 0,
                                  "the name \"" + objDefinition.Name + "\" stands for two things");
        }
    }
}

FORMULA_NAME CFormulaNames::Use(std::string_view strName, const FORMULA_TEXT& objText, std::size_t nPosition) {
    if (const auto itUsed = m_mapUsed.find(strName); itUsed != m_mapUsed.end()) {
        return itUsed->second;
    }
    FORMULA_NAME objName{};
    if (const auto itDeclared = m_mapDeclared.find(strName); itDeclared != m_mapDeclared.end()) {
        objName = UseDeclared(itDeclared->first, itDeclared->second);
    } else if (const auto itOwner = m_mapDeclared.find(strName.substr(0, strName.find('.')));
               itOwner != m_mapDeclared.end() && itOwner->second.Kind == EFormulaName::Variable) {
        objName = UseVariable(strName);
    } else if (strName == "E" || strName == "PI") {
        objName = {EFormulaName::Constant, AddLiteral({strName}, objText, nPosition)};
    } else {
        throw CFormulaFault("the name \"" + std::string(strName.substr(0, 80)) +
                            "\" is no variable, Constant or Expression of the formula");
    }
    return m_mapUsed.emplace(strName, objName).first->second;
}

FORMULA_NAME CFormulaNames::UseDeclared(std::string_view strName, const DECLARED& objDeclared) {
    switch (objDeclared.Kind) {
        case EFormulaName::Variable:
            return UseVariable(strName);
        case EFormulaName::Constant:
            return ReadConstant({strName, objDeclared.Text});
        case EFormulaName::Expression:
            break;
    }
    if (m_vecUsedExpressions.size() == kMaxExpressions) {
        throw CFormulaFault("more than " + std::to_string(kMaxExpressions) + " Expressions");
    }
    m_vecUsedExpressions.push_back({strName, objDeclared.Text});
    return {EFormulaName::Expression, m_vecUsedExpressions.size() - 1};
}

FORMULA_NAME CFormulaNames::UseVariable(std::string_view strName) {
    m_vecUsedVariables.emplace_back(strName);
    return {EFormulaName::Variable, m_vecUsedVariables.size() - 1};
}

FORMULA_NAME CFormulaNames::ReadConstant(const FORMULA_TEXT& objText) {
    CountLength(objText.Text);
    CFormulaLexer objLexer(objText);
    bool bNegated = false;
    FORMULA_TOKEN objToken = objLexer.Next();
    for (; objToken.Kind == EFormulaToken::Minus || objToken.Kind == EFormulaToken::Plus; objToken = objLexer.Next()) {
        bNegated ^= objToken.Kind == EFormulaToken::Minus;
    }
    if (objToken.Kind != EFormulaToken::Number || objLexer.Next().Kind != EFormulaToken::End) {
        ThrowFormulaTextError(objText, objToken.Position, "a Constant that isn't a number");
    }
    return {EFormulaName::Constant, AddLiteral({objToken.Text, bNegated}, objText, objToken.Position), bNegated};
}

std::size_t CFormulaNames::AddLiteral(const FORMULA_LITERAL& objLiteral, const FORMULA_TEXT& objText,
                                      std::size_t nPosition) {
    m_vecLiterals.push_back({objLiteral, objText, nPosition});
    return m_vecLiterals.size() - 1;
}

void CFormulaNames::CountLength(std::string_view strText) {
    if (strText.size() > kMaxFormulaLength - m_nLength) {
        throw CFormulaFault("the formula's texts are longer than " + std::to_string(kMaxFormulaLength) + " bytes");
    }
    m_nLength += strText.size();
}

}  // namespace GenApi_3_0
