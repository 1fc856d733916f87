// The parts of a feature file that are read before any bag: its sections, and the keys of its header.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "TLClass/TLClassFeature/FeatureFileText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const std::string_view strText(reinterpret_cast<const char*>(pData), nSize);
    try {
        std::size_t nBytes = 0;
        for (const std::string_view strPiece : SplitFeatureSections(strText)) {
            if (strPiece.empty() || strText.find(strPiece) == std::string_view::npos) {
                std::abort();
            }
            nBytes += strPiece.size();
        }
        if (nBytes > nSize) {
            std::abort();
        }
    } catch (const std::runtime_error&) {
    }
    for (const char* pKey : {"FileVersion", "DeviceModelName"}) {
        try {
            if (GetFeatureHeaderValue(strText, pKey).find_first_of("\n\t") != std::string::npos) {
                std::abort();
            }
        } catch (const std::runtime_error&) {
        }
    }
    return 0;
}
