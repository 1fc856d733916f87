#include "GenApi/FormulaInputs.h"

#include <algorithm>

#include "GenApi/AccessMode.h"
#include "GenApi/FormulaSource.h"
#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"
#include "GenApi/PropertyReader.h"

namespace GenApi_3_0 {
namespace {

// `VAR.Min` and its like; what stands behind other dots is no limit.
bool NamesLimit(std::string_view strMember) {
    return strMember == "Min" || strMember == "Max" || strMember == "Inc";
}

bool AsksForLimits(std::string_view strFormula) {
    for (const std::string_view strMember : {".Min", ".Max", ".Inc"}) {
        if (strFormula.find(strMember) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

std::string_view MemberOf(std::string_view strName) {
    const std::size_t nDot = strName.find('.');
    return nDot == std::string_view::npos ? std::string_view() : strName.substr(nDot + 1);
}

}  // namespace

bool CFormulaInputs::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    switch (objProperty.Tag) {
        case ETag::pVariable: {
            if (objProperty.Attribute.empty()) {
                objReader.Fail(objProperty, "has no Name");
            }
            const ELink eLink = NamesLimit(MemberOf(objProperty.Attribute)) ? ELink::Member : ELink::Input;
            m_vecVariable.push_back({objProperty.Attribute, objReader.Node(objProperty, eLink, EWanted::Number)});
            return true;
        }
        case ETag::Constant:
            m_vecConstant.push_back({objProperty.Attribute, objProperty.Text});
            return true;
        case ETag::Expression:
            m_vecExpression.push_back({objProperty.Attribute, objProperty.Text});
            return true;
        default:
            return false;
    }
}

void CFormulaInputs::LinkLimits(std::string_view strFormula, CPropertyReader& objReader) const {
    const bool bAsks =
        AsksForLimits(strFormula) || std::any_of(m_vecExpression.begin(), m_vecExpression.end(),
                                                 [](const DEFINITION& p) { return AsksForLimits(p.Text); });
    if (!bAsks) {
        return;
    }
    for (const VARIABLE& objVariable : m_vecVariable) {
        objReader.NoteLink(objVariable.pNode->Number(), ELink::Member);
    }
}

bool CFormulaInputs::AreReadable() const {
    return std::all_of(m_vecVariable.begin(), m_vecVariable.end(),
                       [](const VARIABLE& p) { return IsReadable(p.pNode->AccessMode()); });
}

void CFormulaInputs::Describe(FORMULA_SOURCE& objSource) const {
    for (const VARIABLE& objVariable : m_vecVariable) {
        objSource.Variables.emplace_back(objVariable.Name);
    }
    for (const DEFINITION& objConstant : m_vecConstant) {
        objSource.Constants.push_back({std::string(objConstant.Name), std::string(objConstant.Text)});
    }
    for (const DEFINITION& objExpression : m_vecExpression) {
        objSource.Expressions.push_back({std::string(objExpression.Name), std::string(objExpression.Text)});
    }
}

CFormulaInputs::INPUT CFormulaInputs::Find(const CNodeImpl& objOwner, std::string_view strName) const {
    const auto Named = [this](std::string_view str) {
        return std::find_if(m_vecVariable.begin(), m_vecVariable.end(),
                            [str](const VARIABLE& p) { return p.Name == str; });
    };
    auto it = Named(strName);
    if (it == m_vecVariable.end()) {
        it = Named(strName.substr(0, strName.find('.')));
    }
    if (it == m_vecVariable.end()) {
        GenICam_3_0::Throw<GenICam_3_0::PropertyException>(objOwner.Subject() + ": its formula asks for '" +
                                                           std::string(strName) + "', which is none of its variables");
    }
    const std::string_view strMember = MemberOf(strName);
    if (strMember.empty() || strMember == "Value" || strMember == "Enum") {
        return {it->pNode, EMember::Value, 0};
    }
    if (NamesLimit(strMember)) {
        return {it->pNode, strMember == "Min" ? EMember::Min : strMember == "Max" ? EMember::Max : EMember::Inc, 0};
    }
    for (const std::string_view strPrefix : {"Entry.", "Enum."}) {
        if (strMember.starts_with(strPrefix)) {
            return {it->pNode, EMember::Constant, it->pNode->EntryValue(strMember.substr(strPrefix.size()))};
        }
    }
    // A dot may also just be a part of a variable's name.
    if (it->Name == strName) {
        return {it->pNode, EMember::Value, 0};
    }
    GenICam_3_0::Throw<GenICam_3_0::PropertyException>(objOwner.Subject() + ": its formula asks for '" +
                                                       std::string(strName) + "', and nodes have no such member");
}

std::int64_t CFormulaInputs::ReadInt(const INPUT& objInput, bool bIgnoreCache) {
    switch (objInput.Member) {
        case EMember::Min:
            return objInput.pNode->MinInt();
        case EMember::Max:
            return objInput.pNode->MaxInt();
        case EMember::Inc:
            return objInput.pNode->IncInt();
        case EMember::Constant:
            return objInput.Constant;
        case EMember::Value:
            break;
    }
    return objInput.pNode->ReadInt(bIgnoreCache);
}

double CFormulaInputs::ReadFloat(const INPUT& objInput, bool bIgnoreCache) {
    switch (objInput.Member) {
        case EMember::Min:
            return objInput.pNode->MinFloat();
        case EMember::Max:
            return objInput.pNode->MaxFloat();
        case EMember::Inc: {
            const double fInc = objInput.pNode->IncFloat();
            return fInc > 0 ? fInc : static_cast<double>(objInput.pNode->IncInt());
        }
        case EMember::Constant:
            return static_cast<double>(objInput.Constant);
        case EMember::Value:
            break;
    }
    return objInput.pNode->ReadFloat(bIgnoreCache);
}

}  // namespace GenApi_3_0
