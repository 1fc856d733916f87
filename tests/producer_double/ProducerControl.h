#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "GenTL/GenTL.h"

/// How a test scripts the producer double that it has loaded (CProducerLibrary gives the control object).
///
/// The double is a world and a view of it. The world is what these interfaces change: adapters, cameras, registers,
/// frames. A consumer sees its lists as they stood at its last update call, as the standard asks. Everything here may
/// be called from any thread, also while the consumer is inside an entry; references stay valid until Reset.
///
/// Modules have names, which rules and records use: the system "tl", an interface and a device their ID, a device's
/// remote port "cam-1:remote", its streams "cam-1:stream-0", an event its source and type, "cam-1:remote!1000".
namespace ProducerDouble {

using BYTES = std::vector<std::byte>;

BYTES BytesOf(std::string_view strText);

constexpr std::uint32_t Ipv4(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    return (a << 24) | (b << 16) | (c << 8) | d;
}

/// First octet highest, as the features hold them.
struct GEV_ADDRESS {
    std::uint32_t nIp = 0;
    std::uint32_t nMask = 0;
    std::uint32_t nGateway = 0;
    std::uint64_t nMac = 0;
};

/// What a call that fills a buffer answers: a truth, or a lie about sizes, ends and types.
/// Never more bytes are written than the caller's size allows.
struct ANSWER {
    GC_ERROR nCode = GC_ERR_SUCCESS;
    INFO_DATATYPE nType = INFO_DATATYPE_UNKNOWN;
    BYTES vecBytes;
    std::optional<std::size_t> nSizeAsked;  ///< reported for a null buffer in place of the bytes' number; a buffer that
                                            ///< is too small is then filled as far as it goes, with success
    std::optional<std::size_t> nSizeGiven;  ///< reported with a filled buffer in place of the number written

    static ANSWER Text(std::string_view strText);
    static ANSWER Unterminated(std::string_view strText);
    static ANSWER Int32(std::int32_t nValue) { return Value(INFO_DATATYPE_INT32, nValue); }
    static ANSWER Uint64(std::uint64_t nValue) { return Value(INFO_DATATYPE_UINT64, nValue); }
    static ANSWER Size(std::size_t nValue) { return Value(INFO_DATATYPE_SIZET, nValue); }
    static ANSWER Bool(std::uint8_t nValue) { return Value(INFO_DATATYPE_BOOL8, nValue); }
    static ANSWER Bytes(BYTES vecBytes);
    static ANSWER Absent(GC_ERROR nCode = GC_ERR_NOT_AVAILABLE);

    template <class TValue>
    static ANSWER Value(INFO_DATATYPE nType, const TValue& nValue) {
        const auto bytes = std::as_bytes(std::span(&nValue, 1));
        ANSWER objAnswer;
        objAnswer.nType = nType;
        objAnswer.vecBytes.assign(bytes.begin(), bytes.end());
        return objAnswer;
    }

    ANSWER AskingFor(std::size_t nSize) &&;    ///< sets nSizeAsked
    ANSWER ReportingAs(std::size_t nSize) &&;  ///< sets nSizeGiven
};

/// One call of an entry, recorded when it came in.
struct CALL {
    std::string strEntry;
    std::vector<std::string> vecArgument;  ///< handles as names, buffers as "buffer" or "null", then sizes; out
                                           ///< parameters are left out
    std::thread::id nThread;

    std::string Text() const;  ///< "IFOpenDevice(if-1, cam-1, 3)"
};

/// Changes what the calls of one entry answer. Conditions first, then a verb, which arms the rule:
/// `On("IFOpenDevice").For("cam-1").Call(2).Fail(GC_ERR_ACCESS_DENIED, "busy")`. Verbs may be combined.
class IRule {
public:
    /// Only calls on the module of this name, or with this text among their arguments.
    virtual IRule& For(std::string strModule) = 0;
    /// Only the n-th of the calls that fit the other conditions, counted from 1.
    virtual IRule& Call(std::size_t nCall) = 0;
    /// Only calls with this number: an info command, address, index, event type, queue operation, or flags.
    virtual IRule& WithNumber(std::uint64_t nNumber) = 0;
    IRule& Command(std::int32_t nCommand) { return WithNumber(static_cast<std::uint64_t>(nCommand)); }
    IRule& Address(std::uint64_t nAddress) { return WithNumber(nAddress); }
    IRule& Index(std::uint32_t nIndex) { return WithNumber(nIndex); }

