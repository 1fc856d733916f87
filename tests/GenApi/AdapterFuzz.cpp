// Buffers with any layout of chunks, and events of any kind and size, handed to one node map. What reads is inside what
// was handed over; what isn't there any more is not read.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "GenApi/ChunkAdapterGeneric.h"
#include "GenApi/EventAdapterGeneric.h"
#include "GenApi/GCException.h"
#include "tests/FuzzInput.h"
#include "tests/GenApi/TestMap.h"

namespace {

using namespace GenApi_3_0;

std::string Behind(const std::string& strPort, const std::string& strName, int nAddress, int nLength) {
    return "<IntReg Name='" + strName + "'><Address>" + std::to_string(nAddress) + "</Address><Length>" +
           std::to_string(nLength) + "</Length><AccessMode>RO</AccessMode><pPort>" + strPort +
           "</pPort><Endianess>BigEndian</Endianess></IntReg>";
}

const std::string kDescription =
    "<Port Name='Chunk1'><ChunkID>1</ChunkID></Port><Port Name='Chunk2'><ChunkID>2</ChunkID><CacheChunkData>Yes"
    "</CacheChunkData></Port><Port Name='Moving'><pChunkID>MovingID</pChunkID></Port>" +
    Reg("MovingID", 0, "<Cachable>NoCache</Cachable>") +
    "<Port Name='Event1'><EventID>1</EventID></Port><Port Name='Event2'><EventID>2</EventID></Port>" +
    Behind("Chunk1", "A", 0, 4) + Behind("Chunk2", "B", 3, 8) + Behind("Moving", "C", 0, 2) +
    Behind("Event1", "D", 0, 4) + Behind("Event2", "E", 16, 8) +
    "<StringReg Name='F'><Address>0</Address><Length>200</Length><AccessMode>RO</AccessMode><pPort>Chunk2</pPort>"
    "</StringReg><Float Name='Noticed'><EventID>2</EventID><Value>1</Value></Float>"
    "<IntSwissKnife Name='G'><pVariable Name='X'>A</pVariable><pVariable Name='Y'>D</pVariable>"
    "<Formula>X / Y</Formula></IntSwissKnife>";

template <class Operation>
bool Try(Operation operation) {
    try {
        operation();
        return true;
    } catch (const GenICam_3_0::GenericException&) {
        return false;
    }
}

/// The memory that a chunk adapter reads from, as long as the adapter may.
class CBuffers {
public:
    explicit CBuffers(CTestMap& objMap) : m_objAdapter(objMap.Map._Ptr, 64) {}

    void Attach(CFuzzInput& objInput) {
        std::array<SingleChunkData_t, 5> arrChunk{};
        const std::size_t nChunks = objInput.Take<std::uint8_t>() % (arrChunk.size() + 1);
        for (std::size_t i = 0; i < nChunks; ++i) {
            arrChunk[i] = {objInput.Take<std::uint8_t>() % 4U, objInput.Take<std::int16_t>(),
                           objInput.Take<std::uint8_t>()};
            if (objInput.Take<std::uint8_t>() > 250) {
                arrChunk[i].ChunkOffset = objInput.Take<std::int64_t>();
                arrChunk[i].ChunkLength = objInput.Take<std::uint64_t>();
            }
        }
        const auto nLength = static_cast<std::int64_t>(objInput.Take<std::uint8_t>());
        auto pNext = std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(nLength));
        AttachStatistics_t objStatistics{};
        const bool bGood = CChunkAdapterGeneric::CheckBufferLayout(pNext.get(), nLength, arrChunk.data(),
                                                                   static_cast<std::int64_t>(nChunks));
        const bool bTaken = Try([&] {
            m_objAdapter.AttachBuffer(pNext.get(), arrChunk.data(), static_cast<std::int64_t>(nChunks), &objStatistics,
                                      nLength);
        });
        Require(bTaken == bGood && objStatistics.NumAttachedChunks <= objStatistics.NumChunkPorts);
        m_pBuffer = std::move(pNext);  // of which an adapter that refused has nothing
        m_nSize = nLength;
    }
    void Update() {
        auto pNext = std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(m_nSize));
        if (m_pBuffer != nullptr && Try([&] { m_objAdapter.UpdateBuffer(pNext.get()); })) {
            m_pBuffer = std::move(pNext);
        }
    }
    void Detach() {
        m_objAdapter.DetachBuffer();
        m_pBuffer.reset();
    }
    void ClearCaches() { m_objAdapter.ClearCaches(); }

private:
    std::unique_ptr<std::uint8_t[]> m_pBuffer;
    std::int64_t m_nSize = 0;
    CChunkAdapterGeneric m_objAdapter;
};

void DeliverEvent(CEventAdapterGeneric& objAdapter, CFuzzInput& objInput) {
    const auto nLength = objInput.Take<std::uint8_t>();
    const std::vector<std::uint8_t> vecEvent(nLength, objInput.Take<std::uint8_t>());
    if ((nLength & 1) != 0) {
        objAdapter.DeliverMessage(vecEvent.data(), nLength, objInput.Take<std::uint8_t>() % 4U);
    } else {
        const std::string strID = objInput.TakeText();
        Try([&] { objAdapter.DeliverMessage(vecEvent.data(), nLength, gcstring(strID.c_str())); });
    }
}

void ReadAll(CTestMap& objMap) {
    for (const char* pName : {"A", "B", "C", "D", "E", "F", "G"}) {
        const bool bReadable = objMap.Access(pName) == RO;
        const bool bRead = Try([&] { objMap.Value(pName).ToString(); });
        Require(bReadable || !bRead);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    CFuzzInput objInput(pData, nSize);
    static CTestMap objMap(kDescription);  // dear to make; what detaches leaves nothing behind but the chunk's ID
    objMap.Integer("MovingID").SetValue(0);
    CBuffers objBuffers(objMap);
    CEventAdapterGeneric objEvents(objMap.Map._Ptr);
    while (!objInput.IsEmpty()) {
        switch (objInput.Take<std::uint8_t>() % 7) {
            case 0:
            case 1:
                objBuffers.Attach(objInput);
                break;
            case 2:
                objBuffers.Update();
                break;
            case 3:
                objBuffers.Detach();
                break;
            case 4:
                objBuffers.ClearCaches();
                break;
            case 5:
                DeliverEvent(objEvents, objInput);
                break;
            default:
                Try([&] { objMap.Integer("MovingID").SetValue(objInput.Take<std::uint8_t>() % 4); });
        }
        ReadAll(objMap);
    }
    return 0;
}
