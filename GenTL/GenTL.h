#ifndef NORVIK_GENTL_GENTL_H
#define NORVIK_GENTL_GENTL_H

/// The C interface of the GenTL standard, as this system calls it and as its own producer offers it.
///
/// It holds no code: handles, result codes, info commands, records, and from the one table in GenTLEntries.h the
/// prototype (`TLOpen`) and the pointer type (`PTLOpen`) of every entry. Widths and values are a binary contract with
/// producers of other vendors: a value may be added, none may change. Enumerations cross the interface as 32-bit
/// integers, since a producer may answer values above the custom limit that no list here knows; each list
/// (`GC_ERROR_LIST`) only names them.
///
/// Conventions of the standard, which every entry follows:
/// - a size behind a pointer is in and out: the buffer's size in bytes on the way in, the bytes needed or written on
///   the way out; a null buffer asks for the size alone, and texts count their terminating zero;
/// - times are milliseconds, GENTL_INFINITE waits without end;
/// - the last error is kept for each thread.
///
/// Source: GenICam GenTL 1.5, vocabulary and numbers; entries up to version 1.3 are bound.

#include <stddef.h>
#include <stdint.h>

#define GC_CALLTYPE
#define GC_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

#define GENTL_INFINITE UINT64_C(0xFFFFFFFFFFFFFFFF)

typedef uint8_t bool8_t;

// One kind for each module, all of them opaque to the consumer.
typedef void* TL_HANDLE;
typedef void* IF_HANDLE;
typedef void* DEV_HANDLE;
typedef void* DS_HANDLE;
typedef void* PORT_HANDLE;
typedef void* BUFFER_HANDLE;
typedef void* EVENTSRC_HANDLE;
typedef void* EVENT_HANDLE;

#define GENTL_INVALID_HANDLE NULL

typedef int32_t GC_ERROR;
enum GC_ERROR_LIST {
    GC_ERR_SUCCESS = 0,
    GC_ERR_ERROR = -1001,
    GC_ERR_NOT_INITIALIZED = -1002,
    GC_ERR_NOT_IMPLEMENTED = -1003,
    GC_ERR_RESOURCE_IN_USE = -1004,
    GC_ERR_ACCESS_DENIED = -1005,
    GC_ERR_INVALID_HANDLE = -1006,
    GC_ERR_INVALID_ID = -1007,
    GC_ERR_NO_DATA = -1008,
    GC_ERR_INVALID_PARAMETER = -1009,
    GC_ERR_IO = -1010,
    GC_ERR_TIMEOUT = -1011,
    GC_ERR_ABORT = -1012,
    GC_ERR_INVALID_BUFFER = -1013,
    GC_ERR_NOT_AVAILABLE = -1014,
    GC_ERR_INVALID_ADDRESS = -1015,
    GC_ERR_BUFFER_TOO_SMALL = -1016,
    GC_ERR_INVALID_INDEX = -1017,
    GC_ERR_PARSING_CHUNK_DATA = -1018,
    GC_ERR_INVALID_VALUE = -1019,
    GC_ERR_RESOURCE_EXHAUSTED = -1020,
    GC_ERR_OUT_OF_MEMORY = -1021,
    GC_ERR_BUSY = -1022,
    GC_ERR_CUSTOM_ID = -10000
};

typedef int32_t INFO_DATATYPE;
enum INFO_DATATYPE_LIST {
    INFO_DATATYPE_UNKNOWN = 0,
    INFO_DATATYPE_STRING = 1,
    INFO_DATATYPE_STRINGLIST = 2,
    INFO_DATATYPE_INT16 = 3,
    INFO_DATATYPE_UINT16 = 4,
    INFO_DATATYPE_INT32 = 5,
    INFO_DATATYPE_UINT32 = 6,
    INFO_DATATYPE_INT64 = 7,
    INFO_DATATYPE_UINT64 = 8,
    INFO_DATATYPE_FLOAT64 = 9,
    INFO_DATATYPE_PTR = 10,
    INFO_DATATYPE_BOOL8 = 11,
    INFO_DATATYPE_SIZET = 12,
    INFO_DATATYPE_BUFFER = 13,
    INFO_DATATYPE_PTRDIFF = 14,
    INFO_DATATYPE_CUSTOM_ID = 1000
};

// System module.

typedef int32_t TL_INFO_CMD;
enum TL_INFO_CMD_LIST {
    TL_INFO_ID = 0,
    TL_INFO_VENDOR = 1,
    TL_INFO_MODEL = 2,
    TL_INFO_VERSION = 3,
    TL_INFO_TLTYPE = 4,
    TL_INFO_NAME = 5,
    TL_INFO_PATHNAME = 6,
    TL_INFO_DISPLAYNAME = 7,
    TL_INFO_CHAR_ENCODING = 8,
    TL_INFO_GENTL_VER_MAJOR = 9,
    TL_INFO_GENTL_VER_MINOR = 10,
    TL_INFO_CUSTOM_ID = 1000
};

