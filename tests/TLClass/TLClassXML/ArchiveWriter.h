#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// A text as descriptions are: long, and repeating itself over far distances.
/// @param nSize  in bytes
std::string MakeDescriptionText(std::size_t nSize);

/// A raw deflate stream of the text, as the usual tools make it.
std::string Deflate(const std::string& strText);

/// A zlib stream of the text.
std::string CompressZlib(const std::string& strText);

/// What the local header of a ZIP file's first entry says. Each member may lie.
struct ZIP_ENTRY {
    std::uint16_t Method = 8;  // deflated
    std::uint32_t CompressedSize = 0;
    std::uint32_t UncompressedSize = 0;
    std::uint16_t NameLength = 0;
    std::uint16_t ExtraLength = 0;
};

/// A local header and what follows it.
std::string MakeZip(const ZIP_ENTRY& objEntry, const std::string& strBehindHeader);

/// A ZIP file with one honest entry, without a central directory.
std::string MakeZip(const std::string& strText);
