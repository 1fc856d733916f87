// The recovery broadcast from the click to the wire: the window on a machine of the test's own, and what comes out at
// the far end of its cables.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QUdpSocket>

#include "app/Norvik.h"
#include "tests/network/NetworkNamespace.h"
#include "tests/network/OwnMachine.h"
#include "tests/network/WireCapture.h"

namespace {

constexpr char kMark[] = "that was all";
constexpr std::uint16_t kGvcpPort = 3956;

using Bytes = std::vector<std::uint8_t>;

/// A machine with a loopback and as many adapters as are cabled to it; the test's thread is on it.
class CMachine {
public:
    CMachine() { m_objSelf.Enter(); }

    CMachine& UpLoopback() {
        Run("ip link set lo up");
        m_vecAdapters.emplace_back("lo", std::make_unique<CPacketCapture>(m_objSelf, "lo"));
        return *this;
    }

    CMachine& Cable(const std::string& strAdapter, const std::string& strAddress) {
        const std::string strFarName = "far-" + strAdapter;
        Connect(m_objSelf, strAdapter, strAddress, m_objFar, strFarName, "");
        m_vecAdapters.emplace_back(strAdapter, std::make_unique<CPacketCapture>(m_objFar, strFarName));
        return *this;
    }

    void Run(const std::string& strCommand) { m_objSelf.Run(strCommand); }

    /// What has come out at the far end of the adapter's cable since the last call.
    std::vector<CAPTURED_DATAGRAM> Received(const std::string& strAdapter) {
        for (const auto& [strName, pCapture] : m_vecAdapters) {
            if (strName == strAdapter) {
                SendMark(m_objSelf, strName, kMark);
                return pCapture->TakeUntil(kMark);
            }
        }
        return {};
    }

private:
    CNetworkNamespace m_objSelf;
    CNetworkNamespace m_objFar;
    std::vector<std::pair<std::string, std::unique_ptr<CPacketCapture>>> m_vecAdapters;
};

/// The window and the hand that uses it.
class CUser {
public:
    CUser() { m_objWindow.show(); }

    CUser& TypeMAC(const QString& strText) { return Type("MACEdit", strText); }
    CUser& TypeAddress(const QString& strText) { return Type("IPEdit", strText); }

    void PressRecover() {
        QTest::mouseClick(m_objWindow.findChild<QPushButton*>(QStringLiteral("ChangeButton")), Qt::LeftButton);
    }

private:
    CUser& Type(const char* pEdit, const QString& strText) {
        auto* pLineEdit = m_objWindow.findChild<QLineEdit*>(QString::fromLatin1(pEdit));
        QTest::keyClick(pLineEdit, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(pLineEdit, strText);
        return *this;
    }

    CNorvik m_objWindow;
};

/// A packet of nothing but 0 with these bytes at these places.
Bytes Packet(std::size_t nSize, const std::vector<std::pair<std::size_t, Bytes>>& vecFields) {
    Bytes vecPacket(nSize);
    for (const auto& [nOffset, vecBytes] : vecFields) {
        std::copy(vecBytes.begin(), vecBytes.end(), vecPacket.begin() + static_cast<std::ptrdiff_t>(nOffset));
    }
    return vecPacket;
}

const Bytes kTypedMAC = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};

/// The pair as it stands on the wire for the typed MAC and the typed address 10.20.30.40.
Bytes ForceIPEx() {
    return Packet(84, {{0, {0x42, 0x11, 0x90, 0x00, 0x00, 0x4C, 0xEC, 0xD2}},
                       {19, {0x05}},
                       {10, kTypedMAC},
                       {32, {10, 20, 30, 40}},
                       {48, {0xFF, 0xFF, 0xFF, 0x00}},
                       {69, {0x03}},
                       {72, {0x83, 0x01}},
                       {76, {0x02}}});
}

Bytes ForceIP() {
    return Packet(64, {{0, {0x42, 0x01, 0x00, 0x04, 0x00, 0x38, 0x22, 0x8D}}, {10, kTypedMAC}});
}

/// Tests that the adapter sent the pair and nothing else, from the address given.
void ExpectPair(const std::vector<CAPTURED_DATAGRAM>& vecReceived, const char* pSource) {
    QCOMPARE(vecReceived.size(), std::size_t{2});
    for (const auto& objDatagram : vecReceived) {
        QCOMPARE(objDatagram.Source.c_str(), pSource);
        QCOMPARE(objDatagram.Destination.c_str(), "255.255.255.255");
        QCOMPARE(objDatagram.DestinationPort, kGvcpPort);
    }
    QCOMPARE(vecReceived[0].Payload, ForceIPEx());
    QCOMPARE(vecReceived[1].Payload, ForceIP());

    const auto objPause = vecReceived[1].Time - vecReceived[0].Time;
    QVERIFY(objPause > std::chrono::milliseconds(190));  // two clocks: the sender's and the capture's
    QVERIFY(objPause < std::chrono::seconds(2));
}

}  // namespace

