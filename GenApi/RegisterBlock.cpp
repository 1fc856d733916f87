#include "GenApi/RegisterBlock.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"
#include "GenApi/NodeMapLimits.h"
#include "GenApi/PortNode.h"
#include "GenApi/RegisterSharing.h"

namespace GenApi_3_0 {

using GenICam_3_0::OutOfRangeException;
using GenICam_3_0::Throw;

bool CRegisterBlock::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    switch (objProperty.Tag) {
        case ETag::Address:
            if (__builtin_add_overflow(m_nAddress, objReader.Integer(objProperty), &m_nAddress)) {
                objReader.Fail(objProperty, "makes the address too large");
            }
            return true;
        case ETag::pAddress:
            m_vecTerm.push_back({objReader.Node(objProperty, ELink::Input, EWanted::Number), nullptr, 1, false});
            return true;
        case ETag::IntSwissKnife:
            m_vecTerm.push_back({objReader.NestedNode(objProperty, ELink::Input), nullptr, 1, false});
            return true;
        case ETag::pIndex:
            AddIndex(objProperty, objReader);
            return true;
        case ETag::Length:
            m_objLength.SetConstant(objProperty, objReader);
            if (m_objLength.Read(false) <= 0 || m_objLength.Read(false) > kMaxRegisterLength) {
                objReader.Fail(objProperty, "is no length that a register can have");
            }
            return true;
        case ETag::pLength:
            m_objLength.SetReference(objProperty, objReader, ELink::Input);
            return true;
        case ETag::pPort:
            m_pPort = static_cast<CPortNode*>(objReader.Node(objProperty, ELink::Port, EWanted::Port));
            return true;
        case ETag::Endianess:
            m_eEndianess =
                objReader.Word<EEndianess>(objProperty, {{"LittleEndian", LittleEndian}, {"BigEndian", BigEndian}});
            return true;
        default:
            return false;
    }
}

void CRegisterBlock::AddIndex(const PROPERTY& objProperty, CPropertyReader& objReader) {
    TERM objTerm;
    objTerm.pNode = objReader.Node(objProperty, ELink::Input, EWanted::Number);
    if (objProperty.Attribute.empty()) {
        objTerm.FactorIsLength = true;
    } else if (objProperty.AttributeIsReference) {
        objTerm.pFactor = objReader.NodeOfAttribute(objProperty, ELink::Input, EWanted::Number);
    } else {
        objTerm.Factor = objReader.IntegerOfAttribute(objProperty);
    }
    m_vecTerm.push_back(objTerm);
}

void CRegisterBlock::Complete(CPropertyReader& objReader) {
    m_pCell = objReader.Sharing().CellOf(m_objOwner.Context(), Key(), Place());
    m_objOwner.State().pCell = m_pCell;
    m_pCell->Readable = m_pCell->Readable || IsReadable(m_objOwner.OwnAccessMode());
}

std::string CRegisterBlock::Key() const {
    std::string strKey;
    const auto Append = [&strKey](const auto& value) {
        strKey.append(reinterpret_cast<const char*>(&value), sizeof(value));
    };
    const auto AppendNode = [&Append](const CNodeImpl* pNode) { Append(pNode != nullptr ? pNode->Number() : kNoNode); };
    strKey.reserve(24 + m_vecTerm.size() * 17);
    AppendNode(m_pPort);
    Append(m_nAddress);
    Append(ConstantLength());
    AppendNode(m_objLength.Node());
    for (const TERM& objTerm : m_vecTerm) {
        AppendNode(objTerm.pNode);
        AppendNode(objTerm.pFactor);
        Append(objTerm.Factor);
        Append(objTerm.FactorIsLength);
    }
    return strKey;
}

/// @return nothing if the description computes the place, or if no port has it
std::optional<REGISTER_PLACE> CRegisterBlock::Place() const {
    std::int64_t nLast = 0;
    const bool bFixed = m_pPort != nullptr && m_vecTerm.empty() && ConstantLength() > 0 && m_nAddress >= 0;
    if (!bFixed || __builtin_add_overflow(m_nAddress, ConstantLength() - 1, &nLast)) {
        return std::nullopt;
    }
    return REGISTER_PLACE{m_pPort->Number(), m_nAddress, nLast};
}

EAccessMode CRegisterBlock::PortAccessMode() const {
    if (m_pPort == nullptr) {
        return NA;
    }
    EAccessMode eMode = m_pPort->AccessMode();
    const auto Require = [&eMode](CNodeImpl* pNode) {
        if (pNode != nullptr && !IsReadable(pNode->AccessMode())) {
            eMode = Combine(eMode, NA);
        }
    };
    for (const TERM& objTerm : m_vecTerm) {
        Require(objTerm.pNode);
        Require(objTerm.pFactor);
    }
    Require(m_objLength.Node());
    return eMode;
}

bool CRegisterBlock::IsBigEndian() const {
    const bool bSwapped = m_pPort != nullptr && m_pPort->IsSwapped();
    return (m_eEndianess == BigEndian) != bSwapped;
}

void CRegisterBlock::ThrowBadPlace(const std::string& strWhat) const {
    Throw<OutOfRangeException>(m_objOwner.Subject() + ": " + strWhat);
}