    /// Answers the code and leaves the work undone. An empty text gives one of the double's own.
    virtual IRule& Fail(GC_ERROR nCode, std::string strText = {}) = 0;
    /// Does the work, hands out its results, and then answers the code.
    virtual IRule& FailAfterwards(GC_ERROR nCode, std::string strText = {}) = 0;
    /// Fills the caller's buffer with this and leaves the work undone.
    virtual IRule& Answer(ANSWER objAnswer) = 0;
    /// Does the work, then puts this in the place of the number that it gave (a count, a changed flag).
    virtual IRule& Count(std::uint64_t nCount) = 0;
    virtual IRule& Delay(std::chrono::milliseconds nDelay) = 0;
    /// Holds each call before its work until Release.
    virtual IRule& Block() = 0;

    /// Waits until a call stands in the block; false after ten seconds.
    [[nodiscard]] virtual bool WaitUntilBlocked() = 0;
    virtual void Release() = 0;  ///< for good: calls that come later pass
    virtual void Remove() = 0;   ///< the rule changes nothing more
    virtual std::size_t Hits() const = 0;

protected:
    ~IRule() = default;
};

/// The register space of a module and the description in it.
///
/// Out of the features added here the double writes a description of its own and gives each feature a register, 64 bits
/// for a number, big-endian. Describe and Urls replace that by whatever a test wants to serve.
class IPortControl {
public:
    struct RANGE {
        std::int64_t nMin = std::numeric_limits<std::int64_t>::min();
        std::int64_t nMax = std::numeric_limits<std::int64_t>::max();
    };

    virtual IPortControl& AddInteger(std::string strName, std::int64_t nValue, RANGE objRange) = 0;
    IPortControl& AddInteger(std::string strName, std::int64_t nValue) {
        return AddInteger(std::move(strName), nValue, RANGE{});
    }
    virtual IPortControl& AddFloat(std::string strName, double nValue) = 0;
    virtual IPortControl& AddText(std::string strName, std::string strValue, std::size_t nCapacity = 64) = 0;
    virtual IPortControl& AddCommand(std::string strName) = 0;
    virtual IPortControl& AddEnumeration(std::string strName, std::int64_t nValue,
                                         std::vector<std::pair<std::string, std::int64_t>> vecEntry) = 0;
    virtual IPortControl& RemoveFeature(const std::string& strName) = 0;

    virtual std::int64_t Integer(const std::string& strName) const = 0;
    virtual IPortControl& SetInteger(const std::string& strName, std::int64_t nValue) = 0;
    virtual IPortControl& SetText(const std::string& strName, std::string_view strValue) = 0;
    virtual std::uint64_t AddressOf(const std::string& strName) const = 0;
    /// Writes of the consumer to the feature's register; a command's executions.
    virtual std::size_t Writes(const std::string& strName) const = 0;

    virtual IPortControl& Describe(std::string strXml) = 0;
    /// Serves these bytes (an archive, say) under this file name.
    virtual IPortControl& DescribeAs(std::string strFileName, BYTES vecContent) = 0;
    virtual IPortControl& Urls(std::vector<std::string> vecUrl) = 0;  ///< to the letter
    virtual IPortControl& SetRegister(std::uint64_t nAddress, std::span<const std::byte> vecBytes) = 0;
    /// @throws std::out_of_range  a byte of the range has no register
    virtual BYTES Register(std::uint64_t nAddress, std::size_t nLength) const = 0;

protected:
    ~IPortControl() = default;
};

class IModuleControl {
public:
    virtual const std::string& Name() const = 0;
    virtual IPortControl& Port() = 0;
    /// What the module's info entry answers for a command, whatever the truth is.
    virtual void SetInfo(std::int32_t nCommand, ANSWER objAnswer) = 0;

protected:
    ~IModuleControl() = default;
};

/// What the info commands say of a delivered buffer.
struct FRAME_LAYOUT {
    std::uint64_t nFrameId = 0;
    std::size_t nWidth = 0;
    std::size_t nHeight = 0;
    bool bIncomplete = false;
    std::vector<SINGLE_CHUNK_DATA> vecChunk;
};

struct FRAME : FRAME_LAYOUT {
    BYTES vecData;  ///< what doesn't fit the buffer is lost and makes the frame incomplete
};

class IStreamControl : public virtual IModuleControl {
public:
    /// Fills the next queued buffer; without one the frame waits. False if no acquisition runs: the frame is lost.
    virtual bool PushFrame(FRAME objFrame) = 0;
    /// From now on every queued buffer is filled at once, while an acquisition runs: frame IDs count on.
    virtual void FlowFrames(FRAME objFrame) = 0;
    virtual void StopFlow() = 0;
    virtual std::size_t Announced() const = 0;
    virtual std::size_t Queued() const = 0;

protected:
    ~IStreamControl() = default;
};

class IDeviceControl : public virtual IModuleControl {
public:
    virtual IPortControl& Remote() = 0;
    virtual IStreamControl& AddStream(std::string strId) = 0;  ///< the first, "stream-0", is there from the start
    virtual IStreamControl& Stream(const std::string& strId = "stream-0") = 0;

