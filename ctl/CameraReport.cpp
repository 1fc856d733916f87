#include "ctl/CameraReport.h"

#include <ostream>

#include <nlohmann/json.hpp>

#include "ctl/Json.h"
#include "ctl/Table.h"
#include "support/Address.h"

namespace {

std::string AddressText(const std::optional<std::uint32_t>& nAddress) {
    return nAddress ? IPToString(*nAddress) : std::string();
}

std::string MACText(const std::optional<std::uint64_t>& nMAC) {
    return nMAC ? MACToString(*nMAC) : std::string();
}

nlohmann::ordered_json TextOrNull(const std::string& strText) {
    return strText.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(strText);
}

template <class T>
nlohmann::ordered_json ListOf(const std::vector<T>& vecRecord);

nlohmann::ordered_json ToJson(const HOST_ADDRESS& objAddress) {
    return {{"address", AddressText(objAddress.nAddress)}, {"mask", AddressText(objAddress.nMask)}};
}

nlohmann::ordered_json ToJson(const ADAPTER& objAdapter) {
    return {{"id", objAdapter.strID},
            {"name", objAdapter.strName},
            {"interface", TextOrNull(objAdapter.objInterface.strName)},
            {"mac", TextOrNull(MACText(objAdapter.nMAC))},
            {"address", TextOrNull(AddressText(objAdapter.nAddress))},
            {"mask", TextOrNull(AddressText(objAdapter.nMask))},
            {"addresses", ListOf(objAdapter.objInterface.vecAddress)}};
}

nlohmann::ordered_json ToJson(const CAMERA& objCamera) {
    return {{"id", objCamera.strID},
            {"adapter", objCamera.objAdapter.strName},
            {"interface", TextOrNull(objCamera.objAdapter.objInterface.strName)},
            {"vendor", TextOrNull(objCamera.strVendor)},
            {"model", TextOrNull(objCamera.strModel)},
            {"serial", TextOrNull(objCamera.strSerialNumber)},
            {"name", TextOrNull(objCamera.strUserName)},
            {"version", TextOrNull(objCamera.strVersion)},
            {"mac", TextOrNull(MACText(objCamera.nMAC))},
            {"address", TextOrNull(AddressText(objCamera.nAddress))},
            {"mask", TextOrNull(AddressText(objCamera.nMask))},
            {"gateway", TextOrNull(AddressText(objCamera.nGateway))},
            {"state", GetStateText(objCamera)}};
}

template <class T>
nlohmann::ordered_json ListOf(const std::vector<T>& vecRecord) {
    nlohmann::ordered_json objList = nlohmann::ordered_json::array();
    for (const T& objRecord : vecRecord) {
        objList.push_back(ToJson(objRecord));
    }
    return objList;
}

}  // namespace

void WriteCameraTable(std::ostream& objOut, const std::vector<CAMERA>& vecCamera) {
    std::vector<std::vector<std::string>> vecRow = {{"ADAPTER", "MODEL", "SERIAL", "NAME", "MAC", "ADDRESS", "STATE"}};
    for (const CAMERA& objCamera : vecCamera) {
        vecRow.push_back({objCamera.objAdapter.strName, objCamera.strModel, objCamera.strSerialNumber,
                          objCamera.strUserName, MACText(objCamera.nMAC), AddressText(objCamera.nAddress),
                          GetStateText(objCamera)});
    }
    WriteTable(objOut, vecRow);
}

void WriteCameraJson(std::ostream& objOut, const std::vector<ADAPTER>& vecAdapter,
                     const std::vector<CAMERA>& vecCamera) {
    WriteJson(objOut, {{"adapters", ListOf(vecAdapter)}, {"cameras", ListOf(vecCamera)}});
}

void WriteFoundCameraJson(std::ostream& objOut, const std::optional<CAMERA>& objCamera) {
    WriteJson(objOut, {{"camera", objCamera ? ToJson(*objCamera) : nlohmann::ordered_json()}});
}

void WriteCameraAt(std::ostream& objOut, const CAMERA& objCamera, std::string_view strMore) {
    objOut << Printable(objCamera.strID) << " is at " << AddressText(objCamera.nAddress) << " on "
           << Printable(objCamera.objAdapter.strName) << " (" << GetStateText(objCamera) << ')' << strMore << '\n';
}

void TellOfOtherSubnet(std::ostream& objErr, const CAMERA& objCamera) {
    if (IsInOtherSubnet(objCamera)) {
        const std::string& strInterface = objCamera.objAdapter.objInterface.strName;
        objErr
            << "That is in no subnet of this adapter: nothing opens the camera there until the adapter has an address "
               "in the camera's: sudo ip address add ADDRESS/24 broadcast + dev "
            << (strInterface.empty() ? "ADAPTER" : strInterface) << '\n';
    }
}
