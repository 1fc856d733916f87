#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "camera/CameraConfiguration.h"
#include "camera/CameraState.h"
#include "camera/FeatureAddress.h"
#include "camera/FeatureTable.h"
#include "camera/RegisterSpace.h"
#include "camera/StreamSettings.h"
#include "camera/Thermometer.h"
#include "gev/Address.h"
#include "gev/GvcpStatus.h"

namespace camera {

/// A camera behind its registers: what is asked of them, and what happens when they are written. It knows no network
/// and no right of any application. Not for two threads at once.
class CDevice {
public:
    /// @param objStreaming  must outlive this
    /// @throws CStateError  the configuration's state is none of this camera
    CDevice(const CAMERA_CONFIGURATION& objConfiguration, gev::CMACAddress objMAC, std::uint32_t nLinkSpeed,
            IStreaming& objStreaming, TIME tNow);

    [[nodiscard]] CRegisterSpace& Registers() { return m_objRegisters; }
    [[nodiscard]] const CRegisterSpace& Registers() const { return m_objRegisters; }

    /// Writes a block: all of it, or nothing and the reason why.
    /// @param arrData  a multiple of 4 bytes, at most 536
    /// @return as CRegisterSpace::CheckWrite; InvalidParameter for a value that a feature can't have, AccessDenied for
    ///         one that can't be changed now
    gev::EGvcpStatus Write(std::uint32_t nAddress, std::span<const std::byte> arrData, TIME tNow);

    /// Brings what changes by itself up to this time. Due before anything is read, and before images begin or end.
    void Advance(TIME tNow);

    /// How long writing this takes; mostly nothing.
    [[nodiscard]] std::chrono::milliseconds GetDuration(std::uint32_t nAddress,
                                                        std::span<const std::byte> arrData) const;

    /// Closes the stream and message channels, and ends an acquisition.
    void CloseChannels();
    /// The acquisition of this number has taken all its images.
    void EndAcquisition(std::uint32_t nAcquisition);
    /// So many packets of images found no way out.
    void CountUnsent(std::uint64_t nPackets);

    /// Whether DeviceReset was written since the last call.
    [[nodiscard]] bool TakeResetWish();
    /// What a start does to registers: all as in the user set that UserSetDefault names, channels closed.
    void Reset(TIME tNow);

    [[nodiscard]] bool IsAcquiring() const { return m_bAcquiring; }
    [[nodiscard]] CHANNEL GetStreamChannel() const;
    [[nodiscard]] CHANNEL GetMessageChannel() const;
    /// What the registers say about the stream.
    [[nodiscard]] STREAM_SETTINGS GetStreamSettings() const;
    /// Ticks of the camera's clock, which are nanoseconds since its start or its last reset.
    [[nodiscard]] std::uint64_t GetTimestamp(TIME tNow) const;

    /// Whether the sensor gets far too warm while images are taken, from the time of the last Advance on.
    void SetOverheating(bool bOverheating) { m_objThermometer.SetOverheating(bOverheating); }

    /// What survives when the camera is switched off.
    [[nodiscard]] CAMERA_STATE GetState() const;
    /// Whether writes have changed some of that since the last call.
    [[nodiscard]] bool TakeStateChange();

    /// Full and unterminated texts in place of the right ones, or the right ones back.
    void SetNamesWithoutEnd(bool bWithoutEnd);

private:
    /// A feature with what its limits hang on, looked up once.
    struct FEATURE_PLACE {
        const FEATURE* Feature;
        std::uint32_t MaxOf;    // address, 0 for none
        std::uint32_t MaxLess;  // the same
    };

    void ListPlaces();
    void SetRights();
    void SetIdentity(const CAMERA_CONFIGURATION& objConfiguration, gev::CMACAddress objMAC, std::uint32_t nLinkSpeed);
    void SetDefaults();
    [[nodiscard]] const FEATURE_PLACE* FindPlace(std::uint32_t nAddress) const;
    [[nodiscard]] gev::EGvcpStatus CheckValue(const FEATURE_PLACE& objPlace, std::uint32_t nAddress) const;
    [[nodiscard]] gev::EGvcpStatus CheckValues(std::uint32_t nAddress, std::size_t nLength) const;
    [[nodiscard]] bool IsLocked(std::uint32_t nAddress, std::size_t nLength) const;
    [[nodiscard]] gev::EGvcpStatus CheckCommand(std::uint32_t nAddress) const;
    void Follow(std::uint32_t nAddress, TIME tNow);
    bool FollowStream(std::uint32_t nAddress);
    void FollowTrigger(std::uint32_t nTrigger);
    void FollowStreamChannel();
    [[nodiscard]] BLOCK_FORMAT GetBlockFormat() const;
    [[nodiscard]] FRAME_SETTINGS GetFrameSettings() const;
    void ControlTimestamp(std::uint32_t nControl, TIME tNow);
    void UpdatePayloadSize();
    void Restore(const CAMERA_STATE& objState);
    void SaveUserSet(std::uint32_t nSet);
    void LoadUserSet(std::uint32_t nSet);

    IStreaming& m_objStreaming;
    CRegisterSpace m_objRegisters;
    std::vector<FEATURE_PLACE> m_vecPlace;                                    // by address
    std::array<std::vector<std::byte>, address::kUserSetCount> m_arrUserSet;  // the saved features one behind the other
    std::vector<std::byte> m_vecNames;  // the right texts, while they are replaced
    CThermometer m_objThermometer;
    TIME m_tClockStart;
    CHANNEL m_objStreamChannel;        // as the stream was told
    std::uint32_t m_nAcquisition = 0;  // the last
    bool m_bAcquiring = false;
    bool m_bResetWish = false;
    bool m_bStateChanged = false;
};

}  // namespace camera
