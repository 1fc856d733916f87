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

/// Whether a packet of this length comes while there is time.
bool HearsPacket(CStreamSocket& objSocket, std::size_t nLength) {
    const auto objEnd = Clock::now() + kAnswerTime;
    while (Clock::now() < objEnd) {
        for (const RECEIVED_PACKETS& objReceived : objSocket.Receive(kAnswerTime / 4)) {
            // Some cameras fill even the header with test data, so that the length alone tells.
            if (objReceived.PacketLength == nLength || objReceived.Bytes.size() % objReceived.PacketLength == nLength) {
                return true;
            }
        }
    }
    return false;
}

/// @return the size that came through, which the camera may have rounded; nothing when none did.
std::optional<std::uint32_t> TrySize(CControlChannel& objChannel, CStreamSocket& objSocket, std::uint32_t nSize) {
    for (int i = 0; i < kTries; ++i) {
        try {
            objChannel.DoWriteRegister(kStreamChannelPacketSize.Address,
                                       nSize | kPacketSizeFireTestPacket | kPacketSizeDoNotFragment);
        } catch (const CProducerError& objError) {
            if (objError.GetCode() == GC_ERR_INVALID_PARAMETER || objError.GetCode() == GC_ERR_IO) {
                return std::nullopt;  // the camera knows no packets of that size
            }
            throw;
        }
        const std::uint32_t nTaken = objChannel.DoReadRegister(kStreamChannelPacketSize.Address) & kPacketSizeMask;
        if (nTaken <= gev::kIPAndUDPHeaderSize || nTaken > nSize) {
            return std::nullopt;
        }
        if (HearsPacket(objSocket, nTaken - gev::kIPAndUDPHeaderSize)) {
            return nTaken;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::uint32_t> FindPacketSize(CControlChannel& objChannel, CStreamSocket& objSocket) {
    const std::uint32_t nBefore = objChannel.DoReadRegister(kStreamChannelPacketSize.Address);
    const std::uint32_t nMost = std::clamp(objChannel.GetAdapter().Mtu, kLeastPacketSize, kPacketSizeMask);
    std::optional<std::uint32_t> nFound = TrySize(objChannel, objSocket, nMost);
    std::uint32_t nTooLarge = nMost;
    if (!nFound) {
        nFound = TrySize(objChannel, objSocket, kLeastPacketSize);
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
        if (const auto nHeard = TrySize(objChannel, objSocket, nNext); nHeard && *nHeard > *nFound) {
            nFound = nHeard;
        } else {
            nTooLarge = nNext;
        }
    }
    objChannel.DoWriteRegister(kStreamChannelPacketSize.Address,
                               nFound ? *nFound | kPacketSizeDoNotFragment : nBefore & ~kPacketSizeFireTestPacket);
    return nFound;
}

}  // namespace producer
