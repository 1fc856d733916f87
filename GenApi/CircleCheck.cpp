#include "GenApi/CircleCheck.h"

#include <algorithm>
#include <string>
#include <vector>

#include "GenApi/GCException.h"
#include "GenApi/NodeMapLimits.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

// Longer circles are named by their first nodes.
constexpr std::size_t kMaxNamed = 8;

bool MakesValue(ELink eLink) {
    return eLink == ELink::Value || eLink == ELink::Input || eLink == ELink::Port || eLink == ELink::Copy;
}

class CCircleCheck {
public:
    CCircleCheck(const DESCRIPTION_MODEL& objModel, const CDependencyGraph& objGraph)
        : m_objModel(objModel), m_objGraph(objGraph), m_vecHeight(objModel.Nodes.size(), kUnknown) {}

    void Run() {
        for (std::uint32_t i = 0; i < m_vecHeight.size(); ++i) {
            HeightOf(i);
        }
    }

private:
    static constexpr std::uint16_t kUnknown = 0xFFFF;
    static constexpr std::uint16_t kOnPath = 0xFFFE;

    /// The length of the longest chain below a node. The recursion is no deeper than the longest chain allowed.
    unsigned HeightOf(std::uint32_t nNode) {
        std::uint16_t& nHeight = m_vecHeight[nNode];
        if (nHeight == kOnPath) {
            ThrowCircle(nNode);
        }
        if (nHeight != kUnknown) {
            return nHeight;
        }
        nHeight = kOnPath;
        m_vecPath.push_back(nNode);
        unsigned nBelow = 0;
        for (const LINK& objLink : m_objGraph.Children(nNode)) {
            if (MakesValue(objLink.Kind)) {
                CheckDepth(static_cast<unsigned>(m_vecPath.size()));
                nBelow = std::max(nBelow, HeightOf(objLink.Node) + 1);
            }
        }
        CheckDepth(nBelow);
        m_vecPath.pop_back();
        nHeight = static_cast<std::uint16_t>(nBelow);
        return nBelow;
    }

    void CheckDepth(unsigned nDepth) const {
        if (nDepth > kMaxReferenceDepth) {
            Throw<RuntimeException>("Node '" + std::string(m_objModel.Nodes[m_vecPath.front()].Name) +
                                    "' stands on a chain of more than " + std::to_string(kMaxReferenceDepth) +
                                    " nodes");
        }
    }

    [[noreturn]] void ThrowCircle(std::uint32_t nNode) const {
        auto it = std::find(m_vecPath.begin(), m_vecPath.end(), nNode);
        std::string strNames;
        for (std::size_t i = 0; it != m_vecPath.end() && i < kMaxNamed; ++i, ++it) {
            strNames += std::string(m_objModel.Nodes[*it].Name) + " -> ";
        }
        strNames += it == m_vecPath.end() ? "" : "... -> ";
        Throw<RuntimeException>("References lead in a circle: " + strNames + std::string(m_objModel.Nodes[nNode].Name));
    }

    const DESCRIPTION_MODEL& m_objModel;
    const CDependencyGraph& m_objGraph;
    std::vector<std::uint16_t> m_vecHeight;
    std::vector<std::uint32_t> m_vecPath;
};

}  // namespace

void CheckCircles(const DESCRIPTION_MODEL& objModel, const CDependencyGraph& objGraph) {
    CCircleCheck(objModel, objGraph).Run();
}

}  // namespace GenApi_3_0
