#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "TLClass/TLClassLoadTL/GenTLLib.h"

/// Base of the classes that read the ID of a child by its index.
///
/// Lives on the stack of one thread for the length of one read, and owns neither the library nor the parent's handle.
class CModuleID {
public:
    /// The ID, or the empty string if the producer doesn't tell it.
    std::string GetID();

protected:
    CModuleID(void* hParent, std::uint32_t nIndex, CGenTLLib* pLib);
    ~CModuleID() = default;

    /// @param pBuffer  null to learn the size, else *pSize bytes
    virtual GC_ERROR _GetID(char* pBuffer, std::size_t* pSize) = 0;

    void* m_hParent;
    std::uint32_t m_nIndex;
    CGenTLLib* m_pLib;
};
