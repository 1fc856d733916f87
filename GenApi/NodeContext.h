#pragma once

#include <cstdint>
#include <deque>
#include <exception>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "GenApi/CallbackTable.h"
#include "GenApi/DependencyGraph.h"
#include "GenApi/Lock.h"
#include "GenApi/NodeState.h"

namespace GenApi_3_0 {

class INodeMap;

/// What all nodes of one map share: the lock, the state that changes reach, the graph that says where they reach, and
/// the callbacks. Owned by the node map. Everything but Lock is used with the lock held.
class CNodeContext {
public:
    CNodeContext(INodeMap* pNodeMap, std::string strDeviceName)
        : m_pNodeMap(pNodeMap), m_strDeviceName(std::move(strDeviceName)) {}
    CNodeContext(const CNodeContext&) = delete;
    CNodeContext& operator=(const CNodeContext&) = delete;

    /// Before the first node is made: the addresses of the states stay from then on.
    void SetNodeCount(std::size_t nNodes);
    void SetNode(std::uint32_t nNode, INode* pNode) { m_vecNode[nNode] = pNode; }

    CLock& Lock() { return m_objLock; }
    INodeMap* NodeMap() const { return m_pNodeMap; }
    const std::string& DeviceName() const { return m_strDeviceName; }
    CDependencyGraph& Graph() { return m_objGraph; }
    NODE_STATE& State(std::uint32_t nNode) { return m_vecState[nNode]; }
    INode* NodeAt(std::uint32_t nNode) const { return m_vecNode[nNode]; }
    CCallbackTable& Callbacks() { return m_objCallbacks; }
    REGISTER_CELL& NewCell() { return m_vecCell.emplace_back(); }

    // What may be cached. Whatever is computed from something that can change without notice must not be cached either:
    // whoever reads such a thing notes it, and whoever caches compares the number of notes before and after.

    void NoteUncachable() { ++m_nUncachable; }
    std::uint64_t UncachableNotes() const { return m_nUncachable; }

    // Nodes that ask each other for their access modes may come back to where they began: a lock on A that hangs on B
    // and the other way round. The node that is asked again gives the neutral answer, and what was computed from that
    // must not be cached, except by the node where the circle closes.

    /// @return the level of the node that now begins to compute its access mode, from 1
    std::uint32_t EnterAccess() { return ++m_nAccessLevel; }
    void LeaveAccess() { --m_nAccessLevel; }
    /// The lowest level that was asked again; UINT32_MAX if none was.
    std::uint32_t& LowestCircle() { return m_nLowestCircle; }

    /// Work that took more than one evaluation's time. The operation ends at its next step if it was too much.
    void NoteWork(std::size_t nEvaluations) { m_nEvaluations += nEvaluations; }

    /// Whether a register may be cached: whether there is room for it, which it then takes.
    bool TakeCacheRoom(REGISTER_CELL& objCell, std::size_t nBytes);

    /// Drops the caches of all that depends on a node whose value a read has found changed. No callback is called:
    /// nobody has changed anything here.
    void FoundChanged(std::uint32_t nNode) {
        const std::size_t nTouched = m_vecTouched.size();
        Spread({&nNode, 1}, kDirtyRegister, false);
        m_vecTouched.resize(nTouched);
    }

    /// Everything that a change of the node reaches, the node itself first.
    std::vector<std::uint32_t> DependentsOf(std::uint32_t nNode);

private:
    friend class CEvaluation;
    friend class CChange;

    /// Drops the caches of all that depends on the nodes, and remembers the callbacks to be called.
    /// @param nDirt  dirt of the nodes themselves
    /// @param bSelf  drop their own caches as well; not after a write of a single node, which has just renewed them
    void Spread(std::span<const std::uint32_t> nodes, std::uint8_t nDirt, bool bSelf);
    void VisitParents();
    void Visit(std::uint32_t nNode, std::uint8_t nDirt);
    void DropCaches(std::uint32_t nNode, std::uint8_t nDirt);

