#include "GenApi/EnumerationNode.h"

#include <algorithm>

#include "GenApi/AccessMode.h"
#include "GenApi/EnumEntryNode.h"
#include "GenApi/GCException.h"
#include "GenApi/NumberText.h"
#include "GenApi/PropertyReader.h"

namespace GenApi_3_0 {

using GenICam_3_0::AccessException;
using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::OutOfRangeException;
using GenICam_3_0::Throw;

bool CEnumerationNode::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    return m_objSource.Apply(objProperty, objReader) || CNodeImpl::Apply(objProperty, objReader);
}

void CEnumerationNode::Complete(CPropertyReader& objReader) {
    for (CEnumEntryNode* pEntry : m_vecEntry) {
        objReader.NoteLink(pEntry->Number(), ELink::Entry);
        m_bSelfClearing = m_bSelfClearing || pEntry->IsSelfClearing();
    }
    CNodeImpl::Complete(objReader);
}

// One description for several models may give a value more than one name, of which a device has one.
CEnumEntryNode* CEnumerationNode::EntryOf(std::int64_t nValue) const {
    const auto HasValue = [nValue](const CEnumEntryNode* p) { return p->Value() == nValue; };
    const auto itFirst = std::find_if(m_vecEntry.begin(), m_vecEntry.end(), HasValue);
    if (itFirst == m_vecEntry.end()) {
        return nullptr;
    }
    if (std::none_of(itFirst + 1, m_vecEntry.end(), HasValue)) {
        return *itFirst;
    }
    const auto itAvailable = std::find_if(itFirst, m_vecEntry.end(), [&HasValue](CEnumEntryNode* p) {
        return HasValue(p) && IsAvailable(p->AccessMode());
    });
    return itAvailable == m_vecEntry.end() ? *itFirst : *itAvailable;
}

CEnumEntryNode* CEnumerationNode::EntryNamed(std::string_view strSymbolic) const {
    const auto it = std::find_if(m_vecEntry.begin(), m_vecEntry.end(),
                                 [strSymbolic](const CEnumEntryNode* p) { return p->Symbolic() == strSymbolic; });
    return it == m_vecEntry.end() ? nullptr : *it;
}

CEnumEntryNode& CEnumerationNode::RequireEntry(std::int64_t nValue) const {
    CEnumEntryNode* pEntry = EntryOf(nValue);
    if (pEntry == nullptr) {
        Throw<OutOfRangeException>(Subject() + ": no entry has the value " + FormatInteger(nValue));
    }
    return *pEntry;
}

void CEnumerationNode::RequireAvailable(CEnumEntryNode& objEntry) const {
    if (!IsAvailable(objEntry.AccessMode())) {
        Throw<AccessException>(Subject() + ": its entry '" + std::string(objEntry.Symbolic()) +
                               "' isn't available now");
    }
}

bool CEnumerationNode::ClearsItself(std::int64_t nValue) const {
    return m_bSelfClearing && std::any_of(m_vecEntry.begin(), m_vecEntry.end(), [nValue](CEnumEntryNode* p) {
               return p->Value() == nValue && p->IsSelfClearing();
           });
}

// Numbers

std::int64_t CEnumerationNode::ReadInt(bool bIgnoreCache) {
    const auto Read = [this](bool bPastCache) {
        Cached(m_nValue, bPastCache, [this, bPastCache] { return m_objSource.Read(bPastCache); });
    };
    const std::uint64_t nNotes = Context().UncachableNotes();
    Read(bIgnoreCache);
    if (ClearsItself(m_nValue)) {
        // The device takes such a value back on its own.
        if (!bIgnoreCache && Context().UncachableNotes() == nNotes) {
            Read(true);
        }
        Context().NoteUncachable();
    }
    return m_nValue;
}

void CEnumerationNode::WriteInt(std::int64_t nValue, bool bVerify) {
    const CEvaluation objStep(Context(), Name());
    if (bVerify) {
        RequireAvailable(RequireEntry(nValue));
    }
    CChange objChange(Context());
    State().ValueValid = false;
    // The number is one of the entries'; limits of what lies below are those of a number and have no say.
    m_objSource.Write(nValue, false);
    objChange.Finish();
}

