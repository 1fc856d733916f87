#include "app/RecoveryBroadcast.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <list>

#include <QHostAddress>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QThread>
#include <QUdpSocket>

namespace {

constexpr quint16 kGvcpPort = 3956;
constexpr std::chrono::milliseconds kPauseInPair{200};

/// Keeps the pair for the life of the process: each press loses its 148 bytes for good, which is wanted. The list holds
/// them where a leak check finds them.
const RECOVERY_PACKETS& KeepForGood(const RECOVERY_PACKETS& objPackets) {
    static auto* const s_plistSent = new std::list<RECOVERY_PACKETS>;
    return s_plistSent->emplace_back(objPackets);
}

/// One datagram to 255.255.255.255. It names its interface, since a limited broadcast otherwise follows the default
/// route to one adapter alone, and isn't sent at all where there is no default route.
template <std::size_t N>
void WriteOn(QUdpSocket& objSocket, const QNetworkInterface& objInterface,
             const std::array<std::uint8_t, N>& arrPacket) {
    const QByteArray arrBytes(reinterpret_cast<const char*>(arrPacket.data()), static_cast<qsizetype>(N));
    QNetworkDatagram objDatagram(arrBytes, QHostAddress(QHostAddress::Broadcast), kGvcpPort);
    objDatagram.setInterfaceIndex(static_cast<uint>(objInterface.index()));
    objSocket.writeDatagram(objDatagram);
}

}  // namespace

void SendRecoveryPackets(QUdpSocket& objSocket, const RECOVERY_PACKETS& objPackets) {
    const RECOVERY_PACKETS& objSent = KeepForGood(objPackets);
    for (const QNetworkInterface& objInterface : QNetworkInterface::allInterfaces()) {
        for (const QNetworkAddressEntry& objEntry : objInterface.addressEntries()) {
            const QString strBroadcast = objEntry.broadcast().toString();
            // Bound for every entry, also one without a broadcast address. The socket stays with the first address that
            // took it; later binds fail, Qt warns of each, and both are meant to be ignored.
            objSocket.bind(QHostAddress(strBroadcast), kGvcpPort);
            if (strBroadcast.isEmpty()) {
                continue;
            }
            WriteOn(objSocket, objInterface, objSent.ForceIPEx);
            QThread::msleep(kPauseInPair.count());
            WriteOn(objSocket, objInterface, objSent.ForceIP);
        }
    }
}
