#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "GenTL/GenTL.h"

/// The most bytes, the closing zero included, that a text of a producer may have. No ID, name or message comes near it;
/// a producer that announces more is taken to answer nonsense, and nothing is allocated for it.
inline constexpr std::size_t kMaxProducerTextSize = std::size_t{1} << 20;

/// First half of the two calls that read a text: how many bytes there are. Nothing if the producer refuses.
/// @param fnCall  takes (char* pBuffer, std::size_t* pSize) and answers the GC_ERROR of the producer's entry
template <typename CALL>
std::optional<std::size_t> AskProducerTextSize(CALL&& fnCall) {
    std::size_t nSize = 0;
    if (fnCall(static_cast<char*>(nullptr), &nSize) != GC_ERR_SUCCESS || nSize > kMaxProducerTextSize) {
        return std::nullopt;
    }
    return nSize;
}

/// Second half: the text up to its first zero byte, or all nSize bytes of it if there is none. Nothing if the producer
/// refuses. The call is made for a size of 0 as well, with a pointer that isn't null.
template <typename CALL>
std::optional<std::string> FetchProducerText(std::size_t nSize, CALL&& fnCall) {
    std::vector<char> vecBuffer(nSize + 1);  // one byte more than the producer is told of: never a null pointer
    std::size_t nAnswered = nSize;
    if (fnCall(vecBuffer.data(), &nAnswered) != GC_ERR_SUCCESS) {
        return std::nullopt;
    }
    const auto itEnd = vecBuffer.begin() + static_cast<std::ptrdiff_t>(nSize);
    return std::string(vecBuffer.begin(), std::find(vecBuffer.begin(), itEnd, '\0'));
}

/// Both halves: a text of a producer, or nothing if either call is refused.
template <typename CALL>
std::optional<std::string> ReadProducerText(CALL&& fnCall) {
    const std::optional<std::size_t> nSize = AskProducerTextSize(fnCall);
    return nSize ? FetchProducerText(*nSize, fnCall) : std::nullopt;
}
