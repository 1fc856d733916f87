#include "TLClass/TLClassInfo/BufferInformationFromHandle.h"

CBufferInformationFromHandle::CBufferInformationFromHandle(CGenTLLib* pLib, DS_HANDLE hDataStream,
                                                           BUFFER_HANDLE hBuffer)
    : m_pLib(pLib), m_hDataStream(hDataStream), m_hBuffer(hBuffer) {}

GC_ERROR CBufferInformationFromHandle::_GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer,
                                                std::size_t* pSize) {
    return m_pLib->DSGetBufferInfo(m_hDataStream, m_hBuffer, static_cast<BUFFER_INFO_CMD>(nCommand), pType, pBuffer,
                                   pSize);
}

template <typename VALUE>
void CBufferInformationFromHandle::__Read(BUFFER_INFO_CMD nCommand, INFO_DATATYPE nType, VALUE& value, bool& bValid) {
    VALUE answer{};
    std::size_t nSize = sizeof(answer);
    bValid = m_pLib->DSGetBufferInfo(m_hDataStream, m_hBuffer, nCommand, &nType, &answer, &nSize) == GC_ERR_SUCCESS;
    value = bValid ? answer : VALUE{};
}

BUFFER_MODULE_INFO CBufferInformationFromHandle::GetInformation() {
    BUFFER_MODULE_INFO objInformation;
    __Read(BUFFER_INFO_BASE, INFO_DATATYPE_PTR, objInformation.Base, objInformation.BaseValid);
    __Read(BUFFER_INFO_SIZE, INFO_DATATYPE_SIZET, objInformation.Size, objInformation.SizeValid);
    __Read(BUFFER_INFO_SIZE_FILLED, INFO_DATATYPE_SIZET, objInformation.SizeFilled, objInformation.SizeFilledValid);
    __Read(BUFFER_INFO_WIDTH, INFO_DATATYPE_SIZET, objInformation.Width, objInformation.WidthValid);
    __Read(BUFFER_INFO_HEIGHT, INFO_DATATYPE_SIZET, objInformation.Height, objInformation.HeightValid);
    __Read(BUFFER_INFO_XOFFSET, INFO_DATATYPE_SIZET, objInformation.XOffset, objInformation.XOffsetValid);
    __Read(BUFFER_INFO_YOFFSET, INFO_DATATYPE_SIZET, objInformation.YOffset, objInformation.YOffsetValid);
    __Read(BUFFER_INFO_XPADDING, INFO_DATATYPE_SIZET, objInformation.XPadding, objInformation.XPaddingValid);
    __Read(BUFFER_INFO_YPADDING, INFO_DATATYPE_SIZET, objInformation.YPadding, objInformation.YPaddingValid);
    __Read(BUFFER_INFO_IMAGEOFFSET, INFO_DATATYPE_SIZET, objInformation.ImageOffset, objInformation.ImageOffsetValid);
    __Read(BUFFER_INFO_PAYLOADTYPE, INFO_DATATYPE_SIZET, objInformation.PayloadType, objInformation.PayloadTypeValid);
    __Read(BUFFER_INFO_TIMESTAMP, INFO_DATATYPE_UINT64, objInformation.Timestamp, objInformation.TimestampValid);
    __Read(BUFFER_INFO_FRAMEID, INFO_DATATYPE_UINT64, objInformation.FrameID, objInformation.FrameIDValid);
    __Read(BUFFER_INFO_PIXELFORMAT, INFO_DATATYPE_UINT64, objInformation.PixelFormat, objInformation.PixelFormatValid);
    __Read(BUFFER_INFO_PIXELFORMAT_NAMESPACE, INFO_DATATYPE_UINT64, objInformation.PixelFormatNamespace,
           objInformation.PixelFormatNamespaceValid);
    __Read(BUFFER_INFO_USER_PTR, INFO_DATATYPE_PTR, objInformation.UserPtr, objInformation.UserPtrValid);
    // A flag is a byte of any value, which a bool may not hold.
    bool8_t nIsIncomplete = 0;
    __Read(BUFFER_INFO_IS_INCOMPLETE, INFO_DATATYPE_BOOL8, nIsIncomplete, objInformation.IsIncompleteValid);
    objInformation.IsIncomplete = nIsIncomplete != 0;
    return objInformation;
}
