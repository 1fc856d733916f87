// A URL register that holds anything: what is made of it is bounded, and reads as itself.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "producer/modules/RemoteUrl.h"

namespace {

void Require(bool bHolds) {
    if (!bHolds) {
        std::abort();
    }
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the name that the fuzzer calls
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    std::string strWhy;
    const auto objUrl = producer::ReadCameraUrl(std::as_bytes(std::span(pData, nSize)), strWhy);
    Require(objUrl.has_value() == strWhy.empty());
    if (objUrl && objUrl->Scheme == URL_SCHEME_LOCAL) {
        Require(objUrl->Size > 0 && objUrl->Size <= producer::kLargestDescription);
        Require(objUrl->Address + objUrl->Size <= std::uint64_t{1} << 32);
        const auto objAgain = producer::ReadCameraUrl(std::as_bytes(std::span(objUrl->Url)), strWhy);
        Require(objAgain && objAgain->Url == objUrl->Url);
    }
    return 0;
}
