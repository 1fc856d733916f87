#include "camera/RouteSocket.h"

#include <cerrno>
#include <system_error>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace camera {

CRouteSocket::CRouteSocket() : m_nSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    if (m_nSocket < 0) {
        throw std::system_error(errno, std::generic_category(), "make a socket");
    }
}

CRouteSocket::~CRouteSocket() {
    close(m_nSocket);
}

// Connecting a UDP socket looks for a route.
int CRouteSocket::Find(std::uint32_t nAddress) const {
    sockaddr_in objAddress{};
    objAddress.sin_family = AF_UNSPEC;  // forgets the last one, and the address of this side with it
    if (connect(m_nSocket, reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress) != 0) {
        return errno;
    }
    objAddress.sin_family = AF_INET;
    objAddress.sin_port = htons(1);  // any will do
    objAddress.sin_addr.s_addr = htonl(nAddress);
    return connect(m_nSocket, reinterpret_cast<const sockaddr*>(&objAddress), sizeof objAddress) == 0 ? 0 : errno;
}

}  // namespace camera
