#pragma once

#include <string>

/// One loaded library. Owns its module and lets it go at the latest when it dies.
///
/// Load and Free belong to the owner's thread; GetFunction may be called from any thread between the two.
class CDynamicLibrary {
public:
    /// Any function; the caller casts it to its real type.
    using FUNCTION = void (*)();

    CDynamicLibrary() = default;
    CDynamicLibrary(const CDynamicLibrary&) = delete;
    CDynamicLibrary& operator=(const CDynamicLibrary&) = delete;
    ~CDynamicLibrary();

    /// Loads the library, all its symbols resolved and none of them given to others. False if that fails, and also if
    /// one is held already, which then stays.
    bool Load(const std::string& strPath);

    /// Lets the module go. False if the system refused, and even then nothing is held any longer.
    bool Free();

    /// Null, with a line in the log, for a name that the library doesn't export; null without one if none is loaded.
    FUNCTION GetFunction(const std::string& strName) const;

private:
    void* m_hModule = nullptr;
};
