#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/network/NetworkNamespace.h"

/// One UDP datagram over IPv4 as it came in on an adapter.
struct CAPTURED_DATAGRAM {
    std::chrono::nanoseconds Time;    ///< when the kernel took it in, since the epoch
    std::vector<std::uint8_t> Frame;  ///< the whole Ethernet frame
    std::string Source;               ///< dotted address
    std::string Destination;          ///< dotted address
    std::uint16_t SourcePort;
    std::uint16_t DestinationPort;
    std::vector<std::uint8_t> Payload;  ///< what UDP carried
};

/// Sees every IPv4 frame that comes in on one adapter, from its construction on, whatever address it is for. On a
/// loopback that is every frame sent there, once.
class CPacketCapture {
public:
    CPacketCapture(const CNetworkNamespace& objNamespace, const std::string& strAdapter);
    ~CPacketCapture();
    CPacketCapture(const CPacketCapture&) = delete;
    CPacketCapture& operator=(const CPacketCapture&) = delete;

    /// All UDP datagrams since the last call. Nothing is still on its way: they end before a mark that is broadcast for
    /// this on the adapter at the other end of the cable.
    /// @throws std::runtime_error  when the mark doesn't come within 10 s
    std::vector<CAPTURED_DATAGRAM> TakeAll(const CNetworkNamespace& objOtherEnd, const std::string& strOtherAdapter);

private:
    int m_nSocket = -1;
};

/// Writes the frames as a capture file that protocol analysers read (pcap, Ethernet).
void WriteCaptureFile(const std::filesystem::path& objPath, const std::vector<CAPTURED_DATAGRAM>& vecDatagrams);
