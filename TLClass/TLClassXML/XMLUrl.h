#pragma once

#include <cstdint>
#include <string>

/// Where a description lies.
enum class EXMLUrlType : std::uint32_t {
    None = 0,
    Local = 1,  ///< in the registers of the module
    File = 2,
};

struct XML_LOCAL_INFO {
    std::string Name;  ///< in upper case
    std::uint64_t Address = 0;
    std::uint64_t Length = 0;  ///< in bytes, as the URL claims: compare it with a bound before anything is made of it
};

struct XML_FILE_INFO {
    std::string Name;  ///< in upper case; its end tells how the file is packed
    std::string Path;  ///< what to open: in the producer's case, with the slash that an absolute path begins with
};

/// A URL taken apart. Only the member that belongs to Type is filled.
struct XML_URL_INFO {
    EXMLUrlType Type = EXMLUrlType::None;
    XML_LOCAL_INFO Local;
    XML_FILE_INFO File;
};

/// Takes the URL of a description apart: `FILE:[///]path.XML?` or `LOCAL:[///]name.XML;address;length[?anything]`, in
/// either case, with `.ZIP` in place of `.XML` for a packed one. Address and length are hexadecimal; they end at the
/// first character that is no digit, and without a digit they are 0. A file's URL must end at its question mark.
/// @throws CUnexpectedError   the URL has another form
/// @throws std::out_of_range  the name in the registers is too short to have an extension
XML_URL_INFO AnalyzeXMLUrl(const std::string& strUrl);
