#include "GenApi/NodeImpl.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"
#include "GenApi/NodeMap.h"
#include "GenApi/NodeMapLimits.h"
#include "GenApi/NumberText.h"
#include "GenApi/PropertyReader.h"
#include "GenApi/Value.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::AccessException;
using GenICam_3_0::DynamicCastException;
using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::Throw;

const char* NameOf(EAccessMode eMode) {
    constexpr const char* kNames[] = {"NI (not implemented)", "NA (not available)", "WO (write only)", "RO (read only)",
                                      "RW (read and write)"};
    return eMode >= NI && eMode <= RW ? kNames[eMode] : "undefined";
}

}  // namespace

CNodeImpl::CNodeImpl(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
    : m_objContext(objContext),
      m_objModel(objModel),
      m_pState(&objContext.State(nNode)),
      m_strName(objModel.Nodes[nNode].Name),
      m_nNode(nNode) {}

std::string CNodeImpl::Subject() const {
    return "Node '" + std::string(m_strName) + "'";
}

// Loading

bool CNodeImpl::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    switch (objProperty.Tag) {
        case ETag::Visibility:
            m_eVisibility = objReader.Word<EVisibility>(
                objProperty, {{"Beginner", Beginner}, {"Expert", Expert}, {"Guru", Guru}, {"Invisible", Invisible}});
            return true;
        case ETag::AccessMode:
            m_eAccessMode =
                objReader.Word<EAccessMode>(objProperty, {{"RO", RO}, {"RW", RW}, {"WO", WO}, {"NA", NA}, {"NI", NI}});
            return true;
        case ETag::ImposedAccessMode:
            m_eImposedByDescription =
                objReader.Word<EAccessMode>(objProperty, {{"RO", RO}, {"RW", RW}, {"WO", WO}, {"NA", NA}, {"NI", NI}});
            return true;
        case ETag::ImposedVisibility:
            m_eImposedVisibility = objReader.Word<EVisibility>(
                objProperty, {{"Beginner", Beginner}, {"Expert", Expert}, {"Guru", Guru}, {"Invisible", Invisible}});
            return true;
        case ETag::Cachable:
            m_eCachingMode = objReader.Word<ECachingMode>(
                objProperty, {{"NoCache", NoCache}, {"WriteThrough", WriteThrough}, {"WriteAround", WriteAround}});
            return true;
        case ETag::PollingTime:
            m_bPolled = objReader.Integer(objProperty) > 0;  // its length is kept as text
            return true;
        case ETag::pIsImplemented:
            m_pIsImplemented = objReader.Node(objProperty, ELink::Access, EWanted::Number);
            return true;
        case ETag::pIsAvailable:
            m_pIsAvailable = objReader.Node(objProperty, ELink::Access, EWanted::Number);
            return true;
        case ETag::pIsLocked:
            m_pIsLocked = objReader.Node(objProperty, ELink::Access, EWanted::Number);
            return true;
        case ETag::pInvalidator:
            objReader.Node(objProperty, ELink::Invalidator, EWanted::Anything);
            return true;
        case ETag::pSelected: {
            CNodeImpl* pSelected = objReader.Node(objProperty, ELink::Mention, EWanted::Anything);
            Selection().Selected.push_back(pSelected);
            pSelected->AddSelecting(this);
            return true;
        }
        case ETag::pAlias:
        case ETag::pCastAlias:
            objReader.Node(objProperty, ELink::Mention, EWanted::Anything);
            return true;
        default:
            return false;
    }
}

void CNodeImpl::Complete(CPropertyReader& objReader) {
    if (m_pSelection == nullptr) {
        return;
    }
    // A device may exchange what lies behind a selected feature on its own, so that the registers below it count too.
    for (CNodeImpl* pSelected : m_pSelection->Selected) {
        unsigned nSteps = 0;
        for (CNodeImpl* p = pSelected; p != nullptr && nSteps < kMaxSelectedDepth; p = p->ValueNode(), ++nSteps) {
            objReader.NoteSelector(p->Number());
        }
    }
}

void CNodeImpl::AddSelecting(CNodeImpl* pSelector) {
    Selection().Selecting.push_back(pSelector);
}

CNodeImpl::SELECTION& CNodeImpl::Selection() {
    if (m_pSelection == nullptr) {
        m_pSelection = std::make_unique<SELECTION>();
    }
    return *m_pSelection;
}

// Numbers

