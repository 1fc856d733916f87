#include "producer/modules/RemotePort.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "gev/Bootstrap.h"
#include "producer/ProducerError.h"
#include "producer/modules/RemoteUrl.h"

namespace producer {

CRemotePort::CRemotePort(const ADAPTER& objAdapter, const DEVICE_ENTRY& objEntry, CONTROL_ACCESS eAccess,
                         const std::stop_token& objGiveUp)
    : m_objChannel(
          objAdapter, objEntry.Device.Address, eAccess, CONTROL_SETTINGS{},
          [this](CONTROL_LOSS, const std::string&) { GetEvents().PostOnce(EVENT_ZR_DEVICE_OFFLINE); }, objGiveUp) {
    GetEvents().Offer(EVENT_ZR_DEVICE_OFFLINE, 0, 1);
    if (m_objChannel.IsLost()) {
        GetEvents().PostOnce(EVENT_ZR_DEVICE_OFFLINE);  // so early that the event wasn't offered yet
    }
    m_objFacts.Id = objEntry.Id;
    m_objFacts.Vendor = objEntry.Device.Manufacturer;
    m_objFacts.Model = objEntry.Device.Model;
    m_objFacts.Version = objEntry.Device.DeviceVersion;
    m_objFacts.Module = "Device";
    m_objFacts.Name = "Device";
    m_objFacts.IsLittleEndian = (objEntry.Device.DeviceMode & gev::bootstrap::kDeviceModeBigEndian) == 0;
    m_objFacts.IsWritable = eAccess != CONTROL_ACCESS::ReadOnly;
}

void* CRemotePort::Publish(const std::shared_ptr<CRemotePort>& pThis) {
    m_hPort = CHandleTable::Get().Add(pThis);
    return m_hPort;
}

void CRemotePort::Close() noexcept {
    const std::shared_ptr<CHandled> pThis = CHandleTable::Get().Take(m_hPort);
    GetEvents().Close();
    m_objChannel.Close();
}

void CRemotePort::Read(std::uint64_t nAddress, std::span<std::byte> spanBuffer) {
    m_objChannel.DoRead(nAddress, spanBuffer);
}

void CRemotePort::Write(std::uint64_t nAddress, std::span<const std::byte> spanBuffer) {
    if (!m_objFacts.IsWritable) {
        throw CProducerError(GC_ERR_ACCESS_DENIED, m_objFacts.Id + " was opened for reading only");
    }
    m_objChannel.DoWrite(nAddress, spanBuffer);
    constexpr gev::bootstrap::REGISTER kPacketSize = gev::bootstrap::kStreamChannelPacketSize;
    if (nAddress < kPacketSize.GetEnd() && kPacketSize.Address < nAddress + spanBuffer.size()) {
        m_bPacketSizeWritten = true;
    }
}

PORT_FACTS CRemotePort::GetPortFacts() const {
    return m_objFacts;
}

std::vector<URL_FACTS> CRemotePort::GetUrls() {
    const std::lock_guard objLock(m_mtxUrls);
    if (m_vecUrl.empty()) {
        m_vecUrl = ReadUrls();
    }
    return m_vecUrl;
}

/// Those that lie in the camera first: consumers take the first and look no further.
std::vector<URL_FACTS> CRemotePort::ReadUrls() {
    std::vector<URL_FACTS> vecUrl;
    std::string strWhy;
    for (const gev::bootstrap::REGISTER& objRegister : {gev::bootstrap::kFirstURL, gev::bootstrap::kSecondURL}) {
        std::array<std::byte, gev::bootstrap::kFirstURL.Size> arrText{};
        m_objChannel.DoRead(objRegister.Address, std::span(arrText).first(objRegister.Size));
        std::string strReason;
        if (std::optional<URL_FACTS> objUrl = ReadCameraUrl(arrText, strReason)) {
            vecUrl.push_back(*std::move(objUrl));
        } else {
            strWhy += (strWhy.empty() ? "the first " : ", the second ") + strReason;
        }
    }
    if (vecUrl.empty()) {
        throw CProducerError(GC_ERR_NOT_AVAILABLE,
                             m_objFacts.Id + " names no description that can be loaded: of its two URLs " + strWhy);
    }
    std::stable_partition(vecUrl.begin(), vecUrl.end(),
                          [](const URL_FACTS& objUrl) { return objUrl.Scheme == URL_SCHEME_LOCAL; });
    return vecUrl;
}

}  // namespace producer
