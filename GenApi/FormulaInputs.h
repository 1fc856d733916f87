#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "GenApi/DescriptionModel.h"
#include "GenApi/NodeImpl.h"

namespace GenApi_3_0 {

struct FORMULA_SOURCE;

/// What the formulas of one node may refer to: the nodes of its pVariable elements, its Constants and its Expressions.
/// A part of its node, filled while loading.
class CFormulaInputs {
public:
    /// What of a node a name in a formula means: the node itself, or VAR.Min and the like.
    enum class EMember : std::uint8_t { Value, Min, Max, Inc, Constant };
    struct INPUT {
        CNodeImpl* pNode = nullptr;
        EMember Member = EMember::Value;
        std::int64_t Constant = 0;  ///< an entry's value
    };

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader);
    /// Once all are there: notes whether the formula hangs on limits of the variables too.
    void LinkLimits(std::string_view strFormula, CPropertyReader& objReader) const;

    /// Whether all variables can be read.
    bool AreReadable() const;
    /// Everything but the text.
    void Describe(FORMULA_SOURCE& objSource) const;
    /// @param strName  one of the names that a compiled formula asks for
    /// @throws PropertyException  the member isn't one that a node has
    INPUT Find(const CNodeImpl& objOwner, std::string_view strName) const;

    static std::int64_t ReadInt(const INPUT& objInput, bool bIgnoreCache);
    static double ReadFloat(const INPUT& objInput, bool bIgnoreCache);

private:
    struct VARIABLE {
        std::string_view Name;
        CNodeImpl* pNode;
    };
    struct DEFINITION {
        std::string_view Name;
        std::string_view Text;
    };

    std::vector<VARIABLE> m_vecVariable;
    std::vector<DEFINITION> m_vecConstant;
    std::vector<DEFINITION> m_vecExpression;
};

}  // namespace GenApi_3_0
