#pragma once

#include <map>
#include <string>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassLoadTL/DynamicLibrary.h"

/// One entry of a producer, called like a function of the standard's prototype. A member of CGenTLLib, which binds it.
template <typename PROTOTYPE>
class CGenTLEntry;

template <typename... ARGUMENTS>
class CGenTLEntry<GC_ERROR(GC_CALLTYPE*)(ARGUMENTS...)> {
public:
    /// What a producer answers that lacks the entry.
    static constexpr GC_ERROR kMissing = -1;

    CGenTLEntry() = default;
    CGenTLEntry(const CGenTLEntry&) = delete;
    CGenTLEntry& operator=(const CGenTLEntry&) = delete;

    GC_ERROR operator()(ARGUMENTS... arguments) const {
        return m_pFunction == nullptr ? kMissing : m_pFunction(arguments...);
    }

private:
    friend class CGenTLLib;

    void __Bind(CDynamicLibrary::FUNCTION pFunction) {
        m_pFunction = reinterpret_cast<decltype(m_pFunction)>(pFunction);
    }
    CDynamicLibrary::FUNCTION __GetFunction() const { return reinterpret_cast<CDynamicLibrary::FUNCTION>(m_pFunction); }

    GC_ERROR(GC_CALLTYPE* m_pFunction)(ARGUMENTS...) = nullptr;
};

/// The binding to one producer: loads its file, and offers each of its entries as a member of the same name.
///
/// Owned by the manager, which closes all modules of the producer, and then the producer, before it lets the binding
/// go; everybody else keeps a plain pointer, and a device a share of its own while it is open. Read only once it is
/// made, so any thread may call any member; what a producer itself asks of concurrent calls is the callers' matter.
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
    void __BindEntries();

    CDynamicLibrary m_objLibrary;

public:
#define GENTL_ENTRY_MEMBER(NAME, PARAMETERS) \
    CGenTLEntry<P##NAME> NAME;  // NOLINT(bugprone-macro-parentheses): a declaration
    GENTL_ENTRIES(GENTL_ENTRY_MEMBER)
#undef GENTL_ENTRY_MEMBER

private:
    std::map<std::string, CDynamicLibrary::FUNCTION> m_mapFunction;
};
