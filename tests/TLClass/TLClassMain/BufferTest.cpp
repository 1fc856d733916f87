#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/ChunkAdapterGeneric.h"
#include "TLClass/TLClassMain/Buffer.h"
#include "tests/TLClass/CollectedLog.h"
#include "tests/TLClass/TLClassMain/CameraOnDouble.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

class Buffer : public CCameraOnDouble {
protected:
    Buffer() : m_pStream(OpenStream()), m_objBuffer(m_pStream->GetLib(), m_pStream->GetHandle()) {}

    boost::shared_ptr<IDataStream> m_pStream;
    CBuffer m_objBuffer;
};

TEST_F(Buffer, GoesFromEmptyToAnnouncedAndBack) {
    EXPECT_THROW(m_objBuffer.AllocateBuffer(0), CUnexpectedError);
    EXPECT_THROW(m_objBuffer.AllocateBuffer(~std::uint64_t{0}), CUnexpectedError);
    EXPECT_THROW(m_objBuffer.AnnounceBuffer(), CUnexpectedError);
    m_objBuffer.AllocateBuffer(16);
    EXPECT_THROW(m_objBuffer.QueueBuffer(), CUnexpectedError);
    m_objBuffer.RevokeBuffer();
    EXPECT_EQ(Double().Count("DSRevokeBuffer"), 0U);
    m_objBuffer.AnnounceBuffer();
    m_objBuffer.AnnounceBuffer();
    EXPECT_EQ(Double().Count("DSAnnounceBuffer"), 1U);
    const BUFFER_MODULE_INFO objInformation = m_objBuffer.GetBufferInfo();
    EXPECT_EQ(objInformation.Size, 16U);
    EXPECT_EQ(objInformation.UserPtr, &m_objBuffer);
    EXPECT_THAT(m_objBuffer.GetChunkData(), IsEmpty());
    EXPECT_EQ(Double().Count("DSGetBufferChunkData"), 1U);
    CCollectedLog objLog;
    Double().On("DSRevokeBuffer").FailAfterwards(GC_ERR_IO);
    m_objBuffer.RevokeBuffer();
    EXPECT_THAT(objLog.Take(), SizeIs(1));
    EXPECT_THROW(m_objBuffer.QueueBuffer(), CUnexpectedError) << "is revoked all the same";
}

TEST_F(Buffer, TakesNoChunkThatReachesOutOfIt) {
    m_objBuffer.AllocateBuffer(16);
    const struct {
        std::ptrdiff_t nOffset;
        std::size_t nLength;
        bool bInvalid;
    } arrCase[] = {
        {0, 16, false},
        {16, 0, false},
        {12, 5, true},
        {17, 0, true},
        {-1, 1, true},
        {8, ~std::size_t{0}, true},
        {std::numeric_limits<std::ptrdiff_t>::max(), 16, true},
    };
    GenApi_3_0::CChunkAdapterGeneric objAdapter(m_pDevice->GetRemoteNodeMap()->_Ptr);
    for (const auto& objCase : arrCase) {
        SCOPED_TRACE(std::to_string(objCase.nOffset) + ", " + std::to_string(objCase.nLength));
        const std::vector<SINGLE_CHUNK_DATA> vecChunk{{1, 0, 1}, {2, objCase.nOffset, objCase.nLength}};
        EXPECT_EQ(m_objBuffer.IsChunkDataInvalid(vecChunk), objCase.bInvalid);
        if (objCase.bInvalid) {
            EXPECT_ANY_THROW(m_objBuffer.AttachChunkData(&objAdapter, vecChunk));
        } else {
            EXPECT_NO_THROW(m_objBuffer.AttachChunkData(&objAdapter, vecChunk));
        }
    }
    objAdapter.DetachNodeMap();
}

TEST_F(Buffer, ReadsAsManyChunksAsWereCountedFirst) {
    m_objBuffer.AllocateBuffer(16);
    m_objBuffer.AnnounceBuffer();
    auto& objCount = Double().On("DSGetBufferChunkData");
    objCount.Count(3);
    EXPECT_THAT(m_objBuffer.GetChunkData(), SizeIs(3)) << "the entries that never came are zero";
    objCount.Count(kMaxChunkCount + 1);
    EXPECT_THROW(m_objBuffer.GetChunkData(), CUnexpectedError);
}

}  // namespace
