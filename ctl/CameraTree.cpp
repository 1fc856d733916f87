#include "ctl/CameraTree.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <string>
#include <thread>

#include <boost/pointer_cast.hpp>

#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/GevInterface.h"
#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassMain/IInterface.h"
#include "TLClass/TLClassMain/ITL.h"
#include "TLClass/TLClassMain/ITLManager.h"
#include "ctl/ErrorText.h"
#include "ctl/ExitCode.h"
#include "ctl/ProducerPath.h"
#include "support/Environment.h"
#include "support/Log.h"
#include "support/ZrException.h"

namespace {

// Between the starts of two adapters.
constexpr std::uint64_t kUpdateDelayMs = 1;

constexpr std::chrono::milliseconds kLongestLook{1000};

std::optional<std::uint32_t> AddressOf(std::int64_t nValue, std::uint8_t nValid) {
    return nValid != 0 ? std::optional(static_cast<std::uint32_t>(nValue)) : std::nullopt;
}

std::optional<std::uint64_t> MACOf(std::int64_t nValue, std::uint8_t nValid) {
    return nValid != 0 ? std::optional(static_cast<std::uint64_t>(nValue)) : std::nullopt;
}

ADAPTER AdapterOf(const IInterface& objInterface) {
    const IF_MODULE_INFO objInformation = objInterface.GetInterfaceInformation();
    ADAPTER objAdapter;
    objAdapter.strID = objInformation.ID;
    objAdapter.strName = objInformation.DisplayName.empty() ? objInformation.ID : objInformation.DisplayName;
    if (const auto* pGevInterface = dynamic_cast<const CGevInterface*>(&objInterface)) {
        const GEV_IF_INFO objGev = pGevInterface->GetGevIfInfo();
        objAdapter.nMAC = MACOf(objGev.MACAddress, objGev.MACAddressValid);
        // An adapter without an address tells 0.
        objAdapter.nAddress =
            AddressOf(objGev.IPAddress, objGev.IPAddress == 0 ? std::uint8_t{0} : objGev.IPAddressValid);
        objAdapter.nMask = AddressOf(objGev.SubnetMask, objGev.SubnetMaskValid);
        if (objAdapter.nMAC || objAdapter.nAddress) {
            objAdapter.objInterface =
                FindHostInterface(objAdapter.nMAC, objAdapter.nAddress).value_or(HOST_INTERFACE());
        }
    }
    return objAdapter;
}

CAMERA CameraOf(const ADAPTER& objAdapter, const boost::shared_ptr<IDevice>& pDevice) {
    const DEV_MODULE_INFO objInformation = pDevice->GetDeviceInformation();
    const COMMON_DEVICE_INFO objCommon = pDevice->GetCommonInformation();
    CAMERA objCamera;
    objCamera.objAdapter = objAdapter;
    objCamera.strID = objInformation.ID;
    objCamera.strVendor = objInformation.Vendor;
    objCamera.strModel = objInformation.Model;
    objCamera.strSerialNumber = objCommon.SerialNumber;
    objCamera.strUserName = objCommon.UserID;
    objCamera.strVersion = objCommon.Version;
    objCamera.nAccessStatus = objInformation.AccessStatus;
    objCamera.pDevice = pDevice;
    if (const auto* pGevDevice = dynamic_cast<const CGevDevice*>(pDevice.get())) {
        const GEV_DEV_INFO objGev = pGevDevice->GetGevDevInfo();
        objCamera.nMAC = MACOf(objGev.MACAddress, objGev.MACAddressValid);
        objCamera.nAddress = AddressOf(objGev.IPAddress, objGev.IPAddressValid);
        objCamera.nMask = AddressOf(objGev.SubnetMask, objGev.SubnetMaskValid);
        objCamera.nGateway = AddressOf(objGev.Gateway, objGev.GatewayValid);
    }
    return objCamera;
}

std::vector<boost::shared_ptr<IInterface>> AllInterfaces() {
    std::vector<boost::shared_ptr<IInterface>> vecAll;
    for (const boost::shared_ptr<ITL>& pTL : GetTLManager()->GetTLList()) {
        const std::vector<boost::shared_ptr<IInterface>> vecInterface = pTL->GetInterfaceList();
        vecAll.insert(vecAll.end(), vecInterface.begin(), vecInterface.end());
    }
    return vecAll;
}

}  // namespace

