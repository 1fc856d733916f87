#include "camera/AdapterSocket.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <linux/ethtool.h>
#include <linux/if_addr.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace camera {
namespace {

constexpr std::uint32_t kUsualLinkSpeed = 1000;
constexpr std::size_t kMaxRequest = 128;      // the longest request below takes 52
constexpr std::size_t kMaxAnswer = 1U << 15;  // what the kernel puts into one datagram of a dump

[[noreturn]] void ThrowErrno(int nErrno, const std::string& strWhat) {
    throw std::system_error(nErrno, std::generic_category(), strWhat);
}

/// A request to the kernel about one address, or about the addresses.
class CRequest {
public:
    CRequest(std::uint16_t nType, std::uint16_t nFlags, const ifaddrmsg& objAddress) {
        nlmsghdr objHeader{};
        objHeader.nlmsg_type = nType;
        objHeader.nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | nFlags);
        Append(&objHeader, sizeof objHeader);
        Append(&objAddress, sizeof objAddress);
    }

    void AddAttribute(std::uint16_t nType, std::uint32_t nAddress) {
        rtattr objAttribute{};
        objAttribute.rta_type = nType;
        objAttribute.rta_len = static_cast<std::uint16_t>(RTA_LENGTH(sizeof nAddress));
        const std::uint32_t nNetworkOrder = htonl(nAddress);
        Append(&objAttribute, sizeof objAttribute);
        Append(&nNetworkOrder, sizeof nNetworkOrder);
    }

    std::span<const std::byte> Finish() {
        const auto nLength = static_cast<std::uint32_t>(m_nLength);
        std::memcpy(m_arrBytes.data() + offsetof(nlmsghdr, nlmsg_len), &nLength, sizeof nLength);
        return std::span(m_arrBytes).first(m_nLength);
    }

private:
    // All parts are multiples of the 4 bytes that the kernel aligns them to.
    void Append(const void* pPart, std::size_t nLength) {
        std::memcpy(m_arrBytes.data() + m_nLength, pPart, nLength);
        m_nLength += nLength;
    }

    std::array<std::byte, kMaxRequest> m_arrBytes{};
    std::size_t m_nLength = 0;
};

template <class Structure>
Structure ReadStructure(std::span<const std::byte> arrBytes) {
    Structure objStructure{};
    std::memcpy(&objStructure, arrBytes.data(), sizeof objStructure);
    return objStructure;
}

/// Sends the request and hands each message of the answer to the function, up to the one that ends it.
/// @return 0, or the errno that the kernel answers
template <class Function>
int Ask(int nSocket, std::span<const std::byte> arrRequest, Function funMessage) {
    if (send(nSocket, arrRequest.data(), arrRequest.size(), 0) < 0) {
        return errno;
    }
    std::vector<std::byte> vecAnswer(kMaxAnswer);
    while (true) {
        const ssize_t nReceived = recv(nSocket, vecAnswer.data(), vecAnswer.size(), 0);
        if (nReceived < 0) {
            if (errno == EINTR) {
                continue;
            }
            return errno;
        }
        std::span<const std::byte> arrLeft = std::span(vecAnswer).first(static_cast<std::size_t>(nReceived));
        while (arrLeft.size() >= sizeof(nlmsghdr)) {
            const auto objHeader = ReadStructure<nlmsghdr>(arrLeft);
            if (objHeader.nlmsg_len < sizeof objHeader || objHeader.nlmsg_len > arrLeft.size()) {
                return EBADMSG;
            }
            const auto arrBody = arrLeft.first(objHeader.nlmsg_len).subspan(sizeof objHeader);
            if (objHeader.nlmsg_type == NLMSG_DONE) {
                return 0;
            }
            if (objHeader.nlmsg_type == NLMSG_ERROR) {
                return arrBody.size() < sizeof(int) ? EBADMSG : -ReadStructure<int>(arrBody);
            }
            funMessage(objHeader, arrBody);
            arrLeft = arrLeft.subspan(std::min<std::size_t>(NLMSG_ALIGN(objHeader.nlmsg_len), arrLeft.size()));
        }
    }
}

