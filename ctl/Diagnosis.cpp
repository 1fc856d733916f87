#include "ctl/Diagnosis.h"

#include <algorithm>

#include "ctl/ProducerPath.h"
#include "support/Address.h"

namespace {

constexpr int kMtuOfEthernet = 1500;
constexpr int kMtuOfJumboPackets = 9000;
constexpr int kGigabit = 1000;
constexpr std::uint64_t kReceiveBufferWanted = std::uint64_t{16} << 20;    // an eighth of a second at 1 Gb/s
constexpr std::uint64_t kReceiveBufferAskedFor = std::uint64_t{64} << 20;  // by the bundled producer
constexpr std::uint64_t kBytesInKiB = 1024;

using FINDINGS = std::vector<FINDING>;

bool IsAlive(const HOST_ADAPTER& objAdapter) {
    return objAdapter.bUp && objAdapter.bLink;
}

std::string WithMask(const HOST_ADDRESS& objAddress) {
    int nBits = 0;
    for (std::uint32_t nMask = objAddress.nMask; nMask != 0; nMask <<= 1) {
        ++nBits;
    }
    return IPToString(objAddress.nAddress) + '/' + std::to_string(nBits);
}

void DiagnoseLink(FINDINGS& vecFinding, const HOST_ADAPTER& objAdapter) {
    const std::string& strName = objAdapter.strName;
    if (!objAdapter.bUp) {
        vecFinding.push_back(
            {SEVERITY::Warning, strName, "the adapter is switched off", "sudo ip link set " + strName + " up"});
    } else if (!objAdapter.bLink) {
        vecFinding.push_back(
            {SEVERITY::Warning, strName, "no link: look at the cable, the switch and their power", ""});
    } else if (objAdapter.nSpeed && *objAdapter.nSpeed > 0 && *objAdapter.nSpeed < kGigabit) {
        vecFinding.push_back({SEVERITY::Warning, strName,
                              "the link has only " + std::to_string(*objAdapter.nSpeed) +
                                  " Mb/s: a cable with all four pairs, and a gigabit port, give 1000",
                              ""});
    } else {
        vecFinding.push_back(
            {SEVERITY::Good, strName,
             "link is up" + (objAdapter.nSpeed ? ", " + std::to_string(*objAdapter.nSpeed) + " Mb/s" : std::string()),
             ""});
    }
}

void DiagnoseAddresses(FINDINGS& vecFinding, const HOST_ADAPTER& objAdapter) {
    const std::string& strName = objAdapter.strName;
    if (objAdapter.vecAddress.empty()) {
        vecFinding.push_back({SEVERITY::Problem, strName, "no IPv4 address: cameras can't be asked there",
                              "sudo ip address add 169.254.1.1/16 broadcast + dev " + strName});
    }
    for (const HOST_ADDRESS& objAddress : objAdapter.vecAddress) {
        const std::string strAddress = WithMask(objAddress);
        if (objAddress.bBroadcast) {
            vecFinding.push_back({SEVERITY::Good, strName, "address " + strAddress, ""});
        } else {
            vecFinding.push_back({SEVERITY::Warning, strName,
                                  "address " + strAddress + " has no broadcast address: recovery doesn't use it",
                                  "sudo ip address change " + strAddress + " broadcast + dev " + strName});
        }
    }
}

/// The name of an adapter as it stands inside the name of a setting.
std::string SettingNameOf(std::string strAdapter) {
    std::replace(strAdapter.begin(), strAdapter.end(), '.', '/');  // "eth0.10" of a VLAN would be one level too many
    return strAdapter;
}

void DiagnoseReversePathFilter(FINDINGS& vecFinding, const HOST_ADAPTER& objAdapter, std::optional<int> nOfAll) {
    constexpr int kStrict = 1;
    constexpr int kLoose = 2;
    const std::string& strName = objAdapter.strName;
    const std::string strMend =
        "sudo sysctl -w net.ipv4.conf.all.rp_filter=0 net.ipv4.conf." + SettingNameOf(strName) + ".rp_filter=0";
    if (!objAdapter.nReversePathFilter && !nOfAll) {
        return;
    }
    // The kernel takes the larger of both.
    switch (std::max(objAdapter.nReversePathFilter.value_or(0), nOfAll.value_or(0))) {
        case kStrict:
            vecFinding.push_back({SEVERITY::Warning, strName,
                                  "the reverse-path filter is strict: answers of cameras in other subnets are dropped",
                                  strMend});
            break;
        case kLoose:
            vecFinding.push_back({SEVERITY::Warning, strName,
                                  "the reverse-path filter is loose: answers of cameras in subnets without a route "
                                  "are dropped",
                                  strMend});
            break;
        default:
            vecFinding.push_back({SEVERITY::Good, strName, "the reverse-path filter is off", ""});
    }
}

void DiagnoseMtu(FINDINGS& vecFinding, const HOST_ADAPTER& objAdapter) {
    const std::string strMtu = "the MTU is " + std::to_string(objAdapter.nMtu) + " bytes";
    const std::string strCommand = "sudo ip link set " + objAdapter.strName + " mtu ";
    if (objAdapter.nMtu >= kMtuOfJumboPackets) {
        vecFinding.push_back({SEVERITY::Good, objAdapter.strName, strMtu, ""});
    } else if (objAdapter.nMtu >= kMtuOfEthernet) {
        vecFinding.push_back({SEVERITY::Hint, objAdapter.strName,
                              strMtu + ": larger packets cost less processor time, where camera and switches take them",
                              strCommand + std::to_string(kMtuOfJumboPackets)});
    } else {
        vecFinding.push_back({SEVERITY::Warning, objAdapter.strName,
                              strMtu + ": cameras are used to " + std::to_string(kMtuOfEthernet),
                              strCommand + std::to_string(kMtuOfEthernet)});
    }
}

/// Two adapters in one subnet: the kernel sends by the first of them alone, so what is behind the other isn't reached.
void DiagnoseSubnets(FINDINGS& vecFinding, const std::vector<HOST_ADAPTER>& vecAdapter) {
    for (auto itOne = vecAdapter.begin(); itOne != vecAdapter.end(); ++itOne) {
        for (auto itOther = std::next(itOne); itOther != vecAdapter.end(); ++itOther) {
            for (const HOST_ADDRESS& objOne : itOne->vecAddress) {
                for (const HOST_ADDRESS& objOther : itOther->vecAddress) {
                    const std::uint32_t nMask = objOne.nMask & objOther.nMask;
                    if (((objOne.nAddress ^ objOther.nAddress) & nMask) == 0) {
                        vecFinding.push_back({SEVERITY::Problem, itOther->strName,
                                              WithMask(objOther) + " lies in the subnet of " + itOne->strName + " (" +
                                                  WithMask(objOne) +
                                                  "): cameras on one of the two may be out of reach. " +
                                                  "Give each adapter a subnet of its own",
                                              ""});
                    }
                }
            }
        }
    }
}

void DiagnoseFirewall(FINDINGS& vecFinding, const HOST_FIREWALL& objFirewall) {
    if (!objFirewall.bKnown) {
        vecFinding.push_back({SEVERITY::Hint, "firewall",
                              "not looked at: that takes root and the package nftables. It must let UDP in from port "
                              "3956, and to the port of the stream",
                              "sudo nft list ruleset"});
        return;
    }
    for (const std::string& strFilter : objFirewall.vecFilter) {
        vecFinding.push_back({SEVERITY::Warning, "firewall",
                              "the chain " + strFilter +
                                  " drops incoming packets: it must let UDP in on the cameras' "
                                  "adapters, answers from port 3956 and the stream",
                              "sudo nft insert rule " + strFilter + " iifname ADAPTER meta l4proto udp accept"});
    }
    if (objFirewall.vecFilter.empty()) {
        vecFinding.push_back({SEVERITY::Good, "firewall", "no chain drops incoming UDP", ""});
    }
}

void DiagnoseReceiveBuffer(FINDINGS& vecFinding, std::optional<std::uint64_t> nMax) {
    if (!nMax) {
        return;
    }
    const std::string strMax = "a socket may have " + std::to_string(*nMax / kBytesInKiB) + " KiB of receive buffer";
    if (*nMax >= kReceiveBufferWanted) {
        vecFinding.push_back({SEVERITY::Good, "sockets", strMax, ""});
        return;
    }
    constexpr std::uint64_t kBytesInMs = 125'000;  // of a stream of 1 Gb/s
    vecFinding.push_back({SEVERITY::Warning, "sockets",
                          strMax + ": " + std::to_string(*nMax / kBytesInMs) +
                              " ms of a stream at 1 Gb/s, and what comes while it is full is lost",
                          "sudo sysctl -w net.core.rmem_max=" + std::to_string(kReceiveBufferAskedFor)});
}

void DiagnoseProducer(FINDINGS& vecFinding, const std::vector<PRODUCER_FOLDER>& vecFolder) {
    const auto itFound = std::find_if(vecFolder.begin(), vecFolder.end(),
                                      [](const PRODUCER_FOLDER& objFolder) { return objFolder.bHasProducer; });
    if (itFound != vecFolder.end()) {
        vecFinding.push_back({SEVERITY::Good, "producer", itFound->strFolder + '/' + kProducerFileName, ""});
        return;
    }
    std::string strFolders;
    for (const PRODUCER_FOLDER& objFolder : vecFolder) {
        strFolders += (strFolders.empty() ? "" : ", ") + objFolder.strFolder +
                      (objFolder.bExists ? "" : " (there is no such folder)");
    }
    vecFinding.push_back({SEVERITY::Problem, "producer",
                          std::string(kProducerFileName) + " is in no folder of the search path: " +
                              (strFolders.empty() ? "it is empty" : strFolders),
                          std::string("export ") + kProducerPathVariable + "=/path/to/cti"});
}

}  // namespace

std::vector<FINDING> Diagnose(const HOST_FACTS& objFacts) {
    FINDINGS vecFinding;
    // An adapter that nothing is plugged into is nothing special, unless it is the last.
    if (std::none_of(objFacts.vecAdapter.begin(), objFacts.vecAdapter.end(), IsAlive)) {
        vecFinding.push_back({SEVERITY::Problem, "adapters", "this machine has no network adapter with a link", ""});
    }
    for (const HOST_ADAPTER& objAdapter : objFacts.vecAdapter) {
        DiagnoseLink(vecFinding, objAdapter);
        if (IsAlive(objAdapter)) {
            DiagnoseAddresses(vecFinding, objAdapter);
            DiagnoseReversePathFilter(vecFinding, objAdapter, objFacts.nReversePathFilter);
            DiagnoseMtu(vecFinding, objAdapter);
        }
    }
    DiagnoseSubnets(vecFinding, objFacts.vecAdapter);
    DiagnoseFirewall(vecFinding, objFacts.objFirewall);
    DiagnoseReceiveBuffer(vecFinding, objFacts.nReceiveBufferMax);
    DiagnoseProducer(vecFinding, objFacts.vecProducerFolder);
    return vecFinding;
}
