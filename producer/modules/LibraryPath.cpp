#include "producer/modules/LibraryPath.h"

#include <filesystem>
#include <system_error>

#include <dlfcn.h>

namespace producer {

namespace {

std::string FindLibraryPath() {
    static const char nAnchor = 0;
    Dl_info objInfo{};
    if (dladdr(&nAnchor, &objInfo) == 0 || objInfo.dli_fname == nullptr) {
        return {};
    }
    std::error_code objError;
    const std::filesystem::path objPath = std::filesystem::absolute(objInfo.dli_fname, objError);
    return objError ? objInfo.dli_fname : objPath.string();
}

// Found while the library is loaded: a path that it was loaded by may be relative, and the folder that it counts from
// another one later. Never destroyed, since threads of the consumer may outlive the statics.
const std::string& g_strLibraryPath = *new std::string(FindLibraryPath());

}  // namespace

const std::string& GetLibraryPath() {
    return g_strLibraryPath;
}

}  // namespace producer
