#include "producer/wire/PacketSocket.h"

#include <array>
#include <cerrno>
#include <exception>
#include <thread>
#include <utility>

#include <linux/filter.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "gev/BigEndian.h"
#include "gev/GvcpHeader.h"

namespace producer {

namespace {

constexpr std::size_t kLeastIPHeader = 20;
constexpr std::size_t kUdpHeader = 8;
constexpr std::uint32_t kLongestPacket = 2048;
constexpr int kReceiveBuffer = 1 << 20;
constexpr int kMostDropped = 64;  // packets in one call, so that a flood of them keeps nobody here

/// Lets through IPv4 packets with a whole UDP datagram from the cameras' port to ours.
int AttachFilter(int nSocket, std::uint16_t nOurPort) {
    std::array<sock_filter, 11> arrProgram{{
        BPF_STMT(BPF_LD | BPF_B | BPF_ABS, 9),                      // protocol
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, IPPROTO_UDP, 0, 8),     //
        BPF_STMT(BPF_LD | BPF_H | BPF_ABS, 6),                      // more fragments, offset of this one
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, 0x3FFF, 6, 0),         //
        BPF_STMT(BPF_LDX | BPF_B | BPF_MSH, 0),                     // length of the IP header
        BPF_STMT(BPF_LD | BPF_H | BPF_IND, 0),                      // source port
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, gev::kGvcpPort, 0, 3),  //
        BPF_STMT(BPF_LD | BPF_H | BPF_IND, 2),                      // destination port
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, nOurPort, 0, 1),        //
        BPF_STMT(BPF_RET | BPF_K, kLongestPacket),                  //
        BPF_STMT(BPF_RET | BPF_K, 0),
    }};
    const sock_fprog objProgram{static_cast<unsigned short>(arrProgram.size()), arrProgram.data()};
    return setsockopt(nSocket, SOL_SOCKET, SO_ATTACH_FILTER, &objProgram, sizeof objProgram);
}

std::optional<RECEIVED_DATAGRAM> TakeApart(std::span<const std::byte> objPacket) {
    if (objPacket.size() < kLeastIPHeader || std::to_integer<unsigned>(objPacket[0]) >> 4 != 4) {
        return std::nullopt;
    }
    const std::size_t nHeader = std::to_integer<std::size_t>(objPacket[0] & std::byte{0x0F}) * 4;
    if (nHeader < kLeastIPHeader || objPacket.size() < nHeader + kUdpHeader) {
        return std::nullopt;
    }
    const std::size_t nUdp = gev::Get16(objPacket, nHeader + 4);  // the rest is padding of the frame
    if (nUdp < kUdpHeader || nHeader + nUdp > objPacket.size()) {
        return std::nullopt;
    }
    return RECEIVED_DATAGRAM{objPacket.subspan(nHeader + kUdpHeader, nUdp - kUdpHeader), gev::Get32(objPacket, 12),
                             gev::Get16(objPacket, nHeader)};
}

}  // namespace

CPacketSocket::CPacketSocket(const ADAPTER& objAdapter, std::uint16_t nOurPort)
    : m_objDescriptor(socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {  // hears nothing until it is bound
    sockaddr_ll objAddress{};
    objAddress.sll_family = AF_PACKET;
    objAddress.sll_protocol = htons(ETH_P_IP);
    objAddress.sll_ifindex = static_cast<int>(objAdapter.Index);
    if (GetDescriptor() < 0 || AttachFilter(GetDescriptor(), nOurPort) != 0 ||
        bind(GetDescriptor(), reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress) != 0) {
        m_nError = errno;
        m_objDescriptor = CSocketDescriptor();
        return;
    }
    if (setsockopt(GetDescriptor(), SOL_SOCKET, SO_RCVBUFFORCE, &kReceiveBuffer, sizeof kReceiveBuffer) != 0) {
        setsockopt(GetDescriptor(), SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer);
    }
}

CPacketSocket::~CPacketSocket() {
    if (GetDescriptor() < 0) {
        return;
    }
    // The close waits until no processor can be handing the socket a packet any more, which takes the kernel some ten
    // milliseconds. An update that waited for it would be that much longer, and so would every other adapter's.
    try {
        std::thread([objDescriptor = std::move(m_objDescriptor)] {}).detach();
    } catch (const std::exception&) {
        // No thread is to be had, or no memory for one: it has been closed with what the thread was to run.
    }
}

std::optional<RECEIVED_DATAGRAM> CPacketSocket::Receive(std::span<std::byte> objBuffer) const noexcept {
    for (int i = 0; i < kMostDropped && GetDescriptor() >= 0; ++i) {
        sockaddr_ll objSource{};
        socklen_t nSize = sizeof objSource;
        const auto nReceived = recvfrom(GetDescriptor(), objBuffer.data(), objBuffer.size(), MSG_DONTWAIT,
                                        reinterpret_cast<sockaddr*>(&objSource), &nSize);
        if (nReceived < 0) {
            if (errno == EINTR) {
                continue;
            }
            return std::nullopt;  // nothing more, or the adapter went down, which is told once
        }
        if (objSource.sll_pkttype != PACKET_HOST && objSource.sll_pkttype != PACKET_BROADCAST) {
            continue;
        }
        if (const auto objDatagram = TakeApart(objBuffer.first(static_cast<std::size_t>(nReceived)))) {
            return objDatagram;
        }
    }
    return std::nullopt;
}

}  // namespace producer
