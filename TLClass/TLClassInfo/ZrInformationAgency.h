#pragma once

#include <string>
#include <vector>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassInfo/BufferModuleInfo.h"
#include "TLClass/TLClassInfo/DSModuleInfo.h"
#include "TLClass/TLClassInfo/DevModuleInfo.h"
#include "TLClass/TLClassInfo/IFModuleInfo.h"
#include "TLClass/TLClassInfo/PortModuleInfo.h"
#include "TLClass/TLClassInfo/TLModuleInfo.h"

class CGenTLLib;

/// The way in to all information queries: asks a producer about one of its modules and gives back a record.
///
/// No state, no instances. The caller keeps two queries of one handle apart if its producer needs that.
class CZrInformationAgency {
public:
    CZrInformationAgency() = delete;

    // None of these throws because the producer declines: the fields that it refuses are empty, their flags false.
    static TL_MODULE_INFO GetTLInformation(CGenTLLib* pLib);
    static TL_MODULE_INFO GetTLInformation(CGenTLLib* pLib, TL_HANDLE hTL);
    static IF_MODULE_INFO GetInterfaceInformation(CGenTLLib* pLib, IF_HANDLE hInterface);
    static DEV_MODULE_INFO GetDeviceInformation(CGenTLLib* pLib, DEV_HANDLE hDevice);
    static DS_MODULE_INFO GetDataStreamInformation(CGenTLLib* pLib, DS_HANDLE hDataStream);
    static BUFFER_MODULE_INFO GetBufferInformation(CGenTLLib* pLib, DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer);
    static PORT_MODULE_INFO GetPortInformation(CGenTLLib* pLib, PORT_HANDLE hPort);

    // One record for each child, in the producer's order.
    /// @throws CZrException  by the result of counting the children; CUnexpectedError for more than kMaxChildCount
    static std::vector<IF_MODULE_INFO> GetAllInterfaceInformation(CGenTLLib* pLib, TL_HANDLE hTL);
    /// @throws CZrException  as above
    static std::vector<DEV_MODULE_INFO> GetAllDeviceInformation(CGenTLLib* pLib, IF_HANDLE hInterface);

    /// One entry for each data stream, in the producer's order; empty where an ID can't be read.
    /// @throws CZrException  by the result of counting the streams; CUnexpectedError for more than kMaxChildCount
    static std::vector<std::string> GetAllDataStreamIDOfDevice(CGenTLLib* pLib, DEV_HANDLE hDevice);
};
