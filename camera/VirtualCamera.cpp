#include "camera/VirtualCamera.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "camera/AdapterSocket.h"
#include "camera/GvcpSocket.h"
#include "camera/ImageStream.h"
#include "camera/LoopSocket.h"
#include "camera/ProtocolEngine.h"
#include "camera/StreamSocket.h"
#include "gev/Bootstrap.h"

namespace camera {
namespace {

namespace boot = gev::bootstrap;

// The largest datagram that an adapter takes: what is too long is to be seen as such, not cut to what is right.
constexpr std::size_t kReceiveBuffer = 65536;
constexpr int kMostInARow = 64;  // datagrams before the loop looks at the time and at wishes
constexpr std::chrono::seconds kLookInterval{1};

/// @throws std::invalid_argument
void CheckText(const std::string& strText, boot::REGISTER objRegister, const char* pName) {
    if (strText.size() >= objRegister.Size) {
        throw std::invalid_argument(std::string("the ") + pName + " '" + strText + "' is longer than the " +
                                    std::to_string(objRegister.Size - 1) + " bytes that a camera has for it");
    }
}

CAMERA_CONFIGURATION Checked(CAMERA_CONFIGURATION objConfiguration) {
    CheckText(objConfiguration.Model, boot::kModelName, "model");
    CheckText(objConfiguration.Serial, boot::kSerialNumber, "serial number");
    CheckText(objConfiguration.UserName, boot::kUserDefinedName, "name");
    return objConfiguration;
}

/// The adapter as the camera's address sees it.
class CAdapter : public IAdapter {
public:
    explicit CAdapter(CAdapterSocket& objSocket) : m_objSocket(objSocket) {}

    void SetAddress(std::uint32_t nAddress, std::uint32_t nMask) override {
        m_objSocket.SetAddress(nAddress, nMask);
        m_nAddress = nAddress;
    }
    void RemoveAddresses() override {
        m_objSocket.RemoveAddresses();
        m_nAddress = 0;
    }
    [[nodiscard]] std::uint32_t GetAddress() const { return m_nAddress; }

private:
    CAdapterSocket& m_objSocket;
    std::atomic<std::uint32_t> m_nAddress = 0;
};

class COutlet : public IOutlet {
public:
    COutlet(CGvcpSocket& objSocket, std::function<void(std::string_view)> funLog)
        : m_objSocket(objSocket), m_funLog(std::move(funLog)) {}

    void Send(const ENDPOINT& objTo, std::span<const std::byte> arrDatagram) override {
        const int nErrno = m_objSocket.Send(objTo.Address, objTo.Port, arrDatagram);
        if (nErrno != 0 && m_funLog) {
            m_funLog("no answer to " + std::string(gev::FormatIPv4(objTo.Address).GetText()) + ": " +
                     std::generic_category().message(nErrno));
        }
    }

private:
    CGvcpSocket& m_objSocket;
    std::function<void(std::string_view)> m_funLog;
};

/// What the stream tells, until the thread in Run takes it.
class CNews : public IStreamNews {
public:
    explicit CNews(CLoopSocket& objLoop) : m_objLoop(objLoop) {}

    void AcquisitionEnded(std::uint32_t nAcquisition) override {
        const std::scoped_lock lock(m_mtxNews);
        m_nEnded = nAcquisition;
        Wake();
    }
    void Happened(const FRAME_EVENT& objEvent) override {
        const std::scoped_lock lock(m_mtxNews);
        // What finds no place is lost, as an event is that nobody acknowledges.
        if (m_nEvents < m_arrEvent.size()) {
            m_arrEvent[m_nEvents++] = objEvent;
            Wake();
        }
    }
    void Unsent(std::uint32_t nAcquisition, const UNSENT_PACKETS& objUnsent) override {
        const std::scoped_lock lock(m_mtxNews);
        m_objUnsent.Count += objUnsent.Count;
        m_objUnsent.Reason = objUnsent.Reason;
        m_nUnsentOf = nAcquisition;
        Wake();
    }

    void GiveTo(CProtocolEngine& objEngine, TIME tNow) {
        if (!m_bNews) {
            return;
        }
        const std::scoped_lock lock(m_mtxNews);
        m_bNews = false;
        if (m_nEnded) {
            objEngine.EndAcquisition(*m_nEnded, tNow);
            m_nEnded.reset();
        }
        if (m_objUnsent.Count > 0) {
            objEngine.TellUnsent(m_nUnsentOf, std::exchange(m_objUnsent, {}));
        }
        for (std::size_t i = 0; i < m_nEvents; ++i) {
            objEngine.TellEvent(m_arrEvent[i], tNow);
        }
        m_nEvents = 0;
    }

private:
    void Wake() {
        m_bNews = true;
        m_objLoop.Wake();
    }