std::int64_t CEnumerationNode::MinInt() {
    const auto it = std::min_element(m_vecEntry.begin(), m_vecEntry.end(),
                                     [](const auto* a, const auto* b) { return a->Value() < b->Value(); });
    return it == m_vecEntry.end() ? CNodeImpl::MinInt() : (*it)->Value();
}

std::int64_t CEnumerationNode::MaxInt() {
    const auto it = std::max_element(m_vecEntry.begin(), m_vecEntry.end(),
                                     [](const auto* a, const auto* b) { return a->Value() < b->Value(); });
    return it == m_vecEntry.end() ? CNodeImpl::MaxInt() : (*it)->Value();
}

std::int64_t CEnumerationNode::EntryValue(std::string_view strSymbolic) {
    const CEnumEntryNode* pEntry = EntryNamed(strSymbolic);
    if (pEntry == nullptr) {
        Throw<InvalidArgumentException>(Subject() + " has no entry '" + std::string(strSymbolic) + "'");
    }
    return pEntry->Value();
}

// IEnumeration

void CEnumerationNode::GetSymbolics(StringList_t& Symbolics) {
    const AutoLock objLock(Context().Lock());
    Symbolics.clear();
    for (CEnumEntryNode* pEntry : m_vecEntry) {
        if (IsAvailable(pEntry->AccessMode())) {
            Symbolics.emplace_back(pEntry->Symbolic());
        }
    }
}

void CEnumerationNode::GetEntries(NodeList_t& Entries) {
    Entries.assign(m_vecEntry.begin(), m_vecEntry.end());
}

void CEnumerationNode::SetIntValue(std::int64_t Value, bool Verify) {
    CChange objChange(Context());
    if (Verify) {
        RequireWritable();
    }
    WriteInt(Value, Verify);
    objChange.Finish();
}

std::int64_t CEnumerationNode::GetIntValue(bool Verify, bool IgnoreCache) {
    const AutoLock objLock(Context().Lock());
    RequireReadable();
    const std::int64_t nValue = ReadInt(IgnoreCache);
    if (Verify) {
        RequireEntry(nValue);
    }
    return nValue;
}

IEnumEntry* CEnumerationNode::GetEntryByName(const gcstring& Symbolic) {
    return EntryNamed(Symbolic.view());
}

IEnumEntry* CEnumerationNode::GetEntry(std::int64_t IntValue) {
    const AutoLock objLock(Context().Lock());
    return EntryOf(IntValue);
}

IEnumEntry* CEnumerationNode::GetCurrentEntry(bool Verify, bool IgnoreCache) {
    const AutoLock objLock(Context().Lock());
    return EntryOf(GetIntValue(Verify, IgnoreCache));
}

// IValue

gcstring CEnumerationNode::ToString(bool Verify, bool IgnoreCache) {
    const AutoLock objLock(Context().Lock());
    const std::int64_t nValue = GetIntValue(Verify, IgnoreCache);
    return gcstring(RequireEntry(nValue).Symbolic());
}

void CEnumerationNode::FromString(const gcstring& ValueStr, bool Verify) {
    const std::string_view strSymbolic = TrimXmlSpace(ValueStr.view());
    CEnumEntryNode* pEntry = EntryNamed(strSymbolic);
    if (pEntry == nullptr) {
        Throw<InvalidArgumentException>(Subject() + " has no entry '" + std::string(strSymbolic) + "'");
    }
    CChange objChange(Context());
    if (Verify) {
        RequireWritable();
        RequireAvailable(*pEntry);  // the value's other name may be, which isn't what was asked for
    }
    WriteInt(pEntry->Value(), Verify);
    objChange.Finish();
}

bool CEnumerationNode::IsValueCacheValid() const {
    const AutoLock objLock(Context().Lock());
    return State().ValueValid;
}

}  // namespace GenApi_3_0
