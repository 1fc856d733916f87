#include "GenApi/ValueSource.h"

#include <string>
#include <type_traits>

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"

namespace GenApi_3_0 {

using GenICam_3_0::AccessException;
using GenICam_3_0::Throw;

template <class Value>
bool CValueSource<Value>::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    switch (objProperty.Tag) {
        case ETag::Value:
            m_objValue.SetConstant(objProperty, objReader);
            return true;
        case ETag::pValue:
            m_objValue.SetReference(objProperty, objReader, ELink::Value);
            return true;
        case ETag::pValueCopy:
            if (m_pCopies == nullptr) {
                m_pCopies = std::make_unique<std::vector<CNodeImpl*>>();
            }
            m_pCopies->push_back(objReader.Node(objProperty, ELink::Copy, EWanted::Number));
            return true;
        case ETag::pIndex:
            Indexed().pIndex = objReader.Node(objProperty, ELink::Input, EWanted::Number);
            // Another index means another node, with an access mode of its own.
            objReader.NoteLink(Indexed().pIndex->Number(), ELink::Access);
            return true;
        case ETag::ValueIndexed:
        case ETag::pValueIndexed: {
            CNumberRef<Value> objValue;
            if (objProperty.Tag == ETag::ValueIndexed) {
                objValue.SetConstant(objProperty, objReader);
            } else {
                objValue.SetReference(objProperty, objReader, ELink::Value);
            }
            Indexed().Values.emplace_back(objReader.IntegerOfAttribute(objProperty), objValue);
            return true;
        }
        case ETag::ValueDefault:
            Indexed().Default.SetConstant(objProperty, objReader);
            return true;
        case ETag::pValueDefault:
            Indexed().Default.SetReference(objProperty, objReader, ELink::Value);
            return true;
        default:
            return false;
    }
}

template <class Value>
const CNumberRef<Value>& CValueSource<Value>::Current(bool bIgnoreCache) const {
    if (m_pIndexed == nullptr || m_pIndexed->pIndex == nullptr) {
        return m_objValue;
    }
    const std::int64_t nIndex = m_pIndexed->pIndex->ReadInt(bIgnoreCache);
    constexpr std::size_t kValuesPerEvaluation = 64;
    m_objOwner.Context().NoteWork(m_pIndexed->Values.size() / kValuesPerEvaluation);
    for (const auto& [nKey, objValue] : m_pIndexed->Values) {
        if (nKey == nIndex) {
            return objValue;
        }
    }
    if (m_pIndexed->Default.IsSet()) {
        return m_pIndexed->Default;
    }
    if (!m_objValue.IsSet()) {
        Throw<AccessException>(m_objOwner.Subject() + " has no value for the index " + std::to_string(nIndex) +
                               " and no default");
    }
    return m_objValue;
}

template <class Value>
void CValueSource<Value>::Hand(CNodeImpl& objNode, Value value, bool bVerify) {
    if constexpr (std::is_same_v<Value, double>) {
        objNode.WriteFloat(value, bVerify);
    } else {
        objNode.WriteInt(value, bVerify);
    }
}

template <class Value>
void CValueSource<Value>::RequireWritable(CNodeImpl& objCopy) const {
    if (!IsWritable(objCopy.AccessMode())) {
        Throw<AccessException>(m_objOwner.Subject() + " writes to " + std::string(objCopy.Name()) +
                               " too, which can't be written now");
    }
}

template <class Value>
void CValueSource<Value>::Write(Value value, bool bVerify) {
    const CEvaluation objStep(m_objOwner.Context(), m_objOwner.Name());
    CChange objChange(m_objOwner.Context());
    if (bVerify && m_pCopies != nullptr) {
        // Before the first write, so that a refusal leaves no place with the new value. A write may still lock a copy.
        for (CNodeImpl* pCopy : *m_pCopies) {
            RequireWritable(*pCopy);
        }
    }
    auto& objTarget = const_cast<CNumberRef<Value>&>(Current(false));
    if (objTarget.Node() != nullptr) {
        Hand(*objTarget.Node(), value, bVerify);
    } else {
        objTarget.Put(value);
        objChange.Written(m_objOwner.Number());
    }
    if (m_pCopies != nullptr) {
        for (CNodeImpl* pCopy : *m_pCopies) {
            if (bVerify) {
                RequireWritable(*pCopy);
            }
            Hand(*pCopy, value, bVerify);
        }
    }
    objChange.Finish();
}

template <class Value>
EAccessMode CValueSource<Value>::AccessMode() const {
    if (m_pIndexed != nullptr && m_pIndexed->pIndex != nullptr) {
        if (!IsReadable(m_pIndexed->pIndex->AccessMode())) {
            return NA;
        }
        const bool bAny = m_objValue.IsSet() || m_pIndexed->Default.IsSet();
        const std::int64_t nIndex = m_pIndexed->pIndex->ReadInt(false);
        bool bFound = bAny;
        for (const auto& [nKey, objValue] : m_pIndexed->Values) {
            bFound = bFound || nKey == nIndex;
        }
        if (!bFound) {
            return NA;
        }
    }
    CNodeImpl* pNode = Node();
    return pNode != nullptr ? pNode->AccessMode() : RW;
}

template class CValueSource<std::int64_t>;
template class CValueSource<double>;

}  // namespace GenApi_3_0
