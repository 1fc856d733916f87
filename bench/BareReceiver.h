#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "support/Thread.h"

/// What a stream's receiver does at the very least: it puts packets to their places in one of a few images, and tells
/// another thread when the last one of an image came. Without checks, resends and statistics.
///
/// The heirs own the thread that takes packets: they start it in their constructors and end it in their destructors.
class CBareReceiver {
public:
    virtual ~CBareReceiver() = default;
    CBareReceiver(const CBareReceiver&) = delete;
    CBareReceiver& operator=(const CBareReceiver&) = delete;

    [[nodiscard]] std::uint16_t GetPort() const { return m_nPort; }
    [[nodiscard]] std::uint64_t GetBytes() const { return m_nBytes; }
    /// @return the number of the next image that has come, or of a later one
    unsigned WaitForBlock();

protected:
    /// @param nLocal  the address that packets are sent to, first octet highest
    CBareReceiver(std::size_t nPacketSize, std::size_t nImageSize, std::uint32_t nLocal, std::size_t nReceiveBuffer);
    void Start();
    void Stop();
    void TakePacket(const unsigned char* pPacket, std::size_t nSize);

    const std::size_t m_nPacketSize;
    const std::size_t m_nReceiveBuffer;
    int m_nSocket = -1;
    std::atomic<bool> m_bStop = false;

private:
    virtual void Run() = 0;

    const std::size_t m_nPayload;
    const std::size_t m_nImageSize;
    std::uint16_t m_nPort = 0;
    std::vector<unsigned char> m_vecImage;
    std::atomic<std::uint64_t> m_nBytes = 0;
    std::mutex m_mtxDone;  // guards the one below
    unsigned m_nDone = 0;
    std::condition_variable m_objDone;
    CThread m_objThread;
};

/// One call of the kernel for each packet.
class CBareLoop : public CBareReceiver {
public:
    CBareLoop(std::size_t nPacketSize, std::size_t nImageSize, std::uint32_t nLocal, std::size_t nReceiveBuffer);
    ~CBareLoop() override { Stop(); }

private:
    void Run() override;
};

/// A ring that the kernel puts packets into (PACKET_RX_RING), before it looks at their checksums and at its firewall.
/// It is woken for a full part of the ring, and for what there is each millisecond. Needs the right to raw sockets.
class CBareRing : public CBareReceiver {
public:
    /// @param pszAdapter  that packets come by
    /// @throws std::system_error
    CBareRing(std::size_t nPacketSize, std::size_t nImageSize, std::uint32_t nLocal, std::size_t nReceiveBuffer,
              const char* pszAdapter);
    ~CBareRing() override;

private:
    void Run() override;

    int m_nRing = -1;
    unsigned char* m_pRing = nullptr;
};
