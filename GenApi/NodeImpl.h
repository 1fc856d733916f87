#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "GenApi/DescriptionModel.h"
#include "GenApi/Node.h"
#include "GenApi/NodeContext.h"
#include "GenApi/Selector.h"

namespace GenApi_3_0 {

class CPropertyReader;

/// What every node has: name, texts, visibility, access mode, selectors, callbacks. Owned by its node map. By itself it
/// is a Node, or one of the kinds that only cameras on another bus have and that are never implemented here.
///
/// Two sides: the public interfaces, which take the lock and check, and the operations on numbers below, which nodes
/// use among each other with the lock held. Those check no access mode: the outermost node's covers all that it stands
/// on.
class CNodeImpl : public INode, public ISelector {
public:
    CNodeImpl(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode);
    ~CNodeImpl() override = default;
    CNodeImpl(const CNodeImpl&) = delete;
    CNodeImpl& operator=(const CNodeImpl&) = delete;

    // Loading

    /// Takes one property.
    /// @return false if it means nothing to this kind of node
    virtual bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader);
    /// All nodes have their properties now.
    virtual void Complete(CPropertyReader& objReader);
    void AddSelecting(CNodeImpl* pSelector);
    /// The node that has this one's value; null if there is none or an index tells which.
    virtual CNodeImpl* ValueNode() const { return nullptr; }

    // Numbers, with the lock held. Nodes without a number throw.

    virtual std::int64_t ReadInt(bool bIgnoreCache);
    virtual double ReadFloat(bool bIgnoreCache);
    /// @param bVerify  check the limits on the way down
    virtual void WriteInt(std::int64_t nValue, bool bVerify);
    virtual void WriteFloat(double fValue, bool bVerify);
    virtual std::int64_t MinInt();
    virtual std::int64_t MaxInt();
    virtual std::int64_t IncInt();
    virtual double MinFloat();
    virtual double MaxFloat();
    /// @return 0 if there is no increment
    virtual double IncFloat();
    /// The value of the enumeration's entry of that name.
    virtual std::int64_t EntryValue(std::string_view strSymbolic);

    /// The access mode, from the cache if it is there.
    EAccessMode AccessMode() {
        return m_pState->Access != _UndefinedAccesMode ? m_pState->Access : ComputeAccessMode();
    }

    std::uint32_t Number() const { return m_nNode; }
    std::string_view Name() const { return m_strName; }
    CNodeContext& Context() const { return m_objContext; }
    NODE_STATE& State() const { return *m_pState; }
    ETag Kind() const { return m_objModel.Nodes[m_nNode].Kind; }
    EAccessMode OwnAccessMode() const { return m_eAccessMode; }
    bool IsPolled() const { return m_bPolled; }
    bool IsUncached() const { return m_eCachingMode == NoCache; }
    ECachingMode OwnCachingMode() const { return m_eCachingMode; }
    /// `Node 'Gain'`, to begin a message with.
    std::string Subject() const;

    // INode
    EAccessMode GetAccessMode() const override;
    gcstring GetName(bool FullQualified = false) const override;
    ENameSpace GetNameSpace() const override;
    EVisibility GetVisibility() const override;
    void InvalidateNode() override;
    bool IsCachable() const override;
    EYesNo IsAccessModeCacheable() const override;
    ECachingMode GetCachingMode() const override;
    std::int64_t GetPollingTime() const override;
    gcstring GetToolTip() const override;
    gcstring GetDescription() const override;
    gcstring GetDisplayName() const override;
    gcstring GetDeviceName() const override;
    gcstring GetEventID() const override;
    gcstring GetDocuURL() const override;
    bool IsStreamable() const override;
    bool IsDeprecated() const override;
    bool IsFeature() const override;
    EInterfaceType GetPrincipalInterfaceType() const override;
    void* GetInterface(EInterfaceType /*eType*/) override { return nullptr; }
    void GetPropertyNames(gcstring_vector& PropertyNames) const override;
    bool GetProperty(const gcstring& PropertyName, gcstring& ValueStr, gcstring& AttributeStr) const override;
    void ImposeAccessMode(EAccessMode ImposedAccessMode) override;
    void ImposeVisibility(EVisibility ImposedVisibility) override;
    INode* GetAlias() const override;
    INode* GetCastAlias() const override;
    void GetChildren(NodeList_t& Children, ELinkType LinkType = ctReadingChildren) const override;
    void GetParents(NodeList_t& Parents) const override;
    INodeMap* GetNodeMap() const override;
    CallbackHandleType RegisterCallback(CNodeCallback* pCallback) override;
    bool DeregisterCallback(CallbackHandleType hCallback) override;