class RecoveryBroadcastTest : public QObject {
    Q_OBJECT

private slots:
    void EveryAdapterSendsThePairFromItsOwnAddress();
    void ProtocolAnalyserReadsTheSecondPacketAsForceIP();
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
    objUser.TypeMAC("02-11-22-33-44-55").TypeAddress("10.20.30.40");

    for (int nPress = 1; nPress <= 2; ++nPress) {
        objUser.PressRecover();
        // The loopback's own address is good for this host alone, so the kernel takes another adapter's.
        ExpectPair(objMachine.Received("lo"), "10.1.0.1");
        ExpectPair(objMachine.Received("first"), "10.1.0.1");
        ExpectPair(objMachine.Received("second"), "10.2.0.1");
    }
}

void RecoveryBroadcastTest::ProtocolAnalyserReadsTheSecondPacketAsForceIP() {
    CMachine objMachine;
    objMachine.Cable("first", "10.1.0.1/24");
    CUser().TypeMAC("02-11-22-33-44-55").TypeAddress("10.20.30.40").PressRecover();

    if (QStandardPaths::findExecutable(QStringLiteral("tshark")).isEmpty()) {
        qWarning("no protocol analyser is installed (package tshark)");
        return;
    }
    const std::vector<std::string> vecLines =
        Analyse(objMachine.Received("first"),
                "-T fields -e frame.len -e gvcp.cmd.command -e gvcp.cmd.req_id -e gvcp.cmd.forceip.macaddress"
                " -e gvcp.cmd.forceip.ip -e gvcp.cmd.forceip.subnetmask -e gvcp.cmd.forceip.defaultgateway");
    QCOMPARE(vecLines.size(), std::size_t{2});
    QVERIFY2(vecLines[0].starts_with("126\t0x9000\t0xecd2"), vecLines[0].c_str());
    QCOMPARE(vecLines[1].c_str(), "106\t0x0004\t0x228d\t02:11:22:33:44:55\t0.0.0.0\t0.0.0.0\t0.0.0.0");
}

void RecoveryBroadcastTest::AdapterWithoutBroadcastKeepsThePairFromNoOther() {
    CMachine objMachine;
    objMachine.Cable("six", "");  // the first bind is then to an empty address
    objMachine.Run("echo 0 > /proc/sys/net/ipv6/conf/six/disable_ipv6; ip address add fd00::1/64 dev six nodad");
    objMachine.Cable("point", "").Run("ip address add 10.9.0.1/32 dev point");
    objMachine.Cable("late", "10.3.0.1/24");
    CUser().TypeMAC("02-11-22-33-44-55").TypeAddress("10.20.30.40").PressRecover();

    ExpectPair(objMachine.Received("late"), "10.3.0.1");
    ExpectPair(objMachine.Received("point"), "10.9.0.1");
}

void RecoveryBroadcastTest::EveryAddressOfAnAdapterGetsAPair() {
    CMachine objMachine;
    objMachine.Cable("first", "10.1.0.1/24").Run("ip address add 10.5.0.1/24 broadcast + dev first");
    CUser().TypeMAC("02-11-22-33-44-55").TypeAddress("10.20.30.40").PressRecover();

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
    CUser().TypeMAC("02-11-22-33-44-55").TypeAddress("10.20.30.40").PressRecover();

    ExpectPair(objMachine.Received("first"), "10.1.0.1");
}

void RecoveryBroadcastTest::FirstOctetZeroSendsNothing() {
    CMachine objMachine;
    objMachine.Cable("first", "10.1.0.1/24");
    CUser objUser;
    objUser.TypeMAC("02-11-22-33-44-55").TypeAddress("0.1.2.3").PressRecover();
    QVERIFY(objMachine.Received("first").empty());

    objUser.TypeAddress("10.20.30.40").PressRecover();
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