void CNodeImpl::ThrowNoNumber(const char* pWanted) const {
    if (IsOfOtherDevices()) {
        Throw<AccessException>(Subject() + " is of the kind " + std::string(TagName(Kind())) +
                               ", which isn't implemented for this kind of device");
    }
    Throw<DynamicCastException>(Subject() + " is of the kind " + std::string(TagName(Kind())) + ", where " + pWanted +
                                " was wanted");
}

std::int64_t CNodeImpl::ReadInt(bool /*bIgnoreCache*/) {
    ThrowNoNumber("a node with a number");
}

double CNodeImpl::ReadFloat(bool bIgnoreCache) {
    return static_cast<double>(ReadInt(bIgnoreCache));
}

void CNodeImpl::WriteInt(std::int64_t /*nValue*/, bool /*bVerify*/) {
    ThrowNoNumber("a node with a number that can be written");
}

void CNodeImpl::WriteFloat(double fValue, bool bVerify) {
    const auto nValue = RoundToInteger(fValue);
    if (!nValue) {
        Throw<GenICam_3_0::OutOfRangeException>(Subject() + ": " + FormatFloat(fValue) +
                                                " doesn't fit into an integer");
    }
    WriteInt(*nValue, bVerify);
}

std::int64_t CNodeImpl::MinInt() {
    return std::numeric_limits<std::int64_t>::min();
}

std::int64_t CNodeImpl::MaxInt() {
    return std::numeric_limits<std::int64_t>::max();
}

std::int64_t CNodeImpl::IncInt() {
    return 1;
}

double CNodeImpl::MinFloat() {
    return static_cast<double>(MinInt());
}

double CNodeImpl::MaxFloat() {
    return static_cast<double>(MaxInt());
}

double CNodeImpl::IncFloat() {
    return 0;
}

std::int64_t CNodeImpl::EntryValue(std::string_view /*strSymbolic*/) {
    ThrowNoNumber("an Enumeration");
}

// Access mode

EAccessMode CNodeImpl::SourceAccessMode() {
    return IsOfOtherDevices() ? NI : RW;
}

bool CNodeImpl::IsOfOtherDevices() const {
    return Kind() >= ETag::IntKey && Kind() <= ETag::SmartFeature;
}

EAccessMode CNodeImpl::ComputeAccessMode() {
    std::uint32_t& nLowestCircle = m_objContext.LowestCircle();
    if (m_nAccessLevel != 0) {
        nLowestCircle = std::min(nLowestCircle, m_nAccessLevel);
        return RW;
    }
    const CEvaluation objStep(m_objContext, m_strName);
    struct LEVEL {
        LEVEL(CNodeContext& objContext, std::uint32_t& nLevel)
            : Context(objContext), Level(nLevel), Outer(std::exchange(objContext.LowestCircle(), UINT32_MAX)) {
            Level = Context.EnterAccess();
        }
        ~LEVEL() {
            const std::uint32_t nLowest = Context.LowestCircle();
            Context.LowestCircle() = std::min(Outer, nLowest < Level ? nLowest : UINT32_MAX);
            Level = 0;
            Context.LeaveAccess();
        }
        LEVEL(const LEVEL&) = delete;
        LEVEL& operator=(const LEVEL&) = delete;
        CNodeContext& Context;
        std::uint32_t& Level;
        std::uint32_t Outer;
    };
    const LEVEL objLevel(m_objContext, m_nAccessLevel);
    const std::uint64_t nNotes = m_objContext.UncachableNotes();
    const EAccessMode eMode = FromFlags();
    if (m_objContext.UncachableNotes() == nNotes && nLowestCircle >= m_nAccessLevel) {
        m_pState->Access = eMode;
    }
    return eMode;
}

EAccessMode CNodeImpl::FromFlags() {
    EAccessMode eMode = Combine(Combine(m_eAccessMode, m_eImposedByDescription), m_eImposedByUser);
    if (eMode == NI) {
        return NI;
    }
    if (m_pIsImplemented != nullptr) {
        const EFlag eImplemented = Ask(m_pIsImplemented);
        if (eImplemented == EFlag::No) {
            return NI;
        }
        if (eImplemented == EFlag::Unknown) {
            eMode = NA;
        }
    }
    eMode = Combine(eMode, SourceAccessMode());
    if (!IsAvailable(eMode)) {
        return eMode;
    }
    if (m_pIsAvailable != nullptr && Ask(m_pIsAvailable) != EFlag::Yes) {
        return NA;
    }
    // A lock that can't be read counts as closed.
    if (m_pIsLocked != nullptr && Ask(m_pIsLocked) != EFlag::No) {
        return Combine(eMode, RO);
    }
    return eMode;
}

