#include "tests/producer/stream/SimulatedStream.h"

#include <algorithm>
#include <utility>

#include "gev/GvspHeader.h"
#include "gev/GvspLeader.h"
#include "gev/GvspTrailer.h"

using namespace producer;
using namespace std::chrono_literals;

CSimulatedStream::CSimulatedStream(const CAMERA& objCamera, REASSEMBLY_SETTINGS objSettings, std::size_t nBuffers)
    : m_nNextID(objCamera.FirstBlockID),
      m_objCamera(objCamera),
      m_nImage(std::size_t{objCamera.SizeX} * objCamera.SizeY + objCamera.ChunkBytes) {
    objSettings.PacketSize = objCamera.PacketSize;
    for (std::size_t i = 0; i < nBuffers; ++i) {
        m_vecBuffer.push_back(std::make_unique<std::byte[]>(m_nImage));  // to the byte, so that an overrun is seen
        m_deqFree.push_back(m_vecBuffer.back().get());
    }
    m_pReassembly = std::make_unique<CReassembly>(*this, objSettings);
}

std::byte CSimulatedStream::PatternAt(std::uint64_t nBlockID, std::size_t nOffset) const {
    return static_cast<std::byte>((nBlockID * 7 + nOffset + nOffset / 251) & 0xFF);
}

std::vector<CSimulatedStream::Packet> CSimulatedStream::MakeFrame(std::uint64_t nBlockID, bool bResent,
                                                                  std::optional<std::uint32_t> nLines) const {
    const std::uint32_t nSizeY = nLines.value_or(m_objCamera.SizeY);
    const std::size_t nImage = std::size_t{m_objCamera.SizeX} * nSizeY + m_objCamera.ChunkBytes;
    gev::GVSP_HEADER objHeader;
    objHeader.ExtendedIDs = m_objCamera.ExtendedIDs;
    objHeader.BlockID = nBlockID;
    if (bResent && m_objCamera.ExtendedIDs) {
        objHeader.Flags = gev::kGvspFlagPacketResend;
    } else if (bResent) {
        objHeader.Status = gev::EGvcpStatus::PacketResend;
    }
    const auto nType = m_objCamera.ChunkBytes != 0 ? gev::EPayloadType::ImageWithChunks : gev::EPayloadType::Image;
    std::vector<Packet> vecPacket;
    const auto Add = [&](gev::EGvspFormat eFormat) -> Packet& {
        objHeader.Format = eFormat;
        objHeader.PacketID = static_cast<std::uint32_t>(vecPacket.size());
        vecPacket.emplace_back(m_objCamera.PacketSize);
        gev::EncodeGvspHeader(vecPacket.back(), objHeader);
        return vecPacket.back();
    };
    const std::size_t nHeader = objHeader.GetSize();
    gev::GVSP_LEADER objLeader;
    objLeader.PayloadType = nType;
    objLeader.Timestamp = 1000 * nBlockID + 1;
    objLeader.PixelFormat = gev::EPixelFormat::Mono8;
    objLeader.SizeX = m_objCamera.SizeX;
    objLeader.SizeY = m_objCamera.SizeY;
    Packet& arrLeader = Add(gev::EGvspFormat::Leader);
    arrLeader.resize(nHeader + gev::EncodeLeader(std::span(arrLeader).subspan(nHeader), objLeader).size());
    const std::size_t nPayload = gev::GetPayloadPerPacket(m_objCamera.PacketSize, m_objCamera.ExtendedIDs);
    for (std::size_t nOffset = 0; nOffset < nImage; nOffset += nPayload) {
        Packet& arrPacket = Add(gev::EGvspFormat::Payload);
        arrPacket.resize(nHeader + std::min(nPayload, nImage - nOffset));
        for (std::size_t i = nHeader; i < arrPacket.size(); ++i) {
            arrPacket[i] = PatternAt(nBlockID, nOffset + i - nHeader);
        }
    }
    Packet& arrTrailer = Add(gev::EGvspFormat::Trailer);
    const gev::GVSP_TRAILER objTrailer{nType, nSizeY, m_objCamera.ChunkBytes, 1};
    arrTrailer.resize(nHeader + gev::EncodeTrailer(std::span(arrTrailer).subspan(nHeader), objTrailer).size());
    return vecPacket;
}

