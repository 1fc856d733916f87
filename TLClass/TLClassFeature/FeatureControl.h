#pragma once

#include <memory>
#include <string>
#include <vector>

#include "GenApi/NodeMapRef.h"
#include "TLClass/TLClassFeature/FeatureCallbackHandle.h"
#include "TLClass/TLClassFeature/IFeatureControl.h"

/// Features of the node map that an analyzer owns. No node and no exception of the node map's family leaves it.
///
/// Made on the heap by the module that owns the analyzer, and dropped before the analyzer is cleared. Its destructor
/// unregisters all callbacks. No lock of its own: each operation is one of the node map, which has one.
class CFeatureControl : public IFeatureControl {
public:
    /// @param pNodeMapRef  loaded; not owned
    explicit CFeatureControl(GenApi_3_0::CNodeMapRef* pNodeMapRef) : m_pNodeMapRef(pNodeMapRef) {}
    ~CFeatureControl() override;
    CFeatureControl(const CFeatureControl&) = delete;
    CFeatureControl& operator=(const CFeatureControl&) = delete;

    std::string GetFeatureDisplayName(const std::string& strFeature) override;
    bool IsFeatureExist(const std::string& strFeature) override;
    bool IsFeatureImplemented(const std::string& strFeature) override;
    bool IsFeatureReadable(const std::string& strFeature) override;
    bool IsFeatureWritable(const std::string& strFeature) override;

    FEATURE_INT_RANGE DoGetIntRange(const std::string& strFeature) override;
    std::int64_t DoGetInt(const std::string& strFeature) override;
    void DoSetInt(const std::string& strFeature, std::int64_t nValue) override;

    FEATURE_FLOAT_RANGE DoGetFloatRange(const std::string& strFeature) override;
    double DoGetFloat(const std::string& strFeature) override;
    void DoSetFloat(const std::string& strFeature, double fValue) override;

    std::uint32_t DoGetEnumEntryNums(const std::string& strFeature) override;
    void DoGetEnumDescription(const std::string& strFeature, std::vector<FEATURE_ENUM_ENTRY>& vecEntries) override;
    std::int64_t DoGetEnum(const std::string& strFeature) override;
    void DoSetEnum(const std::string& strFeature, std::int64_t nValue) override;
    std::int64_t DoGetEnumEntryValue(const std::string& strFeature, const std::string& strSymbolic) override;

    bool DoGetBool(const std::string& strFeature) override;
    void DoSetBool(const std::string& strFeature, bool bValue) override;

    std::int64_t DoGetMaxStringLength(const std::string& strFeature) override;
    std::string DoGetString(const std::string& strFeature) override;
    void DoSetString(const std::string& strFeature, const std::string& strValue) override;

    std::int64_t DoGetBufferLength(const std::string& strFeature) override;
    void DoGetBuffer(const std::string& strFeature, std::size_t nSize, void* pBuffer) override;
    void DoSetBuffer(const std::string& strFeature, std::size_t nSize, const void* pBuffer) override;

    void DoSendCommand(const std::string& strFeature) override;

    IFeatureCallbackHandle* RegisterFeatureCallback(const std::string& strFeature,
                                                    IFeatureCallback* pCallback) override;
    void UnregisterFeatureCallback(IFeatureCallbackHandle* pHandle) override;
    void UnregisterAllFeatureCallbacks() override;

private:
    friend class CFeatureControlInspection;  // lets a test reach the two operations at the end

    using CallbackHandles = std::vector<std::unique_ptr<CFeatureCallbackHandle>>;

    GenApi_3_0::INode* __GetGenAPINode(const std::string& strFeature) const;
    template <typename INTERFACE>
    INTERFACE* __GetNodeHandle(const std::string& strFeature) const;
    CallbackHandles::const_iterator __FindCallbackHandle(const IFeatureCallbackHandle* pHandle) const;

    // Not called yet: for a client that listens to events of the camera.
    bool __IsFeatureCallbackRegistered(const std::string& strFeature, const IFeatureCallbackHandle* pHandle) const;
    bool __IsEventControlFeature(const std::string& strFeature) const;

    GenApi_3_0::CNodeMapRef* m_pNodeMapRef;
    CallbackHandles m_vecCallbackHandles;
};
