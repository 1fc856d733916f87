#pragma once

#include <string>

#include "GenTL/GenTL.h"
#include "tests/producer_double/ProducerControl.h"

namespace ProducerDouble {

/// A producer double that a test has loaded.
///
/// Whoever loads the same file meanwhile, under this path, gets the same double: so a test scripts what the system
/// under test will meet. A fresh double stands behind the constructor, and nothing of it is left behind the destructor,
/// which aborts waits and awaits calls that are still inside.
class CProducerLibrary {
public:
    /// @throws std::runtime_error  the file can't be loaded, or isn't a scriptable double
    explicit CProducerLibrary(const std::string& strPath);
    ~CProducerLibrary();

    CProducerLibrary(const CProducerLibrary&) = delete;
    CProducerLibrary& operator=(const CProducerLibrary&) = delete;

    IProducerControl& operator*() const { return *m_pControl; }
    IProducerControl* operator->() const { return m_pControl; }

    /// An entry by its pointer type: `library.Entry<PTLOpen>("TLOpen")`. Null if this variant doesn't export it.
    template <class TEntry>
    TEntry Entry(const char* pszName) const {
        return reinterpret_cast<TEntry>(__Symbol(pszName));
    }

    /// Whether any copy of the file is loaded in this process.
    static bool IsLoaded(const std::string& strPath);

private:
    void* __Symbol(const char* pszName) const;

    void* m_hLibrary;
    IProducerControl* m_pControl;
};

}  // namespace ProducerDouble
