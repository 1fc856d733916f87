#include "producer/wire/UdpSocket.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>

#include "support/Address.h"

namespace producer {

namespace {

constexpr int kReceiveBuffer = 1 << 20;  // answers of a thousand cameras at once
constexpr int kSendBuffer = 4 << 20;     // questions to as many that the kernel still looks for by ARP

/// Nobody waits for a full queue: questions to hosts that aren't there would fill it for seconds. What doesn't fit is
/// lost, as on the wire, and asked again.
constexpr int kSendFlags = MSG_NOSIGNAL | MSG_DONTWAIT;

constexpr int kMostDropped = 64;  // datagrams in one call, so that a flood of them keeps nobody here

sockaddr_in MakeAddress(std::uint32_t nAddress, std::uint16_t nPort) {
    sockaddr_in objAddress{};
    objAddress.sin_family = AF_INET;
    objAddress.sin_port = htons(nPort);
    objAddress.sin_addr.s_addr = htonl(nAddress);
    return objAddress;
}

template <class Value>
int SetOption(int nSocket, int nLevel, int nOption, const Value& objValue) {
    return setsockopt(nSocket, nLevel, nOption, &objValue, sizeof objValue);
}

/// The number of the adapter that the datagram came in by; 0 when the kernel doesn't say.
int GetAdapterIndex(const msghdr& objMessage) {
    for (const cmsghdr* pControl = CMSG_FIRSTHDR(&objMessage); pControl != nullptr;
         pControl = CMSG_NXTHDR(const_cast<msghdr*>(&objMessage), const_cast<cmsghdr*>(pControl))) {
        if (pControl->cmsg_level == IPPROTO_IP && pControl->cmsg_type == IP_PKTINFO) {
            in_pktinfo objInfo{};
            std::memcpy(&objInfo, CMSG_DATA(pControl), sizeof objInfo);
            return objInfo.ipi_ifindex;
        }
    }
    return 0;
}

sockaddr_in GetName(int nSocket) {
    sockaddr_in objAddress{};
    socklen_t nSize = sizeof objAddress;
    if (getsockname(nSocket, reinterpret_cast<sockaddr*>(&objAddress), &nSize) != 0) {
        ThrowSocketError(errno, "getsockname");
    }
    return objAddress;
}

}  // namespace

CUdpSocket::CUdpSocket(const ADAPTER& objAdapter)
    : m_objDescriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)),
      m_strAdapter(objAdapter.Name),
      m_nAdapterIndex(static_cast<int>(objAdapter.Index)) {
    const int nSocket = GetDescriptor();
    if (nSocket < 0) {
        ThrowSocketError(errno, "make a UDP socket for " + m_strAdapter);
    }
    const auto nBound = setsockopt(nSocket, SOL_SOCKET, SO_BINDTODEVICE, m_strAdapter.data(),
                                   static_cast<socklen_t>(m_strAdapter.size()));
    if (nBound != 0 && errno != EPERM) {
        ThrowSocketError(errno, "bind to " + m_strAdapter);
    }
    // The kernel takes no way out for a socket that is bound to an adapter.
    if ((nBound != 0 && SetOption(nSocket, IPPROTO_IP, IP_UNICAST_IF, htonl(objAdapter.Index)) != 0) ||
        SetOption(nSocket, IPPROTO_IP, IP_PKTINFO, 1) != 0 || SetOption(nSocket, SOL_SOCKET, SO_BROADCAST, 1) != 0) {
        ThrowSocketError(errno, "set up a UDP socket for " + m_strAdapter);
    }
    // Without the right to more, the kernel grants what it may.
    if (SetOption(nSocket, SOL_SOCKET, SO_RCVBUFFORCE, kReceiveBuffer) != 0) {
        SetOption(nSocket, SOL_SOCKET, SO_RCVBUF, kReceiveBuffer);
    }
    if (SetOption(nSocket, SOL_SOCKET, SO_SNDBUFFORCE, kSendBuffer) != 0) {
        SetOption(nSocket, SOL_SOCKET, SO_SNDBUF, kSendBuffer);
    }
    const sockaddr_in objAny = MakeAddress(INADDR_ANY, 0);
    if (bind(nSocket, reinterpret_cast<const sockaddr*>(&objAny), sizeof objAny) != 0) {
        ThrowSocketError(errno, "bind a UDP socket for " + m_strAdapter);
    }
}

