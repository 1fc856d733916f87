#include "producer/wire/HearingAdvice.h"

#include <algorithm>
#include <fstream>

#include "producer/wire/SocketDescriptor.h"

namespace producer {

namespace {

std::string GetFilterName(const std::string& strAdapter) {
    // A dot inside an adapter's name is written as a slash in the names of settings.
    std::string strName = strAdapter;
    std::replace(strName.begin(), strName.end(), '.', '/');
    return "net.ipv4.conf." + strName + ".rp_filter";
}

/// @return 0 off, 1 strict, 2 loose; 0 when it can't be read.
int ReadFilter(const std::string& strAdapter) {
    std::ifstream objFile("/proc/sys/net/ipv4/conf/" + strAdapter + "/rp_filter");
    const int nDigit = objFile.get();
    return nDigit >= '0' && nDigit <= '2' ? nDigit - '0' : 0;
}

}  // namespace

std::string MakeHearingAdvice(const ADAPTER& objAdapter, int nSendError, int nPacketError) {
    std::string strAdvice;
    const auto add = [&](const std::string& strSentence) { strAdvice += (strAdvice.empty() ? "" : " ") + strSentence; };
    if (!objAdapter.HasLink) {
        add(objAdapter.Name + " has no link: check the cable, the camera's power and the switch.");
    }
    if (nSendError != 0) {
        add("Cameras couldn't be asked on " + objAdapter.Name + " (" + GetErrnoText(nSendError) +
            "): check the adapter and the firewall for outgoing UDP to port 3956.");
    }
    if (objAdapter.Addresses.empty()) {
        add(objAdapter.Name + " has no IPv4 address: give it one in the camera's subnet.");
    }
    // The kernel uses the stricter of the two.
    const int nFilter = std::max(ReadFilter("all"), ReadFilter(objAdapter.Name));
    if (nPacketError != 0 && nFilter != 0) {
        add("Answers of cameras in other subnets are dropped by the reverse-path filter: set "
            "net.ipv4.conf.all.rp_filter and " +
            GetFilterName(objAdapter.Name) + " to 0, or give the program the right to packet sockets (CAP_NET_RAW).");
    } else if (nPacketError != 0) {
        add("No packet socket can be opened (" + GetErrnoText(nPacketError) +
            "): if a camera is missing, check that the firewall lets in UDP from port 3956.");
    }
    return strAdvice;
}

}  // namespace producer
