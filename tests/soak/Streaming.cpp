// Taking images.

#include "TLClass/TLClassMain/Buffer.h"
#include "TLClass/TLClassMain/BufferInitInfo.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "tests/TLClass/FunctionCallback.h"
#include "tests/soak/FrameCheck.h"
#include "tests/soak/Playground.h"

namespace {

constexpr std::uint32_t kFrameTimeoutMs = 200;

/// One camera, open.
class CStreaming {
public:
    CStreaming(PLAYGROUND& objPlayground, IDevice& objDevice, CChance& objChance)
        : m_objPlayground(objPlayground),
          m_objBook(objPlayground.Book),
          m_objDevice(objDevice),
          m_objChance(objChance),
          m_objCheck(m_objBook, m_nWidth, m_nHeight) {}
    ~CStreaming() {
        m_objPlayground.Frames += m_objCheck.GetSeen();
        m_objPlayground.IncompleteFrames += m_objCheck.GetIncomplete();
    }
    CStreaming(const CStreaming&) = delete;
    CStreaming& operator=(const CStreaming&) = delete;

    void Run() {
        if (!SetUp() || !Start()) {
            return;
        }
        Take();
        if (m_objChance.OneIn(3)) {
            return;  // whoever has opened the camera closes it under way
        }
        Stop();
        m_objCheck.CompareWith(*m_pStream->GetFeatureControl());
        if (m_objChance.OneIn(2)) {
            m_objBook.Expect(m_objBook.Try(ECall::Close, [&] { m_pStream->DoCloseDataStream(); }),
                             "a stream won't close");
        }
    }

private:
    IFeatureControl& Remote() { return *m_objDevice.GetRemoteFeatureControl(); }

    template <class Write>
    bool Set(const Write& funWrite) {
        return m_objBook.Try(ECall::Write, funWrite);
    }
    bool SetEnum(const char* pName, const char* pEntry) {
        return Set([&] { Remote().DoSetEnum(pName, Remote().DoGetEnumEntryValue(pName, pEntry)); });
    }

    bool SetUp() {
        const bool bChunks = m_objChance.OneIn(2);
        return Set([&] { Remote().DoSetInt("Width", m_nWidth); }) &&
               Set([&] { Remote().DoSetInt("Height", m_nHeight); }) &&
               Set([&] { Remote().DoSetFloat("AcquisitionFrameRate", m_objChance.Between(20, 200)); }) &&
               Set([&] { Remote().DoSetBool("ChunkModeActive", bChunks); }) &&
               (!bChunks ||
                (SetEnum("ChunkSelector", "FrameID") && Set([&] { Remote().DoSetBool("ChunkEnable", true); }))) &&
               (m_objChance.OneIn(2) || SetUpEvents());
    }

    bool SetUpEvents() {
        CFeatureFunction objCallback([pEvents = &m_objPlayground.Events] { ++*pEvents; });
        return SetEnum("EventSelector", "ExposureEnd") && SetEnum("EventNotification", "On") &&
               m_objBook.Try(ECall::Open, [&] {
                   Remote().RegisterFeatureCallback("EventExposureEnd", &objCallback);
                   m_objDevice.StartRemoteDeviceEvent();
               });
    }

    bool Start() {
        if (!m_objBook.Try(ECall::Open, [&] {
                m_pStream = m_objDevice.GetDataStreamList().at(0);
                m_pStream->DoOpenDataStream();
            })) {
            return false;
        }
        CFrameFunction objCallback([this](const BUFFER_MODULE_INFO& objFrame) { m_objCheck.Add(objFrame); });
        m_bCallback ? m_pStream->RegisterNewBufferCallback(&objCallback) : m_pStream->UnregisterNewBufferCallback();
        m_pStream->SetAcqusitionBufferNumber(static_cast<std::uint64_t>(m_objChance.Between(2, 12)));
        std::int64_t nPayload = 0;
        return m_objBook.Try(ECall::Read, [&] {
            nPayload = Remote().DoGetInt("PayloadSize");
        }) && m_objBook.Try(ECall::Start, [&] {
            TLClass::CBufferInitInfo objInfo;
            objInfo.SetPayloadSize(static_cast<std::uint64_t>(nPayload));
            m_pStream->DoStartDataStreamAcqusition(&objInfo);
        }) && Set([&] { Remote().DoSendCommand("AcquisitionStart"); });
    }

    void Take() {
        if (m_bCallback) {
            m_objChance.Wait(m_objPlayground, 50, 1500);
            return;
        }
        for (int nFrames = m_objChance.Between(1, 200); nFrames > 0 && !m_objPlayground.Stop; --nFrames) {
            m_objBook.Try(ECall::Frame, [&] {
                BUFFER_MODULE_INFO objFrame;
                CBuffer* const pBuffer = m_pStream->GetBuffer(&objFrame, kFrameTimeoutMs, true);
                m_objCheck.Add(objFrame);
                pBuffer->QueueBuffer();
            });
            if (m_objChance.OneIn(40)) {
                m_objChance.Wait(m_objPlayground, 20, 200);  // so that the camera finds no buffer
            }
        }
    }

    void Stop() {
        Set([&] { Remote().DoSendCommand("AcquisitionStop"); });
        const bool bStopped = m_objBook.Try(ECall::Stop, [&] {
            m_pStream->StopGetNewBuffer();
            m_pStream->StopTLAcquisition();
        });
        m_objBook.Expect(bStopped, "an acquisition won't stop");
    }

    PLAYGROUND& m_objPlayground;
    CCallBook& m_objBook;
    IDevice& m_objDevice;
    CChance& m_objChance;
    const std::uint32_t m_nWidth =
        static_cast<std::uint32_t>(m_objChance.Between(8, 40)) * 8;  // 32 bits of the number fit
    const std::uint32_t m_nHeight = static_cast<std::uint32_t>(m_objChance.Between(10, 120)) * 2;
    const bool m_bCallback = m_objChance.OneIn(2);
    CFrameCheck m_objCheck;
    boost::shared_ptr<IDataStream> m_pStream;
};

}  // namespace

void StreamImages(PLAYGROUND& objPlayground, int nCamera, CChance objChance) {
    CCallBook& objBook = objPlayground.Book;
    while (!objPlayground.Stop) {
        const auto pDevice = FindCamera(nCamera);
        if (pDevice == nullptr || !objBook.Try(ECall::Open, [&] { pDevice->DoOpenDevice(DEVICE_ACCESS_CONTROL); })) {
            objChance.Wait(objPlayground, 50, 200);
            continue;
        }
        CStreaming objStreaming(objPlayground, *pDevice, objChance);
        objStreaming.Run();
        objBook.Expect(objBook.Try(ECall::Close, [&] { pDevice->DoCloseDevice(); }), "a camera won't close");
    }
}
