#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "TLClass/TLClassInfo/BufferModuleInfo.h"
#include "camera/TestImage.h"
#include "tests/soak/CallBook.h"

class IFeatureControl;

/// The frames of one acquisition, each compared with what the camera draws, and all of them with the stream's counts.
///
/// One thread at a time hands frames over; the rest is for when they have ended.
class CFrameCheck {
public:
    CFrameCheck(CCallBook& objBook, std::uint32_t nWidth, std::uint32_t nHeight);

    void Add(const BUFFER_MODULE_INFO& objFrame);
    /// Compares what was handed over with what the stream has counted since it was opened, which is one acquisition.
    void CompareWith(IFeatureControl& objStream);

    std::uint64_t GetSeen() const { return m_nSeen; }
    std::uint64_t GetIncomplete() const { return m_nIncomplete; }

private:
    CCallBook& m_objBook;
    const camera::CTestImage m_objImage;
    std::vector<std::byte> m_vecDrawn;
    std::atomic<std::uint64_t> m_nSeen{0};
    std::atomic<std::uint64_t> m_nIncomplete{0};
    std::uint64_t m_nFirstID = 0;
    std::uint64_t m_nLastID = 0;
};
