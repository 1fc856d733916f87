#include "bench/BareReceiver.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include <linux/filter.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <netinet/if_ether.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include "gev/GvspHeader.h"

namespace {

constexpr std::size_t kImages = 4;
constexpr std::size_t kPart = std::size_t{1} << 18U;  // of the ring

void Require(bool bGood, const char* pszWhat) {
    if (!bGood) {
        throw std::system_error(errno, std::generic_category(), pszWhat);
    }
}

template <std::size_t nSteps>
void Attach(int nSocket, std::array<sock_filter, nSteps> arrFilter) {
    const sock_fprog objProgram{nSteps, arrFilter.data()};
    Require(setsockopt(nSocket, SOL_SOCKET, SO_ATTACH_FILTER, &objProgram, sizeof objProgram) == 0, "attach a filter");
}

}  // namespace

CBareReceiver::CBareReceiver(std::size_t nPacketSize, std::size_t nImageSize, std::uint32_t nLocal,
                             std::size_t nReceiveBuffer)
    : m_nPacketSize(nPacketSize),
      m_nReceiveBuffer(nReceiveBuffer),
      m_nSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)),
      m_nPayload(gev::GetPayloadPerPacket(nPacketSize, false)),
      m_nImageSize(nImageSize),
      m_vecImage(kImages * nImageSize) {
    const int nBuffer = static_cast<int>(nReceiveBuffer);
    setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUFFORCE, &nBuffer, sizeof nBuffer);
    sockaddr_in objAddress{};
    objAddress.sin_family = AF_INET;
    objAddress.sin_addr.s_addr = htonl(nLocal);
    socklen_t nSize = sizeof objAddress;
    Require(bind(m_nSocket, reinterpret_cast<const sockaddr*>(&objAddress), nSize) == 0, "bind");
    getsockname(m_nSocket, reinterpret_cast<sockaddr*>(&objAddress), &nSize);
    m_nPort = ntohs(objAddress.sin_port);
}

void CBareReceiver::Start() {
    const auto funRun = [](void* pArg) -> std::uint32_t {
        static_cast<CBareReceiver*>(pArg)->Run();
        return 0;
    };
    m_objThread.Start(this, funRun, kPriorityTimeCritical);
}

void CBareReceiver::Stop() {
    m_bStop = true;
    shutdown(m_nSocket, SHUT_RD);
    m_objThread.Join();
    close(m_nSocket);
}

unsigned CBareReceiver::WaitForBlock() {
    std::unique_lock objLock(m_mtxDone);
    m_objDone.wait(objLock, [this] { return m_nDone != 0; });
    return std::exchange(m_nDone, 0);
}

void CBareReceiver::TakePacket(const unsigned char* pPacket, std::size_t nSize) {
    if (nSize <= gev::kGvspHeaderSize) {
        return;
    }
    const unsigned nBlock = pPacket[2] << 8U | pPacket[3];
    const std::size_t nPacket = std::size_t{pPacket[5]} << 16U | pPacket[6] << 8U | pPacket[7];
    const std::size_t nOffset = (nPacket - 1) * m_nPayload;
    nSize -= gev::kGvspHeaderSize;
    if (pPacket[4] == 3 && nOffset + nSize <= m_nImageSize) {
        std::memcpy(&m_vecImage[nBlock % kImages * m_nImageSize + nOffset], &pPacket[8], nSize);
        m_nBytes += nSize;
    } else if (pPacket[4] == 2) {
        {
            const std::lock_guard objLock(m_mtxDone);
            m_nDone = nBlock;
        }
        m_objDone.notify_one();
    }
}

CBareLoop::CBareLoop(std::size_t nPacketSize, std::size_t nImageSize, std::uint32_t nLocal, std::size_t nReceiveBuffer)
    : CBareReceiver(nPacketSize, nImageSize, nLocal, nReceiveBuffer) {
    Start();
}

void CBareLoop::Run() {
    std::array<unsigned char, 65536> arrPacket;
    while (!m_bStop) {
        const ssize_t nSize = recv(m_nSocket, arrPacket.data(), arrPacket.size(), 0);
        TakePacket(arrPacket.data(), static_cast<std::size_t>(std::max<ssize_t>(nSize, 0)));
    }
}

