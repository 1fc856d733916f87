#include "GenApi/NodeLoader.h"

#include <string>
#include <utility>

#include "GenApi/BooleanNode.h"
#include "GenApi/BytesValue.h"
#include "GenApi/CategoryNode.h"
#include "GenApi/CircleCheck.h"
#include "GenApi/CommandNode.h"
#include "GenApi/ConverterNode.h"
#include "GenApi/EnumEntryNode.h"
#include "GenApi/EnumerationNode.h"
#include "GenApi/FloatNode.h"
#include "GenApi/FloatRegNode.h"
#include "GenApi/GCException.h"
#include "GenApi/IntRegNode.h"
#include "GenApi/IntegerNode.h"
#include "GenApi/NodeMapLimits.h"
#include "GenApi/PortNode.h"
#include "GenApi/PropertyReader.h"
#include "GenApi/RegisterSharing.h"
#include "GenApi/StringNode.h"
#include "GenApi/StringRegNode.h"
#include "GenApi/SwissKnifeNode.h"

namespace GenApi_3_0 {

using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

std::vector<std::unique_ptr<CNodeImpl>> CNodeLoader::Load() {
    m_objContext.SetNodeCount(m_objModel.Nodes.size());
    MakeNodes();
    ApplyProperties();
    return std::move(m_vecOwned);
}

std::unique_ptr<CNodeImpl> CNodeLoader::MakeNode(std::uint32_t nNode) const {
    const auto Make = [&]<class T>(std::type_identity<T>) -> std::unique_ptr<CNodeImpl> {
        return std::make_unique<T>(m_objContext, m_objModel, nNode);
    };
    switch (m_objModel.Nodes[nNode].Kind) {
        case ETag::StructReg:
            return nullptr;
        case ETag::Category:
            return Make(std::type_identity<CCategoryNode>{});
        case ETag::Integer:
            return Make(std::type_identity<CIntegerNode>{});
        case ETag::IntReg:
        case ETag::MaskedIntReg:
        case ETag::StructEntry:
            return Make(std::type_identity<CIntRegNode>{});
        case ETag::Boolean:
            return Make(std::type_identity<CBooleanNode>{});
        case ETag::Command:
            return Make(std::type_identity<CCommandNode>{});
        case ETag::Enumeration:
            return Make(std::type_identity<CEnumerationNode>{});
        case ETag::EnumEntry:
            return Make(std::type_identity<CEnumEntryNode>{});
        case ETag::Float:
            return Make(std::type_identity<CFloatNode>{});
        case ETag::FloatReg:
            return Make(std::type_identity<CFloatRegNode>{});
        case ETag::String:
            return Make(std::type_identity<CStringNode>{});
        case ETag::StringReg:
            return Make(std::type_identity<CStringRegNode>{});
        case ETag::Register:
            return Make(std::type_identity<CBytesNode>{});
        case ETag::Converter:
            return Make(std::type_identity<CConverterNode>{});
        case ETag::IntConverter:
            return Make(std::type_identity<CIntConverterNode>{});
        case ETag::SwissKnife:
            return Make(std::type_identity<CSwissKnifeNode>{});
        case ETag::IntSwissKnife:
            return Make(std::type_identity<CIntSwissKnifeNode>{});
        case ETag::Port:
            return Make(std::type_identity<CPortNode>{});
        default:
            return Make(std::type_identity<CNodeImpl>{});
    }
}

void CNodeLoader::MakeNodes() {
    m_vecOwned.reserve(m_objModel.Nodes.size());
    m_vecNode.reserve(m_objModel.Nodes.size());
    for (std::uint32_t i = 0; i < m_objModel.Nodes.size(); ++i) {
        std::unique_ptr<CNodeImpl> pNode = MakeNode(i);
        const NODE_RECORD& objRecord = m_objModel.Nodes[i];
        if (pNode != nullptr && m_objNames.Insert(objRecord.Name, i) != i) {
            Throw<RuntimeException>("The description has two nodes of the name '" + std::string(objRecord.Name) + "'");
        }
        if (objRecord.Kind == ETag::EnumEntry) {
            static_cast<CEnumerationNode*>(m_vecNode[objRecord.Parent])
                ->AddEntry(static_cast<CEnumEntryNode*>(pNode.get()));
        }
        m_objContext.SetNode(i, pNode.get());
        m_vecNode.push_back(pNode.get());
        m_vecOwned.push_back(std::move(pNode));
    }
}

void CNodeLoader::ApplyProperties() {
    CRegisterSharing objSharing;
    CPropertyReader objReader(m_strText, m_objModel, m_objNames, m_vecNode, m_objContext, objSharing);
    m_objContext.Graph().Reserve(m_objModel.Properties.size());
    std::size_t nApplied = 0;
    for (std::uint32_t i = 0; i < m_vecNode.size(); ++i) {
        if (m_vecNode[i] == nullptr) {
            continue;
        }
        objReader.Enter(i);
        const auto ApplyAll = [&](const NODE_RECORD& objRecord) {
            nApplied += objRecord.PropertyCount;
            if (nApplied > kMaxAppliedProperties) {
                Throw<RuntimeException>("The nodes of the description have more than " +
                                        std::to_string(kMaxAppliedProperties) + " properties");
            }
            for (const PROPERTY& objProperty : m_objModel.PropertiesOf(objRecord)) {
                // An empty element says no more than a missing one; only nested nodes have no text of their own.
                if (!objProperty.Text.empty() || objProperty.Nested != kNoNode) {
                    m_vecNode[i]->Apply(objProperty, objReader);
                }
            }
        };
        const NODE_RECORD& objRecord = m_objModel.Nodes[i];
        if (objRecord.Kind == ETag::StructEntry) {
            ApplyAll(m_objModel.Nodes[objRecord.Parent]);
        }
        ApplyAll(objRecord);
    }
    for (std::uint32_t i = 0; i < m_vecNode.size(); ++i) {
        if (m_vecNode[i] != nullptr) {
            objReader.Enter(i);
            m_vecNode[i]->Complete(objReader);
        }
    }
    objSharing.Link(m_objContext.Graph());
    m_objContext.Graph().Build(m_vecNode.size());
    CheckCircles(m_objModel, m_objContext.Graph());
}

}  // namespace GenApi_3_0
