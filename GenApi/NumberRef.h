#pragma once

#include <type_traits>

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
    /// Null if the number lies here.
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

/// The limits of its own that a description gives an Integer or a Float, each of them only if it is set.
template <class Value>
struct NUMBER_LIMITS {
    /// @return false if the property is none of these limits
    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
        switch (objProperty.Tag) {
            case ETag::Min:
                Min.SetConstant(objProperty, objReader);
                return true;
            case ETag::Max:
                Max.SetConstant(objProperty, objReader);
                return true;
            case ETag::Inc:
                Inc.SetConstant(objProperty, objReader);
                return true;
            case ETag::pMin:
                Min.SetReference(objProperty, objReader, ELink::Limit);
                return true;
            case ETag::pMax:
                Max.SetReference(objProperty, objReader, ELink::Limit);
                return true;
            case ETag::pInc:
                Inc.SetReference(objProperty, objReader, ELink::Limit);
                return true;
            default:
                return false;
        }
    }

    CNumberRef<Value> Min;
    CNumberRef<Value> Max;
    CNumberRef<Value> Inc;
};

}  // namespace GenApi_3_0
