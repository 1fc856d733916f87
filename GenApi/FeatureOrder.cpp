#include "GenApi/FeatureOrder.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "GenApi/Category.h"
#include "GenApi/NodeImpl.h"
#include "GenApi/NodeMap.h"

namespace GenApi_3_0 {
namespace {

/// For each feature the numbers of those that go before it.
using NeedVector = std::vector<std::vector<std::uint32_t>>;

bool HasStreamableValue(const INode& objNode) {
    switch (objNode.GetPrincipalInterfaceType()) {
        case intfIInteger:
        case intfIBoolean:
        case intfIFloat:
        case intfIString:
        case intfIRegister:
        case intfIEnumeration:
            return objNode.IsStreamable();
        default:
            return false;
    }
}

/// Collects the streamable features, each once.
class CFeatureCollector {
public:
    explicit CFeatureCollector(const INodeMap& objNodeMap) {
        WalkCategories(objNodeMap.GetNode("Root"));
        NodeList_t vecNode;
        objNodeMap.GetNodes(vecNode);
        for (INode* pNode : vecNode) {
            Take(pNode);
        }
    }

    std::vector<IValue*> Features() && { return std::move(m_vecFeature); }

private:
    // Categories may hold each other in a circle and be nested deeper than the stack.
    void WalkCategories(INode* pRoot) {
        std::vector<FeatureList_t> vecPending;  // what is left of each level, the next one last
        Open(dynamic_cast<ICategory*>(pRoot), vecPending);
        while (!vecPending.empty()) {
            if (vecPending.back().empty()) {
                vecPending.pop_back();
                continue;
            }
            IValue* pValue = vecPending.back().back();
            vecPending.back().pop_back();
            if (Take(pValue->GetNode())) {
                Open(dynamic_cast<ICategory*>(pValue), vecPending);
            }
        }
    }

    static void Open(const ICategory* pCategory, std::vector<FeatureList_t>& vecPending) {
        if (pCategory != nullptr) {
            pCategory->GetFeatures(vecPending.emplace_back());
            std::reverse(vecPending.back().begin(), vecPending.back().end());
        }
    }

    /// @return false if it was there already
    bool Take(INode* pNode) {
        if (pNode == nullptr || !m_setSeen.insert(pNode).second) {
            return false;
        }
        if (HasStreamableValue(*pNode)) {
            if (auto* pValue = dynamic_cast<IValue*>(pNode)) {
                m_vecFeature.push_back(pValue);
            }
        }
        return true;
    }

    std::unordered_set<INode*> m_setSeen;
    std::vector<IValue*> m_vecFeature;
};

/// Finds out which features change which. Straight on the graph, since the work has to be counted link by link: a
/// description can make few nodes refer to each other in very many ways.
class CNeedFinder {
public:
    explicit CNeedFinder(const std::vector<IValue*>& vecFeature) {
        for (IValue* pFeature : vecFeature) {
            m_vecNode.push_back(dynamic_cast<CNodeImpl*>(pFeature->GetNode()));
            if (m_vecNode.back() != nullptr) {
                m_mapFeature.emplace(m_vecNode.back()->Number(), static_cast<std::uint32_t>(m_vecNode.size() - 1));
            }
        }
    }

    NeedVector Find() {
        NeedVector vecNeeds(m_vecNode.size());
        for (std::uint32_t nFeature = 0; nFeature < m_vecNode.size(); ++nFeature) {
            if (m_vecNode[nFeature] != nullptr) {
                AddNeeds(nFeature, vecNeeds);
            }
        }
        return vecNeeds;
    }

private:
    void AddNeeds(std::uint32_t nFeature, NeedVector& vecNeeds) {
        CNodeContext& objContext = m_vecNode[nFeature]->Context();
        // What a write ends at is what others depend on, as with several features on one register.
        for (const std::uint32_t nTerminal : TerminalsOf(*m_vecNode[nFeature])) {
            if (m_nSteps > kMaxOrderingSteps) {
                return;
            }
            for (const std::uint32_t nReached : objContext.DependentsOf(nTerminal)) {
                m_nSteps += 1 + objContext.Graph().Parents(nReached).size();
                const auto it = m_mapFeature.find(nReached);
                if (it == m_mapFeature.end() || it->second == nFeature) {
                    continue;
                }
                std::vector<std::uint32_t>& vecNeed = vecNeeds[it->second];
                if (vecNeed.empty() || vecNeed.back() != nFeature) {
                    vecNeed.push_back(nFeature);
                }
            }
        }
    }

