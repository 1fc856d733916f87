// A persistence stream: what is read of it is written and read again the same.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "GenApi/FeatureBag.h"
#include "GenApi/GCException.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    std::istringstream stream(std::string(reinterpret_cast<const char*>(pData), nSize));
    GenApi_3_0::CFeatureBag objBag;
    try {
        stream >> objBag;
    } catch (const GenICam_3_0::RuntimeException&) {
        return 0;
    }
    std::stringstream objWritten;
    objWritten << objBag;
    GenApi_3_0::CFeatureBag objAgain;
    objWritten >> objAgain;
    if (objAgain.GetNames() != objBag.GetNames() || objAgain.GetValues() != objBag.GetValues()) {
        std::abort();
    }
    return 0;
}
