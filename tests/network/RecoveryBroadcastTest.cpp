// The recovery broadcast from the click to the wire: the window on a machine of the test's own, and what comes out at
// the far end of its cables.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUdpSocket>

#include "app/Norvik.h"
#include "tests/network/NetworkNamespace.h"
#include "tests/network/OwnMachine.h"
#include "tests/network/PacketCapture.h"

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

/// The pair as it stands on the wire for the typed address 10.20.30.40, with the bytes from the MAC on as given.
Bytes ForceIPEx(const Bytes& vecMAC) {
    return Packet(84, {{0, {0x42, 0x11, 0x90, 0x00, 0x00, 0x4C, 0xEC, 0xD2}},
                       {19, {0x05}},
                       {10, vecMAC},
                       {32, {10, 20, 30, 40}},
                       {48, {0xFF, 0xFF, 0xFF, 0x00}},
                       {69, {0x03}},
                       {72, {0x83, 0x01}},
                       {76, {0x02}}});
}

Bytes ForceIP(const Bytes& vecMAC) {
    return Packet(64, {{0, {0x42, 0x01, 0x00, 0x04, 0x00, 0x38, 0x22, 0x8D}}, {10, vecMAC}});
}

const Bytes kTypedMAC = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};

/// Tests that the adapter sent the pair and nothing else, from the address given.
void ExpectPair(const std::vector<CAPTURED_DATAGRAM>& vecReceived, const char* pSource) {
    QCOMPARE(vecReceived.size(), std::size_t{2});
    for (const auto& objDatagram : vecReceived) {
        QCOMPARE(objDatagram.Source.c_str(), pSource);
        QCOMPARE(objDatagram.Destination.c_str(), "255.255.255.255");
        QCOMPARE(objDatagram.DestinationPort, kGvcpPort);
    }
    QCOMPARE(vecReceived[0].Payload, ForceIPEx(kTypedMAC));
    QCOMPARE(vecReceived[1].Payload, ForceIP(kTypedMAC));

    const auto objPause = vecReceived[1].Time - vecReceived[0].Time;
    QVERIFY(objPause > std::chrono::milliseconds(190));  // two clocks: the sender's and the capture's
    QVERIFY(objPause < std::chrono::seconds(2));
}

/// What a protocol analyser says of the frames, a line each; nothing where none is installed.
std::optional<QString> Analyse(const std::vector<CAPTURED_DATAGRAM>& vecDatagrams) {
    const QString strAnalyser = QStandardPaths::findExecutable(QStringLiteral("tshark"));
    if (strAnalyser.isEmpty()) {
        return std::nullopt;
    }
    QTemporaryDir objDirectory;
    const QString strFile = objDirectory.filePath(QStringLiteral("wire.pcap"));
    WriteCaptureFile(strFile.toStdString(), vecDatagrams);
    // An empty home: the analyser is to read by its own rules and not by its user's.
    QProcess objProcess;
    QProcessEnvironment objEnvironment = QProcessEnvironment::systemEnvironment();
    objEnvironment.insert(QStringLiteral("HOME"), objDirectory.path());
    objEnvironment.remove(QStringLiteral("XDG_CONFIG_HOME"));
    objProcess.setProcessEnvironment(objEnvironment);
    QStringList listArguments = {QStringLiteral("-r"), strFile, QStringLiteral("-T"), QStringLiteral("fields")};
    for (const char* pField :
         {"frame.len", "gvcp.cmd.command", "gvcp.cmd.req_id", "gvcp.cmd.forceip.macaddress", "gvcp.cmd.forceip.ip",
          "gvcp.cmd.forceip.subnetmask", "gvcp.cmd.forceip.defaultgateway"}) {
        listArguments << QStringLiteral("-e") << QString::fromLatin1(pField);
    }
    objProcess.start(strAnalyser, listArguments);
    objProcess.waitForFinished(60'000);
    return QString::fromUtf8(objProcess.readAllStandardOutput());
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
    void MACTextReachesTheWireAsItIs_data();
    void MACTextReachesTheWireAsItIs();
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

    const auto strAnalysis = Analyse(objMachine.Received("first"));
    if (!strAnalysis) {
        qWarning("no protocol analyser is installed (package tshark)");
        return;
    }
    const QStringList listLines = strAnalysis->split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(listLines.size(), 2);
    QVERIFY2(listLines[0].startsWith(QStringLiteral("126\t0x9000\t0xecd2")), qPrintable(listLines[0]));
    QCOMPARE(listLines[1], QStringLiteral("106\t0x0004\t0x228d\t02:11:22:33:44:55\t0.0.0.0\t0.0.0.0\t0.0.0.0"));
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

void RecoveryBroadcastTest::MACTextReachesTheWireAsItIs_data() {
    QTest::addColumn<QString>("Typed");
    QTest::addColumn<Bytes>("InForceIPEx");
    QTest::addColumn<Bytes>("InForceIP");

    QTest::newRow("colons keep all bytes of the templates but the first")
        << "02:11:22:33:44:55" << Bytes{0, 0x7A, 0x41, 0x02, 0xE7, 0x4F} << Bytes{0, 0x5E, 0x17, 0x00, 0xAD, 0xEA};
    QTest::newRow("three parts keep the last three bytes of the templates")
        << "AA-BB-CC" << Bytes{0xAA, 0xBB, 0xCC, 0x02, 0xE7, 0x4F} << Bytes{0xAA, 0xBB, 0xCC, 0x00, 0xAD, 0xEA};
    QTest::newRow("ten parts run over the fixed byte behind the MAC")
        << "1-2-3-4-5-6-7-8-9-A" << Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10} << Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
}

void RecoveryBroadcastTest::MACTextReachesTheWireAsItIs() {
    QFETCH(QString, Typed);
    QFETCH(Bytes, InForceIPEx);
    QFETCH(Bytes, InForceIP);
    CMachine objMachine;
    objMachine.Cable("first", "10.1.0.1/24");
    CUser().TypeMAC(Typed).TypeAddress("10.20.30.40").PressRecover();

    const auto vecReceived = objMachine.Received("first");
    QCOMPARE(vecReceived.size(), std::size_t{2});
    QCOMPARE(vecReceived[0].Payload, ForceIPEx(InForceIPEx));
    QCOMPARE(vecReceived[1].Payload, ForceIP(InForceIP));
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
