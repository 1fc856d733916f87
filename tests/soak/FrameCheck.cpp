#include "tests/soak/FrameCheck.h"

#include <algorithm>
#include <span>
#include <string>

#include "TLClass/TLClassFeature/IFeatureControl.h"

CFrameCheck::CFrameCheck(CCallBook& objBook, std::uint32_t nWidth, std::uint32_t nHeight)
    : m_objBook(objBook), m_objImage({nWidth, nHeight}), m_vecDrawn(m_objImage.GetSize()) {}

void CFrameCheck::Add(const BUFFER_MODULE_INFO& objFrame) {
    const std::string strWhich = "frame " + std::to_string(objFrame.FrameID);
    m_objBook.Expect(
        objFrame.BaseValid && objFrame.SizeFilledValid && objFrame.FrameIDValid && objFrame.IsIncompleteValid,
        strWhich + " isn't told whole");
    if (!m_objBook.Expect(objFrame.FrameID > m_nLastID, strWhich + " comes behind " + std::to_string(m_nLastID) + ", " +
                                                            std::to_string(m_nSeen) + " frames after the first, " +
                                                            std::to_string(m_nFirstID))) {
        m_nLastID = 0;  // once is enough
    }
    if (objFrame.IsIncomplete) {
        ++m_nIncomplete;
    } else if (m_objBook.Expect(objFrame.SizeFilled >= m_objImage.GetSize(), strWhich + " is short, and not told so")) {
        const std::span arrImage(static_cast<const std::byte*>(objFrame.Base), m_objImage.GetSize());
        m_objImage.Draw(m_objImage.ReadFrameNumber(arrImage), m_vecDrawn);
        m_objBook.Expect(std::ranges::equal(arrImage, m_vecDrawn), strWhich + " isn't what the camera drew");
    }
    m_nFirstID = m_nFirstID == 0 ? objFrame.FrameID : m_nFirstID;
    m_nLastID = std::max(m_nLastID, objFrame.FrameID);
    ++m_nSeen;
}

void CFrameCheck::CompareWith(IFeatureControl& objStream) {
    const auto Count = [&](const char* pName) { return static_cast<std::uint64_t>(objStream.DoGetInt(pName)); };
    const std::uint64_t nDelivered = Count("StreamDeliveredFrameCount");
    const std::uint64_t nIncomplete = Count("StreamIncompleteFrameCount");
    const std::uint64_t nLost = Count("StreamLostFrameCount");
    const std::uint64_t nUnderrun = Count("StreamUnderrunFrameCount");
    const std::uint64_t nSpan = m_nSeen == 0 ? 0 : m_nLastID - m_nFirstID + 1;
    const std::string strCounts = " (delivered " + std::to_string(nDelivered) + ", incomplete " +
                                  std::to_string(nIncomplete) + ", lost " + std::to_string(nLost) + ", underrun " +
                                  std::to_string(nUnderrun) + "; seen " + std::to_string(m_nSeen) + ", incomplete " +
                                  std::to_string(m_nIncomplete) + ", from " + std::to_string(m_nFirstID) + " to " +
                                  std::to_string(m_nLastID) + ")";
    m_objBook.Expect(nDelivered >= m_nSeen && nIncomplete >= m_nIncomplete && nIncomplete <= nDelivered,
                     "more frames came than were counted" + strCounts);
    m_objBook.Expect(nDelivered - nIncomplete >= m_nSeen - m_nIncomplete,
                     "more whole frames came than were counted" + strCounts);
    // What was left out of the numbering between the frames that came is lost, dropped or was still to be taken.
    m_objBook.Expect(nDelivered + nLost + nUnderrun >= nSpan, "frames are missing that nothing counts" + strCounts);
}
