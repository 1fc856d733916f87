#include "tests/network/SwitchedNetwork.h"

#include <chrono>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace {

constexpr int kLostCamera = 2;  // of each switch

/// Two hexadecimal digits.
std::string Octet(int nValue) {
    constexpr const char* kDigits = "0123456789abcdef";
    return {kDigits[nValue / 16 % 16], kDigits[nValue % 16]};
}

void AwaitUp(const CNetworkNamespace& objNamespace, int nLinks) {
    objNamespace.Run("for i in $(seq 500); do [ $(ip -o link show | grep -c 'state UP') -ge " + std::to_string(nLinks) +
                     " ] && exit 0; sleep 0.02; done; exit 1");
}

}  // namespace

CSwitchedNetwork::CSwitchedNetwork(int nAdapters, int nCamerasEach, MakeConfiguration funConfigure)
    : m_nAdapters(nAdapters),
      m_nCamerasEach(nCamerasEach),
      m_funConfigure(std::move(funConfigure)),
      m_vecCameras(static_cast<std::size_t>(nAdapters * nCamerasEach)) {
    for (int i = 0; i < nAdapters; ++i) {
        m_objSwitches.Run("ip link add switch" + std::to_string(i) + " type bridge && ip link set switch" +
                          std::to_string(i) + " up");
        Cable(i);
    }
    for (int i = 0; i < nAdapters * nCamerasEach; ++i) {
        m_vecPlaces.push_back(std::make_unique<CNetworkNamespace>());
        CableCamera(i);
        SwitchOn(i);
    }
    AwaitLinks();
}

void CSwitchedNetwork::Cable(int nAdapter) {
    const std::string strNumber = std::to_string(nAdapter);
    const std::string strName = "eth" + strNumber;
    m_objSwitches.Run("ip link add uplink" + strNumber + " type veth peer name " + strName +
                      " address 02:4e:00:00:00:" + Octet(nAdapter) + " netns " + m_objMachine.GetPath() +
                      " && ip link set uplink" + strNumber + " master switch" + strNumber + " up");
    m_objMachine.Run("ip address add 10." + std::to_string(nAdapter + 1) + ".0.1/24 broadcast + dev " + strName +
                     " && ip link set " + strName + " up");
}

void CSwitchedNetwork::CableCamera(int nCamera) {
    const std::string strSwitch = std::to_string(nCamera / m_nCamerasEach);
    const std::string strPort = "port" + strSwitch + "-" + std::to_string(nCamera % m_nCamerasEach);
    m_objSwitches.Run("ip link add " + strPort + " type veth peer name cam address 02:4e:00:00:01:" + Octet(nCamera) +
                      " netns " + m_vecPlaces.back()->GetPath() + " && ip link set " + strPort + " master switch" +
                      strSwitch + " up");
}

void CSwitchedNetwork::AwaitLinks() const {
    AwaitUp(m_objMachine, m_nAdapters);
    AwaitUp(m_objSwitches, m_nAdapters * (2 + m_nCamerasEach));  // the switches themselves among them
    for (const auto& pPlace : m_vecPlaces) {
        AwaitUp(*pPlace, 1);
    }
}

void CSwitchedNetwork::SwitchOff(int nCamera) {
    m_vecCameras.at(static_cast<std::size_t>(nCamera)).reset();
}

void CSwitchedNetwork::SwitchOn(int nCamera) {
    const int nPlace = nCamera % m_nCamerasEach;
    const std::string strSubnet = std::to_string(nCamera / m_nCamerasEach + 1);
    camera::CAMERA_CONFIGURATION objConfiguration;
    objConfiguration.Interface = "cam";
    objConfiguration.IP =
        camera::ParseIPSetting(nPlace == kLostCamera ? "172.16." + strSubnet + ".9/24"
                                                     : "10." + strSubnet + ".0." + std::to_string(nPlace + 11) + "/24");
    if (m_funConfigure) {
        m_funConfigure(nCamera, objConfiguration);
    }
    const auto nIndex = static_cast<std::size_t>(nCamera);
    for (int i = 0; m_vecCameras.at(nIndex) == nullptr; ++i) {
        try {
            m_vecCameras[nIndex] = std::make_unique<CRunningCamera>(*m_vecPlaces.at(nIndex), objConfiguration);
        } catch (const std::system_error& objError) {
            // A command that another thread is starting holds the last camera's socket until it runs.
            if (objError.code() != std::errc::address_in_use || i == 500) {
                throw;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
}
