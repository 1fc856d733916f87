#include "tests/network/PacketCapture.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include <arpa/inet.h>
#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr std::string_view kMark = "that was all";
constexpr std::chrono::seconds kLongestWait{10};
constexpr std::size_t kEthernetHeader = 14;
constexpr std::size_t kLeastIPHeader = 20;
constexpr std::size_t kUdpHeader = 8;
constexpr std::uint8_t kProtocolUdp = 17;

std::uint16_t Get16(const std::vector<std::uint8_t>& vecBytes, std::size_t nOffset) {
    return static_cast<std::uint16_t>(vecBytes[nOffset] << 8 | vecBytes[nOffset + 1]);
}

std::string GetAddress(const std::vector<std::uint8_t>& vecBytes, std::size_t nOffset) {
    std::string strAddress;
    for (std::size_t i = 0; i < 4; ++i) {
        strAddress += (i == 0 ? "" : ".") + std::to_string(vecBytes[nOffset + i]);
    }
    return strAddress;
}

std::optional<CAPTURED_DATAGRAM> Decode(std::vector<std::uint8_t> vecFrame, std::chrono::nanoseconds objTime) {
    if (vecFrame.size() < kEthernetHeader + kLeastIPHeader + kUdpHeader) {
        return std::nullopt;
    }
    const std::size_t nUdp = kEthernetHeader + std::size_t{vecFrame[kEthernetHeader] & 0x0FU} * 4;
    if (vecFrame[kEthernetHeader + 9] != kProtocolUdp || vecFrame.size() < nUdp + kUdpHeader) {
        return std::nullopt;
    }
    const std::size_t nEnd = nUdp + Get16(vecFrame, nUdp + 4);
    if (nEnd < nUdp + kUdpHeader || nEnd > vecFrame.size()) {
        return std::nullopt;
    }
    CAPTURED_DATAGRAM objDatagram{};
    objDatagram.Time = objTime;
    objDatagram.Source = GetAddress(vecFrame, kEthernetHeader + 12);
    objDatagram.Destination = GetAddress(vecFrame, kEthernetHeader + 16);
    objDatagram.SourcePort = Get16(vecFrame, nUdp);
    objDatagram.DestinationPort = Get16(vecFrame, nUdp + 2);
    objDatagram.Payload.assign(vecFrame.begin() + static_cast<std::ptrdiff_t>(nUdp + kUdpHeader),
                               vecFrame.begin() + static_cast<std::ptrdiff_t>(nEnd));
    objDatagram.Frame = std::move(vecFrame);
    return objDatagram;
}

/// The next frame on the socket, with the time at which the kernel took it in.
std::optional<CAPTURED_DATAGRAM> Receive(int nSocket) {
    std::vector<std::uint8_t> vecFrame(65536);
    std::array<char, 256> arrControl{};
    iovec objPart{vecFrame.data(), vecFrame.size()};
    sockaddr_ll objFrom{};
    msghdr objMessage{};
    objMessage.msg_name = &objFrom;
    objMessage.msg_namelen = sizeof objFrom;
    objMessage.msg_iov = &objPart;
    objMessage.msg_iovlen = 1;
    objMessage.msg_control = arrControl.data();
    objMessage.msg_controllen = arrControl.size();
    const ssize_t nBytes = recvmsg(nSocket, &objMessage, 0);
    if (nBytes < 0) {
        throw std::system_error(errno, std::generic_category(), "receive a captured frame");
    }
    if (objFrom.sll_pkttype == PACKET_OUTGOING) {
        return std::nullopt;
    }
    vecFrame.resize(static_cast<std::size_t>(nBytes));

    std::chrono::nanoseconds objTime{};
    for (cmsghdr* pHeader = CMSG_FIRSTHDR(&objMessage); pHeader != nullptr;
         pHeader = CMSG_NXTHDR(&objMessage, pHeader)) {
        if (pHeader->cmsg_level == SOL_SOCKET && pHeader->cmsg_type == SO_TIMESTAMPNS) {
            timespec objStamp{};
            std::memcpy(&objStamp, CMSG_DATA(pHeader), sizeof objStamp);
            objTime = std::chrono::seconds(objStamp.tv_sec) + std::chrono::nanoseconds(objStamp.tv_nsec);
        }
    }
    return Decode(std::move(vecFrame), objTime);
}

