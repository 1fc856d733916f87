// A buffer as a camera filled it, and event data as a consumer hands them back: what is told of them is bounded, and
// each chunk lies where it says.

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>

#include "gev/GvspTrailer.h"
#include "producer/ProducerError.h"
#include "producer/modules/EventData.h"
#include "producer/modules/StreamBuffer.h"
#include "tests/FuzzInput.h"

namespace {

using namespace producer;

template <class Operation>
void Try(Operation operation) {
    try {
        operation();
    } catch (const CProducerError&) {
    }
}

FINISHED_BLOCK TakeBlock(CFuzzInput& objInput) {
    FINISHED_BLOCK objBlock;
    const auto nFlags = objInput.Take<std::uint8_t>();
    objBlock.IsIncomplete = (nFlags & 1) != 0;
    objBlock.IsLargerThanMemory = (nFlags & 2) != 0;
    objBlock.DataSize = (nFlags & 4) != 0 ? ~std::uint64_t{0} : objInput.Take<std::uint8_t>();
    objBlock.Filled = objInput.Take<std::uint16_t>();
    objBlock.HasLeader = gev::DecodeLeader(objInput.TakeBytes(gev::kLongestLeaderSize), objBlock.Leader);
    objBlock.HasTrailer = gev::DecodeTrailer(objInput.TakeBytes(gev::kLongestTrailerSize), objBlock.Trailer);
    return objBlock;
}

void TryChunks(const CStreamBuffer& objBuffer, std::size_t nFilled) {
    std::size_t nEnd = 0;
    for (const SINGLE_CHUNK_DATA& objChunk : objBuffer.GetChunks()) {
        const auto nOffset = static_cast<std::size_t>(objChunk.ChunkOffset);
        Require(objChunk.ChunkOffset >= 0 && nOffset >= nEnd && nOffset <= nFilled &&
                objChunk.ChunkLength <= nFilled - nOffset);
        nEnd = nOffset + objChunk.ChunkLength;
    }
}

void TryEvent(EVENT_TYPE nType, std::span<const std::byte> arrData) {
    for (EVENT_DATA_INFO_CMD nCommand = -1; nCommand < 5; ++nCommand) {
        Try([&] { Require(GetEventDataInfo(nType, arrData, nCommand).GetBytes().size() <= arrData.size() + 17); });
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    CFuzzInput objInput(pData, nSize);
    const auto nFrequency = objInput.Take<std::uint64_t>();
    FINISHED_BLOCK objBlock = TakeBlock(objInput);
    std::unique_ptr<std::byte[]> pMemory;
    const auto arrMemory = objInput.TakeRest(pMemory);
    objBlock.Filled = std::min<std::uint64_t>(objBlock.Filled, arrMemory.size());

    CStreamBuffer objBuffer(arrMemory, nullptr);
    objBuffer.Fill(objBlock, nFrequency);
    for (BUFFER_INFO_CMD nCommand = -1; nCommand < 40; ++nCommand) {
        Try([&] { Require(objBuffer.GetInfo(nCommand).GetBytes().size() <= sizeof(std::uint64_t)); });
    }
    Try([&] { TryChunks(objBuffer, static_cast<std::size_t>(objBlock.Filled)); });
    for (const EVENT_TYPE nType :
         std::initializer_list<EVENT_TYPE>{EVENT_ERROR, EVENT_NEW_BUFFER, EVENT_REMOTE_DEVICE}) {
        TryEvent(nType, arrMemory);
    }
    return 0;
}
