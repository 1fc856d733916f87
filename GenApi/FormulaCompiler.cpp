#include "GenApi/FormulaCompiler.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "GenApi/FormulaError.h"
#include "GenApi/FormulaLimits.h"
#include "GenApi/FormulaParser.h"

namespace GenApi_3_0 {

namespace {

/// What one text refers to, and the values that wait at most: by itself, and with all that it refers to.
struct TEXT_NODE {
    enum class EState : std::uint8_t { New, Entered, Done };

    std::vector<FORMULA_REFERENCE> References;
    std::size_t MostWaiting = 0;
    std::size_t NextReference = 0;
    EState State = EState::New;
};

/// Walks from the formula down all references, with a path of its own in place of recursion. The last node is the
/// formula, each other the Expression of its index.
class CReferenceCheck {
public:
    CReferenceCheck(std::vector<TEXT_NODE>& vecNodes, const std::vector<FORMULA_TEXT>& vecExpressions)
        : m_vecNodes(vecNodes), m_vecExpressions(vecExpressions) {}

    void Check() {
        Enter(m_vecNodes.size() - 1);
        while (!m_vecPath.empty()) {
            TEXT_NODE& objNode = m_vecNodes[m_vecPath.back()];
            if (objNode.NextReference < objNode.References.size()) {
                Enter(objNode.References[objNode.NextReference++].Expression);
            } else {
                Leave(objNode);
            }
        }
    }

private:
    void Enter(std::size_t nNode) {
        TEXT_NODE& objNode = m_vecNodes[nNode];
        if (objNode.State == TEXT_NODE::EState::Entered) {
            ThrowCircle(nNode);
        }
        if (objNode.State == TEXT_NODE::EState::New) {
            objNode.State = TEXT_NODE::EState::Entered;
            m_vecPath.push_back(nNode);
        }
    }

    void Leave(TEXT_NODE& objNode) {
        for (const auto& objReference : objNode.References) {
            objNode.MostWaiting =
                std::max(objNode.MostWaiting, objReference.Waiting + m_vecNodes[objReference.Expression].MostWaiting);
        }
        objNode.State = TEXT_NODE::EState::Done;
        m_vecPath.pop_back();
    }

    [[noreturn]] void ThrowCircle(std::size_t nNode) const {
        constexpr std::size_t kMaxNamed = 16;  // a message of thousands of names helps nobody
        std::string strPath;
        auto itNode = std::find(m_vecPath.begin(), m_vecPath.end(), nNode);
        for (std::size_t nNamed = 0; itNode != m_vecPath.end() && nNamed < kMaxNamed; ++itNode, ++nNamed) {
            strPath += std::string(m_vecExpressions[*itNode].Name.substr(0, 80)) + " -> ";
        }
        strPath += itNode == m_vecPath.end() ? "" : "... -> ";
        ThrowFormulaCircle(strPath + std::string(m_vecExpressions[nNode].Name.substr(0, 80)));
    }

    std::vector<TEXT_NODE>& m_vecNodes;
    const std::vector<FORMULA_TEXT>& m_vecExpressions;
    std::vector<std::size_t> m_vecPath;
};

TEXT_NODE ParseText(const FORMULA_TEXT& objText, CFormulaNames& objNames, FORMULA_PROGRAM& objProgram) {
    CFormulaParser objParser(objText, objNames, objProgram.Steps);
    objParser.Parse();
    return {objParser.GetReferences(), objParser.GetMostWaiting()};
}

}  // namespace

COMPILED_FORMULA CompileFormula(const FORMULA_SOURCE& objSource) {
    const FORMULA_TEXT objMain{{}, objSource.Text};
    CFormulaNames objNames(objSource);
    FORMULA_PROGRAM objProgram;
    TEXT_NODE objMainNode = ParseText(objMain, objNames, objProgram);

    std::vector<TEXT_NODE> vecNodes;
    // The list grows while Expressions refer to further ones.
    for (std::size_t i = 0; i < objNames.GetUsedExpressions().size(); ++i) {
        const FORMULA_TEXT objText = objNames.GetUsedExpressions()[i];
        objProgram.Expressions.push_back(
            {std::string(objText.Name), static_cast<std::uint32_t>(objProgram.Steps.size())});
        vecNodes.push_back(ParseText(objText, objNames, objProgram));
    }
    vecNodes.push_back(std::move(objMainNode));
    CReferenceCheck(vecNodes, objNames.GetUsedExpressions()).Check();
    if (vecNodes.back().MostWaiting > kMaxValuesAtOnce) {
        ThrowFormulaTextError(objMain, 0,
                              "more than " + std::to_string(kMaxValuesAtOnce) + " values wait for their operators");
    }
    objProgram.VariableNames = objNames.GetUsedVariables();
    return {std::move(objProgram), objNames.GetLiterals()};
}

}  // namespace GenApi_3_0
