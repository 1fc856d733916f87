#include "ctl/RecoverCommand.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <optional>
#include <ostream>
#include <span>
#include <vector>

#include <QByteArray>
#include <QCoreApplication>
#include <QNetworkInterface>
#include <QString>
#include <QUdpSocket>

#include "app/RecoveryBroadcast.h"
#include "app/RecoveryPackets.h"
#include "ctl/AddressText.h"
#include "ctl/CameraAddress.h"
#include "ctl/CameraReport.h"
#include "ctl/CameraTree.h"
#include "ctl/Table.h"
#include "support/Address.h"

namespace {

std::uint64_t MACOf(const RECOVER_OPTIONS& objOptions) {
    const std::optional<std::uint64_t> nMAC = ParseMAC(objOptions.strMAC);
    if (!nMAC) {
        throw CCommandError(EXIT_CODE::Usage, Printable(objOptions.strMAC) +
                                                  ": not a MAC. It has six pairs of digits, as in 02-5E-17-00-AD-EA");
    }
    return *nMAC;
}

void WritePacket(std::ostream& objOut, const char* pTitle, std::span<const std::uint8_t> vecBytes) {
    constexpr std::size_t kBytesInLine = 16;
    objOut << pTitle << ", " << vecBytes.size() << " bytes to 255.255.255.255 port 3956\n";
    for (std::size_t nOffset = 0; nOffset < vecBytes.size(); nOffset += kBytesInLine) {
        const std::span<const std::uint8_t> vecLine =
            vecBytes.subspan(nOffset, std::min(kBytesInLine, vecBytes.size() - nOffset));
        const QByteArray arrLine(reinterpret_cast<const char*>(vecLine.data()), static_cast<qsizetype>(vecLine.size()));
        objOut << "  " << QByteArray::number(static_cast<qulonglong>(nOffset), 16).rightJustified(4, '0').toStdString()
               << "  " << arrLine.toHex(' ').toStdString() << '\n';
    }
}

/// Keeps Qt's own messages from the user: that the socket stays with its first address is told of every other.
class CQuietQt {
public:
    CQuietQt() : m_fnBefore(qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {})) {}
    ~CQuietQt() { qInstallMessageHandler(m_fnBefore); }
    CQuietQt(const CQuietQt&) = delete;
    CQuietQt& operator=(const CQuietQt&) = delete;

private:
    QtMessageHandler m_fnBefore;
};

/// The adapters on which the pair goes out, but for the loopback, which has no cameras.
std::vector<std::string> BroadcastingAdapters() {
    std::vector<std::string> vecName;
    for (const QNetworkInterface& objInterface : QNetworkInterface::allInterfaces()) {
        const QList<QNetworkAddressEntry> listEntry = objInterface.addressEntries();
        const bool bBroadcasts =
            std::any_of(listEntry.begin(), listEntry.end(),
                        [](const QNetworkAddressEntry& objEntry) { return !objEntry.broadcast().isNull(); });
        const QNetworkInterface::InterfaceFlags nFlags = objInterface.flags();
        if (bBroadcasts && nFlags.testFlag(QNetworkInterface::IsUp) &&
            !nFlags.testFlag(QNetworkInterface::IsLoopBack)) {
            vecName.push_back(objInterface.name().toStdString());
        }
    }
    return vecName;
}

void Send(const RECOVERY_PACKETS& objPackets, std::ostream& objErr) {
    const std::vector<std::string> vecAdapter = BroadcastingAdapters();
    if (vecAdapter.empty()) {
        throw CCommandError(
            EXIT_CODE::Failure,
            "nothing was sent: no adapter that is up has an IPv4 address with a broadcast address. Give one to the "
            "camera's adapter: sudo ip address add 169.254.1.1/16 broadcast + dev ADAPTER");
    }
    // A socket wants an application in the process. The window has one; here it lives for the sending.
    const CQuietQt objQuiet;
    int nArguments = 1;
    char arrName[] = "norvikctl";
    char* pArguments[] = {arrName, nullptr};
    const QCoreApplication objApplication(nArguments, pArguments);
    QUdpSocket objSocket;
    SendRecoveryPackets(objSocket, objPackets);
    objErr << "Sent on ";
    for (const std::string& strAdapter : vecAdapter) {
        objErr << (strAdapter == vecAdapter.front() ? "" : ", ") << strAdapter;
    }
    objErr << ".\n";
}