typedef int32_t TL_CHAR_ENCODING;
enum TL_CHAR_ENCODING_LIST { TL_CHAR_ENCODING_ASCII = 0, TL_CHAR_ENCODING_UTF8 = 1 };

// Interface module.

typedef int32_t INTERFACE_INFO_CMD;
enum INTERFACE_INFO_CMD_LIST {
    INTERFACE_INFO_ID = 0,
    INTERFACE_INFO_DISPLAYNAME = 1,
    INTERFACE_INFO_TLTYPE = 2,
    INTERFACE_INFO_CUSTOM_ID = 1000
};

// Device module.

typedef int32_t DEVICE_INFO_CMD;
enum DEVICE_INFO_CMD_LIST {
    DEVICE_INFO_ID = 0,
    DEVICE_INFO_VENDOR = 1,
    DEVICE_INFO_MODEL = 2,
    DEVICE_INFO_TLTYPE = 3,
    DEVICE_INFO_DISPLAYNAME = 4,
    DEVICE_INFO_ACCESS_STATUS = 5,
    DEVICE_INFO_USER_DEFINED_NAME = 6,
    DEVICE_INFO_SERIAL_NUMBER = 7,
    DEVICE_INFO_VERSION = 8,
    DEVICE_INFO_TIMESTAMP_FREQUENCY = 9,
    DEVICE_INFO_CUSTOM_ID = 1000
};

typedef int32_t DEVICE_ACCESS_FLAGS;
enum DEVICE_ACCESS_FLAGS_LIST {
    DEVICE_ACCESS_UNKNOWN = 0,
    DEVICE_ACCESS_NONE = 1,
    DEVICE_ACCESS_READONLY = 2,
    DEVICE_ACCESS_CONTROL = 3,
    DEVICE_ACCESS_EXCLUSIVE = 4,
    DEVICE_ACCESS_CUSTOM_ID = 1000
};

typedef int32_t DEVICE_ACCESS_STATUS;
enum DEVICE_ACCESS_STATUS_LIST {
    DEVICE_ACCESS_STATUS_UNKNOWN = 0,
    DEVICE_ACCESS_STATUS_READWRITE = 1,
    DEVICE_ACCESS_STATUS_READONLY = 2,
    DEVICE_ACCESS_STATUS_NOACCESS = 3,
    DEVICE_ACCESS_STATUS_BUSY = 4,
    DEVICE_ACCESS_STATUS_OPEN_READWRITE = 5,
    DEVICE_ACCESS_STATUS_OPEN_READONLY = 6,
    DEVICE_ACCESS_STATUS_CUSTOM_ID = 1000
};

// Data stream module.

typedef int32_t STREAM_INFO_CMD;
enum STREAM_INFO_CMD_LIST {
    STREAM_INFO_ID = 0,
    STREAM_INFO_NUM_DELIVERED = 1,
    STREAM_INFO_NUM_UNDERRUN = 2,
    STREAM_INFO_NUM_ANNOUNCED = 3,
    STREAM_INFO_NUM_QUEUED = 4,
    STREAM_INFO_NUM_AWAIT_DELIVERY = 5,
    STREAM_INFO_NUM_STARTED = 6,
    STREAM_INFO_PAYLOAD_SIZE = 7,
    STREAM_INFO_IS_GRABBING = 8,
    STREAM_INFO_DEFINES_PAYLOADSIZE = 9,
    STREAM_INFO_TLTYPE = 10,
    STREAM_INFO_NUM_CHUNKS_MAX = 11,
    STREAM_INFO_BUF_ANNOUNCE_MIN = 12,
    STREAM_INFO_BUF_ALIGNMENT = 13,
    STREAM_INFO_CUSTOM_ID = 1000
};

typedef int32_t ACQ_START_FLAGS;
enum ACQ_START_FLAGS_LIST { ACQ_START_FLAGS_DEFAULT = 0, ACQ_START_FLAGS_CUSTOM_ID = 1000 };

typedef int32_t ACQ_STOP_FLAGS;
enum ACQ_STOP_FLAGS_LIST { ACQ_STOP_FLAGS_DEFAULT = 0, ACQ_STOP_FLAGS_KILL = 1, ACQ_STOP_FLAGS_CUSTOM_ID = 1000 };

