#include "tests/producer_double/ProducerLibrary.h"

#include <stdexcept>

#include <dlfcn.h>

namespace ProducerDouble {

CProducerLibrary::CProducerLibrary(const std::string& strPath)
    : m_hLibrary(dlopen(strPath.c_str(), RTLD_NOW | RTLD_LOCAL)), m_pControl(nullptr) {
    if (m_hLibrary == nullptr) {
        throw std::runtime_error(dlerror());
    }
    const auto pGetControl = Entry<PGetProducerControl>(kControlEntry);
    if (pGetControl == nullptr) {
        dlclose(m_hLibrary);
        throw std::runtime_error(strPath + ": exports no control object");
    }
    m_pControl = pGetControl();
    m_pControl->Reset();
}

CProducerLibrary::~CProducerLibrary() {
    m_pControl->Reset();
    dlclose(m_hLibrary);
}

bool CProducerLibrary::IsLoaded(const std::string& strPath) {
    void* h = dlopen(strPath.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (h != nullptr) {
        dlclose(h);
    }
    return h != nullptr;
}

void* CProducerLibrary::__Symbol(const char* pszName) const {
    return dlsym(m_hLibrary, pszName);
}

}  // namespace ProducerDouble
