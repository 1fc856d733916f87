#ifndef NORVIK_GENTL_GENTLENTRIES_H
#define NORVIK_GENTL_GENTLENTRIES_H

/// The table of a producer's entries, in the order in which they are looked up: 52 of the standard, then the four that
/// only producers of this system's own family export.
///
/// It stands here once. `X(name, parameters)` is expanded for each entry; the parameters come in their parentheses, so
/// that `GC_ERROR name parameters` is the prototype. Every entry has a pointer type `P<name>` in GenTL.h.

// The formatter takes these pointers for products.
// clang-format off

#define GENTL_STANDARD_ENTRIES(X)                                                                                      \
    X(GCGetInfo, (TL_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize))                           \
    X(GCGetLastError, (GC_ERROR* pCode, char* pszText, size_t* pSize))                                                 \
    X(GCInitLib, (void))                                                                                               \
    X(GCCloseLib, (void))                                                                                              \
    X(GCReadPort, (PORT_HANDLE hPort, uint64_t nAddress, void* pBuffer, size_t* pSize))                                \
    X(GCWritePort, (PORT_HANDLE hPort, uint64_t nAddress, const void* pBuffer, size_t* pSize))                         \
    X(GCGetPortURL, (PORT_HANDLE hPort, char* pszUrl, size_t* pSize))                                                  \
    X(GCGetPortInfo, (PORT_HANDLE hPort, PORT_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize))  \
    X(GCRegisterEvent, (EVENTSRC_HANDLE hEventSrc, EVENT_TYPE nType, EVENT_HANDLE* phEvent))                           \
    X(GCUnregisterEvent, (EVENTSRC_HANDLE hEventSrc, EVENT_TYPE nType))                                                \
    X(EventGetData, (EVENT_HANDLE hEvent, void* pBuffer, size_t* pSize, uint64_t nTimeoutMs))                          \
    X(EventGetDataInfo, (EVENT_HANDLE hEvent, const void* pData, size_t nDataSize, EVENT_DATA_INFO_CMD nCommand,       \
                         INFO_DATATYPE* pType, void* pBuffer, size_t* pSize))                                          \
    X(EventGetInfo,                                                                                                    \
      (EVENT_HANDLE hEvent, EVENT_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize))              \
    X(EventFlush, (EVENT_HANDLE hEvent))                                                                               \
    X(EventKill, (EVENT_HANDLE hEvent))                                                                                \
    X(TLOpen, (TL_HANDLE* phTL))                                                                                       \
    X(TLClose, (TL_HANDLE hTL))                                                                                        \
    X(TLGetInfo, (TL_HANDLE hTL, TL_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize))            \
    X(TLGetNumInterfaces, (TL_HANDLE hTL, uint32_t* pCount))                                                           \
    X(TLGetInterfaceID, (TL_HANDLE hTL, uint32_t nIndex, char* pszId, size_t* pSize))                                  \
    X(TLGetInterfaceInfo, (TL_HANDLE hTL, const char* pszInterfaceId, INTERFACE_INFO_CMD nCommand,                     \
                           INFO_DATATYPE* pType, void* pBuffer, size_t* pSize))                                        \
    X(TLOpenInterface, (TL_HANDLE hTL, const char* pszInterfaceId, IF_HANDLE* phInterface))                            \
    X(TLUpdateInterfaceList, (TL_HANDLE hTL, bool8_t* pChanged, uint64_t nTimeoutMs))                                  \
    X(IFClose, (IF_HANDLE hInterface))                                                                                 \
    X(IFGetInfo,                                                                                                       \
      (IF_HANDLE hInterface, INTERFACE_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize))         \
    X(IFGetNumDevices, (IF_HANDLE hInterface, uint32_t* pCount))                                                       \
    X(IFGetDeviceID, (IF_HANDLE hInterface, uint32_t nIndex, char* pszId, size_t* pSize))                              \
    X(IFUpdateDeviceList, (IF_HANDLE hInterface, bool8_t* pChanged, uint64_t nTimeoutMs))                              \
    X(IFGetDeviceInfo, (IF_HANDLE hInterface, const char* pszDeviceId, DEVICE_INFO_CMD nCommand, INFO_DATATYPE* pType, \
                        void* pBuffer, size_t* pSize))                                                                 \
    X(IFOpenDevice, (IF_HANDLE hInterface, const char* pszDeviceId, DEVICE_ACCESS_FLAGS nFlags, DEV_HANDLE* phDevice)) \
    X(DevGetPort, (DEV_HANDLE hDevice, PORT_HANDLE* phRemotePort))                                                     \
    X(DevGetNumDataStreams, (DEV_HANDLE hDevice, uint32_t* pCount))                                                    \
    X(DevGetDataStreamID, (DEV_HANDLE hDevice, uint32_t nIndex, char* pszId, size_t* pSize))                           \
    X(DevOpenDataStream, (DEV_HANDLE hDevice, const char* pszStreamId, DS_HANDLE* phStream))                           \
    X(DevGetInfo, (DEV_HANDLE hDevice, DEVICE_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize))  \
    X(DevClose, (DEV_HANDLE hDevice))                                                                                  \
    X(DSAnnounceBuffer, (DS_HANDLE hStream, void* pBuffer, size_t nSize, void* pUserPointer, BUFFER_HANDLE* phBuffer)) \
    X(DSAllocAndAnnounceBuffer, (DS_HANDLE hStream, size_t nSize, void* pUserPointer, BUFFER_HANDLE* phBuffer))        \
    X(DSFlushQueue, (DS_HANDLE hStream, ACQ_QUEUE_TYPE nOperation))                                                    \
    X(DSStartAcquisition, (DS_HANDLE hStream, ACQ_START_FLAGS nFlags, uint64_t nFrames))                               \
    X(DSStopAcquisition, (DS_HANDLE hStream, ACQ_STOP_FLAGS nFlags))                                                   \
    X(DSGetInfo, (DS_HANDLE hStream, STREAM_INFO_CMD nCommand, INFO_DATATYPE* pType, void* pBuffer, size_t* pSize))    \
    X(DSGetBufferID, (DS_HANDLE hStream, uint32_t nIndex, BUFFER_HANDLE* phBuffer))                                    \
    X(DSClose, (DS_HANDLE hStream))                                                                                    \
    X(DSRevokeBuffer, (DS_HANDLE hStream, BUFFER_HANDLE hBuffer, void** ppBuffer, void** ppUserPointer))               \
    X(DSQueueBuffer, (DS_HANDLE hStream, BUFFER_HANDLE hBuffer))                                                       \
    X(DSGetBufferInfo, (DS_HANDLE hStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD nCommand, INFO_DATATYPE* pType,      \
                        void* pBuffer, size_t* pSize))                                                                 \
    X(GCGetNumPortURLs, (PORT_HANDLE hPort, uint32_t* pCount))                                                         \
    X(GCGetPortURLInfo, (PORT_HANDLE hPort, uint32_t nIndex, URL_INFO_CMD nCommand, INFO_DATATYPE* pType,              \
                         void* pBuffer, size_t* pSize))                                                                \
    X(GCReadPortStacked, (PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries, size_t* pCount))                     \
    X(GCWritePortStacked, (PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries, size_t* pCount))                    \
    X(DSGetBufferChunkData, (DS_HANDLE hStream, BUFFER_HANDLE hBuffer, SINGLE_CHUNK_DATA* pChunks, size_t* pCount))

// The interface is the one on which the device was found. What the values and texts mean is the producer's business.
#define GENTL_FURTHER_ENTRIES(X)                                                                                       \
    X(IFIpConfiguration, (IF_HANDLE hInterface, const char* pszDeviceId, uint32_t nValue, const char* pszText1,        \
                          const char* pszText2, const char* pszText3, const char* pszText4))                           \
    X(IFForceIp, (IF_HANDLE hInterface, const char* pszDeviceId, const char* pszText1, const char* pszText2,           \
                  const char* pszText3))                                                                               \
    X(IFResetDevice, (IF_HANDLE hInterface, const char* pszDeviceId, uint32_t nValue))                                 \
    X(IFUpdateSpecialDevice, (IF_HANDLE hInterface, const char* pszKey, void* pBuffer, size_t* pSize))

// clang-format on

#define GENTL_ENTRIES(X)      \
    GENTL_STANDARD_ENTRIES(X) \
    GENTL_FURTHER_ENTRIES(X)

#endif
