// Any text as a description: it loads or is refused, and then every feature is read and some are written.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "GenApi/GCException.h"
#include "GenApi/NodeMapRef.h"
#include "GenApi/Pointer.h"
#include "GenApi/PortConstruct.h"

namespace {

using namespace GenApi_3_0;

/// Answers anything, anywhere.
class CFuzzPort : public IPort {
public:
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* pBuffer, std::int64_t Address, std::int64_t Length) override {
        std::memset(pBuffer, static_cast<int>(Address & 0x7F), static_cast<std::size_t>(Length));
    }
    void Write(const void* /*pBuffer*/, std::int64_t /*Address*/, std::int64_t /*Length*/) override {}
};

template <class Operation>
void Try(Operation operation) {
    try {
        operation();
    } catch (const GenICam_3_0::GenericException&) {
        // Refused in an orderly way.
    }
}

void UseNode(INode* pNode) {
    Try([&] { pNode->GetAccessMode(); });
    Try([&] { pNode->GetToolTip(); });
    Try([&] { pNode->GetCachingMode(); });
    NodeList_t vecNode;
    for (const ELinkType eType : {ctParentNodes, ctReadingChildren, ctDependingNodes, ctTerminalNodes}) {
        Try([&] { pNode->GetChildren(vecNode, eType); });
    }
    if (auto* pValue = dynamic_cast<IValue*>(pNode)) {
        Try([&] { pValue->ToString(true); });
        Try([&] { pValue->FromString("1"); });
        Try([&] { pValue->FromString(pValue->ToString(false, true), false); });
    }
    if (auto* pInteger = dynamic_cast<IInteger*>(pNode)) {
        Try([&] { pInteger->GetMin(); });
        Try([&] { pInteger->SetValue(pInteger->GetMax()); });
        Try([&] { pInteger->GetInc(); });
        Try([&] { pInteger->SetValue(INT64_MIN, false); });
    }
    if (auto* pFloat = dynamic_cast<IFloat*>(pNode)) {
        Try([&] { pFloat->GetMin(); });
        Try([&] { pFloat->SetValue(pFloat->GetMax()); });
        Try([&] { pFloat->HasInc(); });
        Try([&] { pFloat->SetValue(-1e300, false); });
    }
    if (auto* pEnumeration = dynamic_cast<IEnumeration*>(pNode)) {
        StringList_t vecSymbolic;
        Try([&] { pEnumeration->GetSymbolics(vecSymbolic); });
        Try([&] { pEnumeration->GetCurrentEntry(); });
    }
    if (auto* pCommand = dynamic_cast<ICommand*>(pNode)) {
        Try([&] { pCommand->Execute(); });
        Try([&] { pCommand->IsDone(); });
    }
    if (auto* pRegister = dynamic_cast<IRegister*>(pNode)) {
        Try([&] {
            std::vector<std::uint8_t> vecByte(static_cast<std::size_t>(pRegister->GetLength()));
            pRegister->Get(vecByte.data(), static_cast<std::int64_t>(vecByte.size()));
            pRegister->Set(vecByte.data(), static_cast<std::int64_t>(vecByte.size()));
        });
    }
}

void Load(const std::string& strText) {
    CFuzzPort objPort;
    CNodeMapRef objMap;
    objMap._LoadXMLFromString(strText);
    NodeList_t vecNode;
    objMap._GetNodes(vecNode);
    for (INode* pNode : vecNode) {
        if (auto* pPort = dynamic_cast<IPortConstruct*>(pNode)) {
            pPort->SetPortImpl(&objPort);
        }
    }
    for (INode* pNode : vecNode) {
        UseNode(pNode);
    }
    objMap._Poll(1000);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    Try([&] { Load(std::string(reinterpret_cast<const char*>(pData), nSize)); });
    return 0;
}