    CLoopSocket& m_objLoop;
    std::atomic<bool> m_bNews = false;
    std::mutex m_mtxNews;  // guards all below
    std::optional<std::uint32_t> m_nEnded;
    UNSENT_PACKETS m_objUnsent;
    std::uint32_t m_nUnsentOf = 0;  // the acquisition
    std::array<FRAME_EVENT, 64> m_arrEvent{};
    std::size_t m_nEvents = 0;
};

}  // namespace

class CVirtualCamera::CImplementation {
public:
    explicit CImplementation(const CAMERA_CONFIGURATION& objConfiguration)
        : m_objAdapterSocket(objConfiguration.Interface),
          m_objSocket(m_objAdapterSocket.GetIndex(), gev::kGvcpPort),
          m_objAdapter(m_objAdapterSocket),
          m_objOutlet(m_objSocket, objConfiguration.Log),
          m_objNews(m_objLoop),
          m_objStreamSocket(m_objAdapterSocket.GetIndex()),
          m_objStream(m_objStreamSocket, m_objNews),
          m_objMAC(gev::CMACAddress::Get(std::as_bytes(std::span(m_objAdapterSocket.GetMAC())))),
          m_objEngine(objConfiguration, m_objMAC, m_objAdapterSocket.GetLinkSpeed(), m_objAdapter, m_objOutlet,
                      m_objStream, std::chrono::steady_clock::now()) {}

    ~CImplementation() {
        try {
            m_objAdapterSocket.RemoveAddresses();
        } catch (const std::exception&) {
            // The adapter may have gone, and its addresses with it.
        }
    }
    CImplementation(const CImplementation&) = delete;
    CImplementation& operator=(const CImplementation&) = delete;

    void Run() {
        while (!m_bStop) {
            TakeFaults();
            m_objNews.GiveTo(m_objEngine, std::chrono::steady_clock::now());
            m_objEngine.Advance(std::chrono::steady_clock::now());
            const TIME tLook = LookAtAdapter();
            m_objLoop.Wait(m_objSocket.GetDescriptor(), std::min(m_objEngine.NextTime().value_or(tLook), tLook));
            for (int i = 0; i < kMostInARow && !m_bStop; ++i) {
                const auto objDatagram = m_objSocket.Receive(m_arrBuffer);
                if (!objDatagram) {
                    break;
                }
                TakeFaults();
                m_objNews.GiveTo(m_objEngine, std::chrono::steady_clock::now());
                m_objEngine.Receive({objDatagram->Source, objDatagram->SourcePort}, objDatagram->Destination,
                                    objDatagram->Payload, std::chrono::steady_clock::now());
            }
        }
    }

    void Stop() noexcept {
        m_bStop = true;
        m_objLoop.Wake();
    }

    void SetFaults(const FAULTS& objFaults) {
        {
            const std::scoped_lock lock(m_mtxFaults);
            m_objFaults = objFaults;
            m_bNewFaults = true;
        }
        m_objLoop.Wake();
    }

    [[nodiscard]] gev::CMACAddress GetMAC() const { return m_objMAC; }
    [[nodiscard]] std::uint32_t GetAddress() const { return m_objAdapter.GetAddress(); }

private:
    /// A socket is told that its adapter goes down, which one that goes for good does first, and nothing after that.
    /// @return when to look again
    TIME LookAtAdapter() {
        if (const TIME tNow = std::chrono::steady_clock::now(); tNow >= m_tNextLook) {
            m_objAdapterSocket.RequirePresence();
            m_tNextLook = tNow + kLookInterval;
        }
        return m_tNextLook;
    }

    void TakeFaults() {
        if (!m_bNewFaults) {
            return;
        }
        const std::scoped_lock lock(m_mtxFaults);
        m_bNewFaults = false;
        m_objEngine.SetFaults(m_objFaults, std::chrono::steady_clock::now());
    }

    CAdapterSocket m_objAdapterSocket;
    CGvcpSocket m_objSocket;
    CLoopSocket m_objLoop;
    CAdapter m_objAdapter;
    COutlet m_objOutlet;
    CNews m_objNews;
    CStreamSocket m_objStreamSocket;
    CImageStream m_objStream;
    gev::CMACAddress m_objMAC;
    CProtocolEngine m_objEngine;  // of the thread in Run
    std::array<std::byte, kReceiveBuffer> m_arrBuffer{};
    TIME m_tNextLook{};  // at the adapter

    std::atomic<bool> m_bStop = false;
    std::atomic<bool> m_bNewFaults = false;
    std::mutex m_mtxFaults;  // guards m_objFaults
    FAULTS m_objFaults;
};

CVirtualCamera::CVirtualCamera(CAMERA_CONFIGURATION objConfiguration)
    : m_pImplementation(std::make_unique<CImplementation>(Checked(std::move(objConfiguration)))) {}

CVirtualCamera::~CVirtualCamera() = default;

void CVirtualCamera::Run() {
    m_pImplementation->Run();
}

void CVirtualCamera::Stop() noexcept {
    m_pImplementation->Stop();
}

void CVirtualCamera::SetFaults(const FAULTS& objFaults) {
    m_pImplementation->SetFaults(objFaults);
}

gev::CMACAddress CVirtualCamera::GetMAC() const {
    return m_pImplementation->GetMAC();
}

std::uint32_t CVirtualCamera::GetAddress() const {
    return m_pImplementation->GetAddress();
}

}  // namespace camera
