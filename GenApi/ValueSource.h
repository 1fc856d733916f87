#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

#include "GenApi/DescriptionModel.h"
#include "GenApi/NodeImpl.h"
#include "GenApi/PropertyReader.h"

namespace GenApi_3_0 {

/// A number that a description gives either as such or by reference to a node.
/// @tparam Value  std::int64_t or double
template <class Value>
class CNumberRef {
public:
    CNumberRef() = default;
    explicit CNumberRef(Value value) : m_value(value), m_bSet(true) {}
    explicit CNumberRef(CNodeImpl* pNode) : m_pNode(pNode), m_bSet(true) {}

    void SetConstant(const PROPERTY& objProperty, CPropertyReader& objReader) {
        m_pNode = nullptr;
        m_bSet = true;
        if constexpr (std::is_same_v<Value, double>) {
            m_value = objReader.Float(objProperty);
        } else {
            m_value = objReader.Integer(objProperty);
        }
    }
    void SetReference(const PROPERTY& objProperty, CPropertyReader& objReader, ELink eLink) {
        m_pNode = objReader.Node(objProperty, eLink, EWanted::Number);
        m_bSet = true;
    }

    bool IsSet() const { return m_bSet; }
    CNodeImpl* Node() const { return m_pNode; }
    Value Read(bool bIgnoreCache) const {
        if (m_pNode == nullptr) {
            return m_value;
        }
        if constexpr (std::is_same_v<Value, double>) {
            return m_pNode->ReadFloat(bIgnoreCache);
        } else {
            return m_pNode->ReadInt(bIgnoreCache);
        }
    }
    void Put(Value value) { m_value = value; }

private:
    Value m_value{};
    CNodeImpl* m_pNode = nullptr;
    bool m_bSet = false;
};

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
    static void Hand(CNodeImpl& objNode, Value value, bool bVerify);

    CNodeImpl& m_objOwner;
    CNumberRef<Value> m_objValue;
    std::unique_ptr<INDEXED> m_pIndexed;
    std::unique_ptr<std::vector<CNodeImpl*>> m_pCopies;
};

extern template class CValueSource<std::int64_t>;
extern template class CValueSource<double>;

}  // namespace GenApi_3_0
