#include "producer/modules/StreamBuffer.h"

#include <algorithm>
#include <limits>
#include <string>

#include "gev/GvspChunk.h"
#include "producer/ProducerError.h"

namespace producer {

namespace {

constexpr std::size_t kMostChunks = 4096;  // a hostile buffer could hold millions without data

std::size_t GetPayloadType(gev::EPayloadType nType) {
    switch (gev::GetBaseType(nType)) {
        case gev::EPayloadType::Image:
        case gev::EPayloadType::MultiZoneImage:
            return PAYLOAD_TYPE_IMAGE;
        case gev::EPayloadType::RawData:
            return PAYLOAD_TYPE_RAW_DATA;
        case gev::EPayloadType::File:
            return PAYLOAD_TYPE_FILE;
        case gev::EPayloadType::ChunkData:
        case gev::EPayloadType::ExtendedChunkData:
            return PAYLOAD_TYPE_CHUNK_DATA;
        case gev::EPayloadType::Jpeg:
            return PAYLOAD_TYPE_JPEG;
        case gev::EPayloadType::Jpeg2000:
            return PAYLOAD_TYPE_JPEG2000;
        case gev::EPayloadType::H264:
            return PAYLOAD_TYPE_H264;
        case gev::EPayloadType::MultiPart:
            return PAYLOAD_TYPE_MULTI_PART;
        default:
            return PAYLOAD_TYPE_UNKNOWN;
    }
}

std::uint64_t GetNanoseconds(std::uint64_t nTicks, std::uint64_t nFrequency) {
    constexpr std::uint64_t kPerSecond = 1'000'000'000;
    // In two parts, since the product of the whole doesn't fit; a clock over 18 GHz loses its last digits.
    const std::uint64_t nRest = nTicks % nFrequency;
    const std::uint64_t nPart = nRest <= std::numeric_limits<std::uint64_t>::max() / kPerSecond
                                    ? nRest * kPerSecond / nFrequency
                                    : nRest / (nFrequency / kPerSecond);
    return nTicks / nFrequency * kPerSecond + nPart;
}

[[noreturn]] void ThrowUnknown(BUFFER_INFO_CMD nCommand) {
    throw CProducerError(GC_ERR_NOT_AVAILABLE,
                         "nothing is known of the buffer for the info command " + std::to_string(nCommand));
}

}  // namespace

CStreamBuffer::CStreamBuffer(std::size_t nSize, void* pUser)
    : m_pOwned(new std::byte[nSize]()), m_arrMemory(m_pOwned.get(), nSize), m_pUser(pUser) {}

void CStreamBuffer::Fill(const FINISHED_BLOCK& objBlock, std::uint64_t nTickFrequency) {
    m_objBlock = objBlock;
    m_nTickFrequency = nTickFrequency;
    m_bFilled = true;
}

CInfoValue CStreamBuffer::GetInfo(BUFFER_INFO_CMD nCommand) const {
    switch (nCommand) {
        case BUFFER_INFO_BASE:
            return CInfoValue::Pointer(m_arrMemory.data());
        case BUFFER_INFO_SIZE:
            return CInfoValue::Size(m_arrMemory.size());
        case BUFFER_INFO_USER_PTR:
            return CInfoValue::Pointer(m_pUser);
        case BUFFER_INFO_TLTYPE:
            return CInfoValue::Text("GEV");
        case BUFFER_INFO_NEW_DATA:
            return CInfoValue::Bool(m_bFilled);
        case BUFFER_INFO_IS_QUEUED:
            return CInfoValue::Bool(m_ePlace != BUFFER_PLACE::Unqueued);
        case BUFFER_INFO_IS_ACQUIRING:
            return CInfoValue::Bool(m_ePlace == BUFFER_PLACE::Filling);
        case BUFFER_INFO_IS_INCOMPLETE:
            return CInfoValue::Bool(m_bFilled && m_objBlock.IsIncomplete);
        case BUFFER_INFO_SIZE_FILLED:
            return CInfoValue::Size(m_bFilled ? static_cast<std::size_t>(m_objBlock.Filled) : 0);
        default:
            break;
    }
    if (!m_bFilled) {
        ThrowUnknown(nCommand);
    }
    switch (nCommand) {
        case BUFFER_INFO_DATA_SIZE:
            return CInfoValue::Size(
                static_cast<std::size_t>(std::min<std::uint64_t>(m_objBlock.DataSize, m_arrMemory.size())));
        case BUFFER_INFO_DATA_LARGER_THAN_BUFFER:
            return CInfoValue::Bool(m_objBlock.IsLargerThanMemory);
        case BUFFER_INFO_FRAMEID:
            return CInfoValue::Uint64(m_objBlock.BlockID);
        default:
            return GetImageInfo(nCommand);
    }
}

/// What the block's leader and trailer say.
CInfoValue CStreamBuffer::GetImageInfo(BUFFER_INFO_CMD nCommand) const {
    const gev::GVSP_LEADER& objLeader = m_objBlock.Leader;
    const bool bImage = m_objBlock.HasLeader && gev::IsImage(objLeader.PayloadType);
    const bool bTrailer = m_objBlock.HasTrailer;
    if (m_objBlock.HasLeader) {
        switch (nCommand) {
            case BUFFER_INFO_TIMESTAMP:
                return CInfoValue::Uint64(objLeader.Timestamp);
            case BUFFER_INFO_TIMESTAMP_NS:
                if (m_nTickFrequency == 0) {
                    ThrowUnknown(nCommand);
                }
                return CInfoValue::Uint64(GetNanoseconds(objLeader.Timestamp, m_nTickFrequency));
            case BUFFER_INFO_PAYLOADTYPE:
                return CInfoValue::Size(GetPayloadType(objLeader.PayloadType));
            case BUFFER_INFO_IMAGEPRESENT:
                return CInfoValue::Bool(bImage);
            case BUFFER_INFO_CONTAINS_CHUNKDATA:
                return CInfoValue::Bool(HoldsChunks());
            default:
                break;
        }
    }
    if (bTrailer && HoldsChunks() && nCommand == BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE) {
        return CInfoValue::Size(m_objBlock.Trailer.ChunkDataLength);
    }
    if (bTrailer && HoldsChunks() && nCommand == BUFFER_INFO_CHUNKLAYOUTID) {
        return CInfoValue::Uint64(m_objBlock.Trailer.ChunkLayoutID);
    }
    if (!bImage) {
        ThrowUnknown(nCommand);
    }
    switch (nCommand) {
        case BUFFER_INFO_WIDTH:
            return CInfoValue::Size(objLeader.SizeX);
        case BUFFER_INFO_HEIGHT:
            return CInfoValue::Size(objLeader.SizeY);
        case BUFFER_INFO_DELIVERED_IMAGEHEIGHT:
            return CInfoValue::Size(bTrailer ? m_objBlock.Trailer.SizeY : objLeader.SizeY);
        case BUFFER_INFO_XOFFSET:
            return CInfoValue::Size(objLeader.OffsetX);
        case BUFFER_INFO_YOFFSET:
            return CInfoValue::Size(objLeader.OffsetY);
        case BUFFER_INFO_XPADDING:
            return CInfoValue::Size(objLeader.PaddingX);
        case BUFFER_INFO_YPADDING:
            return CInfoValue::Size(objLeader.PaddingY);
        case BUFFER_INFO_IMAGEOFFSET:
            return CInfoValue::Size(0);
        case BUFFER_INFO_PIXELFORMAT:
            return CInfoValue::Uint64(static_cast<std::uint32_t>(objLeader.PixelFormat));
        case BUFFER_INFO_PIXELFORMAT_NAMESPACE:
            return CInfoValue::Uint64(PIXELFORMAT_NAMESPACE_PFNC_32BIT);
        case BUFFER_INFO_PIXEL_ENDIANNESS:
            return CInfoValue::Int32(PIXELENDIANNESS_LITTLE);
        default:
            ThrowUnknown(nCommand);
    }
}

bool CStreamBuffer::HoldsChunks() const {
    const gev::EPayloadType nType = m_objBlock.HasLeader ? m_objBlock.Leader.PayloadType : gev::EPayloadType{};
    return gev::HasChunksBehind(nType) || nType == gev::EPayloadType::ChunkData ||
           nType == gev::EPayloadType::ExtendedChunkData;
}

std::vector<SINGLE_CHUNK_DATA> CStreamBuffer::GetChunks() const {
    if (!m_bFilled || !HoldsChunks()) {
        return {};
    }
    if (!m_objBlock.HasTrailer || m_objBlock.IsIncomplete) {
        throw CProducerError(GC_ERR_PARSING_CHUNK_DATA, "the buffer is incomplete: its chunks can't be found");
    }
    const auto arrData = std::span<const std::byte>(m_arrMemory).first(static_cast<std::size_t>(m_objBlock.Filled));
    const std::size_t nLength = std::min<std::size_t>(m_objBlock.Trailer.ChunkDataLength, arrData.size());
    const std::size_t nStart = arrData.size() - nLength;
    std::vector<SINGLE_CHUNK_DATA> vecChunk;
    gev::CChunkWalk objWalk(arrData);
    while (objWalk.GetRest() > nStart) {
        const std::optional<gev::CHUNK> objChunk = objWalk.GetPrevious();
        // The image may be a chunk itself, of which the length that the camera tells counts only the end.
        const bool bTooLong = objWalk.GetRest() < nStart && objWalk.GetRest() != 0;
        if (!objChunk || bTooLong || vecChunk.size() == kMostChunks) {
            throw CProducerError(GC_ERR_PARSING_CHUNK_DATA, "the lengths of the chunks don't add up to the " +
                                                                std::to_string(nLength) +
                                                                " bytes that the camera tells");
        }
        vecChunk.push_back({objChunk->ID, static_cast<std::ptrdiff_t>(objChunk->Offset), objChunk->Length});
    }
    std::ranges::reverse(vecChunk);
    return vecChunk;
}

}  // namespace producer
