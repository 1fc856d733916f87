// A camera that sends whatever it likes: no byte outside a buffer, no wait without end, no count that doesn't add up.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <span>
#include <vector>

#include "producer/stream/Reassembly.h"

namespace {

using namespace producer;

constexpr std::size_t kMemory = 3000;

/// Hands out memory of exactly the size that it says, so that a sanitizer sees every byte beyond.
class CSink : public IBlockSink {
public:
    BLOCK_MEMORY TakeMemory() override {
        if (m_setOut.size() == 4) {
            return {};
        }
        auto* const pMemory = static_cast<std::byte*>(std::malloc(kMemory));
        m_setOut.insert(pMemory);
        return {{pMemory, kMemory}, pMemory};
    }
    void ReturnMemory(const BLOCK_MEMORY& objMemory) override { Free(objMemory); }
    void DeliverBlock(const FINISHED_BLOCK& objBlock) override {
        if (objBlock.Filled > kMemory || (objBlock.PacketsMissing != 0 && !objBlock.IsIncomplete)) {
            std::abort();
        }
        Free(objBlock.Memory);
    }
    void RequestResend(std::uint64_t nBlockID, std::uint32_t nFirst, std::uint32_t nLast, bool) override {
        if (nBlockID == 0 || nFirst > nLast) {
            std::abort();
        }
    }
    bool IsEmpty() const { return m_setOut.empty(); }

private:
    void Free(const BLOCK_MEMORY& objMemory) {
        if (m_setOut.erase(objMemory.Memory.data()) != 1) {
            std::abort();
        }
        std::free(objMemory.Owner);
    }
    std::set<std::byte*> m_setOut;
};

}  // namespace

/// Each packet is told by a length, a step in time, and its bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    if (nSize == 0) {
        return 0;
    }
    CSink objSink;
    CReassembly objReassembly(objSink, {.PacketSize = 300, .Resend = (pData[0] & 1) != 0});
    StreamClock::time_point objNow{};
    std::vector<std::byte> vecPacket;
    for (std::size_t i = 1; i + 2 <= nSize;) {
        const std::size_t nHead = std::min<std::size_t>(pData[i] & 63U, nSize - i - 2);
        const std::size_t nBody = std::size_t{pData[i]} >> 6U << 7U;  // 0 to 384 bytes more, which needn't be told
        objNow += std::chrono::microseconds(std::uint32_t{pData[i + 1]} * pData[i + 1] * 10U);
        const auto* const pHead = reinterpret_cast<const std::byte*>(pData + i + 2);
        vecPacket.assign(pHead, pHead + nHead);
        vecPacket.resize(nHead + nBody, std::byte{0x5A});
        vecPacket.shrink_to_fit();
        objReassembly.TakePacket(vecPacket, objNow);
        if ((pData[i + 1] & 1) != 0) {
            objReassembly.Service(objNow, objNow);
        }
        i += 2 + nHead;
    }
    // Silence ends every block within a bounded number of steps.
    for (int i = 0; !objReassembly.IsIdle(); ++i) {
        if (i == 100'000) {
            std::abort();
        }
        objNow = std::max(objNow + std::chrono::microseconds(1), objReassembly.GetNextDue().value());
        objReassembly.Service(objNow, objNow);
    }
    if (!objSink.IsEmpty()) {
        std::abort();
    }
    return 0;
}
