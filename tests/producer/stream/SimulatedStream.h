#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <vector>

#include "producer/stream/Reassembly.h"

/// A camera, a cable with faults and a consumer around a CReassembly, in simulated time.
class CSimulatedStream : public producer::IBlockSink {
public:
    struct FRAME {
        std::uint64_t BlockID = 0;
        producer::FINISHED_BLOCK Block;
        bool IsExact = false;
    };

    struct CAMERA {
        std::uint32_t SizeX = 640;
        std::uint32_t SizeY = 480;
        std::size_t PacketSize = 1500;
        bool ExtendedIDs = false;
        std::uint32_t ChunkBytes = 0;  ///< with chunks behind the image
        std::uint64_t FirstBlockID = 1;
        bool AnswersResends = true;
    };

    CSimulatedStream(const CAMERA& objCamera, producer::REASSEMBLY_SETTINGS objSettings, std::size_t nBuffers = 40);

    using Packet = std::vector<std::byte>;
    /// What a frame consists of, leader first.
    /// @param nLines  that are really sent, of those that the leader tells
    std::vector<Packet> MakeFrame(std::uint64_t nBlockID, bool bResent = false,
                                  std::optional<std::uint32_t> nLines = {}) const;
    std::size_t GetPacketCount() const { return MakeFrame(1).size(); }

    /// Sends so many frames; what the cable loses is told by the function, which gets the number of the frame and of
    /// the packet. Resent packets are lost too.
    void Send(std::size_t nFrames, const std::function<bool(std::size_t, std::size_t)>& funLoses);
    /// Hands one packet over, at its time.
    void Deliver(const Packet& arrPacket);
    /// Lets time pass until nothing is under way.
    void Settle();

    std::vector<FRAME> m_vecFrame;
    std::size_t m_nLostPackets = 0;
    std::size_t m_nRequests = 0;
    producer::CReassembly& Reassembly() { return *m_pReassembly; }
    producer::StreamClock::time_point m_objNow{};
    std::uint64_t m_nNextID;
    bool m_bKeepsFrames = false;  ///< the consumer hands no buffer back
    bool m_bThrough = false;      ///< the consumer wants no more frames than there are buffers

private:
    producer::BLOCK_MEMORY TakeMemory() override;
    void ReturnMemory(const producer::BLOCK_MEMORY& objMemory) override;
    void DeliverBlock(const producer::FINISHED_BLOCK& objBlock) override;
    void RequestResend(std::uint64_t nBlockID, std::uint32_t nFirst, std::uint32_t nLast, bool bExtendedIDs) override;
    std::byte PatternAt(std::uint64_t nBlockID, std::size_t nOffset) const;
    void AnswerResends(const std::function<bool(std::size_t, std::size_t)>& funLoses);

    const CAMERA m_objCamera;
    std::size_t m_nImage;
    std::vector<std::unique_ptr<std::byte[]>> m_vecBuffer;
    std::deque<std::byte*> m_deqFree;
    std::set<std::uint64_t> m_setSent;
    struct RESEND {
        producer::StreamClock::time_point At;
        std::uint64_t BlockID;
        std::uint32_t First;
        std::uint32_t Last;
    };
    std::deque<RESEND> m_deqResend;
    std::unique_ptr<producer::CReassembly> m_pReassembly;
};
