// A producer that answers every call from the bytes that it was given: any status, any number, any text, but nothing
// written beyond the size that it was told. It has the entries that ask for facts; the others are missing.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

#include "GenTL/GenTL.h"
#include "tests/FuzzInput.h"

namespace {

CFuzzInput g_objAnswers(nullptr, 0);
int g_nSomething = 0;

/// Mostly small, for a large number is refused and nothing is tried behind it.
std::uint64_t AnswerNumber() {
    const auto nByte = g_objAnswers.Take<std::uint8_t>();
    if (nByte < 240) {
        return nByte % 32U;
    }
    return nByte < 255 ? g_objAnswers.Take<std::uint8_t>() * 4U : g_objAnswers.Take<std::uint64_t>();
}

void Answer() {}

/// A number, or a handle.
template <class T, class... Rest>
void Answer(T* pResult, Rest... rest) {
    if constexpr (std::is_pointer_v<T>) {
        *pResult = &g_nSomething;
    } else {
        *pResult = static_cast<T>(AnswerNumber());
    }
    Answer(rest...);
}

/// Memory with its size or count behind it.
template <class T>
void Answer(T* pBuffer, std::size_t* pSize) {
    using ELEMENT = std::conditional_t<std::is_void_v<T>, char, T>;
    if (pBuffer != nullptr) {
        const auto nMost = std::min<std::uint64_t>(*pSize * sizeof(ELEMENT), AnswerNumber() * sizeof(ELEMENT));
        const auto arrAnswer = g_objAnswers.TakeBytes(static_cast<std::size_t>(nMost));
        std::ranges::copy(arrAnswer, reinterpret_cast<std::byte*>(pBuffer));
    }
    if (pBuffer == nullptr || g_objAnswers.Take<std::uint8_t>() > 200) {
        *pSize = static_cast<std::size_t>(AnswerNumber());
    }
}

template <class T>
void Answer(INFO_DATATYPE* pType, T* pBuffer, std::size_t* pSize) {
    Answer(pType);
    Answer(pBuffer, pSize);
}

template <class... Results>
GC_ERROR AnswerCall(Results... results) {
    static constexpr GC_ERROR kRefusals[] = {GC_ERR_ERROR, GC_ERR_NOT_AVAILABLE, GC_ERR_TIMEOUT, GC_ERR_ACCESS_DENIED,
                                             -1};
    if (g_objAnswers.IsEmpty()) {
        return GC_ERR_ERROR;
    }
    const auto nStatus = g_objAnswers.Take<std::uint8_t>();
    Answer(results...);
    return nStatus < 220 ? GC_ERR_SUCCESS : kRefusals[nStatus % std::size(kRefusals)];
}

}  // namespace

#define ENTRY(NAME, PARAMETERS, RESULTS) \
    GC_ERROR NAME PARAMETERS {           \
        return AnswerCall RESULTS;       \
    }  // NOLINT(bugprone-macro-parentheses): a declaration

using Type = INFO_DATATYPE*;
using Size = std::size_t*;
using Text = const char*;

// clang-format off
extern "C" {
ENTRY(GCGetInfo, (TL_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(GCGetLastError, (GC_ERROR* c, char* p, Size n), (c, p, n))
ENTRY(GCReadPort, (PORT_HANDLE, std::uint64_t, void* p, Size n), (p, n))
ENTRY(GCGetPortInfo, (PORT_HANDLE, PORT_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(GCGetNumPortURLs, (PORT_HANDLE, std::uint32_t* c), (c))
ENTRY(GCGetPortURLInfo, (PORT_HANDLE, std::uint32_t, URL_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(TLGetInfo, (TL_HANDLE, TL_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(TLGetNumInterfaces, (TL_HANDLE, std::uint32_t* c), (c))
ENTRY(TLGetInterfaceID, (TL_HANDLE, std::uint32_t, char* p, Size n), (p, n))
ENTRY(TLGetInterfaceInfo, (TL_HANDLE, Text, INTERFACE_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(IFGetInfo, (IF_HANDLE, INTERFACE_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(IFGetNumDevices, (IF_HANDLE, std::uint32_t* c), (c))
ENTRY(IFGetDeviceID, (IF_HANDLE, std::uint32_t, char* p, Size n), (p, n))
ENTRY(IFGetDeviceInfo, (IF_HANDLE, Text, DEVICE_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(IFUpdateSpecialDevice, (IF_HANDLE, Text, void* p, Size n), (p, n))
ENTRY(DevGetInfo, (DEV_HANDLE, DEVICE_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(DevGetNumDataStreams, (DEV_HANDLE, std::uint32_t* c), (c))
ENTRY(DevGetDataStreamID, (DEV_HANDLE, std::uint32_t, char* p, Size n), (p, n))
ENTRY(DSGetInfo, (DS_HANDLE, STREAM_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(DSAnnounceBuffer, (DS_HANDLE, void*, std::size_t, void*, BUFFER_HANDLE* h), (h))
ENTRY(DSRevokeBuffer, (DS_HANDLE, BUFFER_HANDLE, void**, void**), ())
ENTRY(DSGetBufferInfo, (DS_HANDLE, BUFFER_HANDLE, BUFFER_INFO_CMD, Type t, void* p, Size n), (t, p, n))
ENTRY(DSGetBufferChunkData, (DS_HANDLE, BUFFER_HANDLE, SINGLE_CHUNK_DATA* p, Size n), (p, n))

/// Gives the producer its answers; the bytes stay the caller's and must stay where they are.
GC_EXPORT void SetHostileAnswers(const std::uint8_t* pData, std::size_t nSize) { g_objAnswers = CFuzzInput(pData, nSize); }
GC_EXPORT bool HasHostileAnswers() { return !g_objAnswers.IsEmpty(); }
}
// clang-format on
