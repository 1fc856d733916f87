// The part of the device that its stream hangs on.

#include <algorithm>
#include <chrono>

#include "camera/Device.h"

namespace camera {
namespace {

namespace boot = gev::bootstrap;

constexpr std::uint32_t kWord = 4;
constexpr std::uint32_t kModeSingleFrame = 0;
constexpr std::uint32_t kModeMultiFrame = 1;
constexpr std::uint32_t kTriggerSourceSoftware = 0;

}  // namespace

/// @return whether the register is the stream's
bool CDevice::FollowStream(std::uint32_t nAddress) {
    switch (nAddress) {
        case boot::kStreamChannelPort.Address:
        case boot::kStreamChannelDestination.Address:
            FollowStreamChannel();
            return true;
        case boot::kStreamChannelPacketSize.Address: {
            const std::uint32_t nValue = m_objRegisters.Get(nAddress);
            // A test packet is fired once, so the bit never reads as set.
            m_objRegisters.Set(nAddress, nValue & ~boot::kPacketSizeFireTestPacket);
            if ((nValue & boot::kPacketSizeFireTestPacket) != 0 && GetStreamChannel().Port != 0) {
                m_objStreaming.SendTestPacket(GetStreamSettings());
            }
            return true;
        }
        case address::kAcquisitionStart:
            if (!m_bAcquiring) {
                m_bAcquiring = true;
                ++m_nAcquisition;
                m_objStreaming.Start(GetStreamSettings());
            }
            return true;
        case address::kAcquisitionStop:
            m_bAcquiring = false;
            m_objStreaming.Stop();
            return true;
        default:
            break;
    }
    if (nAddress >= address::kTriggerSoftware &&
        nAddress < address::kTriggerSoftware + kWord * address::kTriggerCount) {
        FollowTrigger((nAddress - address::kTriggerSoftware) / kWord);
        return true;
    }
    return false;
}

void CDevice::FollowTrigger(std::uint32_t nTrigger) {
    const bool bOn = m_objRegisters.Get(address::kTriggerMode + kWord * nTrigger) != 0;
    if (bOn && m_bAcquiring &&
        m_objRegisters.Get(address::kTriggerSource + kWord * nTrigger) == kTriggerSourceSoftware) {
        m_objStreaming.Trigger(nTrigger);
    }
}

void CDevice::FollowStreamChannel() {
    const CHANNEL objChannel = GetStreamChannel();
    if (objChannel.Port != m_objStreamChannel.Port) {
        m_bAcquiring = false;
        m_objStreaming.Close();
        if (objChannel.Port != 0) {
            m_objRegisters.Set(address::kStreamUnsentPacketCount, 0);
            m_objStreaming.Open();
        }
    }
    m_objStreamChannel = objChannel;
}

void CDevice::EndAcquisition(std::uint32_t nAcquisition) {
    if (nAcquisition == m_nAcquisition) {
        m_bAcquiring = false;
    }
}

void CDevice::CountUnsent(std::uint64_t nPackets) {
    const std::uint64_t nCount = m_objRegisters.Get(address::kStreamUnsentPacketCount) + nPackets;
    m_objRegisters.Set(address::kStreamUnsentPacketCount,
                       static_cast<std::uint32_t>(std::min<std::uint64_t>(nCount, 0xFFFFFFFF)));
}

CHANNEL CDevice::GetStreamChannel() const {
    return {m_objRegisters.Get(boot::kStreamChannelDestination),
            static_cast<std::uint16_t>(m_objRegisters.Get(boot::kStreamChannelPort) & boot::kChannelPortMask)};
}

CHANNEL CDevice::GetMessageChannel() const {
    return {m_objRegisters.Get(boot::kMessageChannelDestination),
            static_cast<std::uint16_t>(m_objRegisters.Get(boot::kMessageChannelPort) & boot::kChannelPortMask)};
}

BLOCK_FORMAT CDevice::GetBlockFormat() const {
    const CRegisterSpace& objMemory = m_objRegisters;
    BLOCK_FORMAT objFormat;
    objFormat.Image.Width = objMemory.Get(address::kWidth);
    objFormat.Image.Height = objMemory.Get(address::kHeight);
    objFormat.Image.PixelFormat = static_cast<gev::EPixelFormat>(objMemory.Get(address::kPixelFormat));
    objFormat.Image.ReverseX = objMemory.Get(address::kReverseX) != 0;
    objFormat.OffsetX = objMemory.Get(address::kOffsetX);
    objFormat.OffsetY = objMemory.Get(address::kOffsetY);
    objFormat.PacketSize = objMemory.Get(boot::kStreamChannelPacketSize) & boot::kPacketSizeMask;
    objFormat.ExtendedIDs = (objMemory.Get(boot::kGvspConfiguration) & boot::kGvspConfigurationExtendedBlockIDs) != 0;
    objFormat.Chunks = objMemory.Get(address::kChunkModeActive) != 0;
    for (std::uint32_t i = 0; i < objFormat.ChunkEnabled.size(); ++i) {
        objFormat.ChunkEnabled[i] = objMemory.Get(address::kChunkEnable + kWord * i) != 0;
    }
    return objFormat;
}

FRAME_SETTINGS CDevice::GetFrameSettings() const {
    const CRegisterSpace& objMemory = m_objRegisters;
    FRAME_SETTINGS objFrame;
    objFrame.Rate = static_cast<double>(objMemory.GetFloat(address::kAcquisitionFrameRate));
    objFrame.Exposure = std::chrono::duration_cast<std::chrono::nanoseconds>(
        std::chrono::duration<double, std::micro>(objMemory.GetFloat(address::kExposureTime)));
    objFrame.PacketDelay = std::chrono::nanoseconds(objMemory.Get(boot::kStreamChannelPacketDelay));  // ticks
    objFrame.Pattern = static_cast<ETestPattern>(objMemory.Get(address::kTestPattern));
    for (std::uint32_t i = 0; i < objFrame.Trigger.size(); ++i) {
        objFrame.Trigger[i] = objMemory.Get(address::kTriggerMode + kWord * i) != 0;
    }
    for (std::uint32_t i = 0; i < objFrame.Event.size(); ++i) {
        objFrame.Event[i] = objMemory.Get(address::kEventNotification + kWord * i) != 0;
    }
    objFrame.ClockStart = m_tClockStart;
    return objFrame;
}

STREAM_SETTINGS CDevice::GetStreamSettings() const {
    const CRegisterSpace& objMemory = m_objRegisters;
    STREAM_SETTINGS objSettings;
    objSettings.Channel = GetStreamChannel();
    objSettings.DoNotFragment = (objMemory.Get(boot::kStreamChannelPacketSize) & boot::kPacketSizeDoNotFragment) != 0;
    objSettings.Format = GetBlockFormat();
    objSettings.Frame = GetFrameSettings();
    const std::uint32_t nMode = objMemory.Get(address::kAcquisitionMode);
    objSettings.FrameCount = nMode == kModeSingleFrame  ? 1
                             : nMode == kModeMultiFrame ? objMemory.Get(address::kAcquisitionFrameCount)
                                                        : 0;
    objSettings.Acquisition = m_nAcquisition;
    return objSettings;
}

}  // namespace camera