/// @return where the camera is in the list: the record that has the address, if there is one
std::optional<CAMERA> Find(const std::vector<CAMERA>& vecCamera, std::uint64_t nMAC, std::uint32_t nAddress) {
    std::optional<CAMERA> objFound;
    for (const CAMERA& objCamera : vecCamera) {
        if (objCamera.nMAC == nMAC && (!objFound || objCamera.nAddress == nAddress)) {
            objFound = objCamera;
        }
    }
    return objFound;
}

/// Why a camera may have kept its address. Who controls it shows only where it can be reached.
const char* WhyElsewhere(const CAMERA& objCamera) {
    const std::string strState = GetStateText(objCamera);
    const bool bHeld = strState == "read only" || strState == "no access" || strState == "in use";
    return bHeld ? ": another program controls it. Close that one and try again"
                 : ": its firmware may not know the recovery command. Try norvikctl force";
}

/// @param objLast  becomes where the camera was when it last answered
EXIT_CODE LookFor(std::uint64_t nMAC, std::uint32_t nAddress, const RECOVER_OPTIONS& objOptions,
                  std::optional<CAMERA>& objLast, const COMMAND_OUTPUT& objOutput) {
    objOutput.objErr << "Looking for the camera, for up to "
                     << std::chrono::ceil<std::chrono::seconds>(objOptions.nWait).count() << " s.\n";
    CCameraTree objTree;
    const auto isThere = [&] { return objLast && objLast->nAddress == nAddress; };
    objTree.Look(objOptions.nWait, [&] {
        const std::optional<CAMERA> objFound = Find(objTree.GetCameras(), nMAC, nAddress);
        objLast = objFound ? objFound : objLast;
        return isThere();
    });
    if (isThere()) {
        if (!objOptions.bJson) {
            WriteCameraAt(objOutput.objOut, *objLast);
        }
        TellOfOtherSubnet(objOutput.objErr, *objLast);
        return EXIT_CODE::Success;
    }
    if (objLast && objLast->nAddress) {
        objOutput.objErr << "The camera answers, but at " << IPToString(*objLast->nAddress) << " on "
                         << Printable(objLast->objAdapter.strName) << WhyElsewhere(*objLast) << ".\n";
    } else {
        objOutput.objErr << "No camera with the MAC " << MACToString(nMAC)
                         << " answered. Is the MAC right, the camera on? \"norvikctl doctor\" looks for what may "
                            "keep its answer away; \"norvikctl list\" looks again.\n";
    }
    return EXIT_CODE::Incomplete;
}

}  // namespace

EXIT_CODE RunRecover(const RECOVER_OPTIONS& objOptions, const COMMAND_OUTPUT& objOutput) {
    const std::uint64_t nMAC = MACOf(objOptions);
    const std::uint32_t nAddress = RequireCameraAddress(objOptions.strAddress);
    const std::optional<RECOVERY_PACKETS> objPackets =
        FillRecoveryPackets(QString::fromStdString(MACToString(nMAC)), QString::fromStdString(IPToString(nAddress)));
    if (!objPackets) {
        throw CCommandError(EXIT_CODE::Usage, objOptions.strAddress + ": not an address to recover a camera to");
    }
    if (objOptions.bDryRun) {
        WritePacket(objOutput.objOut, "Recovery command 0x9000", objPackets->ForceIPEx);
        WritePacket(objOutput.objOut, "FORCEIP_CMD with 0.0.0.0, 200 ms later", objPackets->ForceIP);
        objOutput.objErr << "Nothing was sent.\n";
        return EXIT_CODE::Success;
    }
    Send(*objPackets, objOutput.objErr);
    std::optional<CAMERA> objLast;
    const EXIT_CODE eExitCode =
        objOptions.nWait.count() > 0 ? LookFor(nMAC, nAddress, objOptions, objLast, objOutput) : EXIT_CODE::Success;
    if (objOptions.bJson) {
        WriteFoundCameraJson(objOutput.objOut, objLast);
    }
    return eExitCode;
}
