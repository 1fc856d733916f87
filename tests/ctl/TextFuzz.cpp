// Texts that a user types, a script passes or another program prints: each reader takes it or refuses it, and what it
// takes can be said again.

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include <QString>

#include "TLClass/TLClassMain/Ipcalc.h"
#include "app/RecoveryPackets.h"
#include "camera/CameraConfiguration.h"
#include "ctl/AddressText.h"
#include "ctl/HostFacts.h"
#include "producer/modules/AddressText.h"
#include "support/Address.h"
#include "support/Text.h"
#include "tests/FuzzInput.h"

namespace {

void TryAddresses(const std::string& strText) {
    if (const auto nAddress = ParseAddress(strText)) {
        Require(ParseAddress(IPToString(*nAddress)) == nAddress);
        Require(producer::AddressOfId("IP::" + IPToString(*nAddress)) == nAddress);
    }
    if (const auto nMac = ParseMAC(strText)) {
        Require(ParseMAC(MACToString(*nMac)) == nMac && *nMac >> 48 == 0);
    }
    producer::AddressOfId(strText);
}

void TryCalculator(const std::string& strText) {
    const Cipcalc objCalculator;
    const std::uint32_t nAddress = objCalculator.StringToIp(strText.c_str());
    objCalculator.IsValidIpAddress(strText.c_str());
    objCalculator.IsValidGateway(strText.c_str());
    objCalculator.IsValidSubnetMask(strText.c_str());
    for (const std::uint32_t nMask : {0U, 0xFFFFFF00U, 0xFFFFFFFFU, nAddress}) {
        objCalculator.GetSubnetCount(nAddress, nMask);
        objCalculator.GetHostCount(nAddress, nMask);
        objCalculator.IsMaskValidForIp(nAddress, nMask);
    }
    std::array<char, 16> szAddress{};
    objCalculator.IpToString(nAddress, szAddress.data());
    Require(szAddress.back() == 0);
}

void TryRecovery(const std::string& strMac, const std::string& strAddress) {
    const auto objPackets = FillRecoveryPackets(QString::fromStdString(strMac), QString::fromStdString(strAddress));
    // Whatever stands in the MAC, the commands stay what they are.
    Require(!objPackets || (objPackets->ForceIPEx[0] == 0x42 && objPackets->ForceIP[0] == 0x42));
}

void TryCameraOptions(const std::string& strText) {
    camera::FAULTS objFaults;
    try {
        camera::SetFault(objFaults, strText);
    } catch (const std::invalid_argument&) {
    }
    try {
        Require(camera::IsUsable(camera::ParseIPSetting(strText)));
    } catch (const std::invalid_argument&) {
    }
}

void TryTexts(const std::string& strText, const std::string& strSeparator) {
    std::size_t nBytes = 0;
    for (const std::string& strPiece : Split(strText, strSeparator)) {
        Require(!strPiece.empty());
        nBytes += strPiece.size();
    }
    Require(nBytes <= strText.size());
    std::wstring strWide;
    std::string strNarrow;
    if (StringToWString(strText, strWide)) {
        WStringToString(strWide.c_str(), strNarrow);
        std::wstring strAgain;
        Require(strNarrow.empty() || StringToWString(strNarrow, strAgain));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    CFuzzInput objInput(pData, nSize);
    const std::string strFirst = objInput.TakeText();
    const std::string strSecond = objInput.TakeText();
    TryAddresses(strFirst);
    TryCalculator(strFirst);
    TryRecovery(strFirst, strSecond);
    TryRecovery(strSecond, strFirst);
    TryCameraOptions(strFirst);
    TryTexts(strFirst, strSecond);
    ReadInputFilters(strFirst);
    return 0;
}
