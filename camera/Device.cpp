#include "camera/Device.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>

#include "camera/SentBlocks.h"
#include "gev/BigEndian.h"
#include "gev/GvcpHeader.h"
#include "gev/GvcpMemory.h"

namespace camera {
namespace {

namespace boot = gev::bootstrap;
using gev::EGvcpStatus;

constexpr std::uint32_t kWord = 4;
constexpr std::uint32_t kStandardVersion = 0x00020000;  // 2.0
constexpr std::uint32_t kTicksPerSecond = 1'000'000'000;

// From the manufacturer's name to the user's: all texts that a discovery shows.
constexpr boot::REGISTER kNames{boot::kManufacturerName.Address,
                                boot::kUserDefinedName.GetEnd() - boot::kManufacturerName.Address};

/// Whether a write there changes what a camera keeps.
bool IsKept(std::uint32_t nAddress) {
    switch (nAddress) {
        case boot::kPersistentIP.Address:
        case boot::kPersistentSubnetMask.Address:
        case boot::kPersistentGateway.Address:
        case boot::kCurrentIPConfiguration.Address:
        case address::kUserSetDefault:
        case address::kUserSetSave:
            return true;
        default:
            return nAddress >= boot::kUserDefinedName.Address && nAddress < boot::kUserDefinedName.GetEnd();
    }
}

template <class Function>
void ForEachSaved(Function funFeature) {
    for (const FEATURE& objFeature : ListFeatures()) {
        if (objFeature.Saved) {
            funFeature(objFeature.Address, objFeature.GetEnd() - objFeature.Address);
        }
    }
}

}  // namespace

CDevice::CDevice(const CAMERA_CONFIGURATION& objConfiguration, gev::CMACAddress objMAC, std::uint32_t nLinkSpeed,
                 IStreaming& objStreaming, TIME tNow)
    : m_objStreaming(objStreaming), m_objThermometer(tNow), m_tClockStart(tNow) {
    ListPlaces();
    SetRights();
    SetDefaults();
    SetIdentity(objConfiguration, objMAC, nLinkSpeed);
    for (std::uint32_t nSet = 0; nSet < address::kUserSetCount; ++nSet) {
        SaveUserSet(nSet);
    }
    Advance(tNow);
    if (objConfiguration.State) {
        Restore(ParseState(*objConfiguration.State, GetState()));
    }
}

void CDevice::ListPlaces() {
    const auto addressOf = [](std::string_view strName) { return strName.empty() ? 0 : FindFeature(strName).Address; };
    for (const FEATURE& objFeature : ListFeatures()) {
        if (objFeature.IsPart()) {
            continue;
        }
        m_vecPlace.push_back({&objFeature, addressOf(objFeature.MaxOf), addressOf(objFeature.MaxLess)});
    }
    std::ranges::sort(m_vecPlace, {}, [](const FEATURE_PLACE& objPlace) { return objPlace.Feature->Address; });
}

void CDevice::SetRights() {
    for (const FEATURE& objFeature : ListFeatures()) {
        const std::uint32_t nRead = objFeature.Access == EAccess::WriteOnly ? 0 : CRegisterSpace::kReadable;
        const std::uint32_t nWrite = objFeature.Access == EAccess::ReadOnly ? 0 : CRegisterSpace::kWritable;
        m_objRegisters.Allow(objFeature.Address, objFeature.GetEnd() - objFeature.Address, nRead | nWrite);
    }
    // A discovery tells these as they stand, so they can be read in one block, the reserved ones between included.
    m_objRegisters.Allow(0, boot::kUserDefinedName.GetEnd(), CRegisterSpace::kReadable);
    for (const boot::REGISTER objRegister :
         {boot::kFirstURL, boot::kSecondURL, boot::kNetworkInterfaceCount, boot::kMessageChannelCount,
          boot::kStreamChannelCount, boot::kGvcpCapability, boot::kTimestampTickFrequencyHigh,
          boot::kTimestampTickFrequencyLow, boot::kPrimaryApplicationPort, boot::kPrimaryApplicationIP,
          boot::kMessageChannelSourcePort, boot::kStreamChannelCapability, boot::kGvspConfiguration,
          boot::kGvcpConfiguration, boot::kStreamChannelConfiguration}) {
        m_objRegisters.Allow(objRegister.Address, objRegister.Size, CRegisterSpace::kReadable);
    }
    for (const boot::REGISTER objRegister :
         {boot::kGvcpConfiguration, boot::kGvspConfiguration, boot::kStreamChannelConfiguration}) {
        m_objRegisters.Allow(objRegister.Address, objRegister.Size, CRegisterSpace::kWritable);
    }
}

void CDevice::SetIdentity(const CAMERA_CONFIGURATION& objConfiguration, gev::CMACAddress objMAC,
                          std::uint32_t nLinkSpeed) {
    CRegisterSpace& objMemory = m_objRegisters;
    objMemory.Set(boot::kVersion, kStandardVersion);
    objMemory.Set(boot::kDeviceMode, boot::kDeviceModeBigEndian | boot::kDeviceModeUTF8);
    objMemory.Set(boot::kMACHigh, objMAC.GetHigh());
    objMemory.Set(boot::kMACLow, objMAC.GetLow());
    objMemory.Set(boot::kSupportedIPConfiguration, boot::kIPConfigurationPersistent | boot::kIPConfigurationLinkLocal);
    objMemory.SetText(boot::kManufacturerName, "Norvik");
    objMemory.SetText(boot::kModelName, objConfiguration.Model);
    objMemory.SetText(boot::kDeviceVersion, "1.0");
    objMemory.SetText(boot::kManufacturerInformation, "A camera in software");
    std::string strSerial = objConfiguration.Serial;
    if (strSerial.empty()) {
        const auto strMAC = gev::FormatMAC(objMAC);
        std::ranges::copy_if(strMAC.GetText(), std::back_inserter(strSerial), [](char nChar) { return nChar != '-'; });
    }
    objMemory.SetText(boot::kSerialNumber, strSerial);
    objMemory.SetText(boot::kUserDefinedName, objConfiguration.UserName);
    objMemory.SetText({address::kDeviceFirmwareVersion, 16}, "1.0.0");
    objMemory.Set(boot::kNetworkInterfaceCount, 1);
    objMemory.Set(boot::kLinkSpeed, nLinkSpeed);
    objMemory.Set(boot::kMessageChannelCount, 1);
    objMemory.Set(boot::kStreamChannelCount, 1);
    objMemory.Set(boot::kGvcpCapability, boot::kGvcpCapabilityUserDefinedName | boot::kGvcpCapabilitySerialNumber |
                                             boot::kGvcpCapabilityHeartbeatDisable | boot::kGvcpCapabilityPendingAck |
                                             boot::kGvcpCapabilityEventData | boot::kGvcpCapabilityEvent |
                                             boot::kGvcpCapabilityPacketResend | boot::kGvcpCapabilityWriteMem |
                                             boot::kGvcpCapabilityConcatenation);
    objMemory.Set(boot::kMessageChannelSourcePort, gev::kGvcpPort);
    objMemory.Set(boot::kStreamChannelSourcePort, m_objStreaming.GetPort());
    objMemory.Set(boot::kTimestampTickFrequencyLow, kTicksPerSecond);
}

void CDevice::SetDefaults() {
    for (const FEATURE& objFeature : ListFeatures()) {
        if (objFeature.IsPart()) {
            continue;
        }
        const bool bNumber =
            objFeature.Kind != EKind::Text && objFeature.Kind != EKind::Command && objFeature.Length == kWord;
        for (std::uint32_t i = 0; bNumber && i < objFeature.SelectorCount; ++i) {
            const std::uint32_t nAddress = objFeature.Address + kWord * i;
            if (objFeature.Kind == EKind::Float) {
                m_objRegisters.SetFloat(nAddress, static_cast<float>(objFeature.Default));
            } else {
                m_objRegisters.Set(nAddress, static_cast<std::uint32_t>(objFeature.Default));
            }
        }
    }
    for (std::uint32_t i = 0; i < address::kLUTCount; ++i) {
        m_objRegisters.Set(address::kLUTValue + kWord * i, i);
    }
    UpdatePayloadSize();
}

const CDevice::FEATURE_PLACE* CDevice::FindPlace(std::uint32_t nAddress) const {
    const auto itNext = std::ranges::upper_bound(
        m_vecPlace, nAddress, {}, [](const FEATURE_PLACE& objPlace) { return objPlace.Feature->Address; });
    if (itNext == m_vecPlace.begin()) {
        return nullptr;
    }
    const FEATURE_PLACE& objPlace = *std::prev(itNext);
    return nAddress < objPlace.Feature->GetEnd() ? &objPlace : nullptr;
}

EGvcpStatus CDevice::CheckValue(const FEATURE_PLACE& objPlace, std::uint32_t nAddress) const {
    const FEATURE& objFeature = *objPlace.Feature;
    const std::uint32_t nRaw = m_objRegisters.Get(nAddress);
    const std::uint32_t nValue = objFeature.LowHalf ? nRaw & 0xFFFF : nRaw;
    bool bGood = true;
    switch (objFeature.Kind) {
        case EKind::Integer: {
            double nMax = objPlace.MaxOf != 0 ? m_objRegisters.Get(objPlace.MaxOf) : objFeature.Max;
            nMax -= objPlace.MaxLess != 0 ? m_objRegisters.Get(objPlace.MaxLess) : 0;
            bGood =
                nValue >= objFeature.Min && nValue <= nMax && std::fmod(nValue - objFeature.Min, objFeature.Step) == 0;
            break;
        }
        case EKind::Float: {
            const auto nFloat = static_cast<double>(m_objRegisters.GetFloat(nAddress));
            // The limits as a register of 4 bytes has them. A comparison with what is no number fails.
            bGood = nFloat >= static_cast<double>(static_cast<float>(objFeature.Min)) &&
                    nFloat <= static_cast<double>(static_cast<float>(objFeature.Max));
            break;
        }
        case EKind::Enumeration:
            bGood = std::ranges::find(objFeature.Entries, nValue, &ENTRY::Value) != objFeature.Entries.end();
            break;
        case EKind::Boolean:
            bGood = nValue <= 1;
            break;
        case EKind::Command:
        case EKind::Text:
            break;
    }
    return bGood ? EGvcpStatus::Success : EGvcpStatus::InvalidParameter;
}

EGvcpStatus CDevice::CheckCommand(std::uint32_t nAddress) const {
    const bool bDefaultSet = m_objRegisters.Get(address::kUserSetSelector) == 0;
    const bool bRefused =
        (nAddress == address::kUserSetSave && bDefaultSet) || (nAddress == address::kUserSetLoad && m_bAcquiring);
    return bRefused ? EGvcpStatus::AccessDenied : EGvcpStatus::Success;
}

EGvcpStatus CDevice::CheckValues(std::uint32_t nAddress, std::size_t nLength) const {
    for (std::uint32_t i = nAddress; i < nAddress + nLength; i += kWord) {
        const FEATURE_PLACE* const pPlace = FindPlace(i);
        EGvcpStatus nStatus = pPlace != nullptr ? CheckValue(*pPlace, i) : EGvcpStatus::Success;
        if (nStatus == EGvcpStatus::Success) {
            nStatus = CheckCommand(i);
        }
        if (nStatus != EGvcpStatus::Success) {
            return nStatus;
        }
    }
    return EGvcpStatus::Success;
}

bool CDevice::IsLocked(std::uint32_t nAddress, std::size_t nLength) const {
    for (std::uint32_t i = nAddress; m_bAcquiring && i < nAddress + nLength; i += kWord) {
        if (const FEATURE_PLACE* const pPlace = FindPlace(i); pPlace != nullptr && pPlace->Feature->Locked) {
            return true;
        }
    }
    return false;
}

std::chrono::milliseconds CDevice::GetDuration(std::uint32_t nAddress, std::span<const std::byte> arrData) const {
    std::chrono::milliseconds nLongest{};
    for (std::uint32_t i = 0; i + kWord <= arrData.size(); i += kWord) {
        const FEATURE_PLACE* const pPlace = FindPlace(nAddress + i);
        const std::uint32_t nValue = gev::Get32(arrData, i);
        // What the feature can't have is refused at once.
        if (pPlace != nullptr && pPlace->Feature->Slow && nValue <= pPlace->Feature->Max) {
            nLongest = std::max(nLongest, std::chrono::milliseconds(nValue));
        }
    }
    return nLongest;
}

EGvcpStatus CDevice::Write(std::uint32_t nAddress, std::span<const std::byte> arrData, TIME tNow) {
    const EGvcpStatus nAllowed = m_objRegisters.CheckWrite(nAddress, arrData.size());
    if (nAllowed != EGvcpStatus::Success) {
        return nAllowed;
    }
    if (arrData.size() > gev::kLongestMemoryBlock) {
        return EGvcpStatus::InvalidParameter;
    }
    if (IsLocked(nAddress, arrData.size())) {
        return EGvcpStatus::AccessDenied;
    }
    // Limits hang on each other, so all values are set before they are looked at.
    const auto arrPlace = m_objRegisters.Change(nAddress, arrData.size());
    std::array<std::byte, gev::kLongestMemoryBlock> arrOld;
    std::ranges::copy(arrPlace, arrOld.begin());
    std::ranges::copy(arrData, arrPlace.begin());
    const EGvcpStatus nGood = CheckValues(nAddress, arrData.size());
    if (nGood != EGvcpStatus::Success) {
        std::copy_n(arrOld.begin(), arrPlace.size(), arrPlace.begin());
        return nGood;
    }
    for (std::uint32_t i = nAddress; i < nAddress + arrData.size(); i += kWord) {
        Follow(i, tNow);
    }
    if (m_bAcquiring) {
        m_objStreaming.Change(GetStreamSettings());
    }
    return EGvcpStatus::Success;
}

void CDevice::Advance(TIME tNow) {
    m_objThermometer.Advance(tNow, m_bAcquiring);
    for (std::uint32_t i = 0; i < address::kTemperatureCount; ++i) {
        m_objRegisters.SetFloat(address::kDeviceTemperature + kWord * i, static_cast<float>(m_objThermometer.Get(i)));
    }
}

void CDevice::Follow(std::uint32_t nAddress, TIME tNow) {
    if (FollowStream(nAddress)) {
        return;
    }
    const std::uint32_t nValue = m_objRegisters.Get(nAddress);
    m_bStateChanged = m_bStateChanged || IsKept(nAddress);
    switch (nAddress) {
        case boot::kTimestampControl.Address:
            ControlTimestamp(nValue, tNow);
            break;
        case boot::kCurrentIPConfiguration.Address:
            // Link-local can't be switched off, and what isn't supported can't be switched on.
            m_objRegisters.Set(nAddress, (nValue & boot::kIPConfigurationPersistent) | boot::kIPConfigurationLinkLocal);
            break;
        case boot::kGvcpConfiguration.Address:
            m_objRegisters.Set(nAddress, nValue & (boot::kGvcpConfigurationHeartbeatDisable |
                                                   boot::kGvcpConfigurationPendingAckEnable));
            break;
        case boot::kHeartbeatTimeout.Address:
            m_objRegisters.Set(nAddress, std::max(nValue, boot::kHeartbeatTimeoutLeastMs));
            break;
        case address::kUserSetSave:
            SaveUserSet(m_objRegisters.Get(address::kUserSetSelector));
            break;
        case address::kUserSetLoad:
            LoadUserSet(m_objRegisters.Get(address::kUserSetSelector));
            break;
        case address::kDeviceReset:
            m_bResetWish = true;
            break;
        default:
            break;
    }
    UpdatePayloadSize();
}

void CDevice::ControlTimestamp(std::uint32_t nControl, TIME tNow) {
    if ((nControl & boot::kTimestampControlLatch) != 0) {
        const std::uint64_t nTicks = GetTimestamp(tNow);
        m_objRegisters.Set(boot::kTimestampValueHigh, static_cast<std::uint32_t>(nTicks >> 32));
        m_objRegisters.Set(boot::kTimestampValueLow, static_cast<std::uint32_t>(nTicks));
    }
    if ((nControl & boot::kTimestampControlReset) != 0) {
        m_tClockStart = tNow;
    }
}

void CDevice::UpdatePayloadSize() {
    const BLOCK_FORMAT objFormat = GetBlockFormat();
    m_objRegisters.Set(address::kPayloadSize,
                       static_cast<std::uint32_t>(GetImageSize(objFormat.Image) + GetChunkSize(objFormat)));
}

void CDevice::SaveUserSet(std::uint32_t nSet) {
    std::vector<std::byte> vecSet;
    ForEachSaved([&](std::uint32_t nAddress, std::uint32_t nLength) {
        const auto arrValue = m_objRegisters.View(nAddress, nLength);
        vecSet.insert(vecSet.end(), arrValue.begin(), arrValue.end());
    });
    m_arrUserSet.at(nSet) = std::move(vecSet);
}

void CDevice::LoadUserSet(std::uint32_t nSet) {
    std::span<const std::byte> arrLeft = m_arrUserSet.at(nSet);
    ForEachSaved([&](std::uint32_t nAddress, std::uint32_t nLength) {
        std::ranges::copy(arrLeft.first(nLength), m_objRegisters.Change(nAddress, nLength).begin());
        arrLeft = arrLeft.subspan(nLength);
    });
    UpdatePayloadSize();
}

CAMERA_STATE CDevice::GetState() const {
    CAMERA_STATE objState;
    const boot::REGISTER objName = boot::kUserDefinedName;
    const auto arrName = m_vecNames.empty() ? m_objRegisters.View(objName.Address, objName.Size)
                                            : std::span<const std::byte>(m_vecNames).last(objName.Size);
    for (const std::byte nByte : arrName) {
        if (nByte == std::byte{0}) {
            break;
        }
        objState.UserName += std::to_integer<char>(nByte);
    }
    objState.Persistent = {m_objRegisters.Get(boot::kPersistentIP), m_objRegisters.Get(boot::kPersistentSubnetMask),
                           m_objRegisters.Get(boot::kPersistentGateway)};
    objState.UsePersistent =
        (m_objRegisters.Get(boot::kCurrentIPConfiguration) & boot::kIPConfigurationPersistent) != 0;
    objState.DefaultSet = m_objRegisters.Get(address::kUserSetDefault);
    std::copy_n(m_arrUserSet.begin() + 1, objState.UserSet.size(), objState.UserSet.begin());
    return objState;
}

// The limits are those of a host's writes: a state can't bring the camera where nobody else could.
void CDevice::Restore(const CAMERA_STATE& objState) {
    for (std::uint32_t nSet = 1; nSet < address::kUserSetCount; ++nSet) {
        m_arrUserSet[nSet] = objState.UserSet[nSet - 1];
        LoadUserSet(nSet);
        ForEachSaved([&](std::uint32_t nAddress, std::uint32_t nLength) {
            if (CheckValues(nAddress, nLength) != EGvcpStatus::Success) {
                throw CStateError(std::string(FindFeature("UserSetSelector").Entries[nSet].Name) +
                                  ": not within its limits: " + std::string(FindPlace(nAddress)->Feature->Name));
            }
        });
    }
    m_objRegisters.SetText(boot::kUserDefinedName, objState.UserName);
    m_objRegisters.Set(boot::kPersistentIP, objState.Persistent.Address);
    m_objRegisters.Set(boot::kPersistentSubnetMask, objState.Persistent.Mask);
    m_objRegisters.Set(boot::kPersistentGateway, objState.Persistent.Gateway);
    m_objRegisters.Set(boot::kCurrentIPConfiguration, objState.UsePersistent ? boot::kIPConfigurationPersistent : 0);
    m_objRegisters.Set(address::kUserSetDefault, objState.DefaultSet);
    LoadUserSet(objState.DefaultSet);
}

bool CDevice::TakeStateChange() {
    return std::exchange(m_bStateChanged, false);
}

void CDevice::CloseChannels() {
    m_bAcquiring = false;
    m_objStreamChannel = {};
    m_objStreaming.Close();
    for (const boot::REGISTER objRegister : {boot::kStreamChannelPort, boot::kStreamChannelDestination,
                                             boot::kMessageChannelPort, boot::kMessageChannelDestination}) {
        m_objRegisters.Set(objRegister, 0);
    }
}

bool CDevice::TakeResetWish() {
    return std::exchange(m_bResetWish, false);
}

void CDevice::Reset(TIME tNow) {
    CloseChannels();
    LoadUserSet(m_objRegisters.Get(address::kUserSetDefault));
    m_objRegisters.Set(boot::kGvcpConfiguration, 0);
    m_objRegisters.Set(boot::kGvspConfiguration, 0);
    m_objRegisters.Set(boot::kHeartbeatTimeout, boot::kHeartbeatTimeoutDefaultMs);
    m_tClockStart = tNow;
}

std::uint64_t CDevice::GetTimestamp(TIME tNow) const {
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(tNow - m_tClockStart).count());
}

void CDevice::SetNamesWithoutEnd(bool bWithoutEnd) {
    const auto arrNames = m_objRegisters.Change(kNames.Address, kNames.Size);
    if (bWithoutEnd && m_vecNames.empty()) {
        m_vecNames.assign(arrNames.begin(), arrNames.end());
        constexpr std::array kNoText = {std::byte{0xFF}, std::byte{0x1B}, std::byte{0xC3}, std::byte{0x28}};
        for (std::size_t i = 0; i < arrNames.size(); ++i) {
            arrNames[i] = kNoText[i % kNoText.size()];
        }
    } else if (!bWithoutEnd && !m_vecNames.empty()) {
        std::ranges::copy(m_vecNames, arrNames.begin());
        m_vecNames.clear();
    }
}

}  // namespace camera
