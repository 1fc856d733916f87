#include "camera/Answering.h"

#include <algorithm>

#include "gev/BigEndian.h"
#include "gev/GvcpDiscovery.h"
#include "gev/GvcpRegister.h"

namespace camera {
namespace {

using namespace std::chrono_literals;

constexpr auto kFloodInterval = 1ms;
constexpr int kMostAtOnce = 20;  // of a flood that has fallen behind

// Places in an acknowledge's header.
constexpr std::size_t kLengthPlace = 4;
constexpr std::size_t kIDPlace = 6;

}  // namespace

void CAnswering::SetFaults(const FAULTS& objFaults, TIME tNow) {
    m_objFaults = objFaults;
    m_tNextUnwanted = tNow;
    Mute();
    m_bMute = false;
}

void CAnswering::Mute() {
    m_bMute = true;
    for (HELD_BACK& objHeld : m_arrHeldBack) {
        objHeld.Length = 0;
    }
}

void CAnswering::Send(const ENDPOINT& objTo, std::span<const std::byte> arrDatagram, TIME tNow,
                      std::chrono::milliseconds nDelay) {
    if (arrDatagram.empty() || m_bMute) {
        return;
    }
    m_objLastAsker = objTo;
    gev::GvcpBuffer arrBuffer;
    const auto arrSpoilt = Spoil(arrDatagram, arrBuffer);
    nDelay += m_objFaults.Late;
    for (int i = 0; i < (m_objFaults.Doubled ? 2 : 1); ++i) {
        if (nDelay > 0ms) {
            HoldBack(objTo, arrSpoilt, tNow + nDelay);
        } else {
            m_objOutlet.Send(objTo, arrSpoilt);
        }
    }
}

std::span<const std::byte> CAnswering::Spoil(std::span<const std::byte> arrDatagram, gev::GvcpBuffer& arrBuffer) {
    if (m_objFaults.Garbage) {
        const std::size_t nLength = Random(static_cast<std::uint32_t>(arrBuffer.size()));
        for (std::byte& nByte : std::span(arrBuffer).first(nLength)) {
            nByte = static_cast<std::byte>(Random(255));
        }
        return std::span(arrBuffer).first(nLength);
    }
    if (!m_objFaults.WrongLength && !m_objFaults.ForeignID) {
        return arrDatagram;
    }
    std::ranges::copy(arrDatagram, arrBuffer.begin());
    const auto arrCopy = std::span(arrBuffer).first(arrDatagram.size());
    if (m_objFaults.WrongLength) {
        // Now more than there is, now less.
        const std::uint16_t nRight = gev::Get16(arrCopy, kLengthPlace);
        const bool bLess = nRight >= 4 && Random(1) != 0;
        gev::Put16(arrCopy, kLengthPlace, static_cast<std::uint16_t>(bLess ? nRight - 4 : nRight + 4 + Random(1000)));
    }
    if (m_objFaults.ForeignID) {
        gev::Put16(arrCopy, kIDPlace, static_cast<std::uint16_t>(gev::Get16(arrCopy, kIDPlace) ^ 0x5555));
    }
    return arrCopy;
}

void CAnswering::HoldBack(const ENDPOINT& objTo, std::span<const std::byte> arrDatagram, TIME tDue) {
    const auto itFree = std::ranges::find(m_arrHeldBack, std::size_t{0}, &HELD_BACK::Length);
    if (itFree == m_arrHeldBack.end() || arrDatagram.empty()) {
        return;
    }
    itFree->Due = tDue;
    itFree->To = objTo;
    itFree->Length = arrDatagram.size();
    std::ranges::copy(arrDatagram, itFree->Datagram.begin());
}

void CAnswering::Advance(TIME tNow) {
    for (HELD_BACK& objHeld : m_arrHeldBack) {
        if (objHeld.Length != 0 && objHeld.Due <= tNow) {
            m_objOutlet.Send(objHeld.To, std::span(objHeld.Datagram).first(objHeld.Length));
            objHeld.Length = 0;
        }
    }
    if (!m_objFaults.Flood || !m_objLastAsker || m_bMute) {
        return;
    }
    for (int i = 0; i < kMostAtOnce && m_tNextUnwanted <= tNow; ++i) {
        SendUnwanted();
        m_tNextUnwanted += kFloodInterval;
    }
    m_tNextUnwanted = std::max(m_tNextUnwanted, tNow);
}

void CAnswering::SendUnwanted() {
    gev::GvcpBuffer arrBuffer;
    const auto nID = static_cast<std::uint16_t>(Random(0xFFFF));
    if (Random(1) == 0) {
        const std::array nValue = {Random(0x7FFFFFFF)};
        m_objOutlet.Send(*m_objLastAsker, gev::EncodeReadRegAck(arrBuffer, nID, nValue));
        return;
    }
    gev::DISCOVERY_RECORD objRecord;
    objRecord.VersionMajor = 2;
    objRecord.MAC = gev::CMACAddress(std::uint64_t{0x02} << 40 | Random(0x7FFFFFFF));
    objRecord.IP = Random(0x7FFFFFFF);
    objRecord.ModelName = decltype(objRecord.ModelName)("Nobody asked");
    m_objOutlet.Send(*m_objLastAsker, gev::EncodeDiscoveryAck(arrBuffer, nID, objRecord));
}

std::optional<TIME> CAnswering::NextTime() const {
    std::optional<TIME> tNext;
    for (const HELD_BACK& objHeld : m_arrHeldBack) {
        if (objHeld.Length != 0) {
            tNext = std::min(tNext.value_or(objHeld.Due), objHeld.Due);
        }
    }
    if (m_objFaults.Flood && m_objLastAsker && !m_bMute) {
        tNext = std::min(tNext.value_or(m_tNextUnwanted), m_tNextUnwanted);
    }
    return tNext;
}

std::uint32_t CAnswering::Random(std::uint32_t nMost) {
    return std::uniform_int_distribution<std::uint32_t>(0, nMost)(m_objRandom);
}

}  // namespace camera
