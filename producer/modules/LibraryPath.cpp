#include "producer/modules/LibraryPath.h"

#include <dlfcn.h>

namespace producer {

std::string GetLibraryPath() {
    static const char nAnchor = 0;
    Dl_info objInfo{};
    if (dladdr(&nAnchor, &objInfo) == 0 || objInfo.dli_fname == nullptr) {
        return {};
    }
    return objInfo.dli_fname;
}

}  // namespace producer
