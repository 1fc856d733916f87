#include "TLClass/TLClassFeature/FeatureControl.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <set>
#include <utility>

#include "GenApi/AccessMode.h"
#include "GenApi/NodeCast.h"
#include "TLClass/TLClassFeature/FeatureFault.h"
#include "support/Log.h"
#include "support/Text.h"

using GenApi_3_0::INode;

namespace {

[[noreturn]] void ThrowNotImplemented(const std::string& strFeature, int nLine, const char* pFunction) {
    throw CNotImplementedError(Format("The feature \"%s\" is not implemented", strFeature.c_str()), kFeatureControlFile,
                               nLine, pFunction);
}

void CheckBuffer(const void* pBuffer, int nLine, const char* pFunction) {
    if (pBuffer == nullptr) {
        throw CInvalidParameterError("pBuffer can't be NULL", kFeatureControlFile, nLine, pFunction);
    }
}

/// Calls the function with each entry that is implemented and available, in the order of the node map.
template <typename FUNCTION>
void ForEachAvailableEntry(GenApi_3_0::IEnumeration* pEnumeration, FUNCTION&& fnCall) {
    GenApi_3_0::NodeList_t vecEntries;
    pEnumeration->GetEntries(vecEntries);
    for (INode* pNode : vecEntries) {
        auto* const pEntry = GenApi_3_0::node_cast<GenApi_3_0::IEnumEntry>(pNode);
        if (pEntry != nullptr && GenApi_3_0::IsAvailable(pEntry)) {
            fnCall(*pEntry);
        }
    }
}

}  // namespace

CFeatureControl::~CFeatureControl() {
    CFeatureControl::UnregisterAllFeatureCallbacks();
}

INode* CFeatureControl::__GetGenAPINode(const std::string& strFeature) const {
    INode* const pNode = m_pNodeMapRef->_FindNode(strFeature);
    if (pNode == nullptr) {
        ThrowNotImplemented(strFeature, __LINE__, "CFeatureControl::__GetGenAPINode");
    }
    return pNode;
}

template <typename INTERFACE>
INTERFACE* CFeatureControl::__GetNodeHandle(const std::string& strFeature) const {
    constexpr const char* kFunction = "CFeatureControl::__GetNodeHandle";
    INode* const pNode = __GetGenAPINode(strFeature);
    if (!GenApi_3_0::IsImplemented(pNode)) {
        ThrowNotImplemented(strFeature, __LINE__, kFunction);
    }
    auto* const pInterface = GenApi_3_0::node_cast<INTERFACE>(pNode);
    if (pInterface == nullptr) {
        throw CUnexpectedError(-1, "Dynamic_cast failed", kFeatureControlFile, __LINE__, kFunction);
    }
    return pInterface;
}

std::string CFeatureControl::GetFeatureDisplayName(const std::string& strFeature) {
    return __GetGenAPINode(strFeature)->GetDisplayName().str();
}

bool CFeatureControl::IsFeatureExist(const std::string& strFeature) {
    return m_pNodeMapRef->_FindNode(strFeature) != nullptr;
}

bool CFeatureControl::IsFeatureImplemented(const std::string& strFeature) {
    return GenApi_3_0::IsImplemented(m_pNodeMapRef->_FindNode(strFeature));
}

bool CFeatureControl::IsFeatureReadable(const std::string& strFeature) {
    return GenApi_3_0::IsReadable(__GetGenAPINode(strFeature));
}

bool CFeatureControl::IsFeatureWritable(const std::string& strFeature) {
    return GenApi_3_0::IsWritable(__GetGenAPINode(strFeature));
}

FEATURE_INT_RANGE CFeatureControl::DoGetIntRange(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetIntRange", [&] {
        auto* const pInteger = __GetNodeHandle<GenApi_3_0::IInteger>(strFeature);
        FEATURE_INT_RANGE objRange;
        objRange.Min = pInteger->GetMin();
        objRange.Max = pInteger->GetMax();
        objRange.Inc = pInteger->GetInc();
        return objRange;
    });
}

std::int64_t CFeatureControl::DoGetInt(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetInt",
                                   [&] { return __GetNodeHandle<GenApi_3_0::IInteger>(strFeature)->GetValue(); });
}

void CFeatureControl::DoSetInt(const std::string& strFeature, std::int64_t nValue) {
    ConvertGenApiSetterExceptions("CFeatureControl::DoSetInt",
                                  [&] { __GetNodeHandle<GenApi_3_0::IInteger>(strFeature)->SetValue(nValue, true); });
}

FEATURE_FLOAT_RANGE CFeatureControl::DoGetFloatRange(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetFloatRange", [&] {
        auto* const pFloat = __GetNodeHandle<GenApi_3_0::IFloat>(strFeature);
        FEATURE_FLOAT_RANGE objRange;
        objRange.Min = pFloat->GetMin();
        objRange.Max = pFloat->GetMax();
        if (pFloat->HasInc()) {
            objRange.Inc = pFloat->GetInc();
            objRange.IncIsValid = 1;
        }
        objRange.Unit = pFloat->GetUnit().str();
        return objRange;
    });
}