void CUdpSocket::Connect(std::uint32_t nAddress, std::uint16_t nPort) {
    const sockaddr_in objAddress = MakeAddress(nAddress, nPort);
    if (connect(GetDescriptor(), reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress) != 0) {
        ThrowSocketError(errno, "find a way to " + IPToString(nAddress) + " on " + m_strAdapter);
    }
}

int CUdpSocket::SendTo(std::uint32_t nAddress, std::uint16_t nPort,
                       std::span<const std::byte> objDatagram) const noexcept {
    const sockaddr_in objAddress = MakeAddress(nAddress, nPort);
    const auto nSent = sendto(GetDescriptor(), objDatagram.data(), objDatagram.size(), kSendFlags,
                              reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress);
    return nSent < 0 ? errno : 0;
}

int CUdpSocket::Send(std::span<const std::byte> objDatagram) const noexcept {
    return send(GetDescriptor(), objDatagram.data(), objDatagram.size(), kSendFlags) < 0 ? errno : 0;
}

std::optional<RECEIVED_DATAGRAM> CUdpSocket::Receive(std::span<std::byte> objBuffer) const noexcept {
    for (int i = 0; i < kMostDropped; ++i) {
        sockaddr_in objSource{};
        alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(sizeof(in_pktinfo))> arrControl{};
        iovec objPart{objBuffer.data(), objBuffer.size()};
        msghdr objMessage{};
        objMessage.msg_name = &objSource;
        objMessage.msg_namelen = sizeof objSource;
        objMessage.msg_iov = &objPart;
        objMessage.msg_iovlen = 1;
        objMessage.msg_control = arrControl.data();
        objMessage.msg_controllen = arrControl.size();
        const auto nReceived = recvmsg(GetDescriptor(), &objMessage, MSG_DONTWAIT);
        if (nReceived < 0) {
            if (errno == EINTR) {
                continue;
            }
            return std::nullopt;  // nothing more, or an error of the way, which is told once
        }
        if ((objMessage.msg_flags & MSG_TRUNC) == 0 && GetAdapterIndex(objMessage) == m_nAdapterIndex) {
            return RECEIVED_DATAGRAM{objBuffer.first(static_cast<std::size_t>(nReceived)),
                                     ntohl(objSource.sin_addr.s_addr), ntohs(objSource.sin_port)};
        }
    }
    return std::nullopt;
}

void CUdpSocket::SetWait(std::chrono::milliseconds objWait) const {
    const timeval objTime{objWait.count() / 1000, static_cast<suseconds_t>(objWait.count() % 1000 * 1000)};
    if (SetOption(GetDescriptor(), SOL_SOCKET, SO_RCVTIMEO, objTime) != 0) {
        ThrowSocketError(errno, "set the wait of a UDP socket");
    }
}

std::span<const std::byte> CUdpSocket::ReceiveConnected(std::span<std::byte> objBuffer) const noexcept {
    const auto nReceived = recv(GetDescriptor(), objBuffer.data(), objBuffer.size(), MSG_TRUNC);
    if (nReceived < 0 || static_cast<std::size_t>(nReceived) > objBuffer.size()) {
        return {};
    }
    return objBuffer.first(static_cast<std::size_t>(nReceived));
}

std::uint16_t CUdpSocket::GetLocalPort() const {
    return ntohs(GetName(GetDescriptor()).sin_port);
}

std::uint32_t CUdpSocket::GetLocalAddress() const {
    return ntohl(GetName(GetDescriptor()).sin_addr.s_addr);
}

}  // namespace producer