typedef int32_t ACQ_QUEUE_TYPE;
enum ACQ_QUEUE_TYPE_LIST {
    ACQ_QUEUE_INPUT_TO_OUTPUT = 0,
    ACQ_QUEUE_OUTPUT_DISCARD = 1,
    ACQ_QUEUE_ALL_TO_INPUT = 2,
    ACQ_QUEUE_UNQUEUED_TO_INPUT = 3,
    ACQ_QUEUE_ALL_DISCARD = 4,
    ACQ_QUEUE_CUSTOM_ID = 1000
};

// Buffer module.

typedef int32_t BUFFER_INFO_CMD;
enum BUFFER_INFO_CMD_LIST {
    BUFFER_INFO_BASE = 0,
    BUFFER_INFO_SIZE = 1,
    BUFFER_INFO_USER_PTR = 2,
    BUFFER_INFO_TIMESTAMP = 3,
    BUFFER_INFO_NEW_DATA = 4,
    BUFFER_INFO_IS_QUEUED = 5,
    BUFFER_INFO_IS_ACQUIRING = 6,
    BUFFER_INFO_IS_INCOMPLETE = 7,
    BUFFER_INFO_TLTYPE = 8,
    BUFFER_INFO_SIZE_FILLED = 9,
    BUFFER_INFO_WIDTH = 10,
    BUFFER_INFO_HEIGHT = 11,
    BUFFER_INFO_XOFFSET = 12,
    BUFFER_INFO_YOFFSET = 13,
    BUFFER_INFO_XPADDING = 14,
    BUFFER_INFO_YPADDING = 15,
    BUFFER_INFO_FRAMEID = 16,
    BUFFER_INFO_IMAGEPRESENT = 17,
    BUFFER_INFO_IMAGEOFFSET = 18,
    BUFFER_INFO_PAYLOADTYPE = 19,
    BUFFER_INFO_PIXELFORMAT = 20,
    BUFFER_INFO_PIXELFORMAT_NAMESPACE = 21,
    BUFFER_INFO_DELIVERED_IMAGEHEIGHT = 22,
    BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE = 23,
    BUFFER_INFO_CHUNKLAYOUTID = 24,
    BUFFER_INFO_FILENAME = 25,
    BUFFER_INFO_PIXEL_ENDIANNESS = 26,
    BUFFER_INFO_DATA_SIZE = 27,
    BUFFER_INFO_TIMESTAMP_NS = 28,
    BUFFER_INFO_DATA_LARGER_THAN_BUFFER = 29,
    BUFFER_INFO_CONTAINS_CHUNKDATA = 30,
    BUFFER_INFO_CUSTOM_ID = 1000
};

enum PAYLOADTYPE_INFO_IDS {
    PAYLOAD_TYPE_UNKNOWN = 0,
    PAYLOAD_TYPE_IMAGE = 1,
    PAYLOAD_TYPE_RAW_DATA = 2,
    PAYLOAD_TYPE_FILE = 3,
    PAYLOAD_TYPE_CHUNK_DATA = 4,
    PAYLOAD_TYPE_JPEG = 5,
    PAYLOAD_TYPE_JPEG2000 = 6,
    PAYLOAD_TYPE_H264 = 7,
    PAYLOAD_TYPE_CHUNK_ONLY = 8,
    PAYLOAD_TYPE_DEVICE_SPECIFIC = 9,
    PAYLOAD_TYPE_MULTI_PART = 10,
    PAYLOAD_TYPE_CUSTOM_ID = 1000
};

enum PIXELFORMAT_NAMESPACE_IDS {
    PIXELFORMAT_NAMESPACE_UNKNOWN = 0,
    PIXELFORMAT_NAMESPACE_GEV = 1,
    PIXELFORMAT_NAMESPACE_IIDC = 2,
    PIXELFORMAT_NAMESPACE_PFNC_16BIT = 3,
    PIXELFORMAT_NAMESPACE_PFNC_32BIT = 4,
    PIXELFORMAT_NAMESPACE_CUSTOM_ID = 1000
};

typedef int32_t PIXELENDIANNESS;
enum PIXELENDIANNESS_LIST { PIXELENDIANNESS_UNKNOWN = 0, PIXELENDIANNESS_LITTLE = 1, PIXELENDIANNESS_BIG = 2 };

// Ports.

typedef int32_t PORT_INFO_CMD;
enum PORT_INFO_CMD_LIST {
    PORT_INFO_ID = 0,
    PORT_INFO_VENDOR = 1,
    PORT_INFO_MODEL = 2,
    PORT_INFO_TLTYPE = 3,
    PORT_INFO_MODULE = 4,
    PORT_INFO_LITTLE_ENDIAN = 5,
    PORT_INFO_BIG_ENDIAN = 6,
    PORT_INFO_ACCESS_READ = 7,
    PORT_INFO_ACCESS_WRITE = 8,
    PORT_INFO_ACCESS_NA = 9,
    PORT_INFO_ACCESS_NI = 10,
    PORT_INFO_VERSION = 11,
    PORT_INFO_PORTNAME = 12,
    PORT_INFO_CUSTOM_ID = 1000
};

