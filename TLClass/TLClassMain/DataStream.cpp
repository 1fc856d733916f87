#include "TLClass/TLClassMain/DataStream.h"

#include <exception>
#include <utility>

#include "GenApi/NodeMapRef.h"
#include "TLClass/TLClassEvent/INewBufferCallback.h"
#include "TLClass/TLClassFeature/FeatureControl.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/Agency.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassXML/LoadXMLAgency.h"
#include "support/Log.h"
#include "support/Text.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\DataStream";

}  // namespace

/// Puts the camera's node map behind the chunk adapter.
class CDataStream::CAttachChunkNodeMapAgency : public CAgency {
public:
    CAttachChunkNodeMapAgency(CDataStream& objStream, GenApi_3_0::INodeMap* pNodeMap) : m_objStream(objStream) {
        m_objStream.m_pChunkAdapter->AttachNodeMap(pNodeMap);
    }
    ~CAttachChunkNodeMapAgency() {
        if (m_bArmed) {
            m_objStream.__DetachChunkNodeMap();
        }
    }

private:
    CDataStream& m_objStream;
};

/// Opens the stream in the producer.
class CDataStream::CDevOpenDataStreamAgency : public CAgency {
public:
    CDevOpenDataStreamAgency(CGenTLLib* pLib, DEV_HANDLE hDevice, const std::string& strDataStreamID) : m_pLib(pLib) {
        const GC_ERROR nResult = m_pLib->DevOpenDataStream(hDevice, strDataStreamID.c_str(), &m_hDataStream);
        CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(
            nResult, m_pLib, kFile, __LINE__, "CDataStream::CDevOpenDataStreamAgency::CDevOpenDataStreamAgency");
    }
    ~CDevOpenDataStreamAgency() {
        if (m_bArmed) {
            CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->DSClose(m_hDataStream), m_pLib, kFile, __LINE__,
                                                 "CDataStream::CDevOpenDataStreamAgency::~CDevOpenDataStreamAgency");
        }
    }

    DS_HANDLE GetHandle() const { return m_hDataStream; }

private:
    CGenTLLib* m_pLib;
    DS_HANDLE m_hDataStream = nullptr;
};

/// Registers the event of a filled buffer.
class CDataStream::CRegisterNewBufferAgency : public CAgency {
public:
    CRegisterNewBufferAgency(CNewBufferEvent& objEvent, DS_HANDLE hDataStream) : m_objEvent(objEvent) {
        m_objEvent.RegisterEventBufferHandle(hDataStream);
    }
    ~CRegisterNewBufferAgency() {
        if (m_bArmed) {
            m_objEvent.UnregisterEventBufferHandle();
        }
    }

private:
    CNewBufferEvent& m_objEvent;
};

CDataStream::CDataStream(CGenTLLib* pLib, boost::shared_ptr<IDevice> pDevice, DEV_HANDLE hDevice,
                         std::string strDataStreamID)
    : IDataStream(pLib),
      m_pDevice(std::move(pDevice)),
      m_hDevice(hDevice),
      m_strDataStreamID(std::move(strDataStreamID)),
      m_objNewBufferEvent(pLib),
      m_pChunkAdapter(std::make_unique<GenApi_3_0::CChunkAdapterGeneric>()) {
    if (!m_pDevice) {
        throw CInvalidParameterError(
            "Failed to create the object of CDataStream because the device object has been removed in the process of "
            "updating. Offline device or deficient bandwidth will lead to the status",
            kFile, __LINE__, "CDataStream::CDataStream");
    }
}

void CDataStream::DoOpenDataStream() {
    const CScopedLock objLock(m_csDataStream);
    if (m_bOpened) {
        return;
    }
    GenApi_3_0::INodeMap* const pRemoteNodeMap = __GetRemoteNodeMap();
    CAttachChunkNodeMapAgency objAttach(*this, pRemoteNodeMap);
    CDevOpenDataStreamAgency objOpen(m_pLib, m_hDevice, m_strDataStreamID);
    CRegisterNewBufferAgency objRegister(m_objNewBufferEvent, objOpen.GetHandle());
    CLoadXMLAgency objLoad(m_objXMLAnalyzer, objOpen.GetHandle());
    _SetFeatureControl(std::make_unique<CFeatureControl>(m_objXMLAnalyzer.GetNodeMapRef()));
    m_hDataStream = objOpen.GetHandle();
    Dismiss(objAttach);
    Dismiss(objLoad);
    Dismiss(objOpen);
    Dismiss(objRegister);
    m_bOpened = true;
}