void CSimulatedStream::Deliver(const Packet& arrPacket) {
    m_objNow += 12us;  // 1500 bytes at 1 Gb/s
    m_pReassembly->TakePacket(arrPacket, m_objNow);
    m_pReassembly->Service(m_objNow, m_objNow);
}

void CSimulatedStream::Send(std::size_t nFrames, const std::function<bool(std::size_t, std::size_t)>& funLoses) {
    for (std::size_t nFrame = 0; nFrame < nFrames; ++nFrame) {
        const std::vector<Packet> vecPacket = MakeFrame(m_nNextID);
        m_setSent.insert(m_nNextID);
        for (std::size_t i = 0; i < vecPacket.size(); ++i) {
            AnswerResends(funLoses);
            if (funLoses(nFrame, i)) {
                ++m_nLostPackets;
                m_objNow += 12us;
            } else {
                Deliver(vecPacket[i]);
            }
        }
        m_nNextID = gev::NextBlockID(m_nNextID, m_objCamera.ExtendedIDs);
    }
    while (!m_deqResend.empty() || !m_pReassembly->IsIdle()) {
        const auto objDue = m_pReassembly->GetNextDue();
        m_objNow = std::max(m_objNow, m_deqResend.empty() ? *objDue : m_deqResend.front().At);
        AnswerResends(funLoses);
        m_pReassembly->Service(m_objNow, m_objNow);
    }
}

void CSimulatedStream::Settle() {
    while (!m_pReassembly->IsIdle()) {
        m_objNow = std::max(m_objNow, m_pReassembly->GetNextDue().value());
        m_pReassembly->Service(m_objNow, m_objNow);
    }
}

void CSimulatedStream::AnswerResends(const std::function<bool(std::size_t, std::size_t)>& funLoses) {
    while (!m_deqResend.empty() && m_deqResend.front().At <= m_objNow) {
        const RESEND objResend = m_deqResend.front();
        m_deqResend.pop_front();
        if (!m_setSent.contains(objResend.BlockID)) {
            continue;
        }
        const std::vector<Packet> vecPacket = MakeFrame(objResend.BlockID, true);
        for (std::size_t i = objResend.First; i <= objResend.Last && i < vecPacket.size(); ++i) {
            if (!funLoses(vecPacket.size(), i)) {
                Deliver(vecPacket[i]);
            }
        }
    }
}

BLOCK_MEMORY CSimulatedStream::TakeMemory() {
    if (m_deqFree.empty()) {
        return {{}, nullptr, m_bThrough};
    }
    std::byte* const pBuffer = m_deqFree.front();
    m_deqFree.pop_front();
    std::fill_n(pBuffer, m_nImage, std::byte{0xEE});
    return {{pBuffer, m_nImage}, pBuffer};
}

void CSimulatedStream::ReturnMemory(const BLOCK_MEMORY& objMemory) {
    m_deqFree.push_front(objMemory.Memory.data());
}

void CSimulatedStream::DeliverBlock(const FINISHED_BLOCK& objBlock) {
    FRAME objFrame{objBlock.BlockID, objBlock, true};
    for (std::size_t i = 0; i < m_nImage && objFrame.IsExact; ++i) {
        objFrame.IsExact = objBlock.Memory.Memory[i] == PatternAt(objBlock.BlockID, i);
    }
    m_vecFrame.push_back(objFrame);
    if (!m_bKeepsFrames) {
        m_deqFree.push_back(objBlock.Memory.Memory.data());
    }
}

void CSimulatedStream::RequestResend(std::uint64_t nBlockID, std::uint32_t nFirst, std::uint32_t nLast, bool) {
    ++m_nRequests;
    if (m_objCamera.AnswersResends) {
        m_deqResend.push_back({m_objNow + 200us, nBlockID, nFirst, nLast});
    }
}