CNodeImpl::EFlag CNodeImpl::Ask(CNodeImpl* pNode) {
    if (!IsReadable(pNode->AccessMode())) {
        return EFlag::Unknown;
    }
    return pNode->ReadFloat(false) != 0 ? EFlag::Yes : EFlag::No;
}

void CNodeImpl::CheckReadable() {
    const EAccessMode eMode = AccessMode();
    if (!IsReadable(eMode)) {
        Throw<AccessException>(Subject() + " can't be read: its access mode is " + NameOf(eMode));
    }
}

void CNodeImpl::RequireWritable() {
    const EAccessMode eMode = AccessMode();
    if (!IsWritable(eMode)) {
        Throw<AccessException>(Subject() + " can't be written: its access mode is " + NameOf(eMode));
    }
}

EAccessMode CNodeImpl::GetAccessMode() const {
    const AutoLock objLock(m_objContext.Lock());
    return const_cast<CNodeImpl*>(this)->AccessMode();
}

void CNodeImpl::ImposeAccessMode(EAccessMode ImposedAccessMode) {
    if (ImposedAccessMode < NI || ImposedAccessMode > RW) {
        Throw<InvalidArgumentException>(Subject() + ": no access mode has the number " +
                                        std::to_string(ImposedAccessMode));
    }
    CChange objChange(m_objContext);
    m_eImposedByUser = ImposedAccessMode;
    objChange.Invalidated(m_nNode, kDirtyAccess);
    objChange.Finish();
}

EYesNo CNodeImpl::IsAccessModeCacheable() const {
    const AutoLock objLock(m_objContext.Lock());
    const_cast<CNodeImpl*>(this)->AccessMode();
    return m_pState->Access != _UndefinedAccesMode ? Yes : No;
}

// Caching

void CNodeImpl::InvalidateNode() {
    CChange objChange(m_objContext);
    objChange.Invalidated(m_nNode, kDirtyAll | kDirtyBelow);
    objChange.Finish();
}

ECachingMode CNodeImpl::GetCachingMode() const {
    // The strictest of all that the value is made of.
    ECachingMode eMode = m_eCachingMode;
    std::vector<std::uint32_t> vecSeen{m_nNode};
    std::vector<bool> vecIsSeen(m_objModel.Nodes.size());
    vecIsSeen[m_nNode] = true;
    for (std::size_t i = 0; i < vecSeen.size() && eMode != NoCache; ++i) {
        const auto* pNode = static_cast<const CNodeImpl*>(m_objContext.NodeAt(vecSeen[i]));
        if (pNode->m_eCachingMode != WriteThrough) {
            eMode = pNode->m_eCachingMode;
        }
        for (const LINK& objLink : m_objContext.Graph().Children(vecSeen[i])) {
            const bool bMakes = objLink.Kind == ELink::Value || objLink.Kind == ELink::Input;
            if (bMakes && !vecIsSeen[objLink.Node]) {
                vecIsSeen[objLink.Node] = true;
                vecSeen.push_back(objLink.Node);
            }
        }
    }
    return eMode;
}

bool CNodeImpl::IsCachable() const {
    return GetCachingMode() != NoCache;
}

std::int64_t CNodeImpl::GetPollingTime() const {
    return ParseInteger(TextOf(ETag::PollingTime)).value_or(-1);
}

// Callbacks

CallbackHandleType CNodeImpl::RegisterCallback(CNodeCallback* pCallback) {
    std::unique_ptr<CNodeCallback> pOwned(pCallback);
    if (pOwned == nullptr) {
        Throw<InvalidArgumentException>(Subject() + ": a callback to be registered is null");
    }
    const AutoLock objLock(m_objContext.Lock());
    const CallbackHandleType hCallback = m_objContext.Callbacks().Add(m_nNode, this, std::move(pOwned));
    m_pState->HasCallback = true;
    return hCallback;
}

bool CNodeImpl::DeregisterCallback(CallbackHandleType hCallback) {
    CCallbackTable::Pin pCallback;
    {
        const AutoLock objLock(m_objContext.Lock());
        if (!m_objContext.Callbacks().Has(m_nNode, hCallback)) {
            return false;
        }
        pCallback = CCallbackTable::Find(hCallback);
        m_pState->HasCallback = m_objContext.Callbacks().Remove(m_nNode, hCallback);
    }
    CCallbackTable::Retire(*pCallback);
    return true;
}

}  // namespace GenApi_3_0
