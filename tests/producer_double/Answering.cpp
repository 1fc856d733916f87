#include "tests/producer_double/Answering.h"

#include <algorithm>
#include <cstring>

#include "tests/producer_double/GenTLError.h"

namespace ProducerDouble {

void PutBytes(const TARGET& objTarget, INFO_DATATYPE nType, std::span<const std::byte> bytes) {
    if (objTarget.pSize == nullptr) {
        Refuse(GC_ERR_INVALID_PARAMETER, "no place for the size");
    }
    if (objTarget.pBuffer != nullptr && *objTarget.pSize < bytes.size()) {
        Refuse(GC_ERR_BUFFER_TOO_SMALL, "the buffer is too small for the answer");
    }
    if (objTarget.pType != nullptr) {
        *objTarget.pType = nType;
    }
    if (objTarget.pBuffer != nullptr && !bytes.empty()) {
        std::memcpy(objTarget.pBuffer, bytes.data(), bytes.size());
    }
    *objTarget.pSize = bytes.size();
}

void PutText(const TARGET& objTarget, const std::string& strText) {
    PutBytes(objTarget, INFO_DATATYPE_STRING, std::as_bytes(std::span(strText.c_str(), strText.size() + 1)));
}

void PutAnswer(const TARGET& objTarget, const ANSWER& objAnswer) {
    if (objAnswer.nCode != GC_ERR_SUCCESS) {
        Refuse(objAnswer.nCode, "the answer was scripted to be absent");
    }
    if (!objAnswer.nSizeAsked) {
        PutBytes(objTarget, objAnswer.nType, objAnswer.vecBytes);
    } else if (objTarget.pSize == nullptr) {
        Refuse(GC_ERR_INVALID_PARAMETER, "no place for the size");
    } else if (objTarget.pBuffer == nullptr) {
        *objTarget.pSize = *objAnswer.nSizeAsked;
    } else {
        const std::size_t nFits = std::min(*objTarget.pSize, objAnswer.vecBytes.size());
        PutBytes(objTarget, objAnswer.nType, std::span(objAnswer.vecBytes).first(nFits));
    }
    if (objTarget.pBuffer != nullptr && objAnswer.nSizeGiven) {
        *objTarget.pSize = *objAnswer.nSizeGiven;
    }
}

}  // namespace ProducerDouble
