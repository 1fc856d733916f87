#pragma once

#include <cstddef>
#include <cstdint>

/// What a producer tells about a buffer and the frame in it. Sizes, paddings and the offset of the image are in bytes,
/// width, height and offsets in pixels.
/// A field whose command the producer refused is empty, and its flag, the field's name with Valid behind it, is false.
struct BUFFER_MODULE_INFO {
    std::size_t Size = 0;
    std::size_t SizeFilled = 0;
    std::size_t Width = 0;
    std::size_t Height = 0;
    std::size_t XOffset = 0;
    std::size_t YOffset = 0;
    std::size_t XPadding = 0;
    std::size_t YPadding = 0;
    std::size_t ImageOffset = 0;
    std::size_t PayloadType = 0;
    std::size_t InitPayloadSize = 0;  ///< from the frame description of the acquisition; no command fills it
    std::uint64_t Timestamp = 0;
    std::uint64_t FrameID = 0;
    std::uint64_t PixelFormat = 0;
    std::uint64_t PixelFormatNamespace = 0;
    bool IsIncomplete = false;
    void* Base = nullptr;
    void* UserPtr = nullptr;

    bool SizeValid = false;
    bool SizeFilledValid = false;
    bool WidthValid = false;
    bool HeightValid = false;
    bool XOffsetValid = false;
    bool YOffsetValid = false;
    bool XPaddingValid = false;
    bool YPaddingValid = false;
    bool ImageOffsetValid = false;
    bool PayloadTypeValid = false;
    bool InitPayloadSizeValid = false;
    bool TimestampValid = false;
    bool FrameIDValid = false;
    bool PixelFormatValid = false;
    bool PixelFormatNamespaceValid = false;
    bool IsIncompleteValid = false;
    bool BaseValid = false;
    bool UserPtrValid = false;
};
