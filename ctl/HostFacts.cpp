#include "ctl/HostFacts.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <utility>

#include <QHostAddress>
#include <QNetworkInterface>
#include <QString>

#include "ctl/AddressText.h"
#include "ctl/HostCommand.h"
#include "ctl/InputFilters.h"
#include "ctl/ProducerPath.h"
#include "support/Environment.h"

namespace {

/// The number in a file of one line, as the kernel shows its settings.
std::optional<std::uint64_t> ReadNumber(const std::string& strPath) {
    std::ifstream objFile(strPath);
    std::string strText;
    std::getline(objFile, strText);
    std::uint64_t nValue = 0;
    const auto [pEnd, eError] = std::from_chars(strText.data(), strText.data() + strText.size(), nValue);
    return eError == std::errc() ? std::optional(nValue) : std::nullopt;
}

std::optional<int> ReadSmallNumber(const std::string& strPath) {
    constexpr std::uint64_t kMost = 1'000'000'000;
    const std::optional<std::uint64_t> nValue = ReadNumber(strPath);
    return nValue && *nValue <= kMost ? std::optional(static_cast<int>(*nValue)) : std::nullopt;
}

std::optional<int> ReadReversePathFilter(const std::string& strAdapter) {
    return ReadSmallNumber("/proc/sys/net/ipv4/conf/" + strAdapter + "/rp_filter");
}

std::vector<HOST_ADDRESS> AddressesOf(const QNetworkInterface& objInterface) {
    std::vector<HOST_ADDRESS> vecAddress;
    for (const QNetworkAddressEntry& objEntry : objInterface.addressEntries()) {
        bool bIPv4 = false;
        const std::uint32_t nAddress = objEntry.ip().toIPv4Address(&bIPv4);
        if (bIPv4) {
            vecAddress.push_back({nAddress, objEntry.netmask().toIPv4Address(), !objEntry.broadcast().isNull()});
        }
    }
    return vecAddress;
}

HOST_ADAPTER ReadAdapter(const QNetworkInterface& objInterface) {
    HOST_ADAPTER objAdapter;
    objAdapter.strName = objInterface.name().toStdString();
    objAdapter.bUp = objInterface.flags().testFlag(QNetworkInterface::IsUp);
    objAdapter.bLink = objInterface.flags().testFlag(QNetworkInterface::IsRunning);
    objAdapter.nMtu = objInterface.maximumTransmissionUnit();
    objAdapter.nSpeed = ReadSmallNumber("/sys/class/net/" + objAdapter.strName + "/speed");
    objAdapter.nReversePathFilter = ReadReversePathFilter(objAdapter.strName);
    objAdapter.vecAddress = AddressesOf(objInterface);
    return objAdapter;
}

HOST_FIREWALL ReadFirewall() {
    // A user who may not see the rules gets an error and no text.
    const std::optional<std::string> strRuleset =
        RunHostCommand("PATH=\"$PATH:/usr/sbin:/sbin\" nft --json list ruleset 2>/dev/null");
    const auto vecFilter = strRuleset ? ReadInputFilters(*strRuleset) : std::nullopt;
    return {vecFilter.has_value(), vecFilter.value_or(std::vector<std::string>())};
}

std::vector<PRODUCER_FOLDER> ReadProducerFolders() {
    std::vector<PRODUCER_FOLDER> vecProducerFolder;
    for (const std::string& strFolder : GetSearchPath()) {
        vecProducerFolder.push_back(
            {strFolder, PathExists(strFolder), PathExists(strFolder + kPathSeparator + kProducerFileName)});
    }
    return vecProducerFolder;
}

}  // namespace

std::optional<HOST_INTERFACE> FindHostInterface(std::optional<std::uint64_t> nMAC,
                                                std::optional<std::uint32_t> nAddress) {
    std::optional<HOST_INTERFACE> objFound;
    for (const QNetworkInterface& objInterface : QNetworkInterface::allInterfaces()) {
        HOST_INTERFACE objThis = {objInterface.name().toStdString(), AddressesOf(objInterface)};
        // Two adapters may have been given the same address, and a VLAN has the MAC of what it runs on.
        const bool bMAC = !nMAC || ParseMAC(objInterface.hardwareAddress().toStdString()) == nMAC;
        const bool bAddress = !nAddress || std::ranges::find(objThis.vecAddress, *nAddress, &HOST_ADDRESS::nAddress) !=
                                               objThis.vecAddress.end();
        if (bMAC && bAddress) {
            if (objFound) {
                return std::nullopt;
            }
            objFound = std::move(objThis);
        }
    }
    return objFound;
}

HOST_FACTS ReadHostFacts() {
    HOST_FACTS objFacts;
    for (const QNetworkInterface& objInterface : QNetworkInterface::allInterfaces()) {
        if (!objInterface.flags().testFlag(QNetworkInterface::IsLoopBack)) {
            objFacts.vecAdapter.push_back(ReadAdapter(objInterface));
        }
    }
    objFacts.nReversePathFilter = ReadReversePathFilter("all");
    objFacts.nReceiveBufferMax = ReadNumber("/proc/sys/net/core/rmem_max");
    objFacts.objFirewall = ReadFirewall();
    objFacts.vecProducerFolder = ReadProducerFolders();
    return objFacts;
}
