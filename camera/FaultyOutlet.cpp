#include "camera/FaultyOutlet.h"

#include <algorithm>
#include <utility>

#include "gev/GvspHeader.h"

namespace camera {
namespace {

constexpr std::uint32_t kMostJunk = 1400;  // bytes of a packet that is nothing

}  // namespace

void CFaultyOutlet::SetFaults(const STREAM_FAULTS& objFaults) {
    Flush();
    m_objFaults = objFaults;
    m_objFaults.LossBurst = std::max(1U, objFaults.LossBurst);
    m_objFaults.Reorder = std::min(kMostHeld, objFaults.Reorder);
    m_bAny = objFaults != STREAM_FAULTS{};
    m_objRandom.seed(objFaults.Seed);
    m_nStillLost = 0;
    m_nFrames = 0;
    m_bStopped = false;
    m_vecHeldSize.resize(m_objFaults.Reorder);
    m_vecHeld.resize(m_objFaults.Reorder * kLongestPacket);
    for (std::byte& nByte : m_arrJunk) {
        nByte = static_cast<std::byte>(Random(255));
    }
}

bool CFaultyOutlet::Happens(double nPercent) {
    constexpr std::uint32_t kParts = 100'000'000;
    // What is switched off takes nothing from what is left to chance.
    return nPercent > 0 && Random(kParts - 1) < nPercent / 100 * kParts;
}

std::uint32_t CFaultyOutlet::Random(std::uint32_t nMost) {
    return std::uniform_int_distribution<std::uint32_t>(0, nMost)(m_objRandom);
}

void CFaultyOutlet::Send(std::span<const STREAM_PACKET> arrPacket, std::uint32_t nPacketCount) {
    if (!m_bAny) {
        m_objOutlet.Send(arrPacket);
        return;
    }
    for (const STREAM_PACKET& objPacket : arrPacket) {
        if (IsLost(objPacket, nPacketCount)) {
            continue;
        }
        if (Happens(m_objFaults.WrongSizes)) {
            SendWrongSize(objPacket);
        } else {
            SendOne(objPacket);
        }
        if (Happens(m_objFaults.Duplicates)) {
            SendOne(objPacket);
        }
        if (Happens(m_objFaults.Foreign)) {
            SendForeign(objPacket);
        }
    }
}

bool CFaultyOutlet::IsLost(const STREAM_PACKET& objPacket, std::uint32_t nPacketCount) {
    gev::GVSP_HEADER objHeader;
    std::span<const std::byte> arrBody;
    gev::DecodeGvspHeader(objPacket.Header, objHeader, arrBody);
    const bool bLeader = objHeader.Format == gev::EGvspFormat::Leader;
    m_nFrames += bLeader && !objHeader.IsResent() ? 1 : 0;
    if (m_objFaults.StopInFrame != 0 && m_nFrames >= m_objFaults.StopInFrame &&
        (m_nFrames > m_objFaults.StopInFrame || objHeader.PacketID >= nPacketCount / 2)) {
        m_bStopped = true;
    }
    if (m_bStopped) {
        return true;
    }
    if (m_nStillLost == 0 && m_objFaults.Loss > 0) {
        // Bursts begin between bursts alone: so often that the rate of all comes out right.
        const double nRate = m_objFaults.Loss / 100;
        if (Happens(m_objFaults.Loss / (m_objFaults.LossBurst * (1 - nRate) + nRate))) {
            m_nStillLost = m_objFaults.LossBurst;
        }
    }
    if (m_nStillLost > 0) {
        --m_nStillLost;
        return true;
    }
    return (bLeader && Happens(m_objFaults.LostLeaders)) ||
           (objHeader.Format == gev::EGvspFormat::Trailer && Happens(m_objFaults.LostTrailers));
}

void CFaultyOutlet::SendOne(const STREAM_PACKET& objPacket) {
    if (m_objFaults.Reorder > 1) {
        HoldBack(objPacket);
    } else {
        m_objOutlet.Send({&objPacket, 1});
    }
}

void CFaultyOutlet::SendWrongSize(const STREAM_PACKET& objPacket) {
    std::array<std::byte, kLongestPacket> arrBody;
    const std::size_t nSize = objPacket.Body.size();
    std::ranges::copy(objPacket.Body, arrBody.begin());
    // Now shorter, now longer, by up to as much as there is.
    const auto nMost = static_cast<std::uint32_t>(std::min(nSize, kLongestPacket - objPacket.GetSize()));
    const std::size_t nBy = nMost == 0 ? 0 : 1 + Random(nMost - 1);
    std::size_t nWrong = nSize - nBy;
    if (Random(1) != 0) {
        nWrong = nSize + nBy;
        std::copy_n(m_arrJunk.begin(), nBy, arrBody.begin() + static_cast<std::ptrdiff_t>(nSize));
    }
    SendOne({objPacket.Header, std::span(arrBody).first(nWrong)});
}

// Now nothing at all, now what looks like a packet of the same block.
void CFaultyOutlet::SendForeign(const STREAM_PACKET& objPacket) {
    const auto arrJunk = std::span<const std::byte>(m_arrJunk);
    if (Random(1) != 0) {
        m_objOutlet.SendForeign({arrJunk.subspan(Random(1000), Random(kMostJunk)), {}});
    } else {
        m_objOutlet.SendForeign({objPacket.Header, arrJunk.first(objPacket.Body.size())});
    }
}

void CFaultyOutlet::HoldBack(const STREAM_PACKET& objPacket) {
    if (m_nHeld == m_vecHeldSize.size()) {
        Flush();
    }
    const auto arrPlace = std::span(m_vecHeld).subspan(m_nHeld * kLongestPacket, kLongestPacket);
    std::ranges::copy(objPacket.Header, arrPlace.begin());
    std::ranges::copy(objPacket.Body, arrPlace.begin() + static_cast<std::ptrdiff_t>(objPacket.Header.size()));
    m_vecHeldSize[m_nHeld++] = objPacket.GetSize();
}

void CFaultyOutlet::Flush() {
    std::array<std::uint8_t, kMostHeld> arrOrder;
    for (std::size_t i = 0; i < m_nHeld; ++i) {
        // Each is put at a place by chance among those before it.
        const std::size_t nPlace = Random(static_cast<std::uint32_t>(i));
        arrOrder[i] = arrOrder[nPlace];
        arrOrder[nPlace] = static_cast<std::uint8_t>(i);
    }
    for (std::size_t i = 0; i < m_nHeld; ++i) {
        const std::size_t nHeld = arrOrder[i];
        const STREAM_PACKET objPacket{std::span(m_vecHeld).subspan(nHeld * kLongestPacket, m_vecHeldSize[nHeld]), {}};
        m_objOutlet.Send({&objPacket, 1});
    }
    m_nHeld = 0;
}

}  // namespace camera
