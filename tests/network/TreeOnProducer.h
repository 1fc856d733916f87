#pragma once

#include <cstddef>

#include <boost/pointer_cast.hpp>
#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/GevInterface.h"
#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/GevUpdateAgency.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassMain/TLManager.h"
#include "support/Environment.h"
#include "tests/TLClass/TemporaryDirectory.h"

/// The module tree of the process on the bundled producer, which it finds as every program does. PRODUCER_CTI_DIRECTORY
/// is where that lies.
class CTreeOnProducer {
public:
    CTreeOnProducer() {
        SetEnvironment("GENICAM_GENTL64_PATH", PRODUCER_CTI_DIRECTORY);
        SetEnvironment("ALLUSERSPROFILE", m_objDirectory.Path("profile"));
        GetTLManager()->DoInit({"ZrGVTL.cti"});
    }
    ~CTreeOnProducer() { GetTLManager()->DoUninit(); }
    CTreeOnProducer(const CTreeOnProducer&) = delete;
    CTreeOnProducer& operator=(const CTreeOnProducer&) = delete;

    static boost::shared_ptr<CGevTL> TL() {
        return boost::dynamic_pointer_cast<CGevTL>(GetTLManager()->GetTLList().at(0));
    }

    static boost::shared_ptr<CGevInterface> Interface(std::size_t nIndex) {
        return boost::dynamic_pointer_cast<CGevInterface>(TL()->GetInterfaceList().at(nIndex));
    }

    /// One update of everything, as the enumeration service makes it: on the adapters of the namespace that the calling
    /// thread is in.
    /// @return how many cameras are listed after it
    static std::size_t Update(std::uint64_t nWindowMs) {
        constexpr std::uint64_t kDelayMs = 1;
        bool bChanged = false;
        CGevUpdateAgency({TL()}).DoLimitedBroadcastUpdate(nWindowMs, kDelayMs, &bChanged);
        std::size_t nCameras = 0;
        for (const boost::shared_ptr<IInterface>& pInterface : TL()->GetInterfaceList()) {
            nCameras += pInterface->GetDeviceList().size();
        }
        return nCameras;
    }

private:
    CTemporaryDirectory m_objDirectory;
};
