#pragma once

#include <cstdint>

#include "GenApi/NodeVector.h"
#include "GenApi/Value.h"

namespace GenApi_3_0 {

class IEnumEntry;

/// A node whose value is one of a list of named ones. As text it reads and takes the names.
class IEnumeration : virtual public IValue {
public:
    /// The names of the entries that are available now.
    virtual void GetSymbolics(StringList_t& Symbolics) = 0;
    /// All entries, available or not, in the order of the description.
    virtual void GetEntries(NodeList_t& Entries) = 0;
    virtual void SetIntValue(std::int64_t Value, bool Verify = true) = 0;
    virtual std::int64_t GetIntValue(bool Verify = false, bool IgnoreCache = false) = 0;
    /// Null if there is none.
    virtual IEnumEntry* GetEntryByName(const gcstring& Symbolic) = 0;
    /// Null if there is none.
    virtual IEnumEntry* GetEntry(std::int64_t IntValue) = 0;
    /// The entry of the value that is read. Null if none has it.
    virtual IEnumEntry* GetCurrentEntry(bool Verify = false, bool IgnoreCache = false) = 0;

    IEnumeration& operator=(const gcstring& ValueStr) {
        FromString(ValueStr);
        return *this;
    }
};

}  // namespace GenApi_3_0
