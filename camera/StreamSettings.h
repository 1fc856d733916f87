#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

#include "camera/FeatureAddress.h"
#include "camera/TestImage.h"
#include "gev/GvcpResend.h"

namespace camera {

using TIME = std::chrono::steady_clock::time_point;

/// Where images or events go: one channel's registers.
struct CHANNEL {
    std::uint32_t Address = 0;  ///< of the host
    std::uint16_t Port = 0;     ///< of the host; 0 says that the channel is closed

    /// Whether there is somewhere to send to: to the system an address of 0 is this machine.
    [[nodiscard]] constexpr bool LeadsAnywhere() const { return Address != 0 && Port != 0; }

    friend bool operator==(const CHANNEL&, const CHANNEL&) = default;
};

/// What stands behind an image when chunks are on, by the index of ChunkSelector.
struct CHUNK {
    std::uint32_t ID;
    std::uint32_t Length;
};
enum EChunk : std::size_t { kChunkFrameID, kChunkTimestamp, kChunkExposureTime };
inline constexpr std::uint32_t kImageChunkID = 0x00000001;
inline constexpr std::array<CHUNK, address::kChunkCount> kChunks = {{{0x1001, 8}, {0x1002, 8}, {0x1003, 4}}};
inline constexpr std::uint32_t kChunkTail = 8;  ///< ID and length, behind the data of each chunk

/// What the blocks of one acquisition have in common: nothing of it changes while it runs.
struct BLOCK_FORMAT {
    IMAGE_FORMAT Image;
    std::uint32_t OffsetX = 0;
    std::uint32_t OffsetY = 0;
    std::size_t PacketSize = 0;  ///< with the headers of IP, UDP and GVSP
    bool ExtendedIDs = false;
    bool Chunks = false;  ///< whether anything stands behind the image
    std::array<bool, address::kChunkCount> ChunkEnabled{};

    friend bool operator==(const BLOCK_FORMAT&, const BLOCK_FORMAT&) = default;
};

/// The index of an event in EventSelector, and of a trigger in TriggerSelector.
enum EEvent : std::size_t { kEventExposureEnd, kEventFrameTrigger };
enum ETrigger : std::size_t { kTriggerFrameStart, kTriggerAcquisitionStart };

/// What the event of an exposure's end carries behind its entry: two numbers of 8 bytes.
inline constexpr std::uint32_t kEventTimestampPlace = 0;
inline constexpr std::uint32_t kEventFramePlace = 8;
inline constexpr std::size_t kEventDataLength = 16;

/// What may change from frame to frame.
struct FRAME_SETTINGS {
    double Rate = 25;                                    ///< frames in a second, while no trigger is waited for
    std::chrono::nanoseconds Exposure{};                 ///< cut to what a frame lasts
    std::chrono::nanoseconds PacketDelay{};              ///< from the start of a packet to the next one's
    ETestPattern Pattern = ETestPattern::Off;            ///< in place of the one in the format
    std::array<bool, address::kTriggerCount> Trigger{};  ///< whether it is waited for
    std::array<bool, address::kEventCount> Event{};      ///< whether it is told
    TIME ClockStart{};                                   ///< when the camera's clock was 0
};

/// Everything that the registers say about the stream.
struct STREAM_SETTINGS {
    CHANNEL Channel;
    bool DoNotFragment = false;
    BLOCK_FORMAT Format;
    FRAME_SETTINGS Frame;
    std::uint32_t FrameCount = 0;   ///< frames of the acquisition; 0: until it is stopped
    std::uint32_t Acquisition = 0;  ///< counts acquisitions
};

/// What the stream does wrong on purpose. A plain value; at first nothing. Rates are percents.
struct STREAM_FAULTS {
    double Loss = 0;                ///< packets, resent ones included
    std::uint32_t LossBurst = 1;    ///< packets in a row that are lost each time; the rate stays
    double LostLeaders = 0;         ///< beside the others
    double LostTrailers = 0;        ///< the same
    double Duplicates = 0;          ///< packets that come twice
    std::uint32_t Reorder = 0;      ///< packets are shuffled in groups of so many
    double WrongSizes = 0;          ///< packets that are cut short or have junk behind them
    double Foreign = 0;             ///< packets of another sender: one comes behind so many of the camera's
    std::uint32_t StopInFrame = 0;  ///< in the middle of this frame, counted from when faults are set; 0: never
    bool NoResend = false;          ///< requests are passed over
    std::uint32_t Seed = 1;         ///< of all that is left to chance

    friend bool operator==(const STREAM_FAULTS&, const STREAM_FAULTS&) = default;
};

/// What sends a camera's images, as its registers see it. Nothing of it waits.
class IStreaming {
public:
    virtual ~IStreaming() = default;

    /// The UDP port that the stream comes from.
    [[nodiscard]] virtual std::uint16_t GetPort() const = 0;
    /// The channel was opened anew: block IDs begin at 1.
    virtual void Open() = 0;
    /// Sends nothing any more, and forgets what was sent.
    virtual void Close() = 0;
    /// Begins an acquisition, after the one that may still run.
    virtual void Start(const STREAM_SETTINGS& objSettings) = 0;
    /// Ends the acquisition behind the frame that is under way.
    virtual void Stop() = 0;
    /// Takes over what may change while an acquisition runs: the frame's settings and where the stream goes.
    virtual void Change(const STREAM_SETTINGS& objSettings) = 0;
    /// A software trigger, one of ETrigger.
    virtual void Trigger(std::size_t nTrigger) = 0;
    virtual void SendTestPacket(const STREAM_SETTINGS& objSettings) = 0;
    virtual void Resend(const gev::RESEND_COMMAND& objCommand) = 0;
    virtual void SetFaults(const STREAM_FAULTS& objFaults) = 0;
};

}  // namespace camera
