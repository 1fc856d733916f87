#pragma once

#include <cstdint>

#include "GenApi/Base.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0 {

class CNodeCallback;
class INodeMap;

/// What a registration answers; good for one Deregister.
using CallbackHandleType = std::intptr_t;

/// One node of a node map: what it is called, how it is shown, what it stands on. The node map owns it. What it can do
/// is found by dynamic_cast to IInteger, IFloat, IEnumeration and so on. Every operation may be called from any thread.
class INode : virtual public IBase {
public:
    /// @param FullQualified  with the name space in front: `Std::Gain`, `Cust::Gain`
    virtual gcstring GetName(bool FullQualified = false) const = 0;
    virtual ENameSpace GetNameSpace() const = 0;
    virtual EVisibility GetVisibility() const = 0;

    /// Drops what is cached here and in everything that depends on it, and fires the callbacks.
    virtual void InvalidateNode() = 0;
    virtual bool IsCachable() const = 0;
    virtual EYesNo IsAccessModeCacheable() const = 0;
    virtual ECachingMode GetCachingMode() const = 0;
    /// In milliseconds; -1 if the node isn't polled.
    virtual std::int64_t GetPollingTime() const = 0;

    virtual gcstring GetToolTip() const = 0;
    virtual gcstring GetDescription() const = 0;
    virtual gcstring GetDisplayName() const = 0;
    virtual gcstring GetDeviceName() const = 0;
    virtual gcstring GetEventID() const = 0;
    virtual gcstring GetDocuURL() const = 0;
    virtual bool IsStreamable() const = 0;
    virtual bool IsDeprecated() const = 0;
    /// Whether a category leads to it.
    virtual bool IsFeature() const = 0;
    virtual EInterfaceType GetPrincipalInterfaceType() const = 0;

    /// The node's interface of that number, as a T* of just that interface; null if it has none. Made for node_cast.
    virtual void* GetInterface(EInterfaceType eType) = 0;

    /// The names of the elements that the description gives this node, each once.
    virtual void GetPropertyNames(gcstring_vector& PropertyNames) const = 0;
    /// @param ValueStr      all values of that element, with a tab between two
    /// @param AttributeStr  their attributes, the same way
    /// @return false if the node has no such element
    virtual bool GetProperty(const gcstring& PropertyName, gcstring& ValueStr, gcstring& AttributeStr) const = 0;

    /// Narrows the access mode. RW takes an earlier imposition back.
    virtual void ImposeAccessMode(EAccessMode ImposedAccessMode) = 0;
    /// Raises the visibility. Beginner takes an earlier imposition back.
    virtual void ImposeVisibility(EVisibility ImposedVisibility) = 0;

    virtual INode* GetAlias() const = 0;
    virtual INode* GetCastAlias() const = 0;

    virtual void GetChildren(NodeList_t& Children, ELinkType LinkType = ctReadingChildren) const = 0;
    /// The nodes that read this one, categories included, in the order of the description.
    virtual void GetParents(NodeList_t& Parents) const = 0;
    virtual INodeMap* GetNodeMap() const = 0;

    /// Takes the callback over. Most callers use the free function Register.
    virtual CallbackHandleType RegisterCallback(CNodeCallback* pCallback) = 0;
    /// @return false if the handle isn't one of this node's
    virtual bool DeregisterCallback(CallbackHandleType hCallback) = 0;
};

}  // namespace GenApi_3_0