std::int64_t CRegisterBlock::Address(bool bIgnoreCache) const {
    std::int64_t nAddress = m_nAddress;
    m_objOwner.Context().NoteWork(m_vecTerm.size());
    for (const TERM& objTerm : m_vecTerm) {
        std::int64_t nFactor = objTerm.Factor;
        if (objTerm.FactorIsLength) {
            nFactor = Length();
        } else if (objTerm.pFactor != nullptr) {
            nFactor = objTerm.pFactor->ReadInt(bIgnoreCache);
        }
        std::int64_t nTerm = 0;
        if (__builtin_mul_overflow(objTerm.pNode->ReadInt(bIgnoreCache), nFactor, &nTerm) ||
            __builtin_add_overflow(nAddress, nTerm, &nAddress)) {
            ThrowBadPlace("its address doesn't fit into 64 bits");
        }
    }
    if (nAddress < 0) {
        ThrowBadPlace("its address is below 0");
    }
    return nAddress;
}

std::int64_t CRegisterBlock::Length() const {
    const std::int64_t nLength = m_objLength.Read(false);
    if (nLength <= 0 || nLength > kMaxRegisterLength) {
        ThrowBadPlace("its length of " + std::to_string(nLength) + " bytes is none that a register can have");
    }
    return nLength;
}

bool CRegisterBlock::CachedIn(std::span<std::uint8_t> buffer) const {
    if (!m_pCell->Valid || m_pCell->Bytes.size() != buffer.size()) {
        return false;
    }
    std::copy(m_pCell->Bytes.begin(), m_pCell->Bytes.end(), buffer.begin());
    return true;
}

void CRegisterBlock::Read(std::span<std::uint8_t> buffer, bool bIgnoreCache) {
    const bool bUseCache = !bIgnoreCache && !m_objOwner.IsUncached();
    if (!bUseCache || !CachedIn(buffer)) {
        ReadPort(buffer, bIgnoreCache);
    }
}

void CRegisterBlock::ReadPort(std::span<std::uint8_t> buffer, bool bIgnoreCache) {
    if (m_pPort == nullptr) {
        Throw<GenICam_3_0::AccessException>(m_objOwner.Subject() + " has no port");
    }
    const std::uint64_t nNotes = m_objOwner.Context().UncachableNotes();
    const std::int64_t nAddress = Address(bIgnoreCache);
    const bool bPlaceStays = m_objOwner.Context().UncachableNotes() == nNotes;
    m_pPort->Read(buffer.data(), nAddress, static_cast<std::int64_t>(buffer.size()));
    // A node without cache still renews what its neighbours in the same register have cached.
    if (bPlaceStays && (!m_objOwner.IsUncached() || m_pCell->Valid)) {
        const bool bChanged =
            m_pCell->Valid && !std::equal(buffer.begin(), buffer.end(), m_pCell->Bytes.begin(), m_pCell->Bytes.end());
        Keep(buffer);
        if (bChanged) {
            m_objOwner.Context().FoundChanged(m_objOwner.Number());
        }
    }
}

void CRegisterBlock::Keep(std::span<const std::uint8_t> buffer) {
    m_pCell->Valid = m_objOwner.Context().TakeCacheRoom(*m_pCell, buffer.size());
    if (m_pCell->Valid) {
        m_pCell->Bytes.assign(buffer.begin(), buffer.end());
    } else {
        m_objOwner.Context().NoteUncachable();
    }
}

void CRegisterBlock::ReadForChange(std::span<std::uint8_t> buffer) {
    // The cache may be behind: the device changes bits of its own, and other nodes reach the same bytes through
    // computed addresses. Half a register written from the cache would put the old bits back, so the device is asked
    // each time. Bits that can't be read may lie beside some that can.
    if (m_pCell->Readable && m_pPort != nullptr && IsReadable(m_pPort->AccessMode())) {
        ReadPort(buffer, false);
    } else if (!CachedIn(buffer)) {
        std::fill(buffer.begin(), buffer.end(), std::uint8_t{0});
    }
}

void CRegisterBlock::Write(std::span<const std::uint8_t> buffer) {
    CChange objChange(m_objOwner.Context());
    if (m_pPort == nullptr) {
        Throw<GenICam_3_0::AccessException>(m_objOwner.Subject() + " has no port");
    }
    const std::uint64_t nNotes = m_objOwner.Context().UncachableNotes();
    const std::int64_t nAddress = Address();
    const bool bPlaceStays = m_objOwner.Context().UncachableNotes() == nNotes;
    try {
        m_pPort->Write(buffer.data(), nAddress, static_cast<std::int64_t>(buffer.size()));
    } catch (...) {
        // Nobody knows what the device has now.
        objChange.Invalidated(m_objOwner.Number());
        throw;
    }
    const bool bRenews =
        m_objOwner.OwnCachingMode() == WriteThrough || (m_objOwner.OwnCachingMode() == NoCache && m_pCell->Valid);
    m_pCell->Valid = false;
    if (bPlaceStays && bRenews) {
        Keep(buffer);
    }
    objChange.Written(m_objOwner.Number());
    objChange.Finish();
}

}  // namespace GenApi_3_0
