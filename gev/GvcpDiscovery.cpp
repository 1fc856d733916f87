#include "gev/GvcpDiscovery.h"

#include <algorithm>

#include "gev/BigEndian.h"
#include "gev/Bootstrap.h"

namespace gev {

namespace {

constexpr std::size_t kMACOffset = bootstrap::kMACHigh.Address + 2;  // the high half of the register is reserved

static_assert(bootstrap::kUserDefinedName.GetEnd() == kDiscoveryAckSize);

template <const bootstrap::REGISTER& objRegister, class Byte>
auto Field(std::span<Byte, kDiscoveryAckSize> arrRegisters) {
    return arrRegisters.template subspan<objRegister.Address, objRegister.Size>();
}

template <const bootstrap::REGISTER& objRegister>
std::uint32_t GetNumber(std::span<const std::byte, kDiscoveryAckSize> arrRegisters) {
    return Get32(Field<objRegister>(arrRegisters), 0);
}

template <const bootstrap::REGISTER& objRegister>
void PutNumber(std::span<std::byte, kDiscoveryAckSize> arrRegisters, std::uint32_t nValue) {
    Put32(Field<objRegister>(arrRegisters), 0, nValue);
}

}  // namespace

void PutDiscoveryRecord(const DISCOVERY_RECORD& objRecord, std::span<std::byte, kDiscoveryAckSize> arrRegisters) {
    std::ranges::fill(arrRegisters, std::byte{0});
    PutNumber<bootstrap::kVersion>(arrRegisters, std::uint32_t{objRecord.VersionMajor} << 16 | objRecord.VersionMinor);
    PutNumber<bootstrap::kDeviceMode>(arrRegisters, objRecord.DeviceMode);
    objRecord.MAC.Put(arrRegisters.subspan<kMACOffset, 6>());
    PutNumber<bootstrap::kSupportedIPConfiguration>(arrRegisters, objRecord.SupportedIPConfiguration);
    PutNumber<bootstrap::kCurrentIPConfiguration>(arrRegisters, objRecord.CurrentIPConfiguration);
    PutNumber<bootstrap::kCurrentIP>(arrRegisters, objRecord.IP);
    PutNumber<bootstrap::kCurrentSubnetMask>(arrRegisters, objRecord.SubnetMask);
    PutNumber<bootstrap::kCurrentGateway>(arrRegisters, objRecord.Gateway);
    objRecord.ManufacturerName.Put(Field<bootstrap::kManufacturerName>(arrRegisters));
    objRecord.ModelName.Put(Field<bootstrap::kModelName>(arrRegisters));
    objRecord.DeviceVersion.Put(Field<bootstrap::kDeviceVersion>(arrRegisters));
    objRecord.ManufacturerInformation.Put(Field<bootstrap::kManufacturerInformation>(arrRegisters));
    objRecord.SerialNumber.Put(Field<bootstrap::kSerialNumber>(arrRegisters));
    objRecord.UserDefinedName.Put(Field<bootstrap::kUserDefinedName>(arrRegisters));
}

std::span<std::byte> EncodeDiscoveryAck(std::span<std::byte> arrBuffer, std::uint16_t nAckID,
                                        const DISCOVERY_RECORD& objRecord) {
    const auto arrDatagram =
        EncodeAcknowledge(arrBuffer, EGvcpCommand::Discovery, nAckID, EGvcpStatus::Success, kDiscoveryAckSize);
    if (!arrDatagram.empty()) {
        PutDiscoveryRecord(objRecord, arrDatagram.subspan<kGvcpHeaderSize, kDiscoveryAckSize>());
    }
    return arrDatagram;
}

EGvcpStatus DecodeDiscoveryAck(std::span<const std::byte> arrPayload, DISCOVERY_RECORD& objRecord) {
    if (arrPayload.size() < kDiscoveryAckSize) {
        return EGvcpStatus::InvalidHeader;
    }
    const auto arrRegisters = arrPayload.first<kDiscoveryAckSize>();
    const std::uint32_t nVersion = GetNumber<bootstrap::kVersion>(arrRegisters);
    objRecord = {
        .VersionMajor = static_cast<std::uint16_t>(nVersion >> 16),
        .VersionMinor = static_cast<std::uint16_t>(nVersion),
        .DeviceMode = GetNumber<bootstrap::kDeviceMode>(arrRegisters),
        .MAC = CMACAddress::Get(arrRegisters.subspan<kMACOffset, 6>()),
        .SupportedIPConfiguration = GetNumber<bootstrap::kSupportedIPConfiguration>(arrRegisters),
        .CurrentIPConfiguration = GetNumber<bootstrap::kCurrentIPConfiguration>(arrRegisters),
        .IP = GetNumber<bootstrap::kCurrentIP>(arrRegisters),
        .SubnetMask = GetNumber<bootstrap::kCurrentSubnetMask>(arrRegisters),
        .Gateway = GetNumber<bootstrap::kCurrentGateway>(arrRegisters),
        .ManufacturerName = CFixedText<32>(Field<bootstrap::kManufacturerName>(arrRegisters)),
        .ModelName = CFixedText<32>(Field<bootstrap::kModelName>(arrRegisters)),
        .DeviceVersion = CFixedText<32>(Field<bootstrap::kDeviceVersion>(arrRegisters)),
        .ManufacturerInformation = CFixedText<48>(Field<bootstrap::kManufacturerInformation>(arrRegisters)),
        .SerialNumber = CFixedText<16>(Field<bootstrap::kSerialNumber>(arrRegisters)),
        .UserDefinedName = CFixedText<16>(Field<bootstrap::kUserDefinedName>(arrRegisters)),
    };
    return EGvcpStatus::Success;
}

EGvcpStatus DecodeDiscovery(std::span<const std::byte> arrPayload) {
    return arrPayload.empty() ? EGvcpStatus::Success : EGvcpStatus::InvalidHeader;
}

}  // namespace gev
