// list-cameras: shows every camera that answers, below the network adapter that it answered on.
//
//     list-cameras [WAIT]      WAIT: how many milliseconds cameras are given to answer, 500 if left out
//
// Set GENICAM_GENTL64_PATH to the folder of ZrGVTL.cti first. No camera is opened or changed.

#include <charconv>
#include <iomanip>
#include <iostream>
#include <string>
#include <string_view>

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassMain/GevDevice.h"
#include "examples/Session.h"
#include "support/Address.h"

namespace {

constexpr const char* kProgram = "list-cameras";
constexpr const char* kUsage = "Usage: list-cameras [WAIT]   (milliseconds, 1 to 60000; 500 if left out)\n";

/// @return 0 if the text isn't such a number
int ParseWait(std::string_view strText) {
    int nWaitMs = 0;
    const auto [pEnd, nError] = std::from_chars(strText.data(), strText.data() + strText.size(), nWaitMs);
    const bool bWhole = nError == std::errc() && pEnd == strText.data() + strText.size();
    return bWhole && nWaitMs >= 1 && nWaitMs <= 60000 ? nWaitMs : 0;
}

std::string AddressOf(const boost::shared_ptr<IDevice>& pDevice) {
    // What only GigE Vision cameras have stands in a class of their own.
    const auto pGevDevice = boost::dynamic_pointer_cast<CGevDevice>(pDevice);
    if (pGevDevice == nullptr || pGevDevice->GetGevDevInfo().IPAddressValid == 0) {
        return "-";
    }
    return IPToString(static_cast<std::uint32_t>(pGevDevice->GetGevDevInfo().IPAddress));
}

const char* AccessOf(const DEV_MODULE_INFO& objInformation) {
    switch (objInformation.AccessStatusValid ? objInformation.AccessStatus : DEVICE_ACCESS_STATUS_UNKNOWN) {
        case DEVICE_ACCESS_STATUS_READWRITE:
            return "free";
        case DEVICE_ACCESS_STATUS_UNKNOWN:
            return "-";
        case DEVICE_ACCESS_STATUS_NOACCESS:
            return "no access";  // held for itself by another program, or in a subnet that nothing reaches
        default:
            return "in use";
    }
}

void PrintCamera(const boost::shared_ptr<IDevice>& pDevice) {
    // Two records tell of a camera: what the producer knows, and what the features of the adapter say. A field that
    // couldn't be read is empty.
    const DEV_MODULE_INFO objInformation = pDevice->GetDeviceInformation();
    const COMMON_DEVICE_INFO objCommon = pDevice->GetCommonInformation();
    const char* pAccess = AccessOf(objInformation);
    std::cout << "  " << std::left << std::setw(36) << objInformation.ID << ' ' << std::setw(15) << AddressOf(pDevice)
              << ' ' << std::setw(9) << pAccess << ' ' << objInformation.Vendor << ' ' << objInformation.Model
              << ", serial number " << objCommon.SerialNumber;
    if (!objCommon.UserID.empty()) {
        std::cout << ", \"" << objCommon.UserID << '"';
    }
    std::cout << '\n';
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::string_view(argv[1]) == "--help") {
        std::cout << kUsage;
        return 0;
    }
    const int nWaitMs = argc == 1 ? 500 : argc == 2 ? ParseWait(argv[1]) : 0;
    if (nWaitMs == 0) {
        std::cerr << kUsage;
        return 2;
    }
    return RunExample(kProgram, [nWaitMs] {
        const CSession objSession{std::chrono::milliseconds(nWaitMs)};
        const auto vecInterface = objSession.GetInterfaces();
        if (vecInterface.empty()) {
            std::cout << "No network adapter with an address\n";
        }
        for (const auto& pInterface : vecInterface) {
            const auto vecDevice = pInterface->GetDeviceList();
            std::cout << pInterface->GetInterfaceInformation().ID << (vecDevice.empty() ? ": no camera\n" : ":\n");
            for (const auto& pDevice : vecDevice) {
                PrintCamera(pDevice);
            }
        }
    });
}
