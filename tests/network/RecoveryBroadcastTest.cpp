// The recovery broadcast from the click to the wire: the window on a machine of the test's own, and what comes out at
// the far end of its cables.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <QLineEdit>
#include <QPushButton>
#include <QUdpSocket>

#include "app/Norvik.h"
#include "app/RecoveryPackets.h"
#include "tests/network/NetworkNamespace.h"
#include "tests/network/OwnMachine.h"
#include "tests/network/PacketCapture.h"

namespace {

constexpr std::uint16_t kGvcpPort = 3956;

/// A machine with a loopback and as many adapters as are cabled to it; the test's thread is on it.
class CMachine {
public:
    CMachine() { m_objSelf.Enter(); }

    CMachine& UpLoopback() {
        Run("ip link set lo up");
        m_mapAdapter.emplace("lo", std::make_unique<CPacketCapture>(m_objSelf, "lo"));
        return *this;
    }

    CMachine& Cable(const std::string& strAdapter, const std::string& strAddress) {
        const std::string strFarName = "far-" + strAdapter;
        Connect(m_objSelf, strAdapter, strAddress, m_objFar, strFarName, "");
        m_mapAdapter.emplace(strAdapter, std::make_unique<CPacketCapture>(m_objFar, strFarName));
        return *this;
    }

    void Run(const std::string& strCommand) { m_objSelf.Run(strCommand); }

    /// What has come out at the far end of the adapter's cable since the last call.
    std::vector<CAPTURED_DATAGRAM> Received(const std::string& strAdapter) {
        return m_mapAdapter.at(strAdapter)->TakeAll(m_objSelf, strAdapter);
    }

private:
    CNetworkNamespace m_objSelf;
    CNetworkNamespace m_objFar;
    std::map<std::string, std::unique_ptr<CPacketCapture>> m_mapAdapter;
};

/// The window and the hand that uses it.
class CUser {
public:
    CUser() { m_objWindow.show(); }

    void Recover(const QString& strAddress) {
        Type("MACEdit", QStringLiteral("02-11-22-33-44-55"));
        Type("IPEdit", strAddress);
        PressRecover();
    }
    void PressRecover() {
        QTest::mouseClick(m_objWindow.findChild<QPushButton*>(QStringLiteral("ChangeButton")), Qt::LeftButton);
    }

private:
    void Type(const char* pEdit, const QString& strText) {
        auto* pLineEdit = m_objWindow.findChild<QLineEdit*>(QString::fromLatin1(pEdit));
        QTest::keyClick(pLineEdit, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(pLineEdit, strText);
    }

    CNorvik m_objWindow;
};

/// Tests that the adapter sent the pair and nothing else, from the address given.
void ExpectPair(const std::vector<CAPTURED_DATAGRAM>& vecReceived, const char* pSource) {
    QCOMPARE(vecReceived.size(), std::size_t{2});
    for (const auto& objDatagram : vecReceived) {
        QCOMPARE(objDatagram.Source.c_str(), pSource);
        QCOMPARE(objDatagram.Destination.c_str(), "255.255.255.255");
        QCOMPARE(objDatagram.DestinationPort, kGvcpPort);
    }
    const RECOVERY_PACKETS objPair = FillRecoveryPackets("02-11-22-33-44-55", "10.20.30.40").value();
    QVERIFY(std::ranges::equal(vecReceived[0].Payload, objPair.ForceIPEx));
    QVERIFY(std::ranges::equal(vecReceived[1].Payload, objPair.ForceIP));

    const auto objPause = vecReceived[1].Time - vecReceived[0].Time;
    QVERIFY(objPause > std::chrono::milliseconds(190));  // two clocks: the sender's and the capture's
    QVERIFY(objPause < std::chrono::seconds(2));
}

}  // namespace

class RecoveryBroadcastTest : public QObject {
    Q_OBJECT

private slots:
    void EveryAdapterSendsThePairFromItsOwnAddress();
    void AdapterWithoutBroadcastKeepsThePairFromNoOther();
    void EveryAddressOfAnAdapterGetsAPair();
    void TakenPortStopsNothing();
    void FirstOctetZeroSendsNothing();
    void MachineWithoutAnAddressSendsNothing();
};

void RecoveryBroadcastTest::EveryAdapterSendsThePairFromItsOwnAddress() {
    CMachine objMachine;
    objMachine.UpLoopback().Cable("first", "10.1.0.1/24").Cable("second", "10.2.0.1/16");
    CUser objUser;

    for (int nPress = 1; nPress <= 2; ++nPress) {
        objUser.Recover("10.20.30.40");
        // The loopback's own address is good for this host alone, so the kernel takes another adapter's.
        ExpectPair(objMachine.Received("lo"), "10.1.0.1");
        ExpectPair(objMachine.Received("first"), "10.1.0.1");
        ExpectPair(objMachine.Received("second"), "10.2.0.1");
    }
}

void RecoveryBroadcastTest::AdapterWithoutBroadcastKeepsThePairFromNoOther() {
    CMachine objMachine;
    objMachine.Cable("six", "");  // the first bind is then to an empty address
    objMachine.Run("echo 0 > /proc/sys/net/ipv6/conf/six/disable_ipv6; ip address add fd00::1/64 dev six nodad");
    objMachine.Cable("point", "").Run("ip address add 10.9.0.1/32 dev point");
    objMachine.Cable("late", "10.3.0.1/24");
    CUser().Recover("10.20.30.40");

    ExpectPair(objMachine.Received("late"), "10.3.0.1");
    ExpectPair(objMachine.Received("point"), "10.9.0.1");
}

void RecoveryBroadcastTest::EveryAddressOfAnAdapterGetsAPair() {
    CMachine objMachine;
    objMachine.Cable("first", "10.1.0.1/24").Run("ip address add 10.5.0.1/24 broadcast + dev first");
    CUser().Recover("10.20.30.40");

    const auto vecReceived = objMachine.Received("first");
    QCOMPARE(vecReceived.size(), std::size_t{4});
    ExpectPair({vecReceived[0], vecReceived[1]}, "10.1.0.1");
    ExpectPair({vecReceived[2], vecReceived[3]}, "10.1.0.1");  // for a limited broadcast the kernel takes the first
}

void RecoveryBroadcastTest::TakenPortStopsNothing() {
    CMachine objMachine;
    objMachine.UpLoopback().Cable("first", "10.1.0.1/24");
    QUdpSocket objOther;
    QVERIFY(objOther.bind(QHostAddress(QHostAddress::AnyIPv4), kGvcpPort, QUdpSocket::DontShareAddress));
    CUser().Recover("10.20.30.40");

    ExpectPair(objMachine.Received("first"), "10.1.0.1");
}

void RecoveryBroadcastTest::FirstOctetZeroSendsNothing() {
    CMachine objMachine;
    objMachine.Cable("first", "10.1.0.1/24");
    CUser objUser;
    objUser.Recover("0.1.2.3");
    QVERIFY(objMachine.Received("first").empty());

    objUser.Recover("10.20.30.40");
    ExpectPair(objMachine.Received("first"), "10.1.0.1");
}

void RecoveryBroadcastTest::MachineWithoutAnAddressSendsNothing() {
    CMachine objMachine;
    objMachine.Cable("bare", "");
    CUser().PressRecover();
    objMachine.Run("ip address add 10.1.0.1/24 broadcast + dev bare");
    QVERIFY(objMachine.Received("bare").empty());
}

int main(int argc, char* argv[]) {
    return RunOnOwnMachine<RecoveryBroadcastTest>(argc, argv);
}

#include "RecoveryBroadcastTest.moc"
