#pragma once

#include <string>
#include <vector>

#include "TLClass/TLClassXML/XMLLimits.h"

/// Unpacks a packed description: the first entry of a ZIP file, or a zlib stream.
///
/// What is neither, or is broken, is handed on as it is after a line on standard output: the parser of the description
/// tells then what is wrong with it. Nothing is read or allocated on the word of the archive alone; a text beyond
/// kMaxDescriptionLength counts as broken.
/// @return  false if an exception ended the unpacking
bool UnpackXMLBuffer(const std::vector<char>& vecInput, std::vector<char>& vecOutput);

/// The same in place, with exceptions let out. The text of a zlib stream ends at its first zero byte.
void UnzipXMLString(std::string& strContent);

/// Replaces the content of a ZIP file by that of its first entry, which must be deflated and have its sizes in the
/// local header. Its name, its checksum and everything behind it are not looked at.
/// @return  false, with the destination untouched, if the header reaches past the data or the entry can't be inflated
bool InflateZipEntry(const std::string& strArchive, std::string& strContent);
