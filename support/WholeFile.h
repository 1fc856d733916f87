#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Files that are read and written in one go. The errors tell no path: the caller knows it, and how its user calls it.

/// Reads a regular file to its end. Never waits for a writer: what isn't a regular file is refused, not read.
/// @param nMost  bytes that it may have
/// @throws std::system_error   it can't be opened or read; with the code no_such_file_or_directory there is none
/// @throws std::runtime_error  it is no regular file, or longer
std::string ReadWholeFile(const std::string& strPath, std::size_t nMost);

/// How long a writer waits.
enum class EWholeFile {
    Quick,   ///< not at all: a file that was written within the last seconds may be lost with the power
    Durable  ///< until the disk has it
};

/// Writes a file that appears whole or not at all: under its name with ".part" and numbers behind it first, then under
/// its own, in place of a regular file of that name. After an error what was there is there still. Of several writers
/// at once, in one process or several, the last one wins.
/// @throws std::system_error   it can't be written
/// @throws std::runtime_error  what has that name is no regular file
void WriteWholeFile(const std::string& strPath, std::string_view strContent, EWholeFile eHow);

/// Tries whether WriteWholeFile could write there, and leaves nothing behind.
/// @throws  what it would throw
void TryWholeFile(const std::string& strPath);
