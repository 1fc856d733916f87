#pragma once

#include "TLClass/TLClassInfo/BufferModuleInfo.h"
#include "TLClass/TLClassInfo/ZrInformation.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Reads what a data stream tells about one of its buffers and the frame in it. Runs once for each frame, and allocates
/// nothing.
class CBufferInformationFromHandle final : public CZrInformation {
public:
    CBufferInformationFromHandle(CGenTLLib* pLib, DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer);

    /// Asks the producer anew at each call.
    BUFFER_MODULE_INFO GetInformation();

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override;

private:
    template <typename VALUE>
    void __Read(BUFFER_INFO_CMD nCommand, INFO_DATATYPE nType, VALUE& value, bool& bValid);

    CGenTLLib* m_pLib;
    DS_HANDLE m_hDataStream;
    BUFFER_HANDLE m_hBuffer;
};
