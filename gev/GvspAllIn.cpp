#include "gev/GvspAllIn.h"

namespace gev {

std::span<std::byte> EncodeAllIn(std::span<std::byte> arrBuffer, const GVSP_LEADER& objLeader,
                                 const GVSP_TRAILER& objTrailer) {
    if (objLeader.PayloadType != objTrailer.PayloadType) {
        return {};
    }
    const auto arrLeader = EncodeLeader(arrBuffer, objLeader);
    if (arrLeader.empty()) {
        return {};
    }
    const auto arrTrailer = EncodeTrailer(arrBuffer.subspan(arrLeader.size()), objTrailer);
    return arrTrailer.empty() ? std::span<std::byte>{} : arrBuffer.first(arrLeader.size() + arrTrailer.size());
}

bool DecodeAllIn(std::span<const std::byte> arrBody, GVSP_ALL_IN& objAllIn) {
    GVSP_ALL_IN objResult;
    if (!DecodeLeader(arrBody, objResult.Leader)) {
        return false;
    }
    const auto arrTrailer = arrBody.subspan(GetLeaderSize(objResult.Leader.PayloadType));
    if (!DecodeTrailer(arrTrailer, objResult.Trailer) ||
        objResult.Trailer.PayloadType != objResult.Leader.PayloadType) {
        return false;
    }
    objResult.Data = arrTrailer.subspan(GetTrailerSize(objResult.Trailer.PayloadType));
    objAllIn = objResult;
    return true;
}

}  // namespace gev
