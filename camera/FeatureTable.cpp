#include "camera/FeatureTable.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

#include "camera/FeatureAddress.h"
#include "gev/Bootstrap.h"
#include "gev/PixelFormat.h"

namespace camera {
namespace {

using namespace address;
namespace boot = gev::bootstrap;

constexpr auto ReadOnly = EAccess::ReadOnly;
constexpr auto WriteOnly = EAccess::WriteOnly;
constexpr auto Expert = EVisibility::Expert;
constexpr auto Guru = EVisibility::Guru;

constexpr double kSensorColumns = 1280;
constexpr double kSensorRows = 1024;

constexpr std::uint32_t Code(gev::EPixelFormat nFormat) {
    return static_cast<std::uint32_t>(nFormat);
}

constexpr std::array kPixelFormats = {
    ENTRY{"Mono8", Code(gev::EPixelFormat::Mono8)},
    ENTRY{"Mono10Packed", Code(gev::EPixelFormat::Mono10Packed)},
    ENTRY{"Mono12", Code(gev::EPixelFormat::Mono12)},
    ENTRY{"Mono12Packed", Code(gev::EPixelFormat::Mono12Packed)},
    ENTRY{"Mono16", Code(gev::EPixelFormat::Mono16)},
    ENTRY{"BayerRG8", Code(gev::EPixelFormat::BayerRG8)},
    ENTRY{"BayerRG12", Code(gev::EPixelFormat::BayerRG12)},
    ENTRY{"RGB8", Code(gev::EPixelFormat::RGB8)},
};
constexpr std::array kTestPatterns = {ENTRY{"Off", 0}, ENTRY{"GreyHorizontalRamp", 1}, ENTRY{"GreyVerticalRamp", 2},
                                      ENTRY{"GreyDiagonalRampMoving", 3}};
constexpr std::array kTemperatures = {ENTRY{"Sensor", 0}, ENTRY{"Mainboard", 1}};
constexpr std::array kIndicatorModes = {ENTRY{"Inactive", 0}, ENTRY{"Active", 1}, ENTRY{"ErrorStatus", 2}};
constexpr std::array kAcquisitionModes = {ENTRY{"SingleFrame", 0}, ENTRY{"MultiFrame", 1}, ENTRY{"Continuous", 2}};
constexpr std::array kAutoModes = {ENTRY{"Off", 0}, ENTRY{"Once", 1}, ENTRY{"Continuous", 2}};
constexpr std::array kTriggers = {ENTRY{"FrameStart", 0}, ENTRY{"AcquisitionStart", 1}};
constexpr std::array kOffOn = {ENTRY{"Off", 0}, ENTRY{"On", 1}};
constexpr std::array kTriggerSources = {ENTRY{"Software", 0}, ENTRY{"Line0", 1}, ENTRY{"Line1", 2}};
constexpr std::array kUserSets = {ENTRY{"Default", 0}, ENTRY{"UserSet0", 1}, ENTRY{"UserSet1", 2}};
constexpr std::array kChunks = {ENTRY{"FrameID", 0}, ENTRY{"Timestamp", 1}, ENTRY{"ExposureTime", 2}};
constexpr std::array kEvents = {ENTRY{"ExposureEnd", 0}, ENTRY{"FrameTrigger", 1}};
constexpr std::array kPrivileges = {ENTRY{"OpenAccess", 0}, ENTRY{"ExclusiveAccess", boot::kPrivilegeExclusive},
                                    ENTRY{"ControlAccess", boot::kPrivilegeControl}};
static_assert(kTriggers.size() == kTriggerCount && kUserSets.size() == kUserSetCount);
static_assert(kTemperatures.size() == kTemperatureCount);
static_assert(kChunks.size() == kChunkCount && kEvents.size() == kEventCount);

// clang-format off
constexpr std::array kFeatures = {
    FEATURE{.Name = "DeviceVendorName", .Category = "DeviceControl", .ToolTip = "Who made the camera", .Kind = EKind::Text,
            .Access = ReadOnly, .Address = boot::kManufacturerName.Address, .Length = boot::kManufacturerName.Size},
    FEATURE{.Name = "DeviceModelName", .Category = "DeviceControl", .ToolTip = "Model of the camera", .Kind = EKind::Text,
            .Access = ReadOnly, .Address = boot::kModelName.Address, .Length = boot::kModelName.Size},
    FEATURE{.Name = "DeviceManufacturerInfo", .Category = "DeviceControl", .ToolTip = "What its maker says besides",
            .Kind = EKind::Text, .Access = ReadOnly, .Address = boot::kManufacturerInformation.Address,
            .Length = boot::kManufacturerInformation.Size},
    FEATURE{.Name = "DeviceVersion", .Category = "DeviceControl", .ToolTip = "Version of the camera", .Kind = EKind::Text,
            .Access = ReadOnly, .Address = boot::kDeviceVersion.Address, .Length = boot::kDeviceVersion.Size},
    FEATURE{.Name = "DeviceFirmwareVersion", .Category = "DeviceControl", .ToolTip = "Version of its firmware",
            .Kind = EKind::Text, .Access = ReadOnly, .Address = kDeviceFirmwareVersion, .Length = 16},
    FEATURE{.Name = "DeviceSerialNumber", .Category = "DeviceControl", .ToolTip = "Serial number", .Kind = EKind::Text,
            .Access = ReadOnly, .Visibility = Expert, .Address = boot::kSerialNumber.Address, .Length = boot::kSerialNumber.Size},
    FEATURE{.Name = "DeviceUserID", .Category = "DeviceControl", .ToolTip = "Name that the user gives the camera",
            .Kind = EKind::Text, .Address = boot::kUserDefinedName.Address, .Length = boot::kUserDefinedName.Size},
    FEATURE{.Name = "DeviceTemperatureSelector", .Category = "DeviceControl", .ToolTip = "Place that DeviceTemperature means",
            .Kind = EKind::Enumeration, .Visibility = Expert, .Address = kDeviceTemperatureSelector, .Entries = kTemperatures},
    FEATURE{.Name = "DeviceTemperature", .Category = "DeviceControl", .ToolTip = "How warm it is at that place",
            .Kind = EKind::Float, .Access = ReadOnly, .Visibility = Expert, .Address = kDeviceTemperature, .Min = -40,
            .Max = 120, .Unit = "C", .Selector = "DeviceTemperatureSelector", .SelectorCount = kTemperatureCount,
            .Volatile = true},
    FEATURE{.Name = "DeviceIndicatorMode", .Category = "DeviceControl", .ToolTip = "What the camera's lamp shows",
            .Kind = EKind::Enumeration, .Visibility = Expert, .Address = kDeviceIndicatorMode, .Default = 1,
            .Entries = kIndicatorModes, .Saved = true},
    FEATURE{.Name = "DeviceReset", .Category = "DeviceControl", .ToolTip = "Starts the camera anew", .Kind = EKind::Command,
            .Access = WriteOnly, .Visibility = Guru, .Address = kDeviceReset},

    FEATURE{.Name = "SensorWidth", .Category = "ImageFormatControl", .ToolTip = "Columns of the sensor", .Access = ReadOnly,
            .Visibility = Expert, .Address = kSensorWidth, .Default = kSensorColumns},
    FEATURE{.Name = "SensorHeight", .Category = "ImageFormatControl", .ToolTip = "Rows of the sensor", .Access = ReadOnly,
            .Visibility = Expert, .Address = kSensorHeight, .Default = kSensorRows},
    FEATURE{.Name = "WidthMax", .Category = "ImageFormatControl", .ToolTip = "Most columns of an image", .Access = ReadOnly,
            .Visibility = Expert, .Address = kWidthMax, .Default = kSensorColumns},
    FEATURE{.Name = "HeightMax", .Category = "ImageFormatControl", .ToolTip = "Most rows of an image", .Access = ReadOnly,
            .Visibility = Expert, .Address = kHeightMax, .Default = kSensorRows},
    FEATURE{.Name = "Width", .Category = "ImageFormatControl", .ToolTip = "Columns of the image", .Address = kWidth, .Min = 16,
            .Max = kSensorColumns, .Step = 8, .MaxOf = "WidthMax", .MaxLess = "OffsetX", .Default = kSensorColumns,
            .Locked = true, .Saved = true},
    FEATURE{.Name = "Height", .Category = "ImageFormatControl", .ToolTip = "Rows of the image", .Address = kHeight, .Min = 2,
            .Max = kSensorRows, .Step = 2, .MaxOf = "HeightMax", .MaxLess = "OffsetY", .Default = kSensorRows, .Locked = true,
            .Saved = true},
    FEATURE{.Name = "OffsetX", .Category = "ImageFormatControl", .ToolTip = "First column of the image on the sensor",
            .Address = kOffsetX, .Max = kSensorColumns, .Step = 8, .MaxOf = "WidthMax", .MaxLess = "Width", .Locked = true,
            .Saved = true},
    FEATURE{.Name = "OffsetY", .Category = "ImageFormatControl", .ToolTip = "First row of the image on the sensor",
            .Address = kOffsetY, .Max = kSensorRows, .Step = 2, .MaxOf = "HeightMax", .MaxLess = "Height", .Locked = true,
            .Saved = true},
    FEATURE{.Name = "PixelFormat", .Category = "ImageFormatControl", .ToolTip = "How a pixel stands in memory",
            .Kind = EKind::Enumeration, .Address = kPixelFormat, .Default = Code(gev::EPixelFormat::Mono8),
            .Entries = kPixelFormats, .Locked = true, .Saved = true},
    FEATURE{.Name = "ReverseX", .Category = "ImageFormatControl", .ToolTip = "Mirrors the image", .Kind = EKind::Boolean,
            .Visibility = Expert, .Address = kReverseX, .Locked = true, .Saved = true},
    FEATURE{.Name = "TestPattern", .Category = "ImageFormatControl", .ToolTip = "A pattern in place of what the sensor sees",
            .Kind = EKind::Enumeration, .Address = kTestPattern, .Default = 3, .Entries = kTestPatterns, .Saved = true},

    FEATURE{.Name = "AcquisitionMode", .Category = "AcquisitionControl", .ToolTip = "How many images a start takes",
            .Kind = EKind::Enumeration, .Address = kAcquisitionMode, .Default = 2, .Entries = kAcquisitionModes,
            .Locked = true, .Saved = true},
    FEATURE{.Name = "AcquisitionStart", .Category = "AcquisitionControl", .ToolTip = "Starts taking images",
            .Kind = EKind::Command, .Access = WriteOnly, .Address = kAcquisitionStart},
    FEATURE{.Name = "AcquisitionStop", .Category = "AcquisitionControl", .ToolTip = "Ends taking images",
            .Kind = EKind::Command, .Access = WriteOnly, .Address = kAcquisitionStop},
    FEATURE{.Name = "AcquisitionFrameCount", .Category = "AcquisitionControl", .ToolTip = "Images of a start in the mode MultiFrame",
            .Address = kAcquisitionFrameCount, .Min = 1, .Max = 65535, .Default = 1, .Locked = true, .Saved = true},
    FEATURE{.Name = "AcquisitionFrameRate", .Category = "AcquisitionControl", .ToolTip = "Images in a second",
            .Kind = EKind::Float, .Address = kAcquisitionFrameRate, .Min = 0.5, .Max = 1000, .Default = 25, .Unit = "Hz",
            .Saved = true},
    FEATURE{.Name = "ExposureTime", .Category = "AcquisitionControl", .ToolTip = "How long the sensor is exposed",
            .Kind = EKind::Float, .Address = kExposureTime, .Min = 10, .Max = 1000000, .Default = 5000, .Unit = "us",
            .Saved = true},
    FEATURE{.Name = "ExposureAuto", .Category = "AcquisitionControl", .ToolTip = "Whether the camera finds its exposure time",
            .Kind = EKind::Enumeration, .Address = kExposureAuto, .Entries = kAutoModes, .Saved = true},
    FEATURE{.Name = "TriggerSelector", .Category = "AcquisitionControl", .ToolTip = "Trigger that the next features mean",
            .Kind = EKind::Enumeration, .Address = kTriggerSelector, .Entries = kTriggers, .Saved = true},
    FEATURE{.Name = "TriggerMode", .Category = "AcquisitionControl", .ToolTip = "Whether the trigger is waited for",
            .Kind = EKind::Enumeration, .Address = kTriggerMode, .Entries = kOffOn, .Selector = "TriggerSelector",
            .SelectorCount = kTriggerCount, .Saved = true},
    FEATURE{.Name = "TriggerSource", .Category = "AcquisitionControl", .ToolTip = "Where the trigger comes from",
            .Kind = EKind::Enumeration, .Address = kTriggerSource, .Entries = kTriggerSources, .Selector = "TriggerSelector",
            .SelectorCount = kTriggerCount, .Saved = true},
    FEATURE{.Name = "TriggerSoftware", .Category = "AcquisitionControl", .ToolTip = "Triggers by hand", .Kind = EKind::Command,
            .Access = WriteOnly, .Address = kTriggerSoftware, .Selector = "TriggerSelector", .SelectorCount = kTriggerCount},

    FEATURE{.Name = "Gain", .Category = "AnalogControl", .ToolTip = "Amplification", .Kind = EKind::Float, .Address = kGain,
            .Max = 24, .Unit = "dB", .Saved = true},
    FEATURE{.Name = "BlackLevel", .Category = "AnalogControl", .ToolTip = "What is added to every pixel", .Kind = EKind::Float,
            .Visibility = Expert, .Address = kBlackLevel, .Max = 255, .Saved = true},
    FEATURE{.Name = "Gamma", .Category = "AnalogControl", .ToolTip = "Exponent of the brightness", .Kind = EKind::Float,
            .Address = kGamma, .Min = 0.1, .Max = 4, .Default = 1, .Saved = true},

    FEATURE{.Name = "LUTEnable", .Category = "LUTControl", .ToolTip = "Whether pixels go through the look-up table",
            .Kind = EKind::Boolean, .Visibility = Expert, .Address = kLUTEnable, .Saved = true},
    FEATURE{.Name = "LUTIndex", .Category = "LUTControl", .ToolTip = "Place in the look-up table", .Visibility = Guru,
            .Address = kLUTIndex, .Max = kLUTCount - 1, .Saved = true},
    FEATURE{.Name = "LUTValue", .Category = "LUTControl", .ToolTip = "What stands at that place", .Visibility = Guru,
            .Address = kLUTValue, .Max = 255, .Selector = "LUTIndex", .SelectorCount = kLUTCount, .Saved = true},

    FEATURE{.Name = "UserSetSelector", .Category = "UserSetControl", .ToolTip = "Set that the next commands mean",
            .Kind = EKind::Enumeration, .Address = kUserSetSelector, .Entries = kUserSets},
    FEATURE{.Name = "UserSetLoad", .Category = "UserSetControl", .ToolTip = "Takes over what the set holds",
            .Kind = EKind::Command, .Access = WriteOnly, .Address = kUserSetLoad},
    FEATURE{.Name = "UserSetSave", .Category = "UserSetControl", .ToolTip = "Stores the camera's state in the set",
            .Kind = EKind::Command, .Access = WriteOnly, .Address = kUserSetSave},
    FEATURE{.Name = "UserSetDefault", .Category = "UserSetControl", .ToolTip = "Set that is loaded when the camera starts",
            .Kind = EKind::Enumeration, .Visibility = Expert, .Address = kUserSetDefault, .Entries = kUserSets},

    FEATURE{.Name = "ChunkModeActive", .Category = "ChunkDataControl", .ToolTip = "Whether data stands behind the image",
            .Kind = EKind::Boolean, .Visibility = Expert, .Address = kChunkModeActive, .Locked = true, .Saved = true},
    FEATURE{.Name = "ChunkSelector", .Category = "ChunkDataControl", .ToolTip = "Data that ChunkEnable means",
            .Kind = EKind::Enumeration, .Visibility = Expert, .Address = kChunkSelector, .Entries = kChunks, .Saved = true},
    FEATURE{.Name = "ChunkEnable", .Category = "ChunkDataControl", .ToolTip = "Whether this stands behind the image",
            .Kind = EKind::Boolean, .Visibility = Expert, .Address = kChunkEnable, .Selector = "ChunkSelector",
            .SelectorCount = kChunkCount, .Locked = true, .Saved = true},

    FEATURE{.Name = "EventSelector", .Category = "EventControl", .ToolTip = "Event that EventNotification means",
            .Kind = EKind::Enumeration, .Visibility = Expert, .Address = kEventSelector, .Entries = kEvents, .Saved = true},
    FEATURE{.Name = "EventNotification", .Category = "EventControl", .ToolTip = "Whether the event is sent",
            .Kind = EKind::Enumeration, .Visibility = Expert, .Address = kEventNotification, .Entries = kOffOn,
            .Selector = "EventSelector", .SelectorCount = kEventCount, .Saved = true},

    FEATURE{.Name = "PayloadSize", .Category = "TransportLayerControl", .ToolTip = "Bytes of an image with all that stands behind it",
            .Access = ReadOnly, .Visibility = Expert, .Address = kPayloadSize, .Unit = "B", .Volatile = true},
    FEATURE{.Name = "StreamUnsentPacketCount", .Category = "TransportLayerControl",
            .ToolTip = "Packets of images that found no way out since the stream channel was opened", .Access = ReadOnly,
            .Visibility = Expert, .Address = kStreamUnsentPacketCount, .Volatile = true, .Custom = true},
    FEATURE{.Name = "GevVersionMajor", .Category = "TransportLayerControl", .ToolTip = "Version of GigE Vision, before the point",
            .Access = ReadOnly, .Visibility = Expert, .Address = boot::kVersion.Address, .Max = 65535, .HighHalf = true},
    FEATURE{.Name = "GevVersionMinor", .Category = "TransportLayerControl", .ToolTip = "Version of GigE Vision, behind the point",
            .Access = ReadOnly, .Visibility = Expert, .Address = boot::kVersion.Address, .Max = 65535, .LowHalf = true},
    FEATURE{.Name = "GevMACAddress", .Category = "TransportLayerControl", .ToolTip = "MAC of the camera", .Access = ReadOnly,
            .Notation = ENotation::MACAddress, .Address = boot::kMACHigh.Address, .Length = 8, .Max = 0xFFFFFFFFFFFF},
    FEATURE{.Name = "GevCurrentIPConfigurationLLA", .Category = "TransportLayerControl", .ToolTip = "Whether a link-local address is tried",
            .Kind = EKind::Boolean, .Access = ReadOnly, .Address = boot::kCurrentIPConfiguration.Address, .Bit = 2},
    FEATURE{.Name = "GevCurrentIPConfigurationDHCP", .Category = "TransportLayerControl", .ToolTip = "Whether DHCP is tried, which this camera doesn't know",
            .Kind = EKind::Boolean, .Access = ReadOnly, .Address = boot::kCurrentIPConfiguration.Address, .Bit = 1},
    FEATURE{.Name = "GevCurrentIPConfigurationPersistentIP", .Category = "TransportLayerControl", .ToolTip = "Whether the persistent address is tried",
            .Kind = EKind::Boolean, .Address = boot::kCurrentIPConfiguration.Address, .Bit = 0},
    FEATURE{.Name = "GevCurrentIPAddress", .Category = "TransportLayerControl", .ToolTip = "Address now", .Access = ReadOnly,
            .Notation = ENotation::IPv4Address, .Address = boot::kCurrentIP.Address, .Volatile = true},
    FEATURE{.Name = "GevCurrentSubnetMask", .Category = "TransportLayerControl", .ToolTip = "Subnet mask now", .Access = ReadOnly,
            .Notation = ENotation::IPv4Address, .Address = boot::kCurrentSubnetMask.Address, .Volatile = true},
    FEATURE{.Name = "GevCurrentDefaultGateway", .Category = "TransportLayerControl", .ToolTip = "Gateway now", .Access = ReadOnly,
            .Notation = ENotation::IPv4Address, .Address = boot::kCurrentGateway.Address, .Volatile = true},
    FEATURE{.Name = "GevPersistentIPAddress", .Category = "TransportLayerControl", .ToolTip = "Address after the next start",
            .Notation = ENotation::IPv4Address, .Address = boot::kPersistentIP.Address},
    FEATURE{.Name = "GevPersistentSubnetMask", .Category = "TransportLayerControl", .ToolTip = "Subnet mask after the next start",
            .Notation = ENotation::IPv4Address, .Address = boot::kPersistentSubnetMask.Address},
    FEATURE{.Name = "GevPersistentDefaultGateway", .Category = "TransportLayerControl", .ToolTip = "Gateway after the next start",
            .Notation = ENotation::IPv4Address, .Address = boot::kPersistentGateway.Address},
    FEATURE{.Name = "GevLinkSpeed", .Category = "TransportLayerControl", .ToolTip = "Speed of the connection", .Access = ReadOnly,
            .Visibility = Expert, .Address = boot::kLinkSpeed.Address, .Unit = "Mbps"},
    FEATURE{.Name = "GevHeartbeatTimeout", .Category = "TransportLayerControl", .ToolTip = "An application silent so long loses control",
            .Visibility = Guru, .Address = boot::kHeartbeatTimeout.Address, .Default = boot::kHeartbeatTimeoutDefaultMs,
            .Unit = "ms"},
    FEATURE{.Name = "GevDiscoveryAckDelay", .Category = "TransportLayerControl", .ToolTip = "A discovery is answered within this time",
            .Visibility = Expert, .Address = boot::kDiscoveryAckDelay.Address, .Max = 1000, .Unit = "ms"},
    FEATURE{.Name = "GevGVCPPendingTimeout", .Category = "TransportLayerControl", .ToolTip = "Longest time until a command is acknowledged, if only as pending",
            .Access = ReadOnly, .Visibility = Guru, .Address = boot::kPendingTimeout.Address, .Default = 1000, .Unit = "ms"},
    FEATURE{.Name = "GevTimestampTickFrequency", .Category = "TransportLayerControl", .ToolTip = "Ticks of the clock in a second",
            .Access = ReadOnly, .Visibility = Expert, .Address = boot::kTimestampTickFrequencyHigh.Address, .Length = 8,
            .Max = 9223372036854774784.0, .Unit = "Hz"},
    FEATURE{.Name = "GevTimestampControlLatch", .Category = "TransportLayerControl", .ToolTip = "Takes the time into GevTimestampValue",
            .Kind = EKind::Command, .Access = WriteOnly, .Visibility = Expert, .Address = boot::kTimestampControl.Address,
            .Default = boot::kTimestampControlLatch},
    FEATURE{.Name = "GevTimestampControlReset", .Category = "TransportLayerControl", .ToolTip = "Sets the clock to 0",
            .Kind = EKind::Command, .Access = WriteOnly, .Visibility = Expert, .Address = boot::kTimestampControl.Address,
            .Default = boot::kTimestampControlReset, .Again = true},
    FEATURE{.Name = "GevTimestampValue", .Category = "TransportLayerControl", .ToolTip = "Time that was latched, in ticks",
            .Access = ReadOnly, .Visibility = Expert, .Address = boot::kTimestampValueHigh.Address, .Length = 8,
            .Max = 9223372036854774784.0, .Volatile = true},
    FEATURE{.Name = "GevCCP", .Category = "TransportLayerControl", .ToolTip = "What the controlling application has", .Kind = EKind::Enumeration,
            .Visibility = Guru, .Address = boot::kControlChannelPrivilege.Address, .Entries = kPrivileges, .Volatile = true},
    FEATURE{.Name = "GevGVCPHeartbeatDisable", .Category = "TransportLayerControl", .ToolTip = "A silent application keeps control",
            .Kind = EKind::Boolean, .Visibility = Guru, .Address = boot::kGvcpConfiguration.Address, .Bit = 0},
    FEATURE{.Name = "GevGVCPPendingAck", .Category = "TransportLayerControl", .ToolTip = "Slow commands are acknowledged as pending",
            .Kind = EKind::Boolean, .Visibility = Guru, .Address = boot::kGvcpConfiguration.Address, .Bit = 1},
    FEATURE{.Name = "GevSCPHostPort", .Category = "TransportLayerControl", .ToolTip = "Port that images go to, 0 for none",
            .Visibility = Guru, .Address = boot::kStreamChannelPort.Address, .Max = 65535, .Volatile = true, .LowHalf = true},
    FEATURE{.Name = "GevSCPSPacketSize", .Category = "TransportLayerControl", .ToolTip = "Size of a packet with its headers",
            .Visibility = Expert, .Address = boot::kStreamChannelPacketSize.Address, .Min = 220, .Max = 9000, .Step = 4,
            .Default = 1500, .Unit = "B", .Locked = true, .Saved = true, .LowHalf = true},
    FEATURE{.Name = "GevSCPD", .Category = "TransportLayerControl", .ToolTip = "Pause between packets, in ticks",
            .Visibility = Expert, .Address = boot::kStreamChannelPacketDelay.Address, .Max = 1000000000, .Saved = true},
    FEATURE{.Name = "GevSCDA", .Category = "TransportLayerControl", .ToolTip = "Address that images go to", .Visibility = Guru,
            .Notation = ENotation::IPv4Address, .Address = boot::kStreamChannelDestination.Address, .Volatile = true},
    FEATURE{.Name = "GevSCSP", .Category = "TransportLayerControl", .ToolTip = "Port that images come from", .Access = ReadOnly,
            .Visibility = Guru, .Address = boot::kStreamChannelSourcePort.Address, .Max = 65535, .Volatile = true},
    FEATURE{.Name = "GevMCPHostPort", .Category = "TransportLayerControl", .ToolTip = "Port that events go to, 0 for none",
            .Visibility = Guru, .Address = boot::kMessageChannelPort.Address, .Max = 65535, .Volatile = true, .LowHalf = true},
    FEATURE{.Name = "GevMCDA", .Category = "TransportLayerControl", .ToolTip = "Address that events go to", .Visibility = Guru,
            .Notation = ENotation::IPv4Address, .Address = boot::kMessageChannelDestination.Address, .Volatile = true},
    FEATURE{.Name = "GevMCTT", .Category = "TransportLayerControl", .ToolTip = "Wait for the acknowledge of an event",
            .Visibility = Guru, .Address = boot::kMessageChannelTimeout.Address, .Max = 60000, .Default = 200, .Unit = "ms"},
    FEATURE{.Name = "GevMCRC", .Category = "TransportLayerControl", .ToolTip = "How often an event is sent again",
            .Visibility = Guru, .Address = boot::kMessageChannelRetryCount.Address, .Max = 10, .Default = 3},

    FEATURE{.Name = "TestPendingAck", .Category = "TestControl", .ToolTip = "Takes so long to be written",
            .Visibility = Guru, .Address = kTestPendingAck, .Max = 60000, .Unit = "ms", .Slow = true},
};
// clang-format on

}  // namespace

std::span<const FEATURE> ListFeatures() {
    return kFeatures;
}

const FEATURE& FindFeature(std::string_view strName) {
    const auto itFound = std::find_if(kFeatures.begin(), kFeatures.end(),
                                      [&](const FEATURE& objFeature) { return objFeature.Name == strName; });
    if (itFound == kFeatures.end()) {
        throw std::out_of_range("no feature " + std::string(strName));
    }
    return *itFound;
}

}  // namespace camera
