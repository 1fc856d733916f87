#include "camera/MessageChannel.h"

#include <chrono>

#include "gev/BigEndian.h"
#include "gev/Bootstrap.h"
#include "gev/GvcpEvent.h"

namespace camera {
namespace {

namespace boot = gev::bootstrap;
using gev::EGvcpCommand;

}  // namespace

void CMessageChannel::Tell(const FRAME_EVENT& objEvent, TIME tNow) {
    if (m_objDevice.GetMessageChannel().LeadsAnywhere() && m_nWaiting < kMostWaiting) {
        m_arrWaiting[(m_nFirst + m_nWaiting++) % kMostWaiting] = objEvent;
    }
    SendNext(tNow);
}

std::span<std::byte> CMessageChannel::Encode(const FRAME_EVENT& objEvent, bool bAcknowledge) {
    gev::EVENT_ENTRY objEntry;
    objEntry.StreamChannel = 0;
    objEntry.BlockID = objEvent.BlockID;
    objEntry.Timestamp = objEvent.Timestamp;
    gev::GvcpBuffer& arrBuffer = m_objInFlight.Datagram;
    if (objEvent.Event == kEventFrameTrigger) {
        objEntry.EventID = gev::kEventTrigger;
        return gev::EncodeEvent(arrBuffer, m_nRequestID, {&objEntry, 1}, objEvent.ExtendedIDs, bAcknowledge);
    }
    objEntry.EventID = gev::kEventEndOfExposure;
    std::array<std::byte, kEventDataLength> arrData;
    gev::Put64(arrData, kEventTimestampPlace, objEvent.Timestamp);
    gev::Put64(arrData, kEventFramePlace, objEvent.Frame);
    return gev::EncodeEventData(arrBuffer, m_nRequestID, objEntry, arrData, objEvent.ExtendedIDs, bAcknowledge);
}

void CMessageChannel::SendNext(TIME tNow) {
    const CHANNEL objChannel = m_objDevice.GetMessageChannel();
    // Without a time-out nobody is asked to acknowledge, and all events leave at once.
    const std::chrono::milliseconds nTimeout(m_objDevice.Registers().Get(boot::kMessageChannelTimeout));
    while (objChannel.LeadsAnywhere() && m_nWaiting > 0 && !m_bInFlight) {
        m_nRequestID = gev::NextRequestID(m_nRequestID);
        const auto arrDatagram = Encode(m_arrWaiting[m_nFirst], nTimeout.count() != 0);
        m_nFirst = (m_nFirst + 1) % kMostWaiting;
        --m_nWaiting;
        m_objOutlet.Send({objChannel.Address, objChannel.Port}, arrDatagram);
        m_bInFlight = nTimeout.count() != 0;
        m_objInFlight.Length = arrDatagram.size();
        m_objInFlight.RepeatsLeft = m_objDevice.Registers().Get(boot::kMessageChannelRetryCount);
        m_objInFlight.Due = tNow + nTimeout;
    }
}

bool CMessageChannel::TakeAcknowledge(const ENDPOINT& objFrom, std::span<const std::byte> arrDatagram, TIME tNow) {
    gev::GVCP_ACKNOWLEDGE_HEADER objHeader;
    std::span<const std::byte> arrPayload;
    if (gev::DecodeAcknowledge(arrDatagram, objHeader, arrPayload) != gev::EGvcpStatus::Success ||
        (objHeader.Command != EGvcpCommand::Event && objHeader.Command != EGvcpCommand::EventData)) {
        return false;
    }
    // Also a refusal says that the host has it.
    if (m_bInFlight && objHeader.AckID == m_nRequestID && objFrom.Address == m_objDevice.GetMessageChannel().Address) {
        m_bInFlight = false;
        SendNext(tNow);
    }
    return true;
}

void CMessageChannel::Advance(TIME tNow) {
    const CHANNEL objChannel = m_objDevice.GetMessageChannel();
    if (!objChannel.LeadsAnywhere()) {
        m_nWaiting = 0;
        m_bInFlight = false;
        return;
    }
    if (!m_bInFlight || tNow < m_objInFlight.Due) {
        return;
    }
    if (m_objInFlight.RepeatsLeft == 0) {
        m_bInFlight = false;
        SendNext(tNow);
        return;
    }
    --m_objInFlight.RepeatsLeft;
    m_objInFlight.Due = tNow + std::chrono::milliseconds(m_objDevice.Registers().Get(boot::kMessageChannelTimeout));
    m_objOutlet.Send({objChannel.Address, objChannel.Port},
                     std::span(m_objInFlight.Datagram).first(m_objInFlight.Length));
}

std::optional<TIME> CMessageChannel::NextTime() const {
    return m_bInFlight ? std::optional(m_objInFlight.Due) : std::nullopt;
}

}  // namespace camera