    std::vector<std::uint32_t> TerminalsOf(const CNodeImpl& objNode) {
        const CDependencyGraph& objGraph = objNode.Context().Graph();
        std::vector<std::uint32_t> vecTerminal;
        std::vector<std::uint32_t> vecPending{objNode.Number()};
        std::unordered_set<std::uint32_t> setSeen{objNode.Number()};
        while (!vecPending.empty() && m_nSteps <= kMaxOrderingSteps) {
            const std::uint32_t nNode = vecPending.back();
            vecPending.pop_back();
            bool bTerminal = true;
            for (const LINK& objLink : objGraph.Children(nNode)) {
                ++m_nSteps;
                if (objLink.Kind == ELink::Value || objLink.Kind == ELink::Copy) {
                    bTerminal = false;
                    if (setSeen.insert(objLink.Node).second) {
                        vecPending.push_back(objLink.Node);
                    }
                }
            }
            if (bTerminal) {
                vecTerminal.push_back(nNode);
            }
        }
        return vecTerminal;
    }

    std::vector<CNodeImpl*> m_vecNode;
    std::unordered_map<std::uint32_t, std::uint32_t> m_mapFeature;  // by the node's number
    std::size_t m_nSteps = 0;
};

/// Tarjan's search for the groups of features that need each other, which finds each group behind all that it needs.
class CNeedSorter {
public:
    explicit CNeedSorter(const NeedVector& vecNeeds) : m_vecNeeds(vecNeeds), m_vecState(vecNeeds.size()) {
        for (std::uint32_t nFeature = 0; nFeature < vecNeeds.size(); ++nFeature) {
            if (m_vecState[nFeature].Index == 0) {
                Search(nFeature);
            }
        }
    }

    std::vector<std::uint32_t> Order() && { return std::move(m_vecOrder); }

private:
    struct STATE {
        std::uint32_t Index = 0;   // of its discovery, from 1
        std::uint32_t Lowest = 0;  // the lowest index that it leads to within its group
        std::size_t NextNeed = 0;
        bool IsOpen = false;  // found, its group not yet complete
    };

    void Search(std::uint32_t nRoot) {
        std::vector<std::uint32_t> vecPath;
        Enter(nRoot, vecPath);
        while (!vecPath.empty()) {
            const std::uint32_t nFeature = vecPath.back();
            STATE& objState = m_vecState[nFeature];
            if (objState.NextNeed == m_vecNeeds[nFeature].size()) {
                vecPath.pop_back();
                Leave(nFeature, vecPath);
                continue;
            }
            const std::uint32_t nNeed = m_vecNeeds[nFeature][objState.NextNeed++];
            if (m_vecState[nNeed].Index == 0) {
                Enter(nNeed, vecPath);
            } else if (m_vecState[nNeed].IsOpen) {
                objState.Lowest = std::min(objState.Lowest, m_vecState[nNeed].Index);
            }
        }
    }

    void Enter(std::uint32_t nFeature, std::vector<std::uint32_t>& vecPath) {
        ++m_nIndex;
        m_vecState[nFeature] = {m_nIndex, m_nIndex, 0, true};
        m_vecOpen.push_back(nFeature);
        vecPath.push_back(nFeature);
    }

    void Leave(std::uint32_t nFeature, const std::vector<std::uint32_t>& vecPath) {
        const STATE& objState = m_vecState[nFeature];
        if (!vecPath.empty()) {
            STATE& objCaller = m_vecState[vecPath.back()];
            objCaller.Lowest = std::min(objCaller.Lowest, objState.Lowest);
        }
        if (objState.Lowest != objState.Index) {
            return;
        }
        const auto itFirst = std::find(m_vecOpen.rbegin(), m_vecOpen.rend(), nFeature).base() - 1;
        std::sort(itFirst, m_vecOpen.end());
        for (auto it = itFirst; it != m_vecOpen.end(); ++it) {
            m_vecState[*it].IsOpen = false;
            m_vecOrder.push_back(*it);
        }
        m_vecOpen.erase(itFirst, m_vecOpen.end());
    }

    const NeedVector& m_vecNeeds;
    std::vector<STATE> m_vecState;
    std::uint32_t m_nIndex = 0;
    std::vector<std::uint32_t> m_vecOpen;
    std::vector<std::uint32_t> m_vecOrder;
};

}  // namespace

std::vector<IValue*> OrderStreamableFeatures(const INodeMap& objNodeMap) {
    const std::vector<IValue*> vecFeature = CFeatureCollector(objNodeMap).Features();
    std::vector<IValue*> vecOrdered;
    vecOrdered.reserve(vecFeature.size());
    for (const std::uint32_t nFeature : CNeedSorter(CNeedFinder(vecFeature).Find()).Order()) {
        vecOrdered.push_back(vecFeature[nFeature]);
    }
    return vecOrdered;
}

}  // namespace GenApi_3_0
