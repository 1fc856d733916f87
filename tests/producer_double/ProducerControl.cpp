#include "tests/producer_double/ProducerControl.h"

namespace ProducerDouble {

BYTES BytesOf(std::string_view strText) {
    const auto bytes = std::as_bytes(std::span(strText));
    return BYTES(bytes.begin(), bytes.end());
}

ANSWER ANSWER::Text(std::string_view strText) {
    ANSWER objAnswer = Unterminated(strText);
    objAnswer.vecBytes.push_back(std::byte{0});
    return objAnswer;
}

ANSWER ANSWER::Unterminated(std::string_view strText) {
    ANSWER objAnswer;
    objAnswer.nType = INFO_DATATYPE_STRING;
    objAnswer.vecBytes = BytesOf(strText);
    return objAnswer;
}

ANSWER ANSWER::Bytes(BYTES vecBytes) {
    ANSWER objAnswer;
    objAnswer.nType = INFO_DATATYPE_BUFFER;
    objAnswer.vecBytes = std::move(vecBytes);
    return objAnswer;
}

ANSWER ANSWER::Absent(GC_ERROR nCode) {
    ANSWER objAnswer;
    objAnswer.nCode = nCode;
    return objAnswer;
}

ANSWER ANSWER::AskingFor(std::size_t nSize) && {
    nSizeAsked = nSize;
    return std::move(*this);
}

ANSWER ANSWER::ReportingAs(std::size_t nSize) && {
    nSizeGiven = nSize;
    return std::move(*this);
}

std::string CALL::Text() const {
    std::string strText = strEntry + "(";
    for (std::size_t i = 0; i < vecArgument.size(); ++i) {
        strText += (i == 0 ? "" : ", ") + vecArgument[i];
    }
    return strText + ")";
}

}  // namespace ProducerDouble