typedef int32_t URL_INFO_CMD;
enum URL_INFO_CMD_LIST {
    URL_INFO_URL = 0,
    URL_INFO_SCHEMA_VER_MAJOR = 1,
    URL_INFO_SCHEMA_VER_MINOR = 2,
    URL_INFO_FILE_VER_MAJOR = 3,
    URL_INFO_FILE_VER_MINOR = 4,
    URL_INFO_FILE_VER_SUBMINOR = 5,
    URL_INFO_FILE_SHA1_HASH = 6,
    URL_INFO_FILE_REGISTER_ADDRESS = 7,
    URL_INFO_FILE_SIZE = 8,
    URL_INFO_SCHEME = 9,
    URL_INFO_FILENAME = 10,
    URL_INFO_CUSTOM_ID = 1000
};

enum URL_SCHEME_IDS { URL_SCHEME_LOCAL = 0, URL_SCHEME_HTTP = 1, URL_SCHEME_FILE = 2, URL_SCHEME_CUSTOM_ID = 1000 };

// Events.

typedef int32_t EVENT_TYPE;
enum EVENT_TYPE_LIST {
    EVENT_ERROR = 0,
    EVENT_NEW_BUFFER = 1,
    EVENT_FEATURE_INVALIDATE = 2,
    EVENT_FEATURE_CHANGE = 3,
    EVENT_REMOTE_DEVICE = 4,
    EVENT_MODULE = 5,
    EVENT_CUSTOM_ID = 1000
};

typedef int32_t EVENT_INFO_CMD;
enum EVENT_INFO_CMD_LIST {
    EVENT_EVENT_TYPE = 0,
    EVENT_NUM_IN_QUEUE = 1,
    EVENT_NUM_FIRED = 2,
    EVENT_SIZE_MAX = 3,
    EVENT_INFO_DATA_SIZE_MAX = 4,
    EVENT_INFO_CUSTOM_ID = 1000
};

typedef int32_t EVENT_DATA_INFO_CMD;
enum EVENT_DATA_INFO_CMD_LIST {
    EVENT_DATA_ID = 0,
    EVENT_DATA_VALUE = 1,
    EVENT_DATA_NUMID = 2,
    EVENT_DATA_CUSTOM_ID = 1000
};

// What producers of this system's own family add above the custom limits.
enum ZR_CUSTOM_LIST {
    GC_ERR_ZR_DEVICE_OFFLINE = GC_ERR_CUSTOM_ID,
    EVENT_ZR_DEVICE_OFFLINE = EVENT_CUSTOM_ID,  ///< on the remote port, carries no data
    STREAM_INFO_ZR_BUF_ANNOUNCE_MAX = 1001,     ///< size: most buffers that may be announced
    STREAM_INFO_ZR_OPTIMAL_PACKET_SIZE = 1002,  ///< 32 bits unsigned: bytes
    ZR_SPECIAL_DEVICE_REPLY_SIZE = 256          ///< bytes that IFUpdateSpecialDevice answers
};

#pragma pack(push, 1)

/// What EventGetData answers for EVENT_NEW_BUFFER.
typedef struct EVENT_NEW_BUFFER_DATA {
    BUFFER_HANDLE BufferHandle;
    void* pUserPointer;  ///< as handed to the announcement
} EVENT_NEW_BUFFER_DATA;

/// One access of GCReadPortStacked or GCWritePortStacked.
typedef struct PORT_REGISTER_STACK_ENTRY {
    uint64_t Address;
    void* pBuffer;
    size_t Size;
} PORT_REGISTER_STACK_ENTRY;

/// Where one chunk lies in a buffer; the offset counts bytes from the buffer's start.
typedef struct SINGLE_CHUNK_DATA {
    uint64_t ChunkID;
    ptrdiff_t ChunkOffset;
    size_t ChunkLength;
} SINGLE_CHUNK_DATA;

#pragma pack(pop)

#include "GenTL/GenTLEntries.h"

#define GENTL_DECLARE_ENTRY(name, parameters)       \
    GC_EXPORT GC_ERROR GC_CALLTYPE name parameters; \
    typedef GC_ERROR(GC_CALLTYPE* P##name) parameters;
GENTL_ENTRIES(GENTL_DECLARE_ENTRY)
#undef GENTL_DECLARE_ENTRY

#ifdef __cplusplus
}
#endif

#endif
