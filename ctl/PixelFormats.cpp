#include "ctl/PixelFormats.h"

#include <algorithm>

namespace {

constexpr PIXEL_FORMAT kPixelFormats[] = {
    {0x01080001, "Mono8", PACKING::Byte, 8, MOSAIC::None},
    {0x01100003, "Mono10", PACKING::Word, 10, MOSAIC::None},
    {0x010C0004, "Mono10Packed", PACKING::GigE10, 10, MOSAIC::None},
    {0x010A0046, "Mono10p", PACKING::LowFirst, 10, MOSAIC::None},
    {0x01100005, "Mono12", PACKING::Word, 12, MOSAIC::None},
    {0x010C0006, "Mono12Packed", PACKING::GigE12, 12, MOSAIC::None},
    {0x010C0047, "Mono12p", PACKING::LowFirst, 12, MOSAIC::None},
    {0x01100025, "Mono14", PACKING::Word, 14, MOSAIC::None},
    {0x01100007, "Mono16", PACKING::Word, 16, MOSAIC::None},
    {0x01080008, "BayerGR8", PACKING::Byte, 8, MOSAIC::GR},
    {0x01080009, "BayerRG8", PACKING::Byte, 8, MOSAIC::RG},
    {0x0108000A, "BayerGB8", PACKING::Byte, 8, MOSAIC::GB},
    {0x0108000B, "BayerBG8", PACKING::Byte, 8, MOSAIC::BG},
    {0x0110000C, "BayerGR10", PACKING::Word, 10, MOSAIC::GR},
    {0x0110000D, "BayerRG10", PACKING::Word, 10, MOSAIC::RG},
    {0x0110000E, "BayerGB10", PACKING::Word, 10, MOSAIC::GB},
    {0x0110000F, "BayerBG10", PACKING::Word, 10, MOSAIC::BG},
    {0x01100010, "BayerGR12", PACKING::Word, 12, MOSAIC::GR},
    {0x01100011, "BayerRG12", PACKING::Word, 12, MOSAIC::RG},
    {0x01100012, "BayerGB12", PACKING::Word, 12, MOSAIC::GB},
    {0x01100013, "BayerBG12", PACKING::Word, 12, MOSAIC::BG},
    {0x010C0026, "BayerGR10Packed", PACKING::GigE10, 10, MOSAIC::GR},
    {0x010C0027, "BayerRG10Packed", PACKING::GigE10, 10, MOSAIC::RG},
    {0x010C0028, "BayerGB10Packed", PACKING::GigE10, 10, MOSAIC::GB},
    {0x010C0029, "BayerBG10Packed", PACKING::GigE10, 10, MOSAIC::BG},
    {0x010C002A, "BayerGR12Packed", PACKING::GigE12, 12, MOSAIC::GR},
    {0x010C002B, "BayerRG12Packed", PACKING::GigE12, 12, MOSAIC::RG},
    {0x010C002C, "BayerGB12Packed", PACKING::GigE12, 12, MOSAIC::GB},
    {0x010C002D, "BayerBG12Packed", PACKING::GigE12, 12, MOSAIC::BG},
    {0x0110002E, "BayerGR16", PACKING::Word, 16, MOSAIC::GR},
    {0x0110002F, "BayerRG16", PACKING::Word, 16, MOSAIC::RG},
    {0x01100030, "BayerGB16", PACKING::Word, 16, MOSAIC::GB},
    {0x01100031, "BayerBG16", PACKING::Word, 16, MOSAIC::BG},
    {0x010A0056, "BayerGR10p", PACKING::LowFirst, 10, MOSAIC::GR},
    {0x010A0058, "BayerRG10p", PACKING::LowFirst, 10, MOSAIC::RG},
    {0x010A0054, "BayerGB10p", PACKING::LowFirst, 10, MOSAIC::GB},
    {0x010A0052, "BayerBG10p", PACKING::LowFirst, 10, MOSAIC::BG},
    {0x010C0057, "BayerGR12p", PACKING::LowFirst, 12, MOSAIC::GR},
    {0x010C0059, "BayerRG12p", PACKING::LowFirst, 12, MOSAIC::RG},
    {0x010C0055, "BayerGB12p", PACKING::LowFirst, 12, MOSAIC::GB},
    {0x010C0053, "BayerBG12p", PACKING::LowFirst, 12, MOSAIC::BG},
    {0x02180014, "RGB8", PACKING::Rgb, 8, MOSAIC::None},
    {0x02180015, "BGR8", PACKING::Bgr, 8, MOSAIC::None},
};

}  // namespace

std::span<const PIXEL_FORMAT> GetPixelFormats() {
    return kPixelFormats;
}

const PIXEL_FORMAT* FindPixelFormat(std::uint64_t nCode) {
    const auto* const pFound = std::find_if(std::begin(kPixelFormats), std::end(kPixelFormats),
                                            [=](const PIXEL_FORMAT& objFormat) { return objFormat.nCode == nCode; });
    return pFound == std::end(kPixelFormats) ? nullptr : pFound;
}