    virtual IDeviceControl& Address(GEV_ADDRESS objAddress) = 0;
    virtual IDeviceControl& Identity(std::string strVendor, std::string strModel, std::string strSerialNumber) = 0;
    virtual IDeviceControl& UserId(std::string strUserId) = 0;
    /// Plugged in and reachable by "IP::" and its address, yet in no list.
    virtual IDeviceControl& Hide(bool bHidden = true) = 0;

    /// Queues a remote device event; false if none is registered.
    virtual bool PushEvent(std::uint64_t nId, BYTES vecValue) = 0;
    /// What EventGetInfo says are the sizes of the largest event and the largest value. 1024 each from the start.
    virtual void DeclareEventSizes(std::size_t nEvent, std::size_t nValue) = 0;

protected:
    ~IDeviceControl() = default;
};

class IInterfaceControl : public virtual IModuleControl {
public:
    /// Makes the camera at the first time, and plugs in the same one again after that.
    virtual IDeviceControl& Plug(const std::string& strId) = 0;
    /// An open one goes offline: its event fires, its remote port answers GC_ERR_ZR_DEVICE_OFFLINE until it is closed.
    virtual IInterfaceControl& Unplug(const std::string& strId) = 0;
    virtual IDeviceControl& Device(const std::string& strId) = 0;
    /// The list of the next updates, in this order, doubles allowed; without a list the plugged ones in order.
    virtual IInterfaceControl& Lists(std::optional<std::vector<std::string>> vecId) = 0;
    virtual IInterfaceControl& Address(GEV_ADDRESS objAddress) = 0;
    /// An update lasts for its whole time-out, or until the stop command; from the start it ends at once.
    virtual IInterfaceControl& WaitWholeWindow(bool bWait = true) = 0;
    /// The range of DeviceSelector after the next updates, right or wrong.
    virtual IInterfaceControl& SelectorMax(std::optional<std::int64_t> nMax) = 0;

protected:
    ~IInterfaceControl() = default;
};

class IProducerControl : public virtual IModuleControl {
public:
    virtual IInterfaceControl& AddInterface(const std::string& strId) = 0;  ///< or brings back one that was removed
    virtual IProducerControl& RemoveInterface(const std::string& strId) = 0;
    virtual IInterfaceControl& Interface(const std::string& strId) = 0;
    virtual IDeviceControl& Device(const std::string& strId) = 0;  ///< on whichever interface
    virtual IProducerControl& Plug(const std::string& strId) = 0;  ///< where it was plugged last
    virtual IProducerControl& Unplug(const std::string& strId) = 0;
    virtual IProducerControl& Lists(std::optional<std::vector<std::string>> vecInterfaceId) = 0;
    virtual IProducerControl& SelectorMax(std::optional<std::int64_t> nMax) = 0;  ///< of InterfaceSelector

    /// A new rule for an entry by its name. @throws std::invalid_argument  there is no such entry
    virtual IRule& On(const std::string& strEntry) = 0;

    virtual std::vector<CALL> Calls() const = 0;
    virtual std::vector<CALL> CallsOf(const std::string& strEntry) const = 0;
    virtual std::size_t Count(const std::string& strEntry) const = 0;
    /// Waits until the entry has been called that often in all; false after ten seconds.
    [[nodiscard]] virtual bool WaitForCalls(const std::string& strEntry, std::size_t nCalls) = 0;
    /// Waits until so many threads stand in EventGetData of this event ("cam-1:stream-0!1"); false after ten seconds.
    [[nodiscard]] virtual bool WaitForEventWaiters(const std::string& strEvent, std::size_t nWaiters) = 0;
    virtual void ClearCalls() = 0;
    /// On from the start. Off, an entry that no rule touches allocates nothing on its way to a frame and back.
    virtual void RecordCalls(bool bRecord) = 0;

    /// What the consumer still holds, by name: modules in the order of opening, events, announced buffers' streams.
    virtual std::vector<std::string> OpenModules() const = 0;
    virtual std::vector<std::string> RegisteredEvents() const = 0;
    virtual bool IsInitialised() const = 0;

    /// Back to the start: blocks released, waits aborted, running calls awaited, then world, rules and records emptied.
    virtual void Reset() = 0;

protected:
    ~IProducerControl() = default;
};

/// The one export beyond the producer's entries, by the name kControlEntry.
using PGetProducerControl = IProducerControl* (*)();
inline constexpr const char* kControlEntry = "GetProducerControl";

}  // namespace ProducerDouble
