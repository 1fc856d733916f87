#include "tests/network/NetworkNamespace.h"

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sched.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

[[noreturn]] void ThrowErrno(int nErrno, const std::string& strWhat) {
    throw std::system_error(nErrno, std::generic_category(), strWhat);
}

void OnOtherThread(const std::function<void()>& funBody) {
    std::exception_ptr pError;
    std::thread objThread([&] {
        try {
            funBody();
        } catch (...) {
            pError = std::current_exception();
        }
    });
    objThread.join();
    if (pError) {
        std::rethrow_exception(pError);
    }
}

/// Whether this process may make network namespaces as it stands.
bool IsAllowed() {
    try {
        const CNetworkNamespace objTrial;
        objTrial.Run("ip link set lo up 2>/dev/null");
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

/// Makes the process root of a user namespace of its own, where that is allowed.
void MoveIntoUserNamespace() {
    const auto nUser = geteuid();
    const auto nGroup = getegid();
    if (unshare(CLONE_NEWUSER) == 0) {
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << nUser << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << nGroup << " 1";
    }
}

std::string FindWhyNoNetworkNamespace() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no handler of SIGCHLD is in play
    if (std::system("ip -V >/dev/null 2>&1") != 0) {
        return "the command ip is missing (package iproute2)";
    }
    if (!IsAllowed()) {
        MoveIntoUserNamespace();
    }
    if (!IsAllowed()) {
        return "neither root nor user namespaces are to be had here, so no network namespace either";
    }
    return {};
}

}  // namespace

std::string WhyNoNetworkNamespace() {
    static const std::string s_strWhy = FindWhyNoNetworkNamespace();
    return s_strWhy;
}

CNetworkNamespace::CNetworkNamespace() {
    OnOtherThread([this] {
        if (unshare(CLONE_NEWNET) != 0) {
            ThrowErrno(errno, "make a network namespace");
        }
        m_nDescriptor = open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
        if (m_nDescriptor < 0) {
            ThrowErrno(errno, "open /proc/thread-self/ns/net");
        }
    });
}

CNetworkNamespace::~CNetworkNamespace() {
    close(m_nDescriptor);
}

void CNetworkNamespace::Enter() const {
    if (setns(m_nDescriptor, CLONE_NEWNET) != 0) {
        ThrowErrno(errno, "enter a network namespace");
    }
}

void CNetworkNamespace::Do(const std::function<void()>& funBody) const {
    OnOtherThread([&] {
        Enter();
        funBody();
    });
}

void CNetworkNamespace::Run(const std::string& strCommand) const {
    Do([&] {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): as above
        if (std::system(strCommand.c_str()) != 0) {
            throw std::runtime_error("failed: " + strCommand);
        }
    });
}

std::string CNetworkNamespace::GetPath() const {
    return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(m_nDescriptor);
}

void Connect(const CNetworkNamespace& objNear, const std::string& strNearName, const std::string& strNearAddress,
             const CNetworkNamespace& objFar, const std::string& strFarName, const std::string& strFarAddress) {
    objNear.Run("ip link add " + strNearName + " type veth peer name " + strFarName + " netns " + objFar.GetPath());
    const auto bringUp = [](const CNetworkNamespace& objSide, const std::string& strName,
                            const std::string& strAddress) {
        objSide.Run("echo 1 > /proc/sys/net/ipv6/conf/" + strName + "/disable_ipv6 2>/dev/null || true");
        if (!strAddress.empty()) {
            objSide.Run("ip address add " + strAddress + " broadcast + dev " + strName);
        }
        objSide.Run("ip link set " + strName + " up");
    };
    bringUp(objNear, strNearName, strNearAddress);
    bringUp(objFar, strFarName, strFarAddress);
}