GenApi_3_0::INodeMap* CDataStream::__GetRemoteNodeMap() const {
    const GenApi_3_0::CNodeMapRef* pNodeMapRef = m_pDevice->GetRemoteNodeMap();
    // A device that was closed may be open again, with another handle and streams of its own.
    if (!m_bMayOpen || pNodeMapRef == nullptr || pNodeMapRef->_Ptr == nullptr) {
        throw CUnexpectedError(-1, "The node map of remote device  is invalid", kFile, __LINE__,
                               "CDataStream::DoOpenDataStream");
    }
    return pNodeMapRef->_Ptr;
}

void CDataStream::ForbidOpening() {
    const CScopedLock objLock(m_csDataStream);
    m_bMayOpen = false;
}

void CDataStream::DoCloseDataStream() {
    const CScopedLock objLock(m_csDataStream);
    if (!m_bOpened) {
        return;
    }
    // What can't be stopped keeps its handle and its memory: the stream stays open then.
    try {
        __StopGetNewBuffer();
        __StopTLAcquisition();
        m_objNewBufferEvent.UnregisterEventBufferHandle();
        UnregisterNewBufferCallback();
        _SetFeatureControl(nullptr);
        m_objXMLAnalyzer.Clear();
        CGenTLErrorCodeVerifier::LogIfFailed(m_pLib->DSClose(m_hDataStream.exchange(nullptr)), m_pLib, kFile, __LINE__,
                                             "CDataStream::DoCloseDataStream");
        __FreeBuffers();
        __DetachChunkNodeMap();
        m_bOpened = false;
    } catch (...) {
        __LogCurrentException(__LINE__, "CDataStream::DoCloseDataStream");
    }
}

void CDataStream::__DetachChunkNodeMap() noexcept {
    try {
        m_pChunkAdapter->DetachNodeMap();
    } catch (...) {
        __LogCurrentException(__LINE__, "CDataStream::__DetachChunkNodeMap");
    }
}

/// In a catch block. What goes down must not fail, and a callback of a node may throw anything.
void CDataStream::__LogCurrentException(int nLine, const char* pFunction) noexcept {
    const auto Write = [&](const char* pText) {
        CLog::GetInstance()->Write(FormatFailure(kFile, nLine, pFunction, pText));
    };
    try {
        try {
            throw;
        } catch (const std::exception& objException) {
            Write(objException.what());
        } catch (...) {
            Write("A callback threw what isn't an exception");
        }
    } catch (...) {
        // Memory ran out: the line is lost.
    }
}

void CDataStream::RegisterNewBufferCallback(INewBufferCallback* pCallback) {
    m_objNewBufferEvent.RegisterCallback(pCallback);
}

void CDataStream::UnregisterNewBufferCallback() {
    m_objNewBufferEvent.UnregisterCallback();
}

bool CDataStream::IsNewBufferCallbackRegistered() const {
    return m_objNewBufferEvent.IsCallbackRegistered();
}

CBuffer* CDataStream::GetBuffer(BUFFER_MODULE_INFO* pInformation, std::uint32_t nTimeoutMs, bool bThrow) {
    return m_objNewBufferEvent.GetBuffer(pInformation, nTimeoutMs, bThrow);
}

std::uint32_t CDataStream::GetNewBufferThreadId() const {
    return m_objNewBufferEvent.GetThreadId();
}

CNativeNewBufferEvent* CDataStream::GetNativeNewBufferEvent() {
    return m_objNewBufferEvent.GetNativeEvent();
}

std::uint32_t CDataStream::DoGetOptimalPacketSize() {
    constexpr const char* kFunction = "CDataStream::DoGetOptimalPacketSize";
    if (IsAcqusition()) {
        throw CInvalidCallError("Can't get the optimal packet size after start capture", kFile, __LINE__, kFunction);
    }
    INFO_DATATYPE nType = INFO_DATATYPE_UINT32;
    std::uint32_t nPacketSize = 0;
    std::size_t nSize = sizeof(nPacketSize);
    const GC_ERROR nResult =
        m_pLib->DSGetInfo(m_hDataStream, STREAM_INFO_ZR_OPTIMAL_PACKET_SIZE, &nType, &nPacketSize, &nSize);
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(nResult, m_pLib, kFile, __LINE__, kFunction);
    return nPacketSize;
}
