#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// An IPv4 address of an adapter, first octet highest.
struct HOST_ADDRESS {
    std::uint32_t nAddress = 0;
    std::uint32_t nMask = 0;
    bool bBroadcast = false;  ///< whether it has a broadcast address
};

/// A network interface of this machine.
struct HOST_INTERFACE {
    std::string strName;
    std::vector<HOST_ADDRESS> vecAddress;
};

struct HOST_ADAPTER {
    std::string strName;
    bool bUp = false;                       ///< switched on
    bool bLink = false;                     ///< a cable with life at its other end
    int nMtu = 0;                           ///< in bytes, with the IP header
    std::optional<int> nSpeed;              ///< in Mb/s
    std::optional<int> nReversePathFilter;  ///< its own; the stricter of this and that of all counts
    std::vector<HOST_ADDRESS> vecAddress;
};

/// What is known of packet filters.
struct HOST_FIREWALL {
    bool bKnown = false;                 ///< false where only root can see it
    std::vector<std::string> vecFilter;  ///< what may drop incoming packets: chains and their tables
};

struct PRODUCER_FOLDER {
    std::string strFolder;
    bool bExists = false;
    bool bHasProducer = false;
};

/// What of a machine decides whether cameras are seen, and how fast they stream.
struct HOST_FACTS {
    std::vector<HOST_ADAPTER> vecAdapter;            ///< without the loopback
    std::optional<int> nReversePathFilter;           ///< of all adapters
    std::optional<std::uint64_t> nReceiveBufferMax;  ///< the most that a socket may ask for, in bytes
    HOST_FIREWALL objFirewall;
    std::vector<PRODUCER_FOLDER> vecProducerFolder;  ///< the search path, in order
};

/// @param nMAC  of one of this machine's adapters, if it is known
/// @param nAddress  one of its addresses, if it has any
/// @return the only interface with both; none if there is no such one, or several
std::optional<HOST_INTERFACE> FindHostInterface(std::optional<std::uint64_t> nMAC,
                                                std::optional<std::uint32_t> nAddress);

/// Looks at this machine. Changes nothing, sends nothing; may start `nft` to see the packet filters.
HOST_FACTS ReadHostFacts();
