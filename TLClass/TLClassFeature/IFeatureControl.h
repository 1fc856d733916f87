#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace GenApi_3_0 {
class INode;
}

struct FEATURE_INT_RANGE {
    std::int64_t Min = 0;
    std::int64_t Max = 0;
    std::int64_t Inc = 0;
    std::array<std::uint32_t, 8> Reserved{};
};

struct FEATURE_FLOAT_RANGE {
    double Min = 0;
    double Max = 0;
    double Inc = 0;  ///< 0 if the feature has no increment
    std::string Unit;
    std::uint8_t IncIsValid = 0;  ///< 1 if the feature has an increment
    std::array<std::uint8_t, 32> Reserved{};
};

struct FEATURE_ENUM_ENTRY {
    std::int64_t Value = 0;
    std::string Symbolic;
    std::array<std::uint32_t, 8> Reserved{};
};

/// The one door to the features of a module, each by its name.
///
/// No operation tests beforehand whether a feature can be read or written now; it fails if it can't. Every operation
/// but the first five and those on callbacks throws
/// - CNotImplementedError  there is no such feature, or it isn't implemented
/// - CUnexpectedError      "Dynamic_cast failed": the feature is of another type; or anything else that went wrong
/// - CInvalidAccessError   it can't be read or written now
/// - CDeviceOfflineError, CTimeoutError  the camera has gone, or doesn't answer
/// and each that sets a value also
/// - CInvalidParameterError, COutOfRangeError  the value
///
/// The module that owns the node map owns the object, and drops it before the node map. Any thread may call, but
/// callbacks are registered and unregistered by one thread at a time.
class IFeatureControl {
public:
    /// What a registration answers. Owned by the feature control until it is unregistered.
    class IFeatureCallbackHandle {
    public:
        virtual ~IFeatureCallbackHandle() = default;
    };

    /// What a caller implements to hear of changes.
    class IFeatureCallback {
    public:
        virtual ~IFeatureCallback() = default;
        /// Called on the thread that caused the change, with the node map's lock held. So it must wait for nobody who
        /// may want this lock: it opens and closes nothing, and starts and stops no acquisition and no event.
        virtual void OnFeatureChanged(GenApi_3_0::INode* pNode) = 0;
        /// A new object that the caller of Clone owns.
        virtual IFeatureCallback* Clone() = 0;
    };

    virtual ~IFeatureControl() = default;

    /// @throws CNotImplementedError  there is no such feature
    virtual std::string GetFeatureDisplayName(const std::string& strFeature) = 0;
    virtual bool IsFeatureExist(const std::string& strFeature) = 0;
    virtual bool IsFeatureImplemented(const std::string& strFeature) = 0;
    /// @throws CNotImplementedError  there is no such feature
    virtual bool IsFeatureReadable(const std::string& strFeature) = 0;
    /// @throws CNotImplementedError  there is no such feature
    virtual bool IsFeatureWritable(const std::string& strFeature) = 0;

    virtual FEATURE_INT_RANGE DoGetIntRange(const std::string& strFeature) = 0;
    virtual std::int64_t DoGetInt(const std::string& strFeature) = 0;
    virtual void DoSetInt(const std::string& strFeature, std::int64_t nValue) = 0;

    virtual FEATURE_FLOAT_RANGE DoGetFloatRange(const std::string& strFeature) = 0;
    virtual double DoGetFloat(const std::string& strFeature) = 0;
    virtual void DoSetFloat(const std::string& strFeature, double fValue) = 0;

    /// Entries that are implemented and available now; both of these count the same ones.
    virtual std::uint32_t DoGetEnumEntryNums(const std::string& strFeature) = 0;
    /// @param vecEntries  gets the entries behind those it holds already
    virtual void DoGetEnumDescription(const std::string& strFeature, std::vector<FEATURE_ENUM_ENTRY>& vecEntries) = 0;
    virtual std::int64_t DoGetEnum(const std::string& strFeature) = 0;
    virtual void DoSetEnum(const std::string& strFeature, std::int64_t nValue) = 0;
    /// @throws CInvalidParameterError  the enumeration has no entry of that name
    virtual std::int64_t DoGetEnumEntryValue(const std::string& strFeature, const std::string& strSymbolic) = 0;

    virtual bool DoGetBool(const std::string& strFeature) = 0;
    virtual void DoSetBool(const std::string& strFeature, bool bValue) = 0;

    /// In bytes.
    virtual std::int64_t DoGetMaxStringLength(const std::string& strFeature) = 0;
    virtual std::string DoGetString(const std::string& strFeature) = 0;
    virtual void DoSetString(const std::string& strFeature, const std::string& strValue) = 0;

    /// In bytes.
    virtual std::int64_t DoGetBufferLength(const std::string& strFeature) = 0;
    /// Reads the whole register, however much larger the buffer is.
    /// @throws CInvalidParameterError  pBuffer is null
    /// @throws CNeedMoreBufferError    nSize, in bytes, is less than DoGetBufferLength
    virtual void DoGetBuffer(const std::string& strFeature, std::size_t nSize, void* pBuffer) = 0;
    /// @throws CInvalidParameterError  pBuffer is null
    virtual void DoSetBuffer(const std::string& strFeature, std::size_t nSize, const void* pBuffer) = 0;

    virtual void DoSendCommand(const std::string& strFeature) = 0;

    /// Registers a clone of the callback; the caller's own object isn't kept.
    /// @throws CNotImplementedError  there is no such feature
    virtual IFeatureCallbackHandle* RegisterFeatureCallback(const std::string& strFeature,
                                                            IFeatureCallback* pCallback) = 0;
    /// Drops the clone and the handle, the clone of a callback that is just being called when the call returns: it may
    /// unregister itself. A handle that isn't registered here changes nothing.
    virtual void UnregisterFeatureCallback(IFeatureCallbackHandle* pHandle) = 0;
    virtual void UnregisterAllFeatureCallbacks() = 0;
};
