// A URL of a description, as a producer or the camera behind it may give it.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "TLClass/TLClassXML/XMLUrl.h"
#include "support/Text.h"
#include "support/ZrException.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const std::string strUrl(reinterpret_cast<const char*>(pData), nSize);
    try {
        const XML_URL_INFO objUrl = AnalyzeXMLUrl(strUrl);
        const bool bFile = objUrl.Type == EXMLUrlType::File;
        // Each form fills its own member, and the path differs from the name in case and the first slash alone.
        if (bFile != objUrl.Local.Name.empty() || bFile == objUrl.File.Name.empty() ||
            (bFile && !ToUpperAscii(objUrl.File.Path).ends_with(objUrl.File.Name))) {
            std::abort();
        }
    } catch (const CUnexpectedError&) {
    } catch (const std::out_of_range&) {
    }
    return 0;
}