CCameraTree::CCameraTree() {
    try {
        GetTLManager()->DoInit({kProducerFileName});
    } catch (const CNotFoundTLError&) {
        throw CCommandError(EXIT_CODE::NoProducer,
                            std::string(kProducerFileName) + ": not found in " + kProducerPathVariable + " (" +
                                ReadEnvironment(kProducerPathVariable).value_or("") +
                                "). Name the folder that holds it: export " + kProducerPathVariable + "=/path/to/cti");
    } catch (const std::exception& objException) {
        throw CCommandError(EXIT_CODE::NoProducer,
                            std::string("the producer could not be started: ") + ErrorText(objException));
    }
}

CCameraTree::~CCameraTree() {
    try {
        for (const CAMERA& objCamera : GetCameras()) {
            if (objCamera.pDevice->IsOpened()) {
                objCamera.pDevice->DoCloseDevice();
            }
        }
        GetTLManager()->DoUninit();
    } catch (const std::exception& objException) {
        CLog::GetInstance()->Write(ErrorText(objException));
    }
}

void CCameraTree::Look(std::chrono::milliseconds nTime, const std::function<bool()>& fnIsEnough) {
    // All are of one length: a short last one would lose cameras that take their time to answer.
    const std::chrono::milliseconds nLook = std::min(nTime, kLongestLook);
    auto tNext = std::chrono::steady_clock::now();
    const auto tEnd = tNext + nTime;
    for (auto nLeft = nTime;; nLeft -= nLook) {
        Update(nLook);
        if (fnIsEnough() || nLeft <= nLook || std::chrono::steady_clock::now() >= tEnd) {
            return;
        }
        tNext += nLook;
        std::this_thread::sleep_until(tNext);  // a producer without an adapter doesn't wait
    }
}

void CCameraTree::Look(std::chrono::milliseconds nTime) {
    Look(nTime, [] { return false; });
}

/// Most cameras answer within milliseconds. One that is named beyond doubt is taken as soon as that, the others wait
/// until every camera has had its time.
CAMERA CCameraTree::FindCamera(const CAMERA_OPTIONS& objOptions) {
    const auto isFound = [&] { return IsSurelyFound(GetCameras(), objOptions.strCamera, objOptions.strAdapter); };
    const std::chrono::milliseconds nFirst = objOptions.nSearchTime / 10;
    Look(nFirst, isFound);
    if (!isFound()) {
        Look(objOptions.nSearchTime - nFirst, isFound);
    }
    return SelectCamera(GetCameras(), objOptions.strCamera, objOptions.strAdapter);
}

void CCameraTree::Update(std::chrono::milliseconds nTimeout) {
    std::vector<boost::shared_ptr<CGevTL>> vecGevTL;
    for (const boost::shared_ptr<ITL>& pTL : GetTLManager()->GetTLList()) {
        if (const auto pGevTL = boost::dynamic_pointer_cast<CGevTL>(pTL)) {
            vecGevTL.push_back(pGevTL);
        }
    }
    CGevUpdateAgency objAgency(vecGevTL);
    bool bChanged = false;
    objAgency.DoLimitedBroadcastUpdate(static_cast<std::uint64_t>(nTimeout.count()), kUpdateDelayMs, &bChanged);
}

std::vector<ADAPTER> CCameraTree::GetAdapters() const {
    std::vector<ADAPTER> vecAdapter;
    for (const boost::shared_ptr<IInterface>& pInterface : AllInterfaces()) {
        vecAdapter.push_back(AdapterOf(*pInterface));
    }
    return vecAdapter;
}

std::vector<CAMERA> CCameraTree::GetCameras() const {
    std::vector<CAMERA> vecCamera;
    for (const boost::shared_ptr<IInterface>& pInterface : AllInterfaces()) {
        const ADAPTER objAdapter = AdapterOf(*pInterface);
        for (const boost::shared_ptr<IDevice>& pDevice : pInterface->GetDeviceList()) {
            vecCamera.push_back(CameraOf(objAdapter, pDevice));
        }
    }
    return vecCamera;
}
