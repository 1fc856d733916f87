#include "TLClass/TLClassInfo/DataStreamInformationFromHandle.h"

CDataStreamInformationFromHandle::CDataStreamInformationFromHandle(CGenTLLib* pLib, DS_HANDLE hDataStream)
    : m_pLib(pLib), m_hDataStream(hDataStream) {}

GC_ERROR CDataStreamInformationFromHandle::_GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer,
                                                    std::size_t* pSize) {
    return m_pLib->DSGetInfo(m_hDataStream, static_cast<STREAM_INFO_CMD>(nCommand), pType, pBuffer, pSize);
}

DS_MODULE_INFO CDataStreamInformationFromHandle::GetInformation() {
    DS_MODULE_INFO objInformation;
    _GetStringInfo({STREAM_INFO_ID}, {&objInformation.ID}, {&objInformation.IDValid});
    _GetSizetInfo(
        {STREAM_INFO_PAYLOAD_SIZE, STREAM_INFO_NUM_CHUNKS_MAX, STREAM_INFO_BUF_ANNOUNCE_MIN,
         STREAM_INFO_ZR_BUF_ANNOUNCE_MAX, STREAM_INFO_BUF_ALIGNMENT},
        {&objInformation.PayloadSize, &objInformation.NumChunksMax, &objInformation.BufAnnounceMin,
         &objInformation.BufAnnounceMax, &objInformation.BufAlignment},
        {&objInformation.PayloadSizeValid, &objInformation.NumChunksMaxValid, &objInformation.BufAnnounceMinValid,
         &objInformation.BufAnnounceMaxValid, &objInformation.BufAlignmentValid});
    return objInformation;
}
