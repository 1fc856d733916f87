#include "producer/stream/PacketSize.h"

#include <algorithm>

#include "gev/Bootstrap.h"
#include "gev/GvspHeader.h"
#include "producer/ProducerError.h"

namespace producer {

using namespace gev::bootstrap;

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kAnswerTime{60};  // for a test packet
constexpr int kTries = 3;                // one may be lost
constexpr std::uint32_t kStep = 32;      // a gain of less isn't looked for
constexpr milliseconds kLastWrite{500};  // of the time, that the search leaves for writing what it found

/// Waits for a packet of this length. A longer one, up to nMost, is as good: it was asked for before and comes late.
/// @return the length that was heard, 0 when none was
std::size_t HearPacket(CStreamSocket& objSocket, std::size_t nLength, std::size_t nMost) {
    std::size_t nHeard = 0;
    const auto objEnd = Clock::now() + kAnswerTime;
    while (nHeard == 0 && Clock::now() < objEnd) {
        for (const RECEIVED_PACKETS& objReceived : objSocket.Receive(kAnswerTime / 4)) {
            // Some cameras fill even the header with test data, so that the length alone tells.
            for (const std::size_t nCame :
                 {objReceived.PacketLength, objReceived.Bytes.size() % objReceived.PacketLength}) {
                nHeard = nCame >= nLength && nCame <= nMost ? std::max(nHeard, nCame) : nHeard;
            }
        }
    }
    return nHeard;
}

/// @return the size that came through, which the camera may have rounded; nothing when none did.
std::optional<std::uint32_t> TrySize(CControlChannel& objChannel, CStreamSocket& objSocket, std::uint32_t nSize,
                                     std::uint32_t nMost, Clock::time_point objDeadline) {
    for (int i = 0; i < kTries && Clock::now() + kLastWrite < objDeadline; ++i) {
        try {
            objChannel.DoWriteRegister(kStreamChannelPacketSize.Address,
                                       nSize | kPacketSizeFireTestPacket | kPacketSizeDoNotFragment, objDeadline);
        } catch (const CProducerError& objError) {
            if (objError.GetCode() == GC_ERR_INVALID_PARAMETER || objError.GetCode() == GC_ERR_IO) {
                return std::nullopt;  // the camera knows no packets of that size
            }
            throw;
        }
        const std::uint32_t nTaken =
            objChannel.DoReadRegister(kStreamChannelPacketSize.Address, objDeadline) & kPacketSizeMask;
        if (nTaken <= gev::kIPAndUDPHeaderSize || nTaken > nSize) {
            return std::nullopt;
        }
        constexpr std::size_t kHeaders = gev::kIPAndUDPHeaderSize;
        if (const std::size_t nHeard = HearPacket(objSocket, nTaken - kHeaders, nMost - kHeaders); nHeard != 0) {
            return static_cast<std::uint32_t>(nHeard + kHeaders);
        }
    }
    return std::nullopt;
}

/// Leaves the size that was tried last in the camera.
std::optional<std::uint32_t> Search(CControlChannel& objChannel, CStreamSocket& objSocket,
                                    Clock::time_point objDeadline) {
    const std::uint32_t nMost = std::clamp(objChannel.GetAdapter().Mtu, kLeastPacketSize, kPacketSizeMask);
    std::optional<std::uint32_t> nFound = TrySize(objChannel, objSocket, nMost, nMost, objDeadline);
    std::uint32_t nTooLarge = nMost;
    if (!nFound) {
        nFound = TrySize(objChannel, objSocket, kLeastPacketSize, nMost, objDeadline);
    }
    while (nFound && *nFound < nMost && nTooLarge - *nFound > kStep && nTooLarge != *nFound) {
        // The usual limits first: most ways end at one of them.
        std::uint32_t nNext = *nFound + (nTooLarge - *nFound) / 2;
        for (const std::uint32_t nUsual : {9000U, 1500U}) {
            if (nUsual > *nFound + kStep && nUsual < nTooLarge) {
                nNext = nUsual;
                break;
            }
        }
        if (const auto nHeard = TrySize(objChannel, objSocket, nNext, nMost, objDeadline);
            nHeard && *nHeard > *nFound) {
            nFound = nHeard;
            nTooLarge = *nFound > nTooLarge ? nMost : nTooLarge;  // it had only been late
        } else {
            nTooLarge = nNext;
        }
    }
    return nFound;
}

}  // namespace

std::optional<std::uint32_t> FindPacketSize(CControlChannel& objChannel, CStreamSocket& objSocket,
                                            Clock::time_point objDeadline) {
    // Of a size of which nothing is known any more, pieces are better than nothing.
    const std::uint32_t nBefore = objChannel.DoReadRegister(kStreamChannelPacketSize.Address, objDeadline) &
                                  ~(kPacketSizeFireTestPacket | kPacketSizeDoNotFragment);
    try {
        const std::optional<std::uint32_t> nFound = Search(objChannel, objSocket, objDeadline);
        objChannel.DoWriteRegister(kStreamChannelPacketSize.Address,
                                   nFound ? *nFound | kPacketSizeDoNotFragment : nBefore, objDeadline);
        return nFound;
    } catch (const CProducerError&) {
        try {
            objChannel.DoWriteRegister(kStreamChannelPacketSize.Address, nBefore, Clock::now() + kLastWrite);
        } catch (const CProducerError&) {
            // What is told is why the search failed.
        }
        throw;
    }
}

bool HearTestPacket(CControlChannel& objChannel, CStreamSocket& objSocket, Clock::time_point objDeadline) {
    const std::uint32_t nSet = objChannel.DoReadRegister(kStreamChannelPacketSize.Address, objDeadline);
    if ((nSet & kPacketSizeMask) <= gev::kIPAndUDPHeaderSize) {
        return false;
    }
    try {
        objChannel.DoWriteRegister(kStreamChannelPacketSize.Address, nSet | kPacketSizeFireTestPacket, objDeadline);
    } catch (const CProducerError& objError) {
        if (objError.GetCode() == GC_ERR_TIMEOUT) {
            throw;
        }
        return false;  // a camera that knows no test packets
    }
    const std::size_t nLength = (nSet & kPacketSizeMask) - gev::kIPAndUDPHeaderSize;
    return HearPacket(objSocket, nLength, nLength) != 0;
}

}  // namespace producer
