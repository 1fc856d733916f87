#pragma once

#include <cstdint>

/// The bootstrap registers of a GigE Vision device: where each lies, how long it is, what its bits mean.
/// Masks are values of the whole register.
/// Source: GigE Vision, bootstrap registers.
namespace gev::bootstrap {

struct REGISTER {
    std::uint32_t Address;
    std::uint32_t Size;  ///< bytes; a number if 4, else a text

    constexpr std::uint32_t GetEnd() const { return Address + Size; }
};

constexpr REGISTER kVersion{0x0000, 4};  ///< of the standard: major in the high half, minor in the low half
constexpr REGISTER kDeviceMode{0x0004, 4};
constexpr REGISTER kMACHigh{0x0008, 4};  ///< first two octets, in the low half
constexpr REGISTER kMACLow{0x000C, 4};
constexpr REGISTER kSupportedIPConfiguration{0x0010, 4};
constexpr REGISTER kCurrentIPConfiguration{0x0014, 4};
constexpr REGISTER kCurrentIP{0x0024, 4};
constexpr REGISTER kCurrentSubnetMask{0x0034, 4};
constexpr REGISTER kCurrentGateway{0x0044, 4};
constexpr REGISTER kManufacturerName{0x0048, 32};
constexpr REGISTER kModelName{0x0068, 32};
constexpr REGISTER kDeviceVersion{0x0088, 32};
constexpr REGISTER kManufacturerInformation{0x00A8, 48};
constexpr REGISTER kSerialNumber{0x00D8, 16};
constexpr REGISTER kUserDefinedName{0x00E8, 16};
constexpr REGISTER kFirstURL{0x0200, 512};
constexpr REGISTER kSecondURL{0x0400, 512};
constexpr REGISTER kNetworkInterfaceCount{0x0600, 4};
constexpr REGISTER kPersistentIP{0x064C, 4};
constexpr REGISTER kPersistentSubnetMask{0x065C, 4};
constexpr REGISTER kPersistentGateway{0x066C, 4};
constexpr REGISTER kLinkSpeed{0x0670, 4};  ///< Mb/s
constexpr REGISTER kMessageChannelCount{0x0900, 4};
constexpr REGISTER kStreamChannelCount{0x0904, 4};
constexpr REGISTER kGvcpCapability{0x0934, 4};
constexpr REGISTER kHeartbeatTimeout{0x0938, 4};  ///< ms
constexpr REGISTER kTimestampTickFrequencyHigh{0x093C, 4};
constexpr REGISTER kTimestampTickFrequencyLow{0x0940, 4};  ///< Hz
constexpr REGISTER kTimestampControl{0x0944, 4};
constexpr REGISTER kTimestampValueHigh{0x0948, 4};
constexpr REGISTER kTimestampValueLow{0x094C, 4};  ///< ticks, when latched
constexpr REGISTER kDiscoveryAckDelay{0x0950, 4};  ///< ms in the low half: a discovery is answered after a random wait
constexpr REGISTER kGvcpConfiguration{0x0954, 4};
constexpr REGISTER kPendingTimeout{0x0958, 4};  ///< ms
constexpr REGISTER kGvspConfiguration{0x0960, 4};
constexpr REGISTER kControlChannelPrivilege{0x0A00, 4};
constexpr REGISTER kPrimaryApplicationPort{0x0A04, 4};
constexpr REGISTER kPrimaryApplicationIP{0x0A14, 4};
constexpr REGISTER kMessageChannelPort{0x0B00, 4};  ///< of the host, in the low half; 0 closes the channel
constexpr REGISTER kMessageChannelDestination{0x0B10, 4};
constexpr REGISTER kMessageChannelTimeout{0x0B14, 4};  ///< ms
constexpr REGISTER kMessageChannelRetryCount{0x0B18, 4};
constexpr REGISTER kMessageChannelSourcePort{0x0B1C, 4};

// Stream channel 0. Those of channel n lie n times the stride further on.
constexpr std::uint32_t kStreamChannelStride = 0x40;
constexpr REGISTER kStreamChannelPort{0x0D00, 4};  ///< of the host, in the low half; 0 closes the channel
constexpr REGISTER kStreamChannelPacketSize{0x0D04, 4};
constexpr REGISTER kStreamChannelPacketDelay{0x0D08, 4};  ///< ticks
constexpr REGISTER kStreamChannelDestination{0x0D18, 4};
constexpr REGISTER kStreamChannelSourcePort{0x0D1C, 4};
constexpr REGISTER kStreamChannelCapability{0x0D20, 4};
constexpr REGISTER kStreamChannelConfiguration{0x0D24, 4};

constexpr std::uint32_t kManufacturerSpace = 0xA000;  ///< from here on the registers are the manufacturer's own

// kDeviceMode
constexpr std::uint32_t kDeviceModeBigEndian = 0x80000000;
constexpr std::uint32_t kDeviceModeCharacterSetMask = 0x0000000F;
constexpr std::uint32_t kDeviceModeUTF8 = 0x00000001;

// kSupportedIPConfiguration, kCurrentIPConfiguration
constexpr std::uint32_t kIPConfigurationPersistent = 0x00000001;
constexpr std::uint32_t kIPConfigurationDHCP = 0x00000002;
constexpr std::uint32_t kIPConfigurationLinkLocal = 0x00000004;

// kGvcpCapability
constexpr std::uint32_t kGvcpCapabilityUserDefinedName = 0x80000000;
constexpr std::uint32_t kGvcpCapabilitySerialNumber = 0x40000000;
constexpr std::uint32_t kGvcpCapabilityHeartbeatDisable = 0x20000000;
constexpr std::uint32_t kGvcpCapabilityTestData = 0x02000000;
constexpr std::uint32_t kGvcpCapabilityPendingAck = 0x00000020;
constexpr std::uint32_t kGvcpCapabilityEventData = 0x00000010;
constexpr std::uint32_t kGvcpCapabilityEvent = 0x00000008;
constexpr std::uint32_t kGvcpCapabilityPacketResend = 0x00000004;
constexpr std::uint32_t kGvcpCapabilityWriteMem = 0x00000002;
constexpr std::uint32_t kGvcpCapabilityConcatenation = 0x00000001;

// kHeartbeatTimeout
constexpr std::uint32_t kHeartbeatTimeoutDefaultMs = 3000;
constexpr std::uint32_t kHeartbeatTimeoutLeastMs = 500;  ///< less counts as this

// kTimestampControl
constexpr std::uint32_t kTimestampControlLatch = 0x00000002;
constexpr std::uint32_t kTimestampControlReset = 0x00000001;

// kGvcpConfiguration
constexpr std::uint32_t kGvcpConfigurationPendingAckEnable = 0x00000002;
constexpr std::uint32_t kGvcpConfigurationHeartbeatDisable = 0x00000001;

// kGvspConfiguration
constexpr std::uint32_t kGvspConfigurationExtendedBlockIDs = 0x40000000;

// kControlChannelPrivilege: 0 is open to the first who asks
constexpr std::uint32_t kPrivilegeControl = 0x00000002;    ///< others may read
constexpr std::uint32_t kPrivilegeExclusive = 0x00000001;  ///< others may do nothing

// kMessageChannelPort, kStreamChannelPort
constexpr std::uint32_t kChannelPortMask = 0x0000FFFF;

// kStreamChannelPacketSize: bytes with the headers of IP, UDP and GVSP
constexpr std::uint32_t kPacketSizeFireTestPacket = 0x80000000;
constexpr std::uint32_t kPacketSizeDoNotFragment = 0x40000000;
constexpr std::uint32_t kPacketSizeMask = 0x0000FFFF;

// kStreamChannelCapability
constexpr std::uint32_t kStreamCapabilityBigAndLittleEndian = 0x80000000;
constexpr std::uint32_t kStreamCapabilityResendDestination = 0x00000008;
constexpr std::uint32_t kStreamCapabilityAllIn = 0x00000004;

}  // namespace gev::bootstrap