struct ADDRESS {
    std::uint32_t Local;
    std::uint8_t PrefixLength;
};

/// The address that a message of the dump tells of, if it is one of this adapter.
void CollectAddress(std::span<const std::byte> arrBody, int nIndex, std::vector<ADDRESS>& vecAddress) {
    if (arrBody.size() < sizeof(ifaddrmsg)) {
        return;
    }
    const auto objAddress = ReadStructure<ifaddrmsg>(arrBody);
    if (objAddress.ifa_index != static_cast<unsigned>(nIndex) || objAddress.ifa_family != AF_INET) {
        return;
    }
    auto arrLeft = arrBody.subspan(sizeof objAddress);
    while (arrLeft.size() >= sizeof(rtattr)) {
        const auto objAttribute = ReadStructure<rtattr>(arrLeft);
        if (objAttribute.rta_len < sizeof objAttribute || objAttribute.rta_len > arrLeft.size()) {
            return;
        }
        if (objAttribute.rta_type == IFA_LOCAL && objAttribute.rta_len == RTA_LENGTH(sizeof(std::uint32_t))) {
            const auto nLocal = ReadStructure<std::uint32_t>(arrLeft.subspan(sizeof objAttribute));
            vecAddress.push_back({ntohl(nLocal), objAddress.ifa_prefixlen});
        }
        arrLeft = arrLeft.subspan(std::min<std::size_t>(RTA_ALIGN(objAttribute.rta_len), arrLeft.size()));
    }
}

ifaddrmsg DescribeAddress(int nIndex, std::uint8_t nPrefixLength) {
    ifaddrmsg objAddress{};
    objAddress.ifa_family = AF_INET;
    objAddress.ifa_prefixlen = nPrefixLength;
    objAddress.ifa_index = static_cast<unsigned>(nIndex);
    return objAddress;
}

ifreq NameAdapter(const std::string& strName) {
    ifreq objRequest{};
    strName.copy(objRequest.ifr_name, IFNAMSIZ - 1);
    return objRequest;
}

/// Megabits per second, or 0 where the adapter's driver doesn't know.
std::uint32_t ReadLinkSpeed(int nSocket, const std::string& strName) {
    ethtool_cmd objCommand{};
    objCommand.cmd = ETHTOOL_GSET;
    ifreq objRequest = NameAdapter(strName);
    objRequest.ifr_data = reinterpret_cast<char*>(&objCommand);
    if (ioctl(nSocket, SIOCETHTOOL, &objRequest) != 0) {
        return 0;
    }
    const std::uint32_t nSpeed = ethtool_cmd_speed(&objCommand);
    return nSpeed == static_cast<std::uint32_t>(SPEED_UNKNOWN) ? 0 : nSpeed;
}

/// Closes a descriptor that serves for ioctl alone.
class CControlSocket {
public:
    CControlSocket() : m_nSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        if (m_nSocket < 0) {
            ThrowErrno(errno, "make a socket");
        }
    }
    ~CControlSocket() { close(m_nSocket); }
    CControlSocket(const CControlSocket&) = delete;
    CControlSocket& operator=(const CControlSocket&) = delete;

    void Call(unsigned long nRequest, ifreq& objRequest, const std::string& strWhat) const {
        if (ioctl(m_nSocket, nRequest, &objRequest) != 0) {
            ThrowErrno(errno, strWhat);
        }
    }
    [[nodiscard]] int Get() const { return m_nSocket; }

private:
    int m_nSocket;
};

}  // namespace

