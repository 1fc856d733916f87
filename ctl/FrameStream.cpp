#include "ctl/FrameStream.h"

#include <algorithm>
#include <cstddef>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassInfo/BufferModuleInfo.h"
#include "TLClass/TLClassMain/Buffer.h"
#include "TLClass/TLClassMain/BufferInitInfo.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "ctl/ErrorText.h"
#include "support/Log.h"
#include "support/ZrException.h"

namespace {

/// Gives a buffer back, whatever happens to its frame.
class CTakenBuffer {
public:
    explicit CTakenBuffer(CBuffer& objBuffer) : m_objBuffer(objBuffer) {}
    ~CTakenBuffer() {
        try {
            m_objBuffer.QueueBuffer();
        } catch (const std::exception& objException) {
            CLog::GetInstance()->Write(ErrorText(objException));
        }
    }
    CTakenBuffer(const CTakenBuffer&) = delete;
    CTakenBuffer& operator=(const CTakenBuffer&) = delete;

private:
    CBuffer& m_objBuffer;
};

/// @param nBufferSize  more than this a buffer doesn't have, whatever the producer says
STREAM_FRAME FrameOf(const BUFFER_MODULE_INFO& objInformation, std::uint64_t nBufferSize) {
    STREAM_FRAME objFrame;
    objFrame.objShape = {objInformation.PixelFormat, objInformation.Width, objInformation.Height,
                         objInformation.XPaddingValid ? objInformation.XPadding : 0};
    objFrame.bIncomplete = objInformation.IsIncompleteValid && objInformation.IsIncomplete;
    if (objInformation.FrameIDValid) {
        objFrame.nFrameID = objInformation.FrameID;
    }
    const std::size_t nFilled = objInformation.SizeFilledValid ? objInformation.SizeFilled : nBufferSize;
    const auto nEnd = static_cast<std::size_t>(std::min<std::uint64_t>(nFilled, nBufferSize));
    const std::size_t nStart = std::min(objInformation.ImageOffsetValid ? objInformation.ImageOffset : 0, nEnd);
    if (objInformation.BaseValid && objInformation.Base != nullptr) {
        objFrame.vecData = {static_cast<const std::uint8_t*>(objInformation.Base) + nStart, nEnd - nStart};
    }
    return objFrame;
}

void LogFailure(const std::function<void()>& fnStep) {
    try {
        fnStep();
    } catch (const std::exception& objException) {
        CLog::GetInstance()->Write(ErrorText(objException));
    }
}

}  // namespace

CFrameStream::CFrameStream(const COpenCamera& objCamera)
    : m_pFeatureControl(objCamera.GetDevice()->GetRemoteFeatureControl()), m_pStream(objCamera.OpenStream()) {
    try {
        const std::int64_t nPayloadSize = m_pFeatureControl->DoGetInt("PayloadSize");
        m_nPayloadSize = static_cast<std::uint64_t>(std::max<std::int64_t>(nPayloadSize, 0));
        __LockParameters(true);
        TLClass::CBufferInitInfo objInitInfo;
        objInitInfo.SetPayloadSize(m_nPayloadSize);
        m_pStream->DoStartDataStreamAcqusition(&objInitInfo);
        m_pFeatureControl->DoSendCommand("AcquisitionStart");
    } catch (const std::exception&) {
        LogFailure([this] { __LockParameters(false); });
        m_pStream->DoCloseDataStream();
        throw;
    }
}

CFrameStream::~CFrameStream() {
    LogFailure([this] { m_pFeatureControl->DoSendCommand("AcquisitionStop"); });
    LogFailure([this] {
        m_pStream->StopGetNewBuffer();
        m_pStream->StopTLAcquisition();
    });
    LogFailure([this] { __LockParameters(false); });
    m_pStream->DoCloseDataStream();
}

/// Cameras that know the feature refuse changes of the frame's size while it is set.
void CFrameStream::__LockParameters(bool bLock) const {
    constexpr const char* kFeature = "TLParamsLocked";
    if (m_pFeatureControl->IsFeatureImplemented(kFeature)) {
        m_pFeatureControl->DoSetInt(kFeature, bLock ? 1 : 0);
    }
}

bool CFrameStream::Take(std::chrono::milliseconds nTimeout, const std::function<void(const STREAM_FRAME&)>& fnFrame) {
    BUFFER_MODULE_INFO objInformation;
    CBuffer* pBuffer = nullptr;
    try {
        pBuffer = m_pStream->GetBuffer(&objInformation, static_cast<std::uint32_t>(nTimeout.count()), true);
    } catch (const CTimeoutError&) {
        return false;
    }
    if (pBuffer == nullptr) {
        return false;
    }
    const CTakenBuffer objTaken(*pBuffer);
    fnFrame(FrameOf(objInformation, m_nPayloadSize));
    return true;
}

STREAM_LOSSES CFrameStream::ReadLosses() const {
    const auto readCount = [this](const char* pName) {
        std::int64_t nCount = 0;
        LogFailure([&] { nCount = m_pStream->GetFeatureControl()->DoGetInt(pName); });
        return static_cast<std::uint64_t>(std::max<std::int64_t>(nCount, 0));
    };
    return {readCount("StreamMissingPacketCount"), readCount("StreamResendRequestCount"),
            readCount("StreamResentPacketCount"), readCount("StreamSystemDroppedPacketCount"),
            readCount("StreamUnderrunFrameCount")};
}
