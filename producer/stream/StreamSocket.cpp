#include "producer/stream/StreamSocket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <thread>

#include <linux/filter.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <netinet/udp.h>
#include <sys/socket.h>
#include <sys/time.h>

#include "support/Address.h"

#ifndef UDP_GRO
#define UDP_GRO 104
#endif

namespace producer {

namespace {

constexpr unsigned kSingly = 7;

template <class Value>
int SetOption(int nSocket, int nLevel, int nOption, const Value& objValue) {
    return setsockopt(nSocket, nLevel, nOption, &objValue, sizeof objValue);
}

std::size_t AskForBuffer(int nSocket, std::size_t nBuffer) {
    const int nWanted = static_cast<int>(std::min<std::size_t>(nBuffer, 1U << 30U));
    if (SetOption(nSocket, SOL_SOCKET, SO_RCVBUFFORCE, nWanted) != 0) {
        SetOption(nSocket, SOL_SOCKET, SO_RCVBUF, nWanted);
    }
    int nGranted = 0;
    socklen_t nSize = sizeof nGranted;
    getsockopt(nSocket, SOL_SOCKET, SO_RCVBUF, &nGranted, &nSize);
    return static_cast<std::size_t>(std::max(nGranted, 0));
}

}  // namespace

/// The kernel's records of one call, and the bytes that they point to.
struct CStreamSocket::BATCH {
    // Some lines longer than needed: starts that lie a power of two apart would share their places in the cache.
    alignas(64) std::array<std::array<std::byte, kLongestPacket + 1 + 35 * std::size_t{64}>, kMessages> Bytes;
    alignas(cmsghdr) std::array<std::array<std::byte, CMSG_SPACE(sizeof(int))>, kMessages> Control;
    std::array<iovec, kMessages> Parts;
    std::array<mmsghdr, kMessages> Messages;
    std::array<sockaddr_in, kMessages> Sources;  // while a port is awaited
};

CStreamSocket::CStreamSocket(const ADAPTER& objAdapter, std::uint32_t nLocalAddress, std::uint32_t nCamera,
                             std::size_t nBuffer)
    // Not initialised: most of it is never touched.
    : m_objDescriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)), m_nCamera(nCamera), m_pBatch(new BATCH) {
    if (m_objDescriptor.Get() < 0) {
        ThrowSocketError(errno, "make a socket for the stream of " + IPToString(nCamera));
    }
    SetUp(objAdapter, nBuffer);
    sockaddr_in objAddress{};
    objAddress.sin_family = AF_INET;
    objAddress.sin_addr.s_addr = htonl(nLocalAddress);
    if (bind(m_objDescriptor.Get(), reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress) != 0) {
        ThrowSocketError(errno, "bind " + IPToString(nLocalAddress) + " for the stream of " + IPToString(nCamera));
    }
    socklen_t nSize = sizeof objAddress;
    if (getsockname(m_objDescriptor.Get(), reinterpret_cast<sockaddr*>(&objAddress), &nSize) != 0) {
        ThrowSocketError(errno, "ask for the port of the stream of " + IPToString(nCamera));
    }
    m_nLocalPort = ntohs(objAddress.sin_port);
    m_vecReceived.reserve(kMessages);
    for (std::size_t i = 0; i < kMessages; ++i) {
        m_pBatch->Parts[i] = {m_pBatch->Bytes[i].data(), m_pBatch->Bytes[i].size()};
        m_pBatch->Messages[i] = {};
        m_pBatch->Messages[i].msg_hdr.msg_iov = &m_pBatch->Parts[i];
        m_pBatch->Messages[i].msg_hdr.msg_iovlen = 1;
    }
    m_nTaken = kMessages;
}

CStreamSocket::~CStreamSocket() = default;

void CStreamSocket::SetUp(const ADAPTER& objAdapter, std::size_t nBuffer) {
    const int nSocket = m_objDescriptor.Get();
    const auto nBound = setsockopt(nSocket, SOL_SOCKET, SO_BINDTODEVICE, objAdapter.Name.data(),
                                   static_cast<socklen_t>(objAdapter.Name.size()));
    if (nBound != 0 && errno != EPERM) {  // without that right the address alone ties it
        ThrowSocketError(errno, "bind the stream of " + IPToString(m_nCamera) + " to " + objAdapter.Name);
    }
    HearPort(0);
    m_nGrantedBuffer = AskForBuffer(nSocket, nBuffer);
    m_bJoining = SetOption(nSocket, IPPROTO_UDP, UDP_GRO, 1) == 0;
}

void CStreamSocket::HearPort(std::uint16_t nPort) {
    if (!Filter(nPort)) {
        ThrowSocketError(errno, "let the stream's socket hear " + IPToString(m_nCamera) + " alone");
    }
}

void CStreamSocket::AwaitPort(std::uint16_t nPort) {
    HearPort(0);
    m_nAwaitedPort = nPort;
}

/// A filter in the kernel that lets one sender through.
/// @return false with errno set
bool CStreamSocket::Filter(std::uint16_t nPort) noexcept {
    constexpr auto kIPSourceOffset = static_cast<std::uint32_t>(SKF_NET_OFF + 12);
    constexpr std::uint32_t kUDPSourceOffset = 0;  // what a UDP socket's filter sees begins with the UDP header
    std::array<sock_filter, 6> arrFilter{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kIPSourceOffset),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, m_nCamera, 0, 3),
        BPF_STMT(BPF_LD | BPF_H | BPF_ABS, kUDPSourceOffset),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, nPort, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, 0xFFFF'FFFF),
        BPF_STMT(BPF_RET | BPF_K, 0),
    }};
    if (nPort == 0) {
        arrFilter[3] = BPF_STMT(BPF_RET | BPF_K, 0xFFFF'FFFF);
    }
    const sock_fprog objProgram{static_cast<unsigned short>(arrFilter.size()), arrFilter.data()};
    return SetOption(m_objDescriptor.Get(), SOL_SOCKET, SO_ATTACH_FILTER, objProgram) == 0;
}