CAdapterSocket::CAdapterSocket(std::string strName) : m_strName(std::move(strName)) {
    if (m_strName.empty() || m_strName.size() >= IFNAMSIZ) {
        ThrowErrno(ENODEV, "adapter '" + m_strName + "'");
    }
    const CControlSocket objControl;
    ifreq objRequest = NameAdapter(m_strName);
    objControl.Call(SIOCGIFINDEX, objRequest, "adapter '" + m_strName + "'");
    m_nIndex = objRequest.ifr_ifindex;
    objControl.Call(SIOCGIFHWADDR, objRequest, "read the MAC of '" + m_strName + "'");
    if (objRequest.ifr_hwaddr.sa_family != ARPHRD_ETHER) {
        ThrowErrno(EPROTONOSUPPORT, "'" + m_strName + "' is no Ethernet adapter");
    }
    std::memcpy(m_arrMAC.data(), objRequest.ifr_hwaddr.sa_data, m_arrMAC.size());
    objControl.Call(SIOCGIFFLAGS, objRequest, "read the state of '" + m_strName + "'");
    if ((objRequest.ifr_flags & IFF_UP) == 0) {
        objRequest.ifr_flags = static_cast<short>(objRequest.ifr_flags | IFF_UP);
        objControl.Call(SIOCSIFFLAGS, objRequest, "switch on '" + m_strName + "'");
    }
    const std::uint32_t nSpeed = ReadLinkSpeed(objControl.Get(), m_strName);
    m_nLinkSpeed = nSpeed == 0 ? kUsualLinkSpeed : nSpeed;

    m_nSocket = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (m_nSocket < 0) {
        ThrowErrno(errno, "make a routing socket");
    }
}

CAdapterSocket::~CAdapterSocket() {
    close(m_nSocket);
}

void CAdapterSocket::RequirePresence() const {
    ifreq objRequest{};
    objRequest.ifr_ifindex = m_nIndex;
    if (ioctl(m_nSocket, SIOCGIFNAME, &objRequest) != 0) {
        ThrowErrno(errno, "adapter '" + m_strName + "' has gone");
    }
}

void CAdapterSocket::RemoveAddresses() {
    const std::string strWhat = "remove the addresses of '" + m_strName + "'";
    std::vector<ADDRESS> vecAddress;
    CRequest objDump(RTM_GETADDR, NLM_F_DUMP, DescribeAddress(m_nIndex, 0));
    const int nListed = Ask(m_nSocket, objDump.Finish(), [&](const nlmsghdr& objHeader, auto arrBody) {
        if (objHeader.nlmsg_type == RTM_NEWADDR) {
            CollectAddress(arrBody, m_nIndex, vecAddress);
        }
    });
    if (nListed != 0) {
        ThrowErrno(nListed, strWhat);
    }
    for (const ADDRESS& objAddress : vecAddress) {
        CRequest objDelete(RTM_DELADDR, NLM_F_ACK, DescribeAddress(m_nIndex, objAddress.PrefixLength));
        objDelete.AddAttribute(IFA_LOCAL, objAddress.Local);
        const int nDeleted = Ask(m_nSocket, objDelete.Finish(), [](const nlmsghdr&, auto) {});
        // The kernel removes the secondary addresses of a subnet together with its first.
        if (nDeleted != 0 && nDeleted != EADDRNOTAVAIL) {
            ThrowErrno(nDeleted, strWhat);
        }
    }
}

void CAdapterSocket::SetAddress(std::uint32_t nAddress, std::uint32_t nMask) {
    RemoveAddresses();
    const auto nPrefixLength = static_cast<std::uint8_t>(std::countl_one(nMask));
    CRequest objAdd(RTM_NEWADDR, NLM_F_ACK | NLM_F_CREATE | NLM_F_REPLACE, DescribeAddress(m_nIndex, nPrefixLength));
    objAdd.AddAttribute(IFA_LOCAL, nAddress);
    objAdd.AddAttribute(IFA_ADDRESS, nAddress);
    objAdd.AddAttribute(IFA_BROADCAST, nAddress | ~nMask);
    const int nAdded = Ask(m_nSocket, objAdd.Finish(), [](const nlmsghdr&, auto) {});
    if (nAdded != 0) {
        ThrowErrno(nAdded, "give '" + m_strName + "' an address");
    }
}

}  // namespace camera
