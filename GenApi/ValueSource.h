#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "GenApi/NumberRef.h"

namespace GenApi_3_0 {

/// Where the value of an Integer, a Float, a Boolean, a Command or an Enumeration lies: in the node itself, in another,
/// or in one of several told apart by an index; and where else a written value goes. A part of its node.
/// @tparam Value  std::int64_t or double
template <class Value>
class CValueSource {
public:
    explicit CValueSource(CNodeImpl& objOwner) : m_objOwner(objOwner) {}

    /// @return false if the property is none of those that make a value
    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader);

    Value Read(bool bIgnoreCache) const { return Current(bIgnoreCache).Read(bIgnoreCache); }
    /// Writes to the source and all copies, the copies last.
    void Write(Value value, bool bVerify);
    /// What the source and its index allow.
    EAccessMode AccessMode() const;
    /// The node that has the value now; null if it lies here.
    CNodeImpl* Node() const { return Current(false).Node(); }
    /// The node of the pValue.
    CNodeImpl* FixedNode() const { return m_objValue.Node(); }

private:
    struct INDEXED {
        CNodeImpl* pIndex = nullptr;
        std::vector<std::pair<std::int64_t, CNumberRef<Value>>> Values;
        CNumberRef<Value> Default;
    };

    INDEXED& Indexed() {
        if (m_pIndexed == nullptr) {
            m_pIndexed = std::make_unique<INDEXED>();
        }
        return *m_pIndexed;
    }
    const CNumberRef<Value>& Current(bool bIgnoreCache) const;
    void RequireWritable(CNodeImpl& objCopy) const;
    static void Hand(CNodeImpl& objNode, Value value, bool bVerify);

    CNodeImpl& m_objOwner;
    CNumberRef<Value> m_objValue;
    std::unique_ptr<INDEXED> m_pIndexed;
    std::unique_ptr<std::vector<CNodeImpl*>> m_pCopies;
};

extern template class CValueSource<std::int64_t>;
extern template class CValueSource<double>;

}  // namespace GenApi_3_0
