#pragma once

#include <cstdint>

/// Where the camera's own registers lie, for the table of its features and for the code that gives them life.
namespace camera::address {

// Device control
constexpr std::uint32_t kDeviceReset = 0xA000;
constexpr std::uint32_t kDeviceTemperature = 0xA004;  // one each of Sensor and Mainboard
constexpr std::uint32_t kTemperatureCount = 2;
constexpr std::uint32_t kDeviceTemperatureSelector = 0xA00C;
constexpr std::uint32_t kDeviceFirmwareVersion = 0xA010;  // 16 bytes
constexpr std::uint32_t kDeviceIndicatorMode = 0xA020;

// Image format
constexpr std::uint32_t kSensorWidth = 0xA100;
constexpr std::uint32_t kSensorHeight = 0xA104;
constexpr std::uint32_t kWidthMax = 0xA108;
constexpr std::uint32_t kHeightMax = 0xA10C;
constexpr std::uint32_t kWidth = 0xA110;
constexpr std::uint32_t kHeight = 0xA114;
constexpr std::uint32_t kOffsetX = 0xA118;
constexpr std::uint32_t kOffsetY = 0xA11C;
constexpr std::uint32_t kPixelFormat = 0xA120;
constexpr std::uint32_t kTestPattern = 0xA124;
constexpr std::uint32_t kReverseX = 0xA128;

// Acquisition
constexpr std::uint32_t kAcquisitionMode = 0xA200;
constexpr std::uint32_t kAcquisitionStart = 0xA204;
constexpr std::uint32_t kAcquisitionStop = 0xA208;
constexpr std::uint32_t kAcquisitionFrameCount = 0xA20C;
constexpr std::uint32_t kAcquisitionFrameRate = 0xA210;
constexpr std::uint32_t kExposureTime = 0xA214;
constexpr std::uint32_t kExposureAuto = 0xA218;
constexpr std::uint32_t kTriggerSelector = 0xA21C;
constexpr std::uint32_t kTriggerMode = 0xA220;      // one each of FrameStart and AcquisitionStart
constexpr std::uint32_t kTriggerSource = 0xA228;    // the same
constexpr std::uint32_t kTriggerSoftware = 0xA230;  // the same
constexpr std::uint32_t kTriggerCount = 2;

// Analogue and look-up table
constexpr std::uint32_t kGain = 0xA300;
constexpr std::uint32_t kBlackLevel = 0xA304;
constexpr std::uint32_t kGamma = 0xA308;
constexpr std::uint32_t kLUTEnable = 0xA310;
constexpr std::uint32_t kLUTIndex = 0xA314;
constexpr std::uint32_t kLUTValue = 0xA400;
constexpr std::uint32_t kLUTCount = 256;

// User sets
constexpr std::uint32_t kUserSetSelector = 0xA800;
constexpr std::uint32_t kUserSetLoad = 0xA804;
constexpr std::uint32_t kUserSetSave = 0xA808;
constexpr std::uint32_t kUserSetDefault = 0xA80C;
constexpr std::uint32_t kUserSetCount = 3;

// Chunks
constexpr std::uint32_t kChunkModeActive = 0xA900;
constexpr std::uint32_t kChunkSelector = 0xA904;
constexpr std::uint32_t kChunkEnable = 0xA908;  // one each of FrameID, Timestamp and ExposureTime
constexpr std::uint32_t kChunkCount = 3;

// Events
constexpr std::uint32_t kEventSelector = 0xAA00;
constexpr std::uint32_t kEventNotification = 0xAA04;  // one each of the events
constexpr std::uint32_t kEventCount = 2;

// Transport layer and tests
constexpr std::uint32_t kPayloadSize = 0xAB00;
constexpr std::uint32_t kStreamUnsentPacketCount = 0xAB04;
constexpr std::uint32_t kTestPendingAck = 0xAC00;

}  // namespace camera::address
