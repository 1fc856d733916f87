#include "camera/StreamSocket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/udp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

#ifndef UDP_SEGMENT
#define UDP_SEGMENT 103  // of linux/udp.h, which can't stand beside netinet/udp.h
#endif

namespace camera {
namespace {

constexpr int kSendBuffer = 4 << 20;
constexpr suseconds_t kPatienceUs = 100'000;  // with a buffer that isn't emptied: the cable is cut
constexpr std::size_t kLargestPiece = 65'000;

int MakeSocket(int nAdapterIndex) {
    const int nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const timeval objPatience{0, kPatienceUs};
    if (nSocket < 0 || setsockopt(nSocket, SOL_SOCKET, SO_SNDTIMEO, &objPatience, sizeof objPatience) != 0 ||
        setsockopt(nSocket, SOL_SOCKET, SO_BINDTOIFINDEX, &nAdapterIndex, sizeof nAdapterIndex) != 0) {
        const int nErrno = errno;
        if (nSocket >= 0) {
            close(nSocket);
        }
        throw std::system_error(nErrno, std::generic_category(), "make the stream's socket");
    }
    // The first is root's alone. Less than that is slower and no fault.
    if (setsockopt(nSocket, SOL_SOCKET, SO_SNDBUFFORCE, &kSendBuffer, sizeof kSendBuffer) != 0) {
        setsockopt(nSocket, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
    }
    return nSocket;
}

std::uint16_t BindToAnyPort(int nSocket) {
    sockaddr_in objAddress{};
    objAddress.sin_family = AF_INET;
    socklen_t nLength = sizeof objAddress;
    if (bind(nSocket, reinterpret_cast<const sockaddr*>(&objAddress), nLength) != 0 ||
        getsockname(nSocket, reinterpret_cast<sockaddr*>(&objAddress), &nLength) != 0) {
        const int nErrno = errno;
        close(nSocket);
        throw std::system_error(nErrno, std::generic_category(), "bind the stream's socket");
    }
    return ntohs(objAddress.sin_port);
}

sockaddr_in MakeAddress(const CHANNEL& objChannel) {
    sockaddr_in objAddress{};
    objAddress.sin_family = AF_INET;
    objAddress.sin_port = htons(objChannel.Port);
    objAddress.sin_addr.s_addr = htonl(objChannel.Address);
    return objAddress;
}

constexpr std::size_t kParts = 2;  // of a packet

void PutParts(const STREAM_PACKET& objPacket, std::span<iovec, kParts> arrPart) {
    // The kernel only reads what is sent.
    arrPart[0] = {const_cast<std::byte*>(objPacket.Header.data()), objPacket.Header.size()};
    arrPart[1] = {const_cast<std::byte*>(objPacket.Body.data()), objPacket.Body.size()};
}

/// How many packets from the first on can leave in one piece: of one length, and behind them one shorter.
std::size_t CountPiece(std::span<const STREAM_PACKET> arrPacket, std::size_t nTooLong) {
    const std::size_t nSize = arrPacket.front().GetSize();
    std::size_t nTotal = nSize;
    std::size_t i = 1;
    for (; nSize < nTooLong && i < arrPacket.size(); ++i) {
        const std::size_t nNext = arrPacket[i].GetSize();
        if (nNext > nSize || nTotal + nNext > kLargestPiece) {
            break;
        }
        nTotal += nNext;
        if (nNext < nSize) {
            return i + 1;
        }
    }
    return i;
}

}  // namespace

CStreamSocket::CStreamSocket(int nAdapterIndex)
    : m_nSocket(MakeSocket(nAdapterIndex)), m_nPort(BindToAnyPort(m_nSocket)) {
    try {
        m_nForeign = MakeSocket(nAdapterIndex);
    } catch (...) {
        close(m_nSocket);
        throw;
    }
}

CStreamSocket::~CStreamSocket() {
    close(m_nSocket);
    close(m_nForeign);
}

void CStreamSocket::SetDestination(const CHANNEL& objChannel, bool bDoNotFragment) {
    m_objChannel = objChannel;
    m_nTooLong = SIZE_MAX;
    m_nNoRoute = objChannel.LeadsAnywhere() ? m_objRoute.Find(objChannel.Address) : 0;
    const int nDiscover = bDoNotFragment ? IP_PMTUDISC_PROBE : IP_PMTUDISC_DONT;
    setsockopt(m_nSocket, IPPROTO_IP, IP_MTU_DISCOVER, &nDiscover, sizeof nDiscover);
}

// What was in vain once is tried again: the route may have come.
bool CStreamSocket::HasRoute() {
    if (m_nNoRoute != 0) {
        m_nNoRoute = m_objRoute.Find(m_objChannel.Address);
    }
    return m_nNoRoute == 0;
}

void CStreamSocket::Lose(std::size_t nPackets, int nErrno) {
    if (m_objUnsent.Count == 0) {
        m_objUnsent.Reason = std::error_code(nErrno, std::generic_category());
    }
    m_objUnsent.Count += nPackets;
}

void CStreamSocket::Send(std::span<const STREAM_PACKET> arrPacket) {
    if (!m_objChannel.LeadsAnywhere()) {
        return;
    }
    if (!HasRoute()) {
        Lose(arrPacket.size(), m_nNoRoute);
        return;
    }
    while (!arrPacket.empty()) {
        arrPacket = arrPacket.subspan(SendSome(arrPacket.first(std::min(arrPacket.size(), kMostPackets))));
    }
}

// How many packets are done with, sent or lost.
std::size_t CStreamSocket::SendSome(std::span<const STREAM_PACKET> arrPacket) {
    struct alignas(cmsghdr) CONTROL {
        std::array<std::byte, CMSG_SPACE(sizeof(std::uint16_t))> Bytes;
    };
    std::array<mmsghdr, kMostPackets> arrMessage;
    std::array<std::size_t, kMostPackets> arrCount;  // packets of each message
    std::array<iovec, kParts * kMostPackets> arrPart;
    std::array<CONTROL, kMostPackets> arrControl;
    sockaddr_in objAddress = MakeAddress(m_objChannel);
    std::size_t nMessages = 0;
    for (std::size_t i = 0; i < arrPacket.size(); ++nMessages) {
        const std::size_t nCount = CountPiece(arrPacket.subspan(i), m_nTooLong);
        for (std::size_t j = i; j < i + nCount; ++j) {
            PutParts(arrPacket[j], std::span(arrPart).subspan(kParts * j).first<kParts>());
        }
        msghdr& objHeader = arrMessage[nMessages].msg_hdr;
        objHeader = {};
        objHeader.msg_name = &objAddress;
        objHeader.msg_namelen = sizeof objAddress;
        objHeader.msg_iov = &arrPart[kParts * i];
        objHeader.msg_iovlen = kParts * nCount;
        if (nCount > 1) {
            objHeader.msg_control = arrControl[nMessages].Bytes.data();
            objHeader.msg_controllen = sizeof(CONTROL);
            cmsghdr* const pControl = CMSG_FIRSTHDR(&objHeader);
            pControl->cmsg_level = SOL_UDP;
            pControl->cmsg_type = UDP_SEGMENT;
            pControl->cmsg_len = CMSG_LEN(sizeof(std::uint16_t));
            const auto nSize = static_cast<std::uint16_t>(arrPacket[i].GetSize());
            std::memcpy(CMSG_DATA(pControl), &nSize, sizeof nSize);
        }
        arrCount[nMessages] = nCount;
        i += nCount;
    }
    const int nSent = sendmmsg(m_nSocket, arrMessage.data(), static_cast<unsigned>(nMessages), 0);
    const int nErrno = errno;
    if (nSent > 0) {
        std::size_t nDone = 0;
        for (std::size_t i = 0; i < static_cast<std::size_t>(nSent); ++i) {
            nDone += arrCount[i];
        }
        return nDone;
    }
    if (nErrno == EINTR) {
        return 0;
    }
    if (arrCount[0] > 1 && (nErrno == EINVAL || nErrno == EMSGSIZE || nErrno == EIO || nErrno == EOPNOTSUPP)) {
        m_nTooLong = arrPacket[0].GetSize();
        return 0;
    }
    Lose(arrCount[0], nErrno);
    return arrCount[0];
}

void CStreamSocket::SendForeign(const STREAM_PACKET& objPacket) {
    if (!m_objChannel.LeadsAnywhere() || m_nNoRoute != 0) {
        return;
    }
    std::array<iovec, kParts> arrPart{};
    PutParts(objPacket, arrPart);
    sockaddr_in objAddress = MakeAddress(m_objChannel);
    msghdr objHeader{};
    objHeader.msg_name = &objAddress;
    objHeader.msg_namelen = sizeof objAddress;
    objHeader.msg_iov = arrPart.data();
    objHeader.msg_iovlen = arrPart.size();
    sendmsg(m_nForeign, &objHeader, 0);
}

void SharpenTimers() {
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
}

}  // namespace camera
