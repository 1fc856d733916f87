#include "bench/StreamSender.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <span>
#include <system_error>
#include <thread>

#include <netinet/udp.h>
#include <sys/socket.h>
#include <unistd.h>

#include "gev/BigEndian.h"
#include "gev/GvspHeader.h"
#include "gev/GvspLeader.h"
#include "gev/GvspTrailer.h"

namespace {

constexpr std::size_t kMessages = 32;
constexpr std::size_t kLongestJoined = 61'000;

std::int64_t Nanoseconds(clockid_t nClock) {
    timespec objTime{};
    clock_gettime(nClock, &objTime);
    return objTime.tv_sec * 1'000'000'000 + objTime.tv_nsec;
}

/// The packets of one image, equally long but for the first and the last two, and the socket that they leave by.
class CSender {
public:
    explicit CSender(const SENDER_SETTINGS& objSettings) : m_objSettings(objSettings) {
        m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_in objTo{};
        objTo.sin_family = AF_INET;
        objTo.sin_port = htons(objSettings.Port);
        objTo.sin_addr.s_addr = htonl(objSettings.Address);
        const int nBuffer = 8 << 20;
        setsockopt(m_nSocket, SOL_SOCKET, SO_SNDBUFFORCE, &nBuffer, sizeof nBuffer);
        if (m_nSocket < 0 || connect(m_nSocket, reinterpret_cast<const sockaddr*>(&objTo), sizeof objTo) != 0) {
            throw std::system_error(errno, std::generic_category(), "make a sender");
        }
        Build();
    }
    ~CSender() { close(m_nSocket); }
    CSender(const CSender&) = delete;
    CSender& operator=(const CSender&) = delete;

    void Send(std::uint16_t nBlockID, std::atomic<std::int64_t>* pTime) {
        for (std::size_t nStart : m_vecStart) {
            gev::Put16(m_vecBytes, nStart + 2, nBlockID);
        }
        const std::size_t nCount = m_vecStart.size();
        SendRange(0, 1, false);
        SendRange(1, nCount - 2, m_objSettings.Joined);
        SendRange(nCount - 2, nCount - 1, false);
        if (pTime != nullptr) {
            *pTime = Nanoseconds(CLOCK_MONOTONIC);
        }
        SendRange(nCount - 1, nCount, false);
    }

private:
    void Build() {
        const std::size_t nPayload = gev::GetPayloadPerPacket(m_objSettings.PacketSize, false);
        gev::GVSP_LEADER objLeader;
        objLeader.PixelFormat = gev::EPixelFormat::Mono8;
        objLeader.SizeX = static_cast<std::uint32_t>(m_objSettings.ImageSize);
        objLeader.SizeY = 1;
        objLeader.Timestamp = 1;
        std::array<std::byte, 64> arrPart{};
        Add(gev::EGvspFormat::Leader, gev::EncodeLeader(arrPart, objLeader));
        const std::vector<std::byte> vecImage(nPayload, std::byte{0xA5});
        for (std::size_t nOffset = 0; nOffset < m_objSettings.ImageSize; nOffset += nPayload) {
            Add(gev::EGvspFormat::Payload,
                std::span(vecImage).first(std::min(nPayload, m_objSettings.ImageSize - nOffset)));
        }
        Add(gev::EGvspFormat::Trailer, gev::EncodeTrailer(arrPart, {gev::EPayloadType::Image, 1, 0, 0}));
        m_vecStart.erase(m_vecStart.end() - 1, m_vecStart.end());
        m_vecStart.push_back(m_nTrailerStart);
    }

