#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace GenApi_3_0 {

/// Why one node refers to another.
enum class ELink : std::uint8_t {
    Value,        ///< its value is the other's: pValue, pValueIndexed, pValueDefault
    Copy,         ///< what is written goes there too: pValueCopy
    Input,        ///< its value is computed from the other's: pVariable, pAddress, pLength, pIndex
    Member,       ///< its value is computed from the other's limits: VAR.Max
    Port,         ///< the register's port
    Limit,        ///< pMin, pMax, pInc
    Access,       ///< pIsImplemented, pIsAvailable, pIsLocked
    Invalidator,  ///< pInvalidator
    Selector,     ///< the other is its selector, which names it in a pSelected
    Overlap,      ///< both stand on some of the same bits of one register
    Bytes,        ///< both stand on some of the same bytes, each with a place and a length of its own
    Cell,         ///< the other hears for all that stand on its register what happens to the bytes
    Entry,        ///< the enumeration's entry
    Feature,      ///< the category's feature
    Mention       ///< pSelected, pAlias and others through which no change spreads
};

// What a change does to a node, as bits: each may come over another way.

inline constexpr std::uint8_t kDirtyRegister = 1;  ///< value, and the bytes it was taken from
inline constexpr std::uint8_t kDirtyValue = 2;     ///< value
inline constexpr std::uint8_t kDirtyAccess = 4;    ///< access mode
/// Minimum, maximum, increment or the entries that can be chosen. Nothing of this is cached.
inline constexpr std::uint8_t kDirtyLimits = 8;
/// Value and bytes, because another register has changed some of these. It goes no further on that way: what they have
/// in common with a third one is that one's own matter.
inline constexpr std::uint8_t kDirtyBytes = 16;
/// What the value is taken from, down to the registers, from where it would else come back as it was.
inline constexpr std::uint8_t kDirtyBelow = 32;
inline constexpr std::uint8_t kDirtyAll = kDirtyRegister | kDirtyValue | kDirtyAccess | kDirtyLimits;

/// What a change of a node does to another that refers to it.
/// @param nDirt  bits of the above
std::uint8_t SpreadOver(ELink eLink, std::uint8_t nDirt);

struct LINK {
    std::uint32_t Node;
    ELink Kind;
};

/// Which node refers to which and why, both ways. Built once at load in time linear in the number of references, then
/// unchanged.
class CDependencyGraph {
public:
    /// While loading only.
    void Add(std::uint32_t nFrom, std::uint32_t nTo, ELink eLink) { m_vecReference.push_back({nFrom, nTo, eLink}); }
    void Reserve(std::size_t nReferences) { m_vecReference.reserve(nReferences); }
    void Build(std::size_t nNodes);

    /// What the node refers to, in the order of the description.
    std::span<const LINK> Children(std::uint32_t nNode) const { return m_objChildren.Of(nNode); }
    /// Of these the nodes that its value is: those with ELink::Value.
    std::span<const LINK> Sources(std::uint32_t nNode) const { return m_objSources.Of(nNode); }
    /// What refers to the node, in the order of the description.
    std::span<const LINK> Parents(std::uint32_t nNode) const { return m_objParents.Of(nNode); }

private:
    struct REFERENCE {
        std::uint32_t From;
        std::uint32_t To;
        ELink Kind;
    };
    struct ADJACENCY {
        std::span<const LINK> Of(std::uint32_t nNode) const {
            return std::span(Links).subspan(First[nNode], First[nNode + 1] - First[nNode]);
        }
        void Fill(const std::vector<REFERENCE>& vecReference, std::size_t nNodes, std::uint32_t REFERENCE::*pKey,
                  std::uint32_t REFERENCE::*pOther);

        std::vector<std::uint32_t> First;
        std::vector<LINK> Links;
    };

    std::vector<REFERENCE> m_vecReference;  // empty once built
    ADJACENCY m_objChildren;
    ADJACENCY m_objSources;
    ADJACENCY m_objParents;
};

}  // namespace GenApi_3_0
