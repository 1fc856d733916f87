#include "ctl/CameraAddress.h"

#include <algorithm>
#include <optional>

#include <QHostAddress>
#include <QNetworkInterface>

#include "ctl/AddressText.h"
#include "ctl/ExitCode.h"
#include "ctl/Table.h"
#include "support/Address.h"

namespace {

bool IsOwnAddress(std::uint32_t nAddress) {
    const auto listAddress = QNetworkInterface::allAddresses();
    return std::any_of(listAddress.begin(), listAddress.end(), [nAddress](const QHostAddress& objAddress) {
        return objAddress.protocol() == QAbstractSocket::IPv4Protocol && objAddress.toIPv4Address() == nAddress;
    });
}

}  // namespace

/// No network 0, no loopback, no multicast or broadcast.
std::uint32_t RequireCameraAddress(const std::string& strText) {
    constexpr std::uint32_t kLoopback = 127;
    constexpr std::uint32_t kFirstMulticast = 224;
    const std::optional<std::uint32_t> nAddress = ParseAddress(strText);
    const std::uint32_t nFirst = nAddress.value_or(0) >> 24;
    if (nFirst == 0 || nFirst == kLoopback || nFirst >= kFirstMulticast) {
        throw CCommandError(EXIT_CODE::Usage,
                            Printable(strText) + ": not an address that a camera can have, such as 192.168.1.20");
    }
    if (IsOwnAddress(*nAddress)) {
        throw CCommandError(EXIT_CODE::Usage,
                            IPToString(*nAddress) + " is this computer's own address: give the camera another");
    }
    return *nAddress;
}