CBareRing::CBareRing(std::size_t nPacketSize, std::size_t nImageSize, std::uint32_t nLocal, std::size_t nReceiveBuffer,
                     const char* pszAdapter)
    : CBareReceiver(nPacketSize, nImageSize, nLocal, nReceiveBuffer),
      m_nRing(socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    Require(m_nRing >= 0, "make a packet socket");
    // The port stays taken, or the machine would tell the sender that nobody is there; but nothing comes by it.
    Attach(m_nSocket, std::array<sock_filter, 1>{{BPF_STMT(BPF_RET | BPF_K, 0)}});
    constexpr unsigned kProtocolAt = 9;
    constexpr unsigned kPortAt = 22;
    Attach(m_nRing, std::array<sock_filter, 6>{{
                        BPF_STMT(BPF_LD | BPF_B | BPF_ABS, kProtocolAt),
                        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, IPPROTO_UDP, 0, 3),
                        BPF_STMT(BPF_LD | BPF_H | BPF_ABS, kPortAt),
                        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, GetPort(), 0, 1),
                        BPF_STMT(BPF_RET | BPF_K, 0xFFFF'FFFF),
                        BPF_STMT(BPF_RET | BPF_K, 0),
                    }});
    const int nVersion = TPACKET_V3;
    Require(setsockopt(m_nRing, SOL_PACKET, PACKET_VERSION, &nVersion, sizeof nVersion) == 0, "set the ring's version");
    tpacket_req3 objRing{};
    objRing.tp_block_size = kPart;
    objRing.tp_block_nr = static_cast<unsigned>(nReceiveBuffer / kPart);
    objRing.tp_frame_size = 2048;  // nothing depends on it in this version
    objRing.tp_frame_nr = static_cast<unsigned>(nReceiveBuffer / objRing.tp_frame_size);
    objRing.tp_retire_blk_tov = 1;  // ms
    Require(setsockopt(m_nRing, SOL_PACKET, PACKET_RX_RING, &objRing, sizeof objRing) == 0, "make a ring");
    void* const pRing = mmap(nullptr, nReceiveBuffer, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, m_nRing, 0);
    Require(pRing != MAP_FAILED, "map the ring");
    m_pRing = static_cast<unsigned char*>(pRing);
    sockaddr_ll objLink{};
    objLink.sll_family = AF_PACKET;
    objLink.sll_protocol = htons(ETH_P_IP);
    objLink.sll_ifindex = static_cast<int>(if_nametoindex(pszAdapter));
    Require(bind(m_nRing, reinterpret_cast<const sockaddr*>(&objLink), sizeof objLink) == 0, "bind the ring");
    Start();
}

CBareRing::~CBareRing() {
    Stop();
    munmap(m_pRing, m_nReceiveBuffer);
    close(m_nRing);
}

void CBareRing::Run() {
    for (std::size_t i = 0; !m_bStop;) {
        auto& objPart = reinterpret_cast<tpacket_block_desc*>(m_pRing + i * kPart)->hdr.bh1;
        if ((__atomic_load_n(&objPart.block_status, __ATOMIC_ACQUIRE) & TP_STATUS_USER) == 0) {
            pollfd objPoll{m_nRing, POLLIN, 0};
            poll(&objPoll, 1, 20);
            continue;
        }
        const unsigned char* pFrame = m_pRing + i * kPart + objPart.offset_to_first_pkt;
        for (unsigned n = 0; n < objPart.num_pkts; ++n) {
            const auto& objFrame = *reinterpret_cast<const tpacket3_hdr*>(pFrame);
            const std::size_t nPacket = m_nPacketSize - gev::kIPAndUDPHeaderSize;
            for (std::size_t nAt = gev::kIPAndUDPHeaderSize; nAt < objFrame.tp_snaplen; nAt += nPacket) {
                // It may hold many packets, which the kernel has joined.
                TakePacket(pFrame + objFrame.tp_net + nAt, std::min(objFrame.tp_snaplen - nAt, nPacket));
            }
            pFrame += objFrame.tp_next_offset;
        }
        __atomic_store_n(&objPart.block_status, TP_STATUS_KERNEL, __ATOMIC_RELEASE);
        i = (i + 1) % (m_nReceiveBuffer / kPart);
    }
}