    // ISelector
    bool IsSelector() const override;
    void GetSelectedFeatures(FeatureList_t& SelectedFeatures) const override;
    void GetSelectingFeatures(FeatureList_t& SelectingFeatures) const override;

protected:
    /// The access mode of what the value comes from: the register's port, pValue, the variables.
    virtual EAccessMode SourceAccessMode();
    EAccessMode ComputeAccessMode();

    /// @throws AccessException
    void RequireReadable() {
        if (m_pState->Access != RW && m_pState->Access != RO) {
            CheckReadable();
        }
    }
    /// @throws AccessException
    void RequireWritable();

    /// A value that is read often and changes seldom: from the cache, or fetched and, if nothing on the way changes
    /// without notice, cached.
    template <class Value, class Fetch>
    const Value& Cached(Value& value, bool bIgnoreCache, Fetch fetch) {
        if (m_pState->ValueValid && !bIgnoreCache) {
            return value;
        }
        const CEvaluation objStep(m_objContext, m_strName);
        const std::uint64_t nNotes = m_objContext.UncachableNotes();
        value = fetch();
        if (m_eCachingMode == NoCache) {
            m_objContext.NoteUncachable();
        }
        m_pState->ValueValid = m_objContext.UncachableNotes() == nNotes;
        return value;
    }

    /// The first text that the description gives for that element, empty if none.
    std::string_view TextOf(ETag eTag) const;
    const PROPERTY* FindProperty(ETag eTag) const;
    [[noreturn]] void ThrowNoNumber(const char* pWanted) const;
    void SetDefaultAccessMode(EAccessMode eMode) { m_eAccessMode = eMode; }

private:
    enum class EFlag { No, Yes, Unknown };
    struct SELECTION {
        std::vector<CNodeImpl*> Selected;
        std::vector<CNodeImpl*> Selecting;
    };

    /// Whether the kind belongs to cameras on another bus.
    bool IsOfOtherDevices() const;
    EAccessMode FromFlags();
    static EFlag Ask(CNodeImpl* pNode);
    void CheckReadable();
    SELECTION& Selection();
    template <class Visitor>
    void VisitProperties(Visitor visitor) const;
    static void AppendValues(const std::vector<CNodeImpl*>& vecNode, FeatureList_t& vecValue);
    void CollectTerminals(NodeList_t& vecTerminal) const;

    CNodeContext& m_objContext;
    const DESCRIPTION_MODEL& m_objModel;
    NODE_STATE* m_pState;
    std::string_view m_strName;
    std::uint32_t m_nNode;
    std::uint32_t m_nAccessLevel = 0;  // place in the chain of nodes that ask for access modes; 0: not in it
    EAccessMode m_eAccessMode = RW;
    EAccessMode m_eImposedByDescription = RW;
    EAccessMode m_eImposedByUser = RW;
    ECachingMode m_eCachingMode = WriteThrough;
    CNodeImpl* m_pIsImplemented = nullptr;
    CNodeImpl* m_pIsAvailable = nullptr;
    CNodeImpl* m_pIsLocked = nullptr;
    bool m_bPolled = false;
    EVisibility m_eVisibility = Beginner;
    EVisibility m_eImposedVisibility = Beginner;
    std::unique_ptr<SELECTION> m_pSelection;
};

}  // namespace GenApi_3_0