    CLock m_objLock;
    INodeMap* m_pNodeMap;
    std::string m_strDeviceName;
    CDependencyGraph m_objGraph;
    std::vector<NODE_STATE> m_vecState;
    std::vector<INode*> m_vecNode;
    std::deque<REGISTER_CELL> m_vecCell;
    CCallbackTable m_objCallbacks;

    std::size_t m_nCachedBytes = 0;
    std::uint64_t m_nUncachable = 0;
    std::uint32_t m_nAccessLevel = 0;
    std::uint32_t m_nLowestCircle = UINT32_MAX;
    std::uint64_t m_nEvaluations = 0;  // of the running operation
    unsigned m_nEvaluationDepth = 0;

    std::vector<std::uint8_t> m_vecVisited;   // dirt that the running Spread has brought to each node
    std::vector<std::uint32_t> m_vecReached;  // the nodes in m_vecVisited that aren't 0
    struct PENDING {
        std::uint32_t Node;
        std::uint8_t Dirt;
    };
    std::vector<PENDING> m_vecPending;

    std::vector<std::uint32_t> m_vecTouched;  // nodes with callbacks that the running operations touched, each once
    std::vector<CCallbackTable::Pin> m_vecOutside;  // callbacks that wait for the lock's release
    unsigned m_nChangeDepth = 0;
    unsigned m_nCallbackDepth = 0;
};

/// One step down a chain of nodes, for its scope.
class CEvaluation {
public:
    /// @throws RuntimeException  the chain is too deep, which a circle is, or the operation has taken too many steps
    CEvaluation(CNodeContext& objContext, std::string_view strNode) : m_objContext(objContext) {
        if (++m_objContext.m_nEvaluationDepth == 1) {
            m_objContext.m_nEvaluations = 0;
        }
        ++m_objContext.m_nEvaluations;
        CheckLimits(strNode);
    }
    ~CEvaluation() { --m_objContext.m_nEvaluationDepth; }
    CEvaluation(const CEvaluation&) = delete;
    CEvaluation& operator=(const CEvaluation&) = delete;

private:
    void CheckLimits(std::string_view strNode);

    CNodeContext& m_objContext;
};

/// One operation that changes something, possibly within another. Takes the lock, collects what is touched, and calls
/// the callbacks: those inside the lock when this operation is done, those outside once the outermost has given the
/// lock back.
class CChange {
public:
    explicit CChange(CNodeContext& objContext);
    ~CChange();
    CChange(const CChange&) = delete;
    CChange& operator=(const CChange&) = delete;

    /// The node has a new value of its own.
    void Written(std::uint32_t nNode) { m_objContext.Spread({&nNode, 1}, kDirtyRegister, false); }
    /// What is cached of the node counts no more.
    void Invalidated(std::uint32_t nNode, std::uint8_t nDirt = kDirtyAll) { Invalidated({&nNode, 1}, nDirt); }
    void Invalidated(std::span<const std::uint32_t> nodes, std::uint8_t nDirt) {
        m_objContext.Spread(nodes, nDirt, true);
    }
    /// The same where all nodes are invalidated one by one, so that nothing needs to spread.
    void InvalidatedAlone(std::uint32_t nNode) {
        m_objContext.DropCaches(nNode, kDirtyAll);
        if (m_objContext.m_vecState[nNode].HasCallback) {
            m_objContext.m_vecTouched.push_back(nNode);
        }
    }
    /// Fires the callbacks. Without it, on the way of an exception, they are fired by the destructor and what they
    /// throw is lost.
    void Finish();

private:
    void FireInside();
    void Leave();
    static void FireAll(const std::vector<CCallbackTable::Pin>& vecPin, std::exception_ptr& pFirst);

    CNodeContext& m_objContext;
    std::exception_ptr m_pFirst;
    bool m_bFinished = false;
    std::size_t m_nTouchedBefore;
};

}  // namespace GenApi_3_0
