#include "examples/Session.h"

#include <iostream>
#include <stdexcept>
#include <utility>

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/ITLManager.h"
#include "support/Environment.h"
#include "support/Log.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kProducer = "ZrGVTL.cti";

// Between the first datagrams on two adapters.
constexpr std::uint64_t kDelayMs = 1;

void LoadProducer() {
    const std::string strFolders = ReadEnvironment("GENICAM_GENTL64_PATH").value_or("");
    if (strFolders.empty()) {
        throw std::runtime_error(std::string("GENICAM_GENTL64_PATH isn't set; it has to name the folder of ") +
                                 kProducer);
    }
    try {
        GetTLManager()->DoInit({kProducer});
    } catch (const CNotFoundTLError&) {
        throw std::runtime_error(std::string(kProducer) + ": not found in GENICAM_GENTL64_PATH (" + strFolders + ")");
    }
}

void LookForCameras(std::chrono::milliseconds nWait) {
    std::vector<boost::shared_ptr<CGevTL>> vecTL;
    for (const auto& pTL : GetTLManager()->GetTLList()) {
        if (const auto pGevTL = boost::dynamic_pointer_cast<CGevTL>(pTL)) {
            vecTL.push_back(pGevTL);
        }
    }
    // All adapters look at once. The limited broadcast also reaches cameras whose address doesn't fit the adapter's.
    bool bChanged = false;
    CGevUpdateAgency(vecTL).DoLimitedBroadcastUpdate(static_cast<std::uint64_t>(nWait.count()), kDelayMs, &bChanged);
}

bool IsCalled(const IDevice& objDevice, std::string_view strName) {
    const COMMON_DEVICE_INFO objInformation = objDevice.GetCommonInformation();
    return objDevice.GetDeviceInformation().ID == strName || objInformation.SerialNumber == strName ||
           objInformation.UserID == strName;
}

}  // namespace

CSession::CSession(std::chrono::milliseconds nWait) {
    CLog::GetInstance()->SetMode(0);  // with 1 the library tells on standard error what it lives with
    LoadProducer();
    try {
        LookForCameras(nWait);
    } catch (...) {
        GetTLManager()->DoUninit();  // no destructor runs for what wasn't made
        throw;
    }
}

CSession::~CSession() {
    try {
        GetTLManager()->DoUninit();
    } catch (const std::exception& objError) {
        std::cerr << kProducer << ": " << objError.what() << '\n';
    }
}

std::vector<boost::shared_ptr<IInterface>> CSession::GetInterfaces() const {
    std::vector<boost::shared_ptr<IInterface>> vecInterface;
    for (const auto& pTL : GetTLManager()->GetTLList()) {
        const auto vecOfTL = pTL->GetInterfaceList();
        vecInterface.insert(vecInterface.end(), vecOfTL.begin(), vecOfTL.end());
    }
    return vecInterface;
}

boost::shared_ptr<IDevice> CSession::FindCamera(std::string_view strName) const {
    boost::shared_ptr<IDevice> pFound;
    for (const auto& pInterface : GetInterfaces()) {
        for (const auto& pDevice : pInterface->GetDeviceList()) {
            if (!IsCalled(*pDevice, strName)) {
                continue;
            }
            if (pFound != nullptr) {
                throw std::runtime_error(std::string(strName) + ": more than one camera is called that; use the ID");
            }
            pFound = pDevice;
        }
    }
    if (pFound == nullptr) {
        throw std::runtime_error(std::string(strName) +
                                 ": no such camera has answered; list-cameras shows those that do");
    }
    return pFound;
}

boost::shared_ptr<IDevice> CSession::FindAnyCamera() const {
    for (const auto& pInterface : GetInterfaces()) {
        if (const auto vecDevice = pInterface->GetDeviceList(); !vecDevice.empty()) {
            return vecDevice.front();
        }
    }
    throw std::runtime_error("no camera has answered");
}

COpenCamera::COpenCamera(boost::shared_ptr<IDevice> pDevice) : m_pDevice(std::move(pDevice)) {
    m_pDevice->DoOpenDevice(DEVICE_ACCESS_CONTROL);
}

COpenCamera::~COpenCamera() {
    try {
        m_pDevice->DoCloseDevice();
    } catch (const std::exception& objError) {
        std::cerr << "The camera couldn't be closed: " << objError.what() << '\n';
    }
}

void PrintFailure(const char* pProgram) {
    try {
        throw;
    } catch (const CZrException& objError) {
        std::cerr << pProgram << ": " << objError.GetMessage() << '\n';  // what() has braces around it
    } catch (const std::exception& objError) {
        std::cerr << pProgram << ": " << objError.what() << '\n';
    }
}