/// Has the kernel say where the packets of the next call come from, as long as that matters.
void CStreamSocket::NoteSources() noexcept {
    for (std::size_t i = 0; i < kMessages; ++i) {
        msghdr& objMessage = m_pBatch->Messages[i].msg_hdr;
        objMessage.msg_name = m_nAwaitedPort != 0 ? &m_pBatch->Sources[i] : nullptr;
        objMessage.msg_namelen = m_nAwaitedPort != 0 ? sizeof(sockaddr_in) : 0;
    }
}

bool CStreamSocket::IsFromAwaited(std::size_t nMessage) const noexcept {
    return m_pBatch->Messages[nMessage].msg_hdr.msg_namelen == sizeof(sockaddr_in) &&
           ntohs(m_pBatch->Sources[nMessage].sin_port) == m_nAwaitedPort;
}

/// @return whether the awaited port has been heard among what came
bool CStreamSocket::FindAwaited(std::size_t nReceived) noexcept {
    for (std::size_t i = 0; i < nReceived; ++i) {
        if (IsFromAwaited(i)) {
            return true;
        }
    }
    return false;
}

void CStreamSocket::SetWait(std::chrono::milliseconds objWait) {
    if (objWait == m_objWait) {
        return;
    }
    const auto nMs = std::max<std::int64_t>(objWait.count(), 1);  // 0 would wait without end
    const timeval objTime{nMs / 1000, static_cast<suseconds_t>(nMs % 1000 * 1000)};
    SetOption(m_objDescriptor.Get(), SOL_SOCKET, SO_RCVTIMEO, objTime);  // refused only for times that can't be
    m_objWait = objWait;
}

std::span<const RECEIVED_PACKETS> CStreamSocket::Receive(std::chrono::milliseconds objWait) {
    SetWait(objWait);
    for (std::size_t i = 0; m_bJoining && i < m_nTaken; ++i) {  // the kernel wrote what it used of them
        m_pBatch->Messages[i].msg_hdr.msg_control = m_pBatch->Control[i].data();
        m_pBatch->Messages[i].msg_hdr.msg_controllen = m_pBatch->Control[i].size();
    }
    if (m_nAwaitedPort != 0) {
        NoteSources();
    }
    const bool bSingly = m_nSingly != 0;
    m_nAsked = bSingly ? 1 : kMessages;
    const int nReceived = recvmmsg(m_objDescriptor.Get(), m_pBatch->Messages.data(), m_nAsked, MSG_WAITFORONE, nullptr);
    // Looking for a second packet costs a good part of taking the first, and is left out for a while when there was
    // none.
    m_nSingly = bSingly ? m_nSingly - 1 : nReceived <= 1 ? kSingly : 0;
    m_nTaken = static_cast<std::size_t>(std::max(nReceived, 0));
    m_vecReceived.clear();
    const bool bHeard = m_nAwaitedPort != 0 && FindAwaited(m_nTaken);
    for (int i = 0; i < nReceived; ++i) {
        if (bHeard && !IsFromAwaited(static_cast<std::size_t>(i))) {
            continue;
        }
        const mmsghdr& objMessage = m_pBatch->Messages[static_cast<std::size_t>(i)];
        std::size_t nPacket = objMessage.msg_len;
        if (const cmsghdr* const pControl = CMSG_FIRSTHDR(&objMessage.msg_hdr); m_bJoining && pControl != nullptr &&
                                                                                pControl->cmsg_level == IPPROTO_UDP &&
                                                                                pControl->cmsg_type == UDP_GRO) {
            int nJoined = 0;
            std::memcpy(&nJoined, CMSG_DATA(pControl), sizeof nJoined);
            nPacket = nJoined > 0 ? static_cast<std::size_t>(nJoined) : nPacket;
        }
        if (objMessage.msg_len != 0 && (objMessage.msg_hdr.msg_flags & MSG_TRUNC) == 0) {
            m_vecReceived.push_back(
                {std::span(m_pBatch->Bytes[static_cast<std::size_t>(i)]).first(objMessage.msg_len), nPacket});
        }
    }
    if (bHeard && Filter(m_nAwaitedPort)) {
        m_nAwaitedPort = 0;
        NoteSources();
    }
    return m_vecReceived;
}

void CStreamSocket::Gather(std::chrono::nanoseconds objPause) {
    std::this_thread::sleep_for(objPause);
    m_nSingly = 0;  // there will be more than one
}

void CStreamSocket::Shutdown() noexcept {
    // It isn't connected, which the kernel complains of; the waiting thread is woken all the same.
    shutdown(m_objDescriptor.Get(), SHUT_RD);
}

std::uint64_t CStreamSocket::GetDropped() const noexcept {
    std::array<std::uint32_t, SK_MEMINFO_VARS> arrInfo{};
    socklen_t nSize = sizeof arrInfo;
    const bool bKnown = getsockopt(m_objDescriptor.Get(), SOL_SOCKET, SO_MEMINFO, arrInfo.data(), &nSize) == 0;
    return bKnown ? arrInfo[SK_MEMINFO_DROPS] : 0;
}

}  // namespace producer
