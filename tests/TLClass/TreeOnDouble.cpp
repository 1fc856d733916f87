#include "tests/TLClass/TreeOnDouble.h"

#include <boost/pointer_cast.hpp>

#include "support/Environment.h"

CTreeOnDouble::CTreeOnDouble() : m_objLibrary(PRODUCER_DOUBLE) {
    SetEnvironment("GENICAM_GENTL64_PATH", PRODUCER_DOUBLE_DIRECTORY);
    SetEnvironment("ALLUSERSPROFILE", m_objDirectory.Path("profile"));
}

CTreeOnDouble::~CTreeOnDouble() {
    Manager().DoUninit();
    while (!Manager().GetTLList().empty()) {
        Manager().RemoveLastTL();
    }
}

void CTreeOnDouble::Init() const {
    Manager().DoInit({"ZrGVTL.cti"});
}

boost::shared_ptr<CGevTL> CTreeOnDouble::TL() {
    return boost::dynamic_pointer_cast<CGevTL>(Manager().GetTLList().at(0));
}

bool CTreeOnDouble::UpdateInterfaces() {
    bool bChanged = false;
    TL()->DoUpdateInterfaceList(0, &bChanged);
    return bChanged;
}

boost::shared_ptr<CGevInterface> CTreeOnDouble::Interface(const std::string& strID) {
    for (const boost::shared_ptr<IInterface>& pInterface : TL()->GetInterfaceList()) {
        if (pInterface->GetInterfaceInformation().ID == strID) {
            return boost::dynamic_pointer_cast<CGevInterface>(pInterface);
        }
    }
    return nullptr;
}

boost::shared_ptr<CGevInterface> CTreeOnDouble::AddInterface(const std::string& strID) const {
    Double().AddInterface(strID);
    UpdateInterfaces();
    return Interface(strID);
}

bool UpdateDevices(CInterface& objInterface) {
    bool bChanged = false;
    objInterface.DoUpdateDeviceList(0, &bChanged);
    return bChanged;
}

std::vector<std::string> IDsOf(const std::vector<boost::shared_ptr<IInterface>>& vecInterface) {
    std::vector<std::string> vecID;
    vecID.reserve(vecInterface.size());
    for (const boost::shared_ptr<IInterface>& pInterface : vecInterface) {
        vecID.push_back(pInterface->GetInterfaceInformation().ID);
    }
    return vecID;
}

std::vector<std::string> IDsOf(const std::vector<boost::shared_ptr<IDevice>>& vecDevice) {
    std::vector<std::string> vecID;
    vecID.reserve(vecDevice.size());
    for (const boost::shared_ptr<IDevice>& pDevice : vecDevice) {
        vecID.push_back(pDevice->GetDeviceInformation().ID);
    }
    return vecID;
}
