#include "TLClass/TLClassLoadTL/DynamicLibrary.h"

#include <dlfcn.h>

#include "support/Log.h"
#include "support/Text.h"

CDynamicLibrary::~CDynamicLibrary() {
    Free();
}

bool CDynamicLibrary::Load(const std::string& strPath) {
    // The system takes an empty path for the program itself, which is no library.
    if (m_hModule != nullptr || strPath.empty()) {
        return false;
    }
    m_hModule = dlopen(strPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    return m_hModule != nullptr;
}

bool CDynamicLibrary::Free() {
    if (m_hModule == nullptr) {
        return true;
    }
    const bool bFreed = dlclose(m_hModule) == 0;
    m_hModule = nullptr;
    return bFreed;
}

CDynamicLibrary::FUNCTION CDynamicLibrary::GetFunction(const std::string& strName) const {
    if (m_hModule == nullptr) {
        return nullptr;
    }
    const auto pFunction = reinterpret_cast<FUNCTION>(dlsym(m_hModule, strName.c_str()));
    if (pFunction == nullptr) {
        CLog::GetInstance()->Write(Format("Failed to get ProcAddress %s\n", strName.c_str()));
    }
    return pFunction;
}
