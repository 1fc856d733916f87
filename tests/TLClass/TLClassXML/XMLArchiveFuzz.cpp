// A packed description, as a camera may send it.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "TLClass/TLClassXML/XMLArchive.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    std::vector<char> vecContent;
    if (!UnpackXMLBuffer(std::vector<char>(pData, pData + nSize), vecContent) ||
        (vecContent.size() > kMaxDescriptionLength && vecContent.size() != nSize)) {
        std::abort();
    }
    return 0;
}
