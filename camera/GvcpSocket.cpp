#include "camera/GvcpSocket.h"

#include <array>
#include <cerrno>
#include <string>
#include <system_error>

#include <arpa/inet.h>
#include <linux/filter.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace camera {
namespace {

constexpr std::size_t kUdpHeader = 8;
constexpr std::size_t kMinIPHeader = 20;

[[noreturn]] void ThrowErrno(int nErrno, const std::string& strWhat) {
    throw std::system_error(nErrno, std::generic_category(), strWhat);
}

std::uint32_t ReadBigEndian(std::span<const std::byte> arrBytes, std::size_t nOffset, std::size_t nBytes) {
    std::uint32_t nValue = 0;
    for (std::size_t i = 0; i < nBytes; ++i) {
        nValue = nValue << 8 | std::to_integer<std::uint32_t>(arrBytes[nOffset + i]);
    }
    return nValue;
}

template <std::size_t N>
int AttachFilter(int nSocket, std::array<sock_filter, N>& arrProgram) {
    const sock_fprog objFilter{static_cast<unsigned short>(N), arrProgram.data()};
    return setsockopt(nSocket, SOL_SOCKET, SO_ATTACH_FILTER, &objFilter, sizeof objFilter);
}

/// Lets whole UDP datagrams to the port through; the data begins at the IP header.
int LetPortThrough(int nSocket, std::uint16_t nPort) {
    std::array<sock_filter, 9> arrProgram = {{
        BPF_STMT(BPF_LD | BPF_B | BPF_ABS, 9),  // protocol
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, IPPROTO_UDP, 0, 6),
        BPF_STMT(BPF_LD | BPF_H | BPF_ABS, 6),  // flag "more fragments" and fragment offset
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, 0x3FFF, 4, 0),
        BPF_STMT(BPF_LDX | BPF_B | BPF_MSH, 0),  // length of the IP header
        BPF_STMT(BPF_LD | BPF_H | BPF_IND, 2),   // destination port
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, nPort, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, 0xFFFF),
        BPF_STMT(BPF_RET | BPF_K, 0),
    }};
    return AttachFilter(nSocket, arrProgram);
}

int LetNothingThrough(int nSocket) {
    std::array<sock_filter, 1> arrProgram = {{BPF_STMT(BPF_RET | BPF_K, 0)}};
    return AttachFilter(nSocket, arrProgram);
}

int MakeReceiver(int nAdapterIndex, std::uint16_t nPort) {
    // No protocol until the filter stands and the adapter is chosen: what came in before would be queued.
    const int nSocket = socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (nSocket < 0) {
        ThrowErrno(errno, "receive the adapter's frames");
    }
    sockaddr_ll objAddress{};
    objAddress.sll_family = AF_PACKET;
    objAddress.sll_protocol = htons(ETH_P_IP);
    objAddress.sll_ifindex = nAdapterIndex;
    if (LetPortThrough(nSocket, nPort) != 0 ||
        bind(nSocket, reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress) != 0) {
        const int nErrno = errno;
        close(nSocket);
        ThrowErrno(nErrno, "receive the adapter's frames");
    }
    return nSocket;
}

int MakeSender(int nAdapterIndex, std::uint16_t nPort) {
    const int nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (nSocket < 0) {
        ThrowErrno(errno, "make a socket");
    }
    const int nOn = 1;
    sockaddr_in objAddress{};
    objAddress.sin_family = AF_INET;
    objAddress.sin_port = htons(nPort);
    if (LetNothingThrough(nSocket) != 0 || setsockopt(nSocket, SOL_SOCKET, SO_BROADCAST, &nOn, sizeof nOn) != 0 ||
        setsockopt(nSocket, SOL_SOCKET, SO_BINDTOIFINDEX, &nAdapterIndex, sizeof nAdapterIndex) != 0 ||
        bind(nSocket, reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress) != 0) {
        const int nErrno = errno;
        close(nSocket);
        ThrowErrno(nErrno, "bind UDP port " + std::to_string(nPort));
    }
    return nSocket;
}

/// The datagram that a packet carries, if all of it is there.
std::optional<RECEIVED_DATAGRAM> TakeApart(std::span<const std::byte> arrPacket) {
    if (arrPacket.size() < kMinIPHeader || std::to_integer<unsigned>(arrPacket[0]) >> 4 != 4) {
        return std::nullopt;
    }
    const std::size_t nIPHeader = (std::to_integer<std::size_t>(arrPacket[0]) & 0x0F) * 4;
    if (nIPHeader < kMinIPHeader || arrPacket.size() < nIPHeader + kUdpHeader) {
        return std::nullopt;
    }
    // Behind the datagram there may be the padding of a short frame.
    const std::span<const std::byte> arrDatagram = arrPacket.subspan(nIPHeader);
    const std::size_t nLength = ReadBigEndian(arrDatagram, 4, 2);
    if (nLength < kUdpHeader || nLength > arrDatagram.size()) {
        return std::nullopt;
    }
    return RECEIVED_DATAGRAM{ReadBigEndian(arrPacket, 12, 4),
                             static_cast<std::uint16_t>(ReadBigEndian(arrDatagram, 0, 2)),
                             ReadBigEndian(arrPacket, 16, 4), arrDatagram.first(nLength).subspan(kUdpHeader)};
}

}  // namespace

CGvcpSocket::CGvcpSocket(int nAdapterIndex, std::uint16_t nPort) {
    try {
        m_nSend = MakeSender(nAdapterIndex, nPort);
        m_nReceive = MakeReceiver(nAdapterIndex, nPort);
    } catch (...) {
        Close();
        throw;
    }
}

CGvcpSocket::~CGvcpSocket() {
    Close();
}

void CGvcpSocket::Close() const {
    for (const int nSocket : {m_nReceive, m_nSend}) {
        if (nSocket >= 0) {
            close(nSocket);
        }
    }
}

std::optional<RECEIVED_DATAGRAM> CGvcpSocket::Receive(std::span<std::byte> arrBuffer) {
    while (true) {
        sockaddr_ll objAddress{};
        socklen_t nAddressLength = sizeof objAddress;
        const ssize_t nReceived = recvfrom(m_nReceive, arrBuffer.data(), arrBuffer.size(), 0,
                                           reinterpret_cast<sockaddr*>(&objAddress), &nAddressLength);
        if (nReceived < 0) {
            if (errno == EINTR || errno == ENETDOWN) {
                continue;  // the adapter's going down is told once, and then nothing comes
            }
            return std::nullopt;
        }
        if (objAddress.sll_pkttype != PACKET_HOST && objAddress.sll_pkttype != PACKET_BROADCAST) {
            continue;
        }
        if (const auto objDatagram = TakeApart(arrBuffer.first(static_cast<std::size_t>(nReceived)))) {
            return objDatagram;
        }
    }
}

int CGvcpSocket::Send(std::uint32_t nAddress, std::uint16_t nPort, std::span<const std::byte> arrPayload) {
    if (nAddress != INADDR_BROADCAST) {
        if (const int nErrno = m_objRoute.Find(nAddress); nErrno != 0) {
            return nErrno;
        }
    }
    sockaddr_in objAddress{};
    objAddress.sin_family = AF_INET;
    objAddress.sin_port = htons(nPort);
    objAddress.sin_addr.s_addr = htonl(nAddress);
    const ssize_t nSent = sendto(m_nSend, arrPayload.data(), arrPayload.size(), 0,
                                 reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress);
    return nSent < 0 ? errno : 0;
}

}  // namespace camera
