#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "GenTL/GenTL.h"

class CGenTLLib;
class IDataStream;
class IDevice;

/// Makes the data streams of a device: one class serves every kind of transport layer.
class CDataStreamFactory {
public:
    CDataStreamFactory() = delete;

    /// @return closed; the caller's, who puts it in a shared pointer at once
    /// @throws CInvalidParameterError  the device is empty: it has left its interface's list
    [[nodiscard]] static IDataStream* CreateDataStream(CGenTLLib* pLib, boost::shared_ptr<IDevice> pDevice,
                                                       DEV_HANDLE hDevice, const std::string& strDataStreamID);
};
