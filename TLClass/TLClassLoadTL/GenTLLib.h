#pragma once

#include <map>
#include <string>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassLoadTL/DynamicLibrary.h"
#include "TLClass/TLClassLoadTL/GenTLEntries.h"

/// One entry of a producer, called like a function of the standard's prototype. Bound once, by CGenTLLib.
template <typename PROTOTYPE>
class CGenTLEntry;

template <typename... ARGUMENTS>
class CGenTLEntry<GC_ERROR(ARGUMENTS...)> {
public:
    explicit CGenTLEntry(CDynamicLibrary::FUNCTION pFunction) : m_pFunction(reinterpret_cast<SLOT>(pFunction)) {}

    /// What the producer answers, or -1 if it lacks the entry.
    GC_ERROR operator()(ARGUMENTS... arguments) const {
        return m_pFunction == nullptr ? GC_ERROR{-1} : m_pFunction(arguments...);
    }

    /// The producer's function itself, null if it lacks the entry.
    CDynamicLibrary::FUNCTION GetFunction() const { return reinterpret_cast<CDynamicLibrary::FUNCTION>(m_pFunction); }

private:
    using SLOT = GC_ERROR (*)(ARGUMENTS...);

    SLOT m_pFunction;
};

/// The binding to one producer: loads its file, and offers each of its entries as a member of the same name.
///
/// Owned by the manager, which closes all modules of the producer, and then the producer, before it lets the binding go;
/// everybody else keeps a plain pointer. Read only once it is made, so any thread may call any member; what a producer
/// itself asks of concurrent calls is the callers' matter.
class CGenTLLib {
public:
    /// @param strPath  the producer's file. An entry that it lacks gives a line in the log, and answers -1 when called.
    /// @throws CUnexpectedError  the file can't be loaded
    explicit CGenTLLib(const std::string& strPath);
    CGenTLLib(const CGenTLLib&) = delete;
    CGenTLLib& operator=(const CGenTLLib&) = delete;
    /// Unloads the file. A failure is logged.
    virtual ~CGenTLLib();

    /// The raw function of GCReadPort, GCWritePort, GCReadPortStacked, GCWritePortStacked or GCGetLastError. Null for
    /// any other name, and for one of these that the producer lacks.
    CDynamicLibrary::FUNCTION FindFunction(const std::string& strName) const;

private:
    CDynamicLibrary m_objLibrary;  // loaded before the entries below are bound, and freed after them

public:
#define GENTL_MEMBER(NAME) const CGenTLEntry<decltype(::NAME)> NAME;
    GENTL_ENTRIES(GENTL_MEMBER)
#undef GENTL_MEMBER

private:
    std::map<std::string, CDynamicLibrary::FUNCTION> m_mapFunction;
};
