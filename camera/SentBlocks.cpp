#include "camera/SentBlocks.h"

#include <algorithm>
#include <bit>

#include "gev/BigEndian.h"
#include "gev/GvspChunk.h"

namespace camera {

using gev::EGvcpStatus;

std::size_t GetChunkSize(const BLOCK_FORMAT& objFormat) {
    if (!objFormat.Chunks) {
        return 0;
    }
    std::size_t nSize = kChunkTail;  // the image is a chunk too
    for (std::size_t i = 0; i < kChunks.size(); ++i) {
        nSize += objFormat.ChunkEnabled[i] ? kChunks[i].Length + kChunkTail : 0;
    }
    return nSize;
}

void CSentBlocks::SetFormat(const BLOCK_FORMAT& objFormat) {
    if (objFormat == m_objFormat && m_nPackets != 0) {
        return;
    }
    m_objFormat = objFormat;
    m_nImage = GetImageSize(objFormat.Image);
    m_nPayload = m_nImage + GetChunkSize(objFormat);
    m_nPerPacket = std::max<std::size_t>(gev::GetPayloadPerPacket(objFormat.PacketSize, objFormat.ExtendedIDs), 1);
    m_nPackets = static_cast<std::uint32_t>((m_nPayload + m_nPerPacket - 1) / m_nPerPacket) + 2;
    m_vecSlot.assign(std::clamp(kRingSize / m_nPayload, kLeastBlocks, kMostBlocks), SLOT{});
    m_vecPayload.resize(std::max(m_vecPayload.size(), m_nPayload * m_vecSlot.size()));
    m_bDrawn = false;
}

void CSentBlocks::Clear() {
    std::ranges::fill(m_vecSlot, SLOT{});
    m_nFrame = 0;
    m_bDrawn = false;
}

std::span<const std::byte> CSentBlocks::GetPayload(std::uint64_t nFrame) const {
    return std::span(m_vecPayload).subspan(nFrame % m_vecSlot.size() * m_nPayload, m_nPayload);
}

std::span<std::byte> CSentBlocks::Begin() {
    ++m_nFrame;
    m_bDrawn = true;
    SLOT& objSlot = GetSlot(m_nFrame);
    objSlot.Frame = 0;
    objSlot.Sent = 0;
    return std::span(m_vecPayload).subspan(m_nFrame % m_vecSlot.size() * m_nPayload, m_nImage);
}

gev::EPayloadType CSentBlocks::GetPayloadType() const {
    return m_objFormat.Chunks ? gev::EPayloadType::ImageWithChunks : gev::EPayloadType::Image;
}

void CSentBlocks::Finish(const BLOCK_FACTS& objFacts) {
    SLOT& objSlot = GetSlot(m_nFrame);
    objSlot.Frame = m_nFrame;
    m_bDrawn = false;
    gev::GVSP_LEADER objLeader;
    objLeader.PayloadType = GetPayloadType();
    objLeader.Timestamp = objFacts.Timestamp;
    objLeader.PixelFormat = m_objFormat.Image.PixelFormat;
    objLeader.SizeX = m_objFormat.Image.Width;
    objLeader.SizeY = m_objFormat.Image.Height;
    objLeader.OffsetX = m_objFormat.OffsetX;
    objLeader.OffsetY = m_objFormat.OffsetY;
    gev::EncodeLeader(objSlot.Leader, objLeader);

    gev::GVSP_TRAILER objTrailer;
    objTrailer.PayloadType = GetPayloadType();
    objTrailer.SizeY = m_objFormat.Image.Height;
    // What stands behind the image: the ID and length that make the image a chunk count, the image itself doesn't.
    objTrailer.ChunkDataLength = static_cast<std::uint32_t>(m_nPayload - m_nImage);
    // Each set of chunks is a layout of its own.
    objTrailer.ChunkLayoutID = 1;
    for (std::size_t i = 0; i < kChunks.size(); ++i) {
        objTrailer.ChunkLayoutID += m_objFormat.ChunkEnabled[i] ? 2U << i : 0;
    }
    gev::EncodeTrailer(objSlot.Trailer, objTrailer);

    if (m_objFormat.Chunks) {
        PutChunks(
            std::span(m_vecPayload).subspan(m_nFrame % m_vecSlot.size() * m_nPayload + m_nImage, m_nPayload - m_nImage),
            objFacts);
    }
}

void CSentBlocks::PutChunks(std::span<std::byte> arrChunks, const BLOCK_FACTS& objFacts) const {
    const auto putTail = [&arrChunks](std::uint32_t nID, std::size_t nLength) {
        gev::PutChunkTrailer(arrChunks.first<kChunkTail>(), nID, static_cast<std::uint32_t>(nLength));
        arrChunks = arrChunks.subspan(kChunkTail);
    };
    putTail(kImageChunkID, m_nImage);
    for (std::size_t i = 0; i < kChunks.size(); ++i) {
        if (!m_objFormat.ChunkEnabled[i]) {
            continue;
        }
        if (i == kChunkExposureTime) {
            gev::Put32(arrChunks, 0, std::bit_cast<std::uint32_t>(objFacts.ExposureUs));
        } else {
            gev::Put64(arrChunks, 0, i == kChunkFrameID ? m_nFrame : objFacts.Timestamp);
        }
        arrChunks = arrChunks.subspan(kChunks[i].Length);
        putTail(kChunks[i].ID, kChunks[i].Length);
    }
}

std::uint64_t CSentBlocks::GetBlockID(std::uint64_t nFrame) const {
    return m_objFormat.ExtendedIDs || nFrame == 0 ? nFrame : (nFrame - 1) % gev::kGvspHighestBlockID + 1;
}

EGvcpStatus CSentBlocks::Find(std::uint64_t nBlockID, std::uint64_t& nFrame) const {
    std::uint64_t nBehind = GetBlockID() - nBlockID;  // wraps for what is to come
    if (!m_objFormat.ExtendedIDs) {
        constexpr std::uint64_t kCount = gev::kGvspHighestBlockID;
        nBehind = (GetBlockID() + kCount - nBlockID) % kCount;
        // With so few IDs the farther half counts as to come.
        if (nBehind > kCount / 2) {
            return EGvcpStatus::PacketNotYetAvailable;
        }
    }
    if (nBlockID == 0 || nBehind >= m_nFrame || (nBehind == 0 && m_bDrawn)) {
        return EGvcpStatus::PacketNotYetAvailable;
    }
    nFrame = m_nFrame - nBehind;
    return GetSlot(nFrame).Frame == nFrame ? EGvcpStatus::Success : EGvcpStatus::PacketAndPreviousRemoved;
}

STREAM_PACKET CSentBlocks::MakePacket(std::uint64_t nFrame, std::uint32_t nPacketID, bool bResent,
                                      GvspHeaderBuffer& arrHeader) const {
    gev::GVSP_HEADER objHeader;
    objHeader.ExtendedIDs = m_objFormat.ExtendedIDs;
    objHeader.BlockID = GetBlockID(nFrame);
    objHeader.PacketID = nPacketID;
    if (bResent && objHeader.ExtendedIDs) {
        objHeader.Flags = gev::kGvspFlagPacketResend;
    } else if (bResent) {
        objHeader.Status = EGvcpStatus::PacketResend;
    }
    const SLOT& objSlot = GetSlot(nFrame);
    std::span<const std::byte> arrBody;
    if (nPacketID == gev::kGvspLeaderPacketID) {
        objHeader.Format = gev::EGvspFormat::Leader;
        arrBody = std::span(objSlot.Leader).first(gev::GetLeaderSize(GetPayloadType()));
    } else if (nPacketID == m_nPackets - 1) {
        objHeader.Format = gev::EGvspFormat::Trailer;
        arrBody = std::span(objSlot.Trailer).first(gev::GetTrailerSize(GetPayloadType()));
    } else {
        const std::size_t nPlace = (nPacketID - 1) * m_nPerPacket;
        arrBody = GetPayload(nFrame).subspan(nPlace, std::min(m_nPerPacket, m_nPayload - nPlace));
    }
    return {gev::EncodeGvspHeader(arrHeader, objHeader), arrBody};
}

}  // namespace camera
