#pragma once

#include <string>
#include <vector>

#include "tests/network/PacketCapture.h"

/// Sees both directions of one cable, from its construction on. Needs both machines until it goes.
class CWireCapture {
public:
    /// The adapters at its two ends.
    CWireCapture(const CNetworkNamespace& objNear, std::string strNearName, const CNetworkNamespace& objFar,
                 std::string strFarName);

    /// Everything so far, in the order of time.
    std::vector<CAPTURED_DATAGRAM> TakeAll();

private:
    const CNetworkNamespace& m_objNear;
    const CNetworkNamespace& m_objFar;
    const std::string m_strNearName;
    const std::string m_strFarName;
    CPacketCapture m_objOut;
    CPacketCapture m_objIn;
};

/// What a protocol analyser, which has to be installed (tshark), says of the datagrams: the lines that it writes.
/// @param strArguments  of its command line, such as "-T fields -e gvcp.ack"
std::vector<std::string> Analyse(const std::vector<CAPTURED_DATAGRAM>& vecDatagrams, const std::string& strArguments);
