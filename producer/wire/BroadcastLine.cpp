#include "producer/wire/BroadcastLine.h"

#include <array>

namespace producer {

namespace {

constexpr std::uint32_t kLimitedBroadcast = 0xFFFF'FFFF;
constexpr int kMostAtOnce = 64;               // datagrams between two looks at the clock
constexpr std::size_t kLongestPacket = 2048;  // an Ethernet frame's; longer datagrams are no answers

}  // namespace

CBroadcastLine::CBroadcastLine(const ADAPTER& objAdapter)
    : m_objAdapter(objAdapter),
      m_objUdpSocket(objAdapter),
      m_objPacketSocket(objAdapter, m_objUdpSocket.GetLocalPort()) {}

int CBroadcastLine::SendToAll(std::span<const std::byte> objDatagram, bool bDirected) {
    int nErrno = -1;
    const auto send = [&](std::uint32_t nAddress) {
        const int nResult = SendTo(nAddress, objDatagram);
        nErrno = nErrno == 0 ? 0 : nResult;
    };
    if (bDirected) {
        for (const auto& objOwn : m_objAdapter.Addresses) {
            if (objOwn.Broadcast != 0) {
                send(objOwn.Broadcast);
            }
        }
    }
    if (nErrno < 0) {
        send(kLimitedBroadcast);
    }
    return nErrno;
}

int CBroadcastLine::SendTo(std::uint32_t nAddress, std::span<const std::byte> objDatagram) {
    return m_objUdpSocket.SendTo(nAddress, gev::kGvcpPort, objDatagram);
}

template <class Socket>
bool CBroadcastLine::Drain(const Socket& objSocket, const std::function<bool(const HEARD_ACKNOWLEDGE&)>& funHeard) {
    std::array<std::byte, kLongestPacket> arrBuffer;
    for (int i = 0; i < kMostAtOnce; ++i) {
        const auto objDatagram = objSocket.Receive(arrBuffer);
        if (!objDatagram) {
            return true;
        }
        HEARD_ACKNOWLEDGE objHeard;
        objHeard.Source = objDatagram->Source;
        if (objDatagram->SourcePort != gev::kGvcpPort ||
            gev::DecodeAcknowledge(objDatagram->Payload, objHeard.Header, objHeard.Payload) !=
                gev::EGvcpStatus::Success) {
            ++m_nRefused;
        } else if (!funHeard(objHeard)) {
            return false;
        }
    }
    return true;
}

bool CBroadcastLine::Listen(Clock::time_point objDeadline, const CWakeSocket* pWake,
                            const std::function<bool(const HEARD_ACKNOWLEDGE&)>& funHeard) {
    const int nWake = pWake == nullptr ? -1 : pWake->GetDescriptor();
    for (;;) {
        if (!WaitReadable({nWake, m_objUdpSocket.GetDescriptor(), m_objPacketSocket.GetDescriptor()}, objDeadline)) {
            return true;
        }
        if (nWake >= 0 && WaitReadable({nWake}, Clock::time_point::min())) {
            return false;
        }
        if (!Drain(m_objUdpSocket, funHeard) || !Drain(m_objPacketSocket, funHeard)) {
            return false;
        }
        if (Clock::now() >= objDeadline) {
            return true;
        }
    }
}

}  // namespace producer
