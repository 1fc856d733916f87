#pragma once

#include <cstdint>

#include "GenApi/Command.h"
#include "GenApi/NodeImpl.h"
#include "GenApi/ValueSource.h"

namespace GenApi_3_0 {

/// A Command: writing its number starts something; the number stays there until the device is done.
class CCommandNode : public CNodeImpl, public ICommand {
public:
    CCommandNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
        : CNodeImpl(objContext, objModel, nNode), m_objSource(*this) {}

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override;

    // Numbers, with the lock held: 1 as long as the command isn't done
    std::int64_t ReadInt(bool bIgnoreCache) override;

    // ICommand
    void Execute(bool Verify = true) override;
    bool IsDone(bool Verify = true) override;

    // IValue
    INode* GetNode() override { return this; }
    /// "0" if it is done.
    gcstring ToString(bool Verify = false, bool IgnoreCache = false) override;
    /// Executes it, whatever number is given but 0.
    void FromString(const gcstring& ValueStr, bool Verify = true) override;
    bool IsValueCacheValid() const override { return false; }

    EInterfaceType GetPrincipalInterfaceType() const override { return intfICommand; }
    void* GetInterface(EInterfaceType eType) override {
        return eType == intfICommand ? static_cast<ICommand*>(this) : nullptr;
    }

protected:
    EAccessMode SourceAccessMode() override { return m_objSource.AccessMode(); }
    CNodeImpl* ValueNode() const override { return m_objSource.FixedNode(); }

private:
    bool IsDoneNow();

    CValueSource<std::int64_t> m_objSource;
    CNumberRef<std::int64_t> m_objCommand{std::int64_t{1}};
    bool m_bRunning = false;  // executed, and not yet seen done
};

}  // namespace GenApi_3_0
