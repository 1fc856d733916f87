// One stream packet, taken apart. What is understood is said again, and must then be understood to be the same. The
// bytes are also walked over as a buffer with chunks.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "gev/GvspAllIn.h"
#include "gev/GvspChunk.h"
#include "gev/GvspHeader.h"

namespace {

void Require(bool bHolds) {
    if (!bHolds) {
        std::abort();
    }
}

void TryHeader(const gev::GVSP_HEADER& objHeader) {
    std::array<std::byte, gev::kGvspExtendedHeaderSize> arrBuffer{};
    const auto arrSaid = gev::EncodeGvspHeader(arrBuffer, objHeader);
    gev::GVSP_HEADER objAgain;
    std::span<const std::byte> arrBody;
    Require(arrSaid.size() == objHeader.GetSize() && gev::DecodeGvspHeader(arrSaid, objAgain, arrBody));
    Require(arrBody.empty() && objAgain.BlockID == objHeader.BlockID && objAgain.PacketID == objHeader.PacketID &&
            objAgain.Format == objHeader.Format && objAgain.Status == objHeader.Status);
}

void TryBody(std::span<const std::byte> arrBody) {
    std::array<std::byte, gev::kLongestLeaderSize + gev::kLongestTrailerSize> arrBuffer{};
    gev::GVSP_LEADER objLeader;
    if (gev::DecodeLeader(arrBody, objLeader)) {
        gev::GVSP_LEADER objAgain;
        Require(gev::DecodeLeader(gev::EncodeLeader(arrBuffer, objLeader), objAgain) && objAgain == objLeader);
        Require(gev::GetImageSize(objLeader) >= objLeader.PaddingY);
    }
    gev::GVSP_TRAILER objTrailer;
    if (gev::DecodeTrailer(arrBody, objTrailer)) {
        gev::GVSP_TRAILER objAgain;
        Require(gev::DecodeTrailer(gev::EncodeTrailer(arrBuffer, objTrailer), objAgain) && objAgain == objTrailer);
    }
    gev::GVSP_ALL_IN objAllIn;
    if (gev::DecodeAllIn(arrBody, objAllIn)) {
        const std::size_t nBefore = gev::EncodeAllIn(arrBuffer, objAllIn.Leader, objAllIn.Trailer).size();
        Require(nBefore != 0 && nBefore + objAllIn.Data.size() == arrBody.size());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const auto arrPacket = std::as_bytes(std::span(pData, nSize));
    gev::GVSP_HEADER objHeader;
    std::span<const std::byte> arrBody;
    if (gev::DecodeGvspHeader(arrPacket, objHeader, arrBody)) {
        TryHeader(objHeader);
        TryBody(arrBody);
    }
    std::size_t nEnd = nSize;
    for (gev::CChunkWalk objWalk(arrPacket); const auto objChunk = objWalk.GetPrevious();) {
        Require(objChunk->Offset + objChunk->Length + gev::kChunkTrailerSize == nEnd && objWalk.GetRest() < nEnd);
        nEnd = objWalk.GetRest();
    }
    return 0;
}
