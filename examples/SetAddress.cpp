// set-address: gives a camera another address, for now or to keep.
//
//     set-address CAMERA ADDRESS MASK          until the camera's next start, also for one in a wrong subnet
//     set-address CAMERA ADDRESS MASK --keep   and from its next start on, for one that can be reached
//
// CAMERA is an ID (which may have blanks: quote it), a serial number or a user's name, as list-cameras shows them. No
// other program may control it meanwhile.
//
// Set GENICAM_GENTL64_PATH to the folder of ZrGVTL.cti first.

#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "examples/Session.h"

namespace {

constexpr const char* kProgram = "set-address";
constexpr const char* kUsage = "Usage: set-address CAMERA ADDRESS MASK [--keep]\n";

/// Broadcasts the address to the camera's MAC, and returns when the camera is heard with it.
/// @throws CZrException  it isn't heard, another application controls it, the address makes no sense
void ForceAddress(IDevice& objDevice, const std::string& strAddress, const std::string& strMask) {
    const std::string strNoGateway;
    objDevice.DoForceIp(strAddress, strMask, strNoGateway);
}

/// Writes the address that the camera starts with, over a control channel of its own. An empty text leaves what the
/// camera has.
/// @throws CZrException  the camera can't be reached, another application controls it
void KeepAddress(IDevice& objDevice, const std::string& strAddress, const std::string& strMask) {
    // The ways to an address that the camera is to try, in this order: persistent 1, DHCP 2, link-local 4, added up.
    constexpr std::uint32_t kPersistentOrLinkLocal = 1 + 4;
    const std::string strGatewayAsItIs, strNameAsItIs;
    objDevice.DoIpConfiguration(kPersistentOrLinkLocal, strAddress, strMask, strGatewayAsItIs, strNameAsItIs);
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> vecArgument(argv + (argc > 0 ? 1 : 0), argv + argc);
    const bool bKeep = std::erase(vecArgument, "--keep") != 0;
    if (vecArgument.size() == 1 && vecArgument[0] == "--help") {
        std::cout << kUsage;
        return 0;
    }
    if (vecArgument.size() != 3) {
        std::cerr << kUsage;
        return 2;
    }
    return RunExample(kProgram, [&] {
        const CSession objSession{std::chrono::milliseconds(500)};
        // It stays closed: the producer reaches it through its adapter.
        const auto pDevice = objSession.FindCamera(vecArgument[0]);
        if (bKeep) {
            KeepAddress(*pDevice, vecArgument[1], vecArgument[2]);
        } else {
            ForceAddress(*pDevice, vecArgument[1], vecArgument[2]);
        }
        std::cout << vecArgument[1] << (bKeep ? ": kept for the next start\n" : ": the camera answers there\n");
    });
}
