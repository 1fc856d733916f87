#include "producer/wire/AdapterSocket.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <map>
#include <memory>
#include <span>
#include <utility>

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "gev/BigEndian.h"
#include "producer/wire/SocketDescriptor.h"

namespace producer {

namespace {

constexpr std::chrono::seconds kLongestAnswer{2};  // the kernel answers at once; this only keeps a fault from hanging
constexpr std::size_t kBufferSize = 65'536;        // of one datagram of an answer
constexpr int kMostAttempts = 5;                   // a dump that the tables changed under is asked for again

/// The attributes of one message of the kernel, by their type.
class CAttributes {
public:
    explicit CAttributes(std::span<const std::byte> objBytes) : m_objBytes(objBytes) {}

    std::span<const std::byte> Find(unsigned nType) const {
        auto objRest = m_objBytes;
        while (objRest.size() >= sizeof(rtattr)) {
            rtattr objAttribute{};
            std::memcpy(&objAttribute, objRest.data(), sizeof objAttribute);
            if (objAttribute.rta_len < sizeof objAttribute || objAttribute.rta_len > objRest.size()) {
                break;
            }
            if ((objAttribute.rta_type & NLA_TYPE_MASK) == nType) {
                return objRest.subspan(sizeof objAttribute, objAttribute.rta_len - sizeof objAttribute);
            }
            objRest = objRest.subspan(std::min<std::size_t>(RTA_ALIGN(objAttribute.rta_len), objRest.size()));
        }
        return {};
    }

    /// An IPv4 address, first octet highest; 0 without it.
    std::uint32_t FindAddress(unsigned nType) const {
        const auto objValue = Find(nType);
        return objValue.size() == 4 ? gev::Get32(objValue, 0) : 0;
    }

    /// A number in the machine's own order; nOther without it.
    std::uint32_t FindNumber(unsigned nType, std::uint32_t nOther) const {
        const auto objValue = Find(nType);
        if (objValue.size() == 4) {
            std::memcpy(&nOther, objValue.data(), 4);
        }
        return nOther;
    }

private:
    std::span<const std::byte> m_objBytes;
};

/// The kernel's tables of links, addresses and routes, one question after the other.
class CKernelTables {
public:
    CKernelTables() : m_objDescriptor(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE)) {
        if (m_objDescriptor.Get() < 0) {
            ThrowSocketError(errno, "ask the kernel for the network adapters");
        }
    }

    /// Calls funEntry with the fixed part and the attributes of each entry of a table.
    /// @return false when the table changed meanwhile, so that the entries may not belong together
    template <class Fixed, class Entry>
    bool Dump(unsigned short nQuestion, unsigned short nAnswer, Entry funEntry) {
        struct {
            nlmsghdr Header;
            Fixed Body;
        } objQuestion{};
        objQuestion.Header.nlmsg_len = sizeof objQuestion;
        objQuestion.Header.nlmsg_type = nQuestion;
        objQuestion.Header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
        objQuestion.Header.nlmsg_seq = ++m_nSequence;
        SetFamily(objQuestion.Body);
        if (send(m_objDescriptor.Get(), &objQuestion, sizeof objQuestion, 0) < 0) {
            ThrowSocketError(errno, "ask the kernel for the network adapters");
        }
        bool bWhole = true;
        const auto funMessage = [&](const nlmsghdr& objHeader, std::span<const std::byte> objBody) {
            bWhole = bWhole && (objHeader.nlmsg_flags & NLM_F_DUMP_INTR) == 0;  // which may stand on the last one alone
            if (objHeader.nlmsg_type == nAnswer && objBody.size() >= sizeof(Fixed)) {
                Fixed objFixed{};
                std::memcpy(&objFixed, objBody.data(), sizeof objFixed);
                const std::size_t nFixed = std::min<std::size_t>(NLMSG_ALIGN(sizeof objFixed), objBody.size());
                funEntry(objFixed, CAttributes(objBody.subspan(nFixed)));
            }
        };
        while (Receive(funMessage)) {
        }
        return bWhole;
    }

private:
    static void SetFamily(ifinfomsg& objBody) { objBody.ifi_family = AF_UNSPEC; }
    static void SetFamily(ifaddrmsg& objBody) { objBody.ifa_family = AF_INET; }
    static void SetFamily(rtmsg& objBody) { objBody.rtm_family = AF_INET; }

    /// One datagram of an answer. @return whether more belong to it.
    template <class Message>
    bool Receive(Message funMessage) {
        if (!WaitReadable({m_objDescriptor.Get()}, Clock::now() + kLongestAnswer)) {
            ThrowSocketError(ETIMEDOUT, "ask the kernel for the network adapters");
        }
        const auto nReceived = recv(m_objDescriptor.Get(), m_pBuffer.get(), kBufferSize, 0);
        if (nReceived < 0) {
            if (errno == EINTR) {
                return true;
            }
            ThrowSocketError(errno, "ask the kernel for the network adapters");
        }
        auto objRest = std::span<const std::byte>(m_pBuffer.get(), static_cast<std::size_t>(nReceived));
        while (objRest.size() >= sizeof(nlmsghdr)) {
            nlmsghdr objHeader{};
            std::memcpy(&objHeader, objRest.data(), sizeof objHeader);
            if (objHeader.nlmsg_len < sizeof objHeader || objHeader.nlmsg_len > objRest.size()) {
                break;
            }
            if (objHeader.nlmsg_seq == m_nSequence) {
                if (objHeader.nlmsg_type == NLMSG_ERROR) {
                    ThrowSocketError(EIO, "ask the kernel for the network adapters");
                }
                funMessage(objHeader, objRest.subspan(sizeof objHeader, objHeader.nlmsg_len - sizeof objHeader));
                if (objHeader.nlmsg_type == NLMSG_DONE) {
                    return false;
                }
            }
            objRest = objRest.subspan(std::min<std::size_t>(NLMSG_ALIGN(objHeader.nlmsg_len), objRest.size()));
        }
        return true;
    }

