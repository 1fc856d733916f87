// What a node's description says of it, and which nodes stand around it.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "GenApi/NodeImpl.h"
#include "GenApi/NodeMap.h"
#include "GenApi/NumberText.h"
#include "GenApi/Value.h"

namespace GenApi_3_0 {
namespace {

bool IsReadingLink(ELink eLink) {
    switch (eLink) {
        case ELink::Copy:
        case ELink::Invalidator:
        case ELink::Selector:
        case ELink::Overlap:
        case ELink::Bytes:
        case ELink::Cell:
        case ELink::Mention:
            return false;
        default:
            return true;
    }
}

}  // namespace

// Texts. They are seldom asked for, so they are looked up in what the description left each time.

template <class Visitor>
void CNodeImpl::VisitProperties(Visitor visitor) const {
    const NODE_RECORD& objRecord = m_objModel.Nodes[m_nNode];
    for (const PROPERTY& objProperty : m_objModel.PropertiesOf(objRecord)) {
        visitor(objProperty);
    }
    if (objRecord.Kind == ETag::StructEntry) {
        for (const PROPERTY& objProperty : m_objModel.PropertiesOf(m_objModel.Nodes[objRecord.Parent])) {
            visitor(objProperty);
        }
    }
}

const PROPERTY* CNodeImpl::FindProperty(ETag eTag) const {
    const PROPERTY* pFound = nullptr;
    VisitProperties([&pFound, eTag](const PROPERTY& objProperty) {
        if (pFound == nullptr && objProperty.Tag == eTag) {
            pFound = &objProperty;
        }
    });
    return pFound;
}

std::string_view CNodeImpl::TextOf(ETag eTag) const {
    const PROPERTY* pProperty = FindProperty(eTag);
    return pProperty != nullptr ? pProperty->Text : std::string_view();
}

gcstring CNodeImpl::GetName(bool FullQualified) const {
    if (!FullQualified) {
        return gcstring(m_strName);
    }
    return gcstring((GetNameSpace() == Standard ? "Std::" : "Cust::") + std::string(m_strName));
}

ENameSpace CNodeImpl::GetNameSpace() const {
    return m_objModel.Nodes[m_nNode].NameSpace;
}

EVisibility CNodeImpl::GetVisibility() const {
    const AutoLock objLock(m_objContext.Lock());
    return std::max(m_eVisibility, m_eImposedVisibility);
}

void CNodeImpl::ImposeVisibility(EVisibility ImposedVisibility) {
    const AutoLock objLock(m_objContext.Lock());
    m_eImposedVisibility = ImposedVisibility;
}

gcstring CNodeImpl::GetToolTip() const {
    return gcstring(TextOf(ETag::ToolTip));
}

gcstring CNodeImpl::GetDescription() const {
    return gcstring(TextOf(ETag::Description));
}

gcstring CNodeImpl::GetDisplayName() const {
    const std::string_view strText = TextOf(ETag::DisplayName);
    return gcstring(strText.empty() ? m_strName : strText);
}

gcstring CNodeImpl::GetDeviceName() const {
    return m_objContext.DeviceName();
}

gcstring CNodeImpl::GetEventID() const {
    return gcstring(TextOf(ETag::EventID));
}

gcstring CNodeImpl::GetDocuURL() const {
    return gcstring(TextOf(ETag::DocuURL));
}

bool CNodeImpl::IsStreamable() const {
    return TextOf(ETag::Streamable) == "Yes";
}

bool CNodeImpl::IsDeprecated() const {
    return TextOf(ETag::IsDeprecated) == "Yes";
}

EInterfaceType CNodeImpl::GetPrincipalInterfaceType() const {
    return intfIBase;
}

void CNodeImpl::GetPropertyNames(gcstring_vector& PropertyNames) const {
    PropertyNames.clear();
    std::vector<ETag> vecTag;
    VisitProperties([&vecTag](const PROPERTY& objProperty) {
        if (std::find(vecTag.begin(), vecTag.end(), objProperty.Tag) == vecTag.end()) {
            vecTag.push_back(objProperty.Tag);
        }
    });
    for (const ETag eTag : vecTag) {
        PropertyNames.emplace_back(TagName(eTag));
    }
}

bool CNodeImpl::GetProperty(const gcstring& PropertyName, gcstring& ValueStr, gcstring& AttributeStr) const {
    const ETag eTag = FindTag(PropertyName.view());
    std::string strValue;
    std::string strAttribute;
    bool bFound = false;
    VisitProperties([&](const PROPERTY& objProperty) {
        if (objProperty.Tag != eTag || eTag == ETag::Unknown) {
            return;
        }
        strValue.append(bFound ? "\t" : "").append(objProperty.Text);
        strAttribute.append(bFound ? "\t" : "").append(objProperty.Attribute);
        bFound = true;
    });
    ValueStr = strValue;
    AttributeStr = strAttribute;
    return bFound;
}

// Neighbours

INode* CNodeImpl::GetAlias() const {
    const std::string_view strName = TextOf(ETag::pAlias);
    return strName.empty() ? nullptr : GetNodeMap()->GetNode(gcstring(strName));
}

INode* CNodeImpl::GetCastAlias() const {
    const std::string_view strName = TextOf(ETag::pCastAlias);
    return strName.empty() ? nullptr : GetNodeMap()->GetNode(gcstring(strName));
}

bool CNodeImpl::IsFeature() const {
    const auto vecParent = m_objContext.Graph().Parents(m_nNode);
    return std::any_of(vecParent.begin(), vecParent.end(), [](const LINK& p) { return p.Kind == ELink::Feature; });
}

void CNodeImpl::GetChildren(NodeList_t& Children, ELinkType LinkType) const {
    Children.clear();
    if (LinkType == ctParentNodes) {
        GetParents(Children);
        return;
    }
    if (LinkType == ctDependingNodes) {
        const AutoLock objLock(m_objContext.Lock());
        for (const std::uint32_t nNode : m_objContext.DependentsOf(m_nNode)) {
            Children.push_back(m_objContext.NodeAt(nNode));
        }
        return;
    }
    if (LinkType == ctTerminalNodes) {
        CollectTerminals(Children);
        return;
    }
    std::vector<bool> vecIsSeen(m_objModel.Nodes.size());
    for (const LINK& objLink : m_objContext.Graph().Children(m_nNode)) {
        const bool bWanted = LinkType == ctReadingChildren ? IsReadingLink(objLink.Kind)
                             : LinkType == ctWritingChildren
                                 ? objLink.Kind == ELink::Value || objLink.Kind == ELink::Copy
                                 : objLink.Kind == ELink::Invalidator;
        if (bWanted && !vecIsSeen[objLink.Node]) {
            vecIsSeen[objLink.Node] = true;
            Children.push_back(m_objContext.NodeAt(objLink.Node));
        }
    }
}

// What a write ends at.
void CNodeImpl::CollectTerminals(NodeList_t& vecTerminal) const {
    std::vector<std::uint32_t> vecPending{m_nNode};
    std::vector<bool> vecIsSeen(m_objModel.Nodes.size());
    vecIsSeen[m_nNode] = true;
    while (!vecPending.empty()) {
        const std::uint32_t nNode = vecPending.back();
        vecPending.pop_back();
        bool bTerminal = true;
        for (const LINK& objLink : m_objContext.Graph().Children(nNode)) {
            if (objLink.Kind != ELink::Value && objLink.Kind != ELink::Copy) {
                continue;
            }
            bTerminal = false;
            if (!vecIsSeen[objLink.Node]) {
                vecIsSeen[objLink.Node] = true;
                vecPending.push_back(objLink.Node);
            }
        }
        if (bTerminal) {
            vecTerminal.push_back(m_objContext.NodeAt(nNode));
        }
    }
}

void CNodeImpl::GetParents(NodeList_t& Parents) const {
    Parents.clear();
    for (const LINK& objLink : m_objContext.Graph().Parents(m_nNode)) {
        INode* pNode = m_objContext.NodeAt(objLink.Node);
        if (IsReadingLink(objLink.Kind) && (Parents.empty() || Parents.back() != pNode)) {
            Parents.push_back(pNode);
        }
    }
}

INodeMap* CNodeImpl::GetNodeMap() const {
    return m_objContext.NodeMap();
}

bool CNodeImpl::IsSelector() const {
    return m_pSelection != nullptr && !m_pSelection->Selected.empty();
}

void CNodeImpl::GetSelectedFeatures(FeatureList_t& SelectedFeatures) const {
    SelectedFeatures.clear();
    if (m_pSelection != nullptr) {
        AppendValues(m_pSelection->Selected, SelectedFeatures);
    }
}

void CNodeImpl::GetSelectingFeatures(FeatureList_t& SelectingFeatures) const {
    SelectingFeatures.clear();
    if (m_pSelection != nullptr) {
        AppendValues(m_pSelection->Selecting, SelectingFeatures);
    }
}

void CNodeImpl::AppendValues(const std::vector<CNodeImpl*>& vecNode, FeatureList_t& vecValue) {
    for (CNodeImpl* pNode : vecNode) {
        if (auto* pValue = dynamic_cast<IValue*>(pNode)) {
            vecValue.push_back(pValue);
        }
    }
}

}  // namespace GenApi_3_0
