#pragma once

#include "app/RecoveryPackets.h"

class QUdpSocket;

/// Broadcasts the pair on UDP port 3956, once for each address with a broadcast address on each network interface of
/// the machine: the first datagram, a pause of 200 ms, the second. Blocks for these pauses. Reads no answer, and a
/// refused bind or write changes nothing: the next address follows.
///
/// The socket is bound to the first of the broadcast addresses that takes it and stays so, for later calls too.
/// Call from the thread of the socket, and from no two threads at once. The bytes of each call are kept until the
/// process ends.
void SendRecoveryPackets(QUdpSocket& objSocket, const RECOVERY_PACKETS& objPackets);