double CFeatureControl::DoGetFloat(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetFloat",
                                   [&] { return __GetNodeHandle<GenApi_3_0::IFloat>(strFeature)->GetValue(); });
}

void CFeatureControl::DoSetFloat(const std::string& strFeature, double fValue) {
    ConvertGenApiSetterExceptions("CFeatureControl::DoSetFloat",
                                  [&] { __GetNodeHandle<GenApi_3_0::IFloat>(strFeature)->SetValue(fValue, true); });
}

std::uint32_t CFeatureControl::DoGetEnumEntryNums(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetEnumEntryNums", [&] {
        std::uint32_t nEntries = 0;
        ForEachAvailableEntry(__GetNodeHandle<GenApi_3_0::IEnumeration>(strFeature),
                              [&](GenApi_3_0::IEnumEntry&) { ++nEntries; });
        return nEntries;
    });
}

void CFeatureControl::DoGetEnumDescription(const std::string& strFeature, std::vector<FEATURE_ENUM_ENTRY>& vecEntries) {
    ConvertGenApiExceptions("CFeatureControl::DoGetEnumDescription", [&] {
        ForEachAvailableEntry(__GetNodeHandle<GenApi_3_0::IEnumeration>(strFeature),
                              [&](GenApi_3_0::IEnumEntry& objNode) {
                                  FEATURE_ENUM_ENTRY objEntry;
                                  objEntry.Value = objNode.GetValue();
                                  objEntry.Symbolic = objNode.GetSymbolic().str();
                                  vecEntries.push_back(std::move(objEntry));
                              });
    });
}

std::int64_t CFeatureControl::DoGetEnum(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetEnum", [&] {
        return __GetNodeHandle<GenApi_3_0::IEnumeration>(strFeature)->GetIntValue();
    });
}

void CFeatureControl::DoSetEnum(const std::string& strFeature, std::int64_t nValue) {
    ConvertGenApiSetterExceptions("CFeatureControl::DoSetEnum", [&] {
        __GetNodeHandle<GenApi_3_0::IEnumeration>(strFeature)->SetIntValue(nValue, true);
    });
}

std::int64_t CFeatureControl::DoGetEnumEntryValue(const std::string& strFeature, const std::string& strSymbolic) {
    constexpr const char* kFunction = "CFeatureControl::DoGetEnumEntryValue";
    return ConvertGenApiExceptions(kFunction, [&] {
        auto* const pEntry = __GetNodeHandle<GenApi_3_0::IEnumeration>(strFeature)->GetEntryByName(strSymbolic);
        if (pEntry == nullptr) {
            throw CInvalidParameterError(
                "The enumeration feature \"" + strFeature + "\" does not contain the entry \"" + strSymbolic + "\"",
                kFeatureControlFile, __LINE__, kFunction);
        }
        return pEntry->GetValue();
    });
}

bool CFeatureControl::DoGetBool(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetBool",
                                   [&] { return __GetNodeHandle<GenApi_3_0::IBoolean>(strFeature)->GetValue(); });
}

void CFeatureControl::DoSetBool(const std::string& strFeature, bool bValue) {
    ConvertGenApiSetterExceptions("CFeatureControl::DoSetBool",
                                  [&] { __GetNodeHandle<GenApi_3_0::IBoolean>(strFeature)->SetValue(bValue, true); });
}

std::int64_t CFeatureControl::DoGetMaxStringLength(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetMaxStringLength",
                                   [&] { return __GetNodeHandle<GenApi_3_0::IString>(strFeature)->GetMaxLength(); });
}

std::string CFeatureControl::DoGetString(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetString",
                                   [&] { return __GetNodeHandle<GenApi_3_0::IString>(strFeature)->GetValue().str(); });
}

void CFeatureControl::DoSetString(const std::string& strFeature, const std::string& strValue) {
    ConvertGenApiSetterExceptions("CFeatureControl::DoSetString",
                                  [&] { __GetNodeHandle<GenApi_3_0::IString>(strFeature)->SetValue(strValue, true); });
}

std::int64_t CFeatureControl::DoGetBufferLength(const std::string& strFeature) {
    return ConvertGenApiExceptions("CFeatureControl::DoGetBufferLength",
                                   [&] { return __GetNodeHandle<GenApi_3_0::IRegister>(strFeature)->GetLength(); });
}

void CFeatureControl::DoGetBuffer(const std::string& strFeature, std::size_t nSize, void* pBuffer) {
    constexpr const char* kFunction = "CFeatureControl::DoGetBuffer";
    ConvertGenApiExceptions(kFunction, [&] {
        CheckBuffer(pBuffer, __LINE__, kFunction);
        auto* const pRegister = __GetNodeHandle<GenApi_3_0::IRegister>(strFeature);
        const std::int64_t nLength = DoGetBufferLength(strFeature);
        if (std::cmp_less(nSize, nLength)) {
            throw CNeedMoreBufferError("Need more buffer", kFeatureControlFile, __LINE__, kFunction);
        }
        pRegister->Get(static_cast<std::uint8_t*>(pBuffer), nLength);
    });
}

