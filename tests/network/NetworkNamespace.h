#pragma once

#include <functional>
#include <string>

/// Why this process can't make network namespaces, or an empty text when it can. Without root it moves the process into
/// a user namespace of its own at the first call, which needs that no other thread runs: ask before Qt starts.
std::string WhyNoNetworkNamespace();

/// A network namespace of a test's own: a machine with no adapter but its loopback, which is down.
///
/// Lives as long as this object or a thread or a socket inside it. May be used from any thread.
class CNetworkNamespace {
public:
    /// @throws std::system_error  when it can't be made
    CNetworkNamespace();
    ~CNetworkNamespace();
    CNetworkNamespace(const CNetworkNamespace&) = delete;
    CNetworkNamespace& operator=(const CNetworkNamespace&) = delete;

    /// Moves the calling thread inside for good; what it starts from then on is inside too.
    void Enter() const;

    /// Runs the function on a thread inside, waits for its end and passes on what it throws.
    void Do(const std::function<void()>& funBody) const;

    /// Runs a command line in a shell inside.
    /// @throws std::runtime_error  with the command line, unless it ends with 0
    void Run(const std::string& strCommand) const;

    /// The path by which `ip link set ... netns PATH` names it, good in this process and its children.
    std::string GetPath() const;

private:
    int m_nDescriptor = -1;
};

/// Puts a cable between two machines: one virtual adapter in each, both up. An address has the form 10.1.0.1/24; the
/// adapter gets the broadcast address that belongs to it, and none at all for an empty text. IPv6 stays off.
void Connect(const CNetworkNamespace& objNear, const std::string& strNearName, const std::string& strNearAddress,
             const CNetworkNamespace& objFar, const std::string& strFarName, const std::string& strFarAddress);
