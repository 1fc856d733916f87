#include "producer/modules/SystemModule.h"

#include <algorithm>
#include <utility>

#include "producer/ProducerError.h"
#include "producer/modules/LibraryPath.h"
#include "producer/wire/AdapterSocket.h"

namespace producer {

namespace {

constexpr std::int32_t kGenTLMajor = 1;
constexpr std::int32_t kGenTLMinor = 3;  // whose entries are the exported ones; 1.4 and 1.5 have more
constexpr std::int32_t kGevMajor = 2;
constexpr std::int32_t kGevMinor = 0;
constexpr const char* kModel = "ZrGVTL";
constexpr const char* kDisplayName = "Norvik GigE Vision";

std::string FileName() {
    const std::string& strPath = GetLibraryPath();
    return strPath.substr(strPath.rfind('/') + 1);
}

}  // namespace

CInfoValue GetProducerInfo(TL_INFO_CMD nCommand) {
    switch (nCommand) {
        case TL_INFO_ID:
            return CInfoValue::Text(std::string(kVendor) + ' ' + kModel);
        case TL_INFO_VENDOR:
            return CInfoValue::Text(kVendor);
        case TL_INFO_MODEL:
            return CInfoValue::Text(kModel);
        case TL_INFO_VERSION:
            return CInfoValue::Text(kProducerVersion);
        case TL_INFO_TLTYPE:
            return CInfoValue::Text("GEV");
        case TL_INFO_NAME:
            return CInfoValue::Text(FileName());
        case TL_INFO_PATHNAME:
            return CInfoValue::Text(GetLibraryPath());
        case TL_INFO_DISPLAYNAME:
            return CInfoValue::Text(kDisplayName);
        case TL_INFO_CHAR_ENCODING:
            return CInfoValue::Int32(TL_CHAR_ENCODING_UTF8);
        case TL_INFO_GENTL_VER_MAJOR:
            return CInfoValue::Uint32(kGenTLMajor);
        case TL_INFO_GENTL_VER_MINOR:
            return CInfoValue::Uint32(kGenTLMinor);
        default:
            throw CProducerError(GC_ERR_NOT_AVAILABLE, "a system has no info command " + std::to_string(nCommand));
    }
}

CSystemModule::CSystemModule(std::function<void()> funClosed)
    : CModule(
          "TLSystem", std::string(kVendor) + ' ' + kModel,
          {"NorvikSystem", "The network adapters of this machine", "TLPort", "6B1E3A52-0C3D-4E61-9A57-2F4D0B8C7E11"}),
      m_funClosed(std::move(funClosed)) {
    AddSystemFeatures();
    AddInterfaceFeatures();
    GetRegisters().Finish();
}

void CSystemModule::AddSystemFeatures() {
    CRegisterMap& objMap = GetRegisters();
    objMap.Category("SystemInformation");
    objMap.Text("TLID", "Identifies the producer", [this] { return GetModuleId(); }).Constant();
    objMap.Text("TLVendorName", "Who made the producer", [] { return kVendor; }).Constant();
    objMap.Text("TLModelName", "The name of the producer", [] { return kModel; }).Constant();
    objMap.Text("TLVersion", "The version of the producer", [] { return kProducerVersion; }).Constant();
    objMap.Text("TLFileName", "The name of the producer's file", FileName).Constant();
    objMap.Text("TLPath", "The path of the producer's file", GetLibraryPath).Constant();
    objMap.Text("TLDisplayName", "The producer's name for users", [] { return kDisplayName; }).Constant();
    objMap.Enumeration("TLType", "The transport layer", {{"GigEVision", 1}}, [] { return 1; }).Constant();
    objMap.Integer("GenTLVersionMajor", "Of the GenTL interface", [] { return kGenTLMajor; }).Constant();
    objMap.Integer("GenTLVersionMinor", "Of the GenTL interface", [] { return kGenTLMinor; }).Constant();
    objMap.Integer("GevVersionMajor", "Of the GigE Vision standard", [] { return kGevMajor; }).Constant();
    objMap.Integer("GevVersionMinor", "Of the GigE Vision standard", [] { return kGevMinor; }).Constant();
}

void CSystemModule::AddInterfaceFeatures() {
    CRegisterMap& objMap = GetRegisters();
    objMap.Category("InterfaceEnumeration");
    objMap.Command("InterfaceUpdateList", "Looks for the network adapters of this machine",
                   [this] { UpdateInterfaces(); });
    objMap
        .Integer("InterfaceSelector", "Selects the interface that the features below tell of",
                 [this] {
                     const std::lock_guard objLock(m_mtxList);
                     return static_cast<CFeature::Number>(m_nSelected);
                 })
        .Least(0)
        .Most([this] { return CFeature::Number{GetInterfaceCount()} - 1; })
        .Set([this](CFeature::Number nIndex) { Select(nIndex); });
    const auto funOf = [this](auto funValue) { return [this, funValue] { return funValue(GetSelected()); }; };
    objMap.Text("InterfaceID", "Identifies the interface", funOf([](const INTERFACE_ENTRY& obj) { return obj.Id; }))
        .SelectedBy("InterfaceSelector");
    objMap
        .Text("InterfaceDisplayName", "The interface's name for users",
              funOf([](const INTERFACE_ENTRY& obj) { return obj.DisplayName; }))
        .SelectedBy("InterfaceSelector");
    const auto funNumber = [&](const char* pszName, const char* pszToolTip, const char* pszShown, auto funValue) {
        objMap
            .Integer(pszName, pszToolTip, funOf([funValue](const INTERFACE_ENTRY& objEntry) {
                         return static_cast<CFeature::Number>(funValue(objEntry.Adapter));
                     }))
            .Shown(pszShown)
            .SelectedBy("InterfaceSelector");
    };
    funNumber("GevInterfaceMACAddress", "The MAC of the adapter", "MACAddress",
              [](const ADAPTER& objAdapter) { return objAdapter.Mac; });
    funNumber("GevInterfaceDefaultIPAddress", "The first IPv4 address of the adapter, 0 without one", "IPV4Address",
              [](const ADAPTER& objAdapter) { return objAdapter.GetDefaultAddress().Address; });
    funNumber("GevInterfaceDefaultSubnetMask", "The subnet mask that belongs to that address", "IPV4Address",
              [](const ADAPTER& objAdapter) { return objAdapter.GetDefaultAddress().Mask; });
    funNumber("GevInterfaceDefaultGateway", "The gateway of the adapter's default route, 0 without one", "IPV4Address",
              [](const ADAPTER& objAdapter) { return objAdapter.Gateway; });
}

std::uint32_t CSystemModule::GetInterfaceCount() const {
    const std::lock_guard objLock(m_mtxList);
    return static_cast<std::uint32_t>(m_vecInterface.size());
}

std::string CSystemModule::GetInterfaceId(std::uint32_t nIndex) const {
    const std::lock_guard objLock(m_mtxList);
    if (nIndex >= m_vecInterface.size()) {
        throw CProducerError(GC_ERR_INVALID_INDEX, "the list has " + std::to_string(m_vecInterface.size()) +
                                                       " interfaces, none with index " + std::to_string(nIndex));
    }
    return m_vecInterface[nIndex].Id;
}

INTERFACE_ENTRY CSystemModule::FindInterface(const std::string& strId) const {
    const std::lock_guard objLock(m_mtxList);
    const auto itEntry = std::find_if(m_vecInterface.begin(), m_vecInterface.end(),
                                      [&](const INTERFACE_ENTRY& objEntry) { return objEntry.Id == strId; });
    if (itEntry == m_vecInterface.end()) {
        throw CProducerError(GC_ERR_INVALID_ID,
                             "no interface \"" + strId + "\" was found by the last update of the list");
    }
    return *itEntry;
}

CInfoValue CSystemModule::GetInterfaceInfo(const std::string& strId, INTERFACE_INFO_CMD nCommand) const {
    return GetInterfaceEntryInfo(FindInterface(strId), nCommand);
}

INTERFACE_ENTRY CSystemModule::GetSelected() const {
    const std::lock_guard objLock(m_mtxList);
    if (m_nSelected >= m_vecInterface.size()) {
        throw CProducerError(GC_ERR_NOT_AVAILABLE, "no interface is listed");
    }
    return m_vecInterface[m_nSelected];
}

void CSystemModule::Select(std::int64_t nIndex) {
    const std::lock_guard objLock(m_mtxList);
    if (nIndex < 0 || static_cast<std::uint64_t>(nIndex) >= m_vecInterface.size()) {
        throw CProducerError(GC_ERR_INVALID_VALUE, "the list has " + std::to_string(m_vecInterface.size()) +
                                                       " interfaces, none with index " + std::to_string(nIndex));
    }
    m_nSelected = static_cast<std::size_t>(nIndex);
}

bool CSystemModule::UpdateInterfaces() {
    const std::lock_guard objUpdate(m_mtxUpdate);
    RequireOpen();
    LIST vecInterface;
    for (ADAPTER& objAdapter : ListAdapters()) {
        vecInterface.push_back(MakeInterfaceEntry(std::move(objAdapter)));
    }
    const std::lock_guard objLock(m_mtxList);
    if (vecInterface == m_vecInterface) {
        return false;
    }
    m_vecInterface = std::move(vecInterface);
    m_nSelected = m_vecInterface.empty() ? 0 : std::min(m_nSelected, m_vecInterface.size() - 1);
    return true;
}

void* CSystemModule::OpenInterface(const std::string& strId) {
    return m_objInterfaces.Open(strId, [&] {
        return std::make_shared<CInterfaceModule>(FindInterface(strId),
                                                  [this, strId] { m_objInterfaces.Forget(strId); });
    });
}

void CSystemModule::DoClose() noexcept {
    m_objInterfaces.CloseAll();
    m_funClosed();
}

}  // namespace producer
