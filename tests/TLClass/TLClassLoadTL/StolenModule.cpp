#include "tests/TLClass/TLClassLoadTL/StolenModule.h"

#include <dlfcn.h>

void CloseBehindTheBackOfItsOwner(const std::string& strPath) {
    void* const hModule = dlopen(strPath.c_str(), RTLD_NOW | RTLD_NOLOAD);
    dlclose(hModule);
    dlclose(hModule);
}