/// Broadcasts the mark as a UDP datagram on one adapter of the namespace.
void SendMark(const CNetworkNamespace& objNamespace, const std::string& strAdapter) {
    constexpr std::uint16_t kDiscardPort = 9;
    objNamespace.Do([&] {
        const int nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        const int nOn = 1;
        setsockopt(nSocket, SOL_SOCKET, SO_BROADCAST, &nOn, sizeof nOn);
        setsockopt(nSocket, SOL_SOCKET, SO_BINDTODEVICE, strAdapter.c_str(), static_cast<socklen_t>(strAdapter.size()));
        sockaddr_in objTo{};
        objTo.sin_family = AF_INET;
        objTo.sin_port = htons(kDiscardPort);
        objTo.sin_addr.s_addr = htonl(INADDR_BROADCAST);
        const ssize_t nSent =
            sendto(nSocket, kMark.data(), kMark.size(), 0, reinterpret_cast<const sockaddr*>(&objTo), sizeof objTo);
        const int nErrno = errno;
        close(nSocket);
        if (nSent < 0) {
            throw std::system_error(nErrno, std::generic_category(), "send a mark on " + strAdapter);
        }
    });
}

}  // namespace

CPacketCapture::CPacketCapture(const CNetworkNamespace& objNamespace, const std::string& strAdapter) {
    objNamespace.Do([&] {
        m_nSocket = socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, htons(ETH_P_IP));
        const int nOn = 1;
        const int nBytes = 16 << 20;  // what waits until it is taken: some images
        setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUFFORCE, &nBytes, sizeof nBytes);
        sockaddr_ll objAddress{};
        objAddress.sll_family = AF_PACKET;
        objAddress.sll_protocol = htons(ETH_P_IP);
        objAddress.sll_ifindex = static_cast<int>(if_nametoindex(strAdapter.c_str()));
        if (m_nSocket < 0 || setsockopt(m_nSocket, SOL_SOCKET, SO_TIMESTAMPNS, &nOn, sizeof nOn) != 0 ||
            bind(m_nSocket, reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress) != 0) {
            throw std::system_error(errno, std::generic_category(), "capture on " + strAdapter);
        }
    });
}

CPacketCapture::~CPacketCapture() {
    close(m_nSocket);
}

std::vector<CAPTURED_DATAGRAM> CPacketCapture::TakeAll(const CNetworkNamespace& objOtherEnd,
                                                       const std::string& strOtherAdapter) {
    SendMark(objOtherEnd, strOtherAdapter);
    const auto objEnd = std::chrono::steady_clock::now() + kLongestWait;
    std::vector<CAPTURED_DATAGRAM> vecTaken;
    for (;;) {
        const auto objLeft =
            std::chrono::duration_cast<std::chrono::milliseconds>(objEnd - std::chrono::steady_clock::now());
        pollfd objPoll{m_nSocket, POLLIN, 0};
        if (objLeft.count() <= 0 || poll(&objPoll, 1, static_cast<int>(objLeft.count())) <= 0) {
            throw std::runtime_error("the mark doesn't come from " + strOtherAdapter);
        }
        auto objDatagram = Receive(m_nSocket);
        if (!objDatagram) {
            continue;
        }
        if (std::string(objDatagram->Payload.begin(), objDatagram->Payload.end()) == kMark) {
            return vecTaken;
        }
        vecTaken.push_back(std::move(*objDatagram));
    }
}

void WriteCaptureFile(const std::filesystem::path& objPath, const std::vector<CAPTURED_DATAGRAM>& vecDatagrams) {
    std::ofstream objFile(objPath, std::ios::binary);
    const auto put32 = [&](std::uint32_t nValue) {
        objFile.write(reinterpret_cast<const char*>(&nValue), sizeof nValue);
    };
    // Magic, version 2.4, no time zone, no accuracy, longest frame, link type Ethernet.
    for (const std::uint32_t nValue : {0xA1B2C3D4U, 0x00040002U, 0U, 0U, 65535U, 1U}) {
        put32(nValue);
    }
    for (const auto& objDatagram : vecDatagrams) {
        const auto nMicroseconds = std::chrono::duration_cast<std::chrono::microseconds>(objDatagram.Time).count();
        const auto nLength = static_cast<std::uint32_t>(objDatagram.Frame.size());
        put32(static_cast<std::uint32_t>(nMicroseconds / 1'000'000));
        put32(static_cast<std::uint32_t>(nMicroseconds % 1'000'000));
        put32(nLength);
        put32(nLength);
        objFile.write(reinterpret_cast<const char*>(objDatagram.Frame.data()), nLength);
    }
    if (!objFile.flush()) {
        throw std::runtime_error("write " + objPath.string());
    }
}