    CSocketDescriptor m_objDescriptor;
    std::uint32_t m_nSequence = 0;
    // Left as it is: to clear it would cost more than all the rest of a look at the tables.
    std::unique_ptr<std::byte[]> m_pBuffer = std::make_unique_for_overwrite<std::byte[]>(kBufferSize);
};

using AdapterMap = std::map<std::uint32_t, ADAPTER>;  // by number

void AddLink(AdapterMap& mapAdapters, const ifinfomsg& objLink, const CAttributes& objAttributes) {
    if ((objLink.ifi_flags & IFF_UP) == 0 || (objLink.ifi_flags & IFF_LOOPBACK) != 0) {
        return;
    }
    ADAPTER objAdapter;
    objAdapter.Index = static_cast<std::uint32_t>(objLink.ifi_index);
    const auto objName = objAttributes.Find(IFLA_IFNAME);
    const std::string strName(reinterpret_cast<const char*>(objName.data()), objName.size());
    objAdapter.Name = strName.substr(0, strName.find('\0'));
    if (const auto objMac = objAttributes.Find(IFLA_ADDRESS); objMac.size() == 6) {
        objAdapter.Mac = std::uint64_t{gev::Get16(objMac, 0)} << 32 | gev::Get32(objMac, 2);
    }
    objAdapter.Mtu = objAttributes.FindNumber(IFLA_MTU, 0);
    objAdapter.HasLink = (objLink.ifi_flags & IFF_RUNNING) != 0;
    mapAdapters.emplace(objAdapter.Index, std::move(objAdapter));
}

void AddAddress(AdapterMap& mapAdapters, const ifaddrmsg& objAddress, const CAttributes& objAttributes) {
    const auto itAdapter = mapAdapters.find(objAddress.ifa_index);
    if (itAdapter == mapAdapters.end() || objAddress.ifa_family != AF_INET || objAddress.ifa_prefixlen > 32) {
        return;
    }
    ADAPTER_ADDRESS objOwn;
    objOwn.Address = objAttributes.FindAddress(IFA_LOCAL);
    objOwn.Mask = objAddress.ifa_prefixlen == 0 ? 0 : ~std::uint32_t{0} << (32 - objAddress.ifa_prefixlen);
    objOwn.Broadcast = objAddress.ifa_prefixlen > 30 ? 0 : objOwn.Address | ~objOwn.Mask;
    if (objOwn.Address != 0) {
        itAdapter->second.Addresses.push_back(objOwn);
    }
}

/// Default routes alone; of two the one that the kernel prefers.
class CGatewayChoice {
public:
    void Add(AdapterMap& mapAdapters, const rtmsg& objRoute, const CAttributes& objAttributes) {
        const std::uint32_t nGateway = objAttributes.FindAddress(RTA_GATEWAY);
        const auto itAdapter = mapAdapters.find(objAttributes.FindNumber(RTA_OIF, 0));
        if (objRoute.rtm_family != AF_INET || objRoute.rtm_dst_len != 0 || nGateway == 0 ||
            itAdapter == mapAdapters.end()) {
            return;
        }
        const std::uint32_t nMetric = objAttributes.FindNumber(RTA_PRIORITY, 0);
        const auto [itBest, bFirst] = m_mapMetrics.try_emplace(itAdapter->first, nMetric);
        if (bFirst || nMetric < itBest->second) {
            itBest->second = nMetric;
            itAdapter->second.Gateway = nGateway;
        }
    }

private:
    std::map<std::uint32_t, std::uint32_t> m_mapMetrics;  // of the gateway chosen, by the adapter's number
};

bool Collect(AdapterMap& mapAdapters) {
    CKernelTables objTables;
    bool bWhole = objTables.Dump<ifinfomsg>(RTM_GETLINK, RTM_NEWLINK, [&](const auto& objLink, const auto& objRest) {
        AddLink(mapAdapters, objLink, objRest);
    });
    bWhole &= objTables.Dump<ifaddrmsg>(RTM_GETADDR, RTM_NEWADDR, [&](const auto& objAddress, const auto& objRest) {
        AddAddress(mapAdapters, objAddress, objRest);
    });
    CGatewayChoice objChoice;
    bWhole &= objTables.Dump<rtmsg>(RTM_GETROUTE, RTM_NEWROUTE, [&](const auto& objRoute, const auto& objRest) {
        objChoice.Add(mapAdapters, objRoute, objRest);
    });
    return bWhole;
}

}  // namespace

std::vector<ADAPTER> ListAdapters() {
    AdapterMap mapAdapters;
    for (int i = 0; i < kMostAttempts; ++i) {
        mapAdapters.clear();
        if (Collect(mapAdapters)) {
            break;
        }
    }
    std::vector<ADAPTER> vecAdapters;
    vecAdapters.reserve(mapAdapters.size());
    for (auto& [nIndex, objAdapter] : mapAdapters) {
        vecAdapters.push_back(std::move(objAdapter));
    }
    return vecAdapters;
}

std::optional<ADAPTER> FindAdapter(const std::string& strName) {
    auto vecAdapters = ListAdapters();
    const auto itAdapter = std::find_if(vecAdapters.begin(), vecAdapters.end(),
                                        [&](const ADAPTER& objAdapter) { return objAdapter.Name == strName; });
    if (itAdapter == vecAdapters.end()) {
        return std::nullopt;
    }
    return std::move(*itAdapter);
}

}  // namespace producer
