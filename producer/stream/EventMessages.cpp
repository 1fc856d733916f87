#include "producer/stream/EventMessages.h"

#include <algorithm>

namespace producer {

std::span<std::byte> CEventMessages::Take(std::span<const std::byte> spanDatagram, std::uint16_t nPort,
                                          Clock::time_point tNow, gev::GvcpBuffer& spanAnswer) {
    gev::GVCP_COMMAND_HEADER objHeader;
    std::span<const std::byte> spanPayload;
    const gev::EGvcpStatus nStatus = gev::DecodeCommand(spanDatagram, objHeader, spanPayload);
    const bool bEvent =
        objHeader.Command == gev::EGvcpCommand::Event || objHeader.Command == gev::EGvcpCommand::EventData;
    if (nStatus != gev::EGvcpStatus::Success || !bEvent) {
        return {};
    }
    if (!IsRepeat(spanDatagram, nPort, tNow)) {
        HandOn(objHeader, spanPayload);
    }
    return objHeader.WantsAcknowledge()
               ? gev::EncodeAcknowledge(spanAnswer, objHeader.Command, objHeader.RequestID, gev::EGvcpStatus::Success)
               : std::span<std::byte>();
}

bool CEventMessages::IsRepeat(std::span<const std::byte> spanDatagram, std::uint16_t nPort, Clock::time_point tNow) {
    for (COMMAND& objCommand : m_arrCommand) {
        if (objCommand.Length == spanDatagram.size() && objCommand.Port == nPort &&
            tNow - objCommand.Last <= kLongestPause &&
            std::ranges::equal(spanDatagram, std::span(objCommand.Datagram).first(objCommand.Length))) {
            objCommand.Last = tNow;
            return true;
        }
    }
    COMMAND& objCommand = m_arrCommand[m_nOldest];
    m_nOldest = (m_nOldest + 1) % m_arrCommand.size();
    objCommand.Port = nPort;
    objCommand.Length = spanDatagram.size();
    objCommand.Last = tNow;
    std::ranges::copy(spanDatagram, objCommand.Datagram.begin());
    return false;
}

void CEventMessages::HandOn(const gev::GVCP_COMMAND_HEADER& objHeader, std::span<const std::byte> spanPayload) {
    if (objHeader.Command == gev::EGvcpCommand::EventData) {
        gev::CEventDataWalk objEvents;
        gev::DecodeEventData(objHeader, spanPayload, objEvents);
        while (const auto objEvent = objEvents.GetNext()) {
            m_funEvent(objEvent->Entry, objEvent->Data);
        }
        return;
    }
    gev::CEventView objEvents;
    gev::DecodeEvent(objHeader, spanPayload, objEvents);
    for (std::size_t i = 0; i < objEvents.GetCount(); ++i) {
        m_funEvent(objEvents.Get(i), {});
    }
}

}  // namespace producer
