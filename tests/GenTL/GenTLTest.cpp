#include <cstddef>
#include <string_view>
#include <type_traits>

#include <gtest/gtest.h>

#include "GenTL/GenTL.h"

// A producer of another vendor is a binary: what these lines hold can't be told by any of our own calls going through.
static_assert(sizeof(GC_ERROR) == 4 && std::is_signed_v<GC_ERROR>);
static_assert(sizeof(INFO_DATATYPE) == 4 && sizeof(EVENT_TYPE) == 4 && sizeof(DEVICE_ACCESS_FLAGS) == 4);
static_assert(sizeof(bool8_t) == 1 && sizeof(TL_HANDLE) == sizeof(void*));

static_assert(sizeof(EVENT_NEW_BUFFER_DATA) == 2 * sizeof(void*));
static_assert(offsetof(EVENT_NEW_BUFFER_DATA, pUserPointer) == sizeof(void*));
static_assert(sizeof(PORT_REGISTER_STACK_ENTRY) == 8 + sizeof(void*) + sizeof(size_t));
static_assert(offsetof(PORT_REGISTER_STACK_ENTRY, pBuffer) == 8);
static_assert(sizeof(SINGLE_CHUNK_DATA) == 8 + sizeof(ptrdiff_t) + sizeof(size_t));
static_assert(offsetof(SINGLE_CHUNK_DATA, ChunkLength) == 8 + sizeof(ptrdiff_t));
static_assert(alignof(SINGLE_CHUNK_DATA) == 1 && alignof(EVENT_NEW_BUFFER_DATA) == 1);

static_assert(GENTL_INFINITE == static_cast<uint64_t>(-1));

namespace {

#define ENTRY_NAME(name, parameters) #name,
constexpr std::string_view kEntries[] = {GENTL_ENTRIES(ENTRY_NAME)};
#undef ENTRY_NAME

TEST(GenTLEntries, AreFiftySixInTheOrderOfTheirSlots) {
    ASSERT_EQ(std::size(kEntries), 56u);
    // One name at each turn of the table; slots count from 1.
    EXPECT_EQ(kEntries[1 - 1], "GCGetInfo");
    EXPECT_EQ(kEntries[7 - 1], "GCGetPortURL");
    EXPECT_EQ(kEntries[16 - 1], "TLOpen");
    EXPECT_EQ(kEntries[24 - 1], "IFClose");
    EXPECT_EQ(kEntries[30 - 1], "IFOpenDevice");
    EXPECT_EQ(kEntries[36 - 1], "DevClose");
    EXPECT_EQ(kEntries[47 - 1], "DSGetBufferInfo");
    EXPECT_EQ(kEntries[48 - 1], "GCGetNumPortURLs");
    EXPECT_EQ(kEntries[52 - 1], "DSGetBufferChunkData");
    EXPECT_EQ(kEntries[53 - 1], "IFIpConfiguration");
    EXPECT_EQ(kEntries[56 - 1], "IFUpdateSpecialDevice");
}

// Written out once more for those whose widths are easily taken for others.
static_assert(std::is_same_v<PGCReadPort, int32_t (*)(void*, uint64_t, void*, size_t*)>);
static_assert(std::is_same_v<PEventGetData, int32_t (*)(void*, void*, size_t*, uint64_t)>);
static_assert(std::is_same_v<PTLUpdateInterfaceList, int32_t (*)(void*, uint8_t*, uint64_t)>);
static_assert(std::is_same_v<PIFOpenDevice, int32_t (*)(void*, const char*, int32_t, void**)>);
static_assert(std::is_same_v<PDSStartAcquisition, int32_t (*)(void*, int32_t, uint64_t)>);
static_assert(std::is_same_v<PDSRevokeBuffer, int32_t (*)(void*, void*, void**, void**)>);
static_assert(std::is_same_v<PIFIpConfiguration, int32_t (*)(void*, const char*, uint32_t, const char*, const char*,
                                                             const char*, const char*)>);

}  // namespace