void CFeatureControl::DoSetBuffer(const std::string& strFeature, std::size_t nSize, const void* pBuffer) {
    constexpr const char* kFunction = "CFeatureControl::DoSetBuffer";
    ConvertGenApiSetterExceptions(kFunction, [&] {
        CheckBuffer(pBuffer, __LINE__, kFunction);
        auto* const pRegister = __GetNodeHandle<GenApi_3_0::IRegister>(strFeature);
        pRegister->Set(static_cast<const std::uint8_t*>(pBuffer), static_cast<std::int64_t>(nSize), true);
    });
}

void CFeatureControl::DoSendCommand(const std::string& strFeature) {
    ConvertGenApiExceptions("CFeatureControl::DoSendCommand",
                            [&] { __GetNodeHandle<GenApi_3_0::ICommand>(strFeature)->Execute(true); });
}

IFeatureControl::IFeatureCallbackHandle* CFeatureControl::RegisterFeatureCallback(const std::string& strFeature,
                                                                                  IFeatureCallback* pCallback) {
    std::unique_ptr<IFeatureCallback> pClone(pCallback->Clone());
    INode* const pNode = __GetGenAPINode(strFeature);
    m_vecCallbackHandles.reserve(m_vecCallbackHandles.size() + 1);  // nothing may fail once it is registered
    auto pHandle = std::make_unique<CFeatureCallbackHandle>(strFeature, std::move(pClone));
    pHandle->Register(pNode);
    return m_vecCallbackHandles.emplace_back(std::move(pHandle)).get();
}

void CFeatureControl::UnregisterFeatureCallback(IFeatureCallbackHandle* pHandle) {
    const auto itHandle =
        m_vecCallbackHandles.begin() + std::distance(m_vecCallbackHandles.cbegin(), __FindCallbackHandle(pHandle));
    if (itHandle == m_vecCallbackHandles.end()) {
        return;
    }
    // Off the list first: a callback that unregisters another finds the list in order.
    const std::unique_ptr<CFeatureCallbackHandle> pGone = std::move(*itHandle);
    m_vecCallbackHandles.erase(itHandle);
    pGone->Deregister();
}

void CFeatureControl::UnregisterAllFeatureCallbacks() {
    try {
        while (!m_vecCallbackHandles.empty()) {
            const std::unique_ptr<CFeatureCallbackHandle> pHandle = std::move(m_vecCallbackHandles.front());
            m_vecCallbackHandles.erase(m_vecCallbackHandles.begin());
            pHandle->Deregister();
        }
    } catch (const std::exception& objException) {
        CLog::GetInstance()->Write(FormatFailure(
            kFeatureControlFile, __LINE__, "CFeatureControl::UnregisterAllFeatureCallbacks", objException.what()));
    }
}

CFeatureControl::CallbackHandles::const_iterator CFeatureControl::__FindCallbackHandle(
    const IFeatureCallbackHandle* pHandle) const {
    return std::find_if(m_vecCallbackHandles.begin(), m_vecCallbackHandles.end(),
                        [pHandle](const auto& pRegistered) { return pRegistered.get() == pHandle; });
}

bool CFeatureControl::__IsFeatureCallbackRegistered(const std::string& strFeature,
                                                    const IFeatureCallbackHandle* pHandle) const {
    const auto itHandle = __FindCallbackHandle(pHandle);
    return itHandle != m_vecCallbackHandles.end() && (*itHandle)->GetFeatureName() == strFeature;
}

bool CFeatureControl::__IsEventControlFeature(const std::string& strFeature) const {
    try {
        const auto ParentsOf = [](const INode* pNode) {
            GenApi_3_0::NodeList_t vecParents;
            pNode->GetParents(vecParents);
            std::reverse(vecParents.begin(), vecParents.end());  // the first is taken from the end
            return vecParents;
        };
        const INode* const pStart = m_pNodeMapRef->_FindNode(strFeature);
        std::vector<GenApi_3_0::NodeList_t> vecOpen;
        if (pStart != nullptr) {
            vecOpen.push_back(ParentsOf(pStart));
        }
        // A walk upwards, with each node once: a hostile description joins a few categories in millions of ways.
        std::set<const INode*> setSeen;
        while (!vecOpen.empty()) {
            if (vecOpen.back().empty()) {
                vecOpen.pop_back();
                continue;
            }
            const INode* const pParent = vecOpen.back().back();
            vecOpen.back().pop_back();
            const auto strName = pParent->GetName();
            if (strName == "EventControl") {
                return true;
            }
            if (strName == "Root") {
                vecOpen.back().clear();  // later parents of the same node aren't looked at
            } else if (setSeen.insert(pParent).second) {
                vecOpen.push_back(ParentsOf(pParent));
            }
        }
        return false;
    } catch (const std::exception&) {
        return false;
    }
}