    void Add(gev::EGvspFormat eFormat, std::span<const std::byte> arrBody) {
        gev::GVSP_HEADER objHeader;
        objHeader.Format = eFormat;
        objHeader.BlockID = 1;
        objHeader.PacketID = static_cast<std::uint32_t>(m_vecStart.size());
        m_nTrailerStart = m_vecBytes.size();
        m_vecStart.push_back(m_vecBytes.size());
        m_vecBytes.resize(m_vecBytes.size() + gev::kGvspHeaderSize);
        gev::EncodeGvspHeader(std::span(m_vecBytes).subspan(m_nTrailerStart), objHeader);
        m_vecBytes.insert(m_vecBytes.end(), arrBody.begin(), arrBody.end());
    }

    std::size_t EndOf(std::size_t i) const { return i + 1 < m_vecStart.size() ? m_vecStart[i + 1] : m_vecBytes.size(); }

    void SendRange(std::size_t nFirst, std::size_t nEnd, bool bJoined) {
        const std::size_t nPacket = m_objSettings.PacketSize - gev::kIPAndUDPHeaderSize;
        const std::size_t nTogether = bJoined ? std::max<std::size_t>(kLongestJoined / nPacket, 1) : 1;
        std::array<iovec, kMessages> arrPart;
        std::array<mmsghdr, kMessages> arrMessage{};
        alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(sizeof(std::uint16_t))> arrControl{};
        if (bJoined) {
            auto* const pControl = reinterpret_cast<cmsghdr*>(arrControl.data());
            pControl->cmsg_level = IPPROTO_UDP;
            pControl->cmsg_type = UDP_SEGMENT;
            pControl->cmsg_len = CMSG_LEN(sizeof(std::uint16_t));
            const auto nSegment = static_cast<std::uint16_t>(nPacket);
            std::memcpy(CMSG_DATA(pControl), &nSegment, sizeof nSegment);
        }
        while (nFirst < nEnd) {
            unsigned nMessages = 0;
            for (; nMessages < kMessages && nFirst < nEnd; ++nMessages) {
                const std::size_t nLast = std::min(nFirst + nTogether, nEnd);
                arrPart[nMessages] = {m_vecBytes.data() + m_vecStart[nFirst], EndOf(nLast - 1) - m_vecStart[nFirst]};
                msghdr& objMessage = arrMessage[nMessages].msg_hdr;
                objMessage.msg_iov = &arrPart[nMessages];
                objMessage.msg_iovlen = 1;
                objMessage.msg_control = bJoined ? arrControl.data() : nullptr;
                objMessage.msg_controllen = bJoined ? arrControl.size() : 0;
                nFirst = nLast;
            }
            for (unsigned nSent = 0; nSent < nMessages;) {
                const int nNow = sendmmsg(m_nSocket, &arrMessage[nSent], nMessages - nSent, 0);
                if (nNow < 0 && errno != EINTR && errno != ENOBUFS) {
                    throw std::system_error(errno, std::generic_category(), "send");
                }
                nSent += static_cast<unsigned>(std::max(nNow, 0));
            }
        }
    }

    const SENDER_SETTINGS m_objSettings;
    int m_nSocket = -1;
    std::vector<std::byte> m_vecBytes;    // all packets, one behind the other
    std::vector<std::size_t> m_vecStart;  // of each
    std::size_t m_nTrailerStart = 0;
};

}  // namespace

std::int64_t SendImages(const CNetworkNamespace& objFar, const SENDER_SETTINGS& objSettings, TrailerTimes* pTimes) {
    std::int64_t nTaken = 0;
    objFar.Do([&] {
        CSender objSender(objSettings);
        const std::int64_t nStart = Nanoseconds(CLOCK_THREAD_CPUTIME_ID);
        for (std::uint32_t i = 1; i <= objSettings.Frames; ++i) {
            if (objSettings.Pause.count() != 0) {
                std::this_thread::sleep_for(objSettings.Pause);
            }
            objSender.Send(static_cast<std::uint16_t>(i), pTimes != nullptr ? &(*pTimes)[i] : nullptr);
        }
        nTaken = Nanoseconds(CLOCK_THREAD_CPUTIME_ID) - nStart;
    });
    return nTaken;
}
