#include "GenApi/FeatureBag.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

#include "GenApi/GCException.h"

namespace GenApi_3_0 {

using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

namespace {

constexpr std::string_view kMagicGuid = "{05D8C294-F295-4dfb-9D01-096BD04049F4}";
constexpr std::string_view kVersionLine = "GenApi persistence file (version 3.0.0)";
constexpr std::streamsize kMaxCommentSkip = 1024;
constexpr int kEnd = std::char_traits<char>::eof();

void WriteLine(std::ostream& stream, std::string_view strFirst, std::string_view strSecond) {
    // write and put, unlike <<, mind no field width that the caller may have left behind.
    stream.write(strFirst.data(), static_cast<std::streamsize>(strFirst.size()));
    stream.write(strSecond.data(), static_cast<std::streamsize>(strSecond.size()));
    stream.put('\n');
}

/// Reads up to one of the two characters and takes that out of the stream as well.
/// @return it; kEnd at the end of the stream or when the limit is reached, with the stream failed
int ReadPiece(std::istream& stream, char cFirst, char cSecond, std::string& strPiece) {
    strPiece.clear();
    for (int c = stream.get(); c != kEnd; c = stream.get()) {
        const char cRead = std::char_traits<char>::to_char_type(c);
        if (cRead == cFirst || cRead == cSecond) {
            return c;
        }
        if (strPiece.size() == CFeatureBag::kMaxNameLength) {
            stream.unget();
            stream.setstate(std::ios_base::failbit);
            return kEnd;
        }
        strPiece += cRead;
    }
    return kEnd;
}

void SkipComments(std::istream& stream) {
    while (stream.peek() == '#') {
        stream.ignore(kMaxCommentSkip, '\n');
    }
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const CFeatureBag& objBag) {
    WriteLine(stream, "# ", kMagicGuid);
    WriteLine(stream, "# ", kVersionLine);
    WriteLine(stream, "# ", objBag.m_strBagName.view());
    const std::size_t nLines = std::min(objBag.m_vecName.size(), objBag.m_vecValue.size());
    for (std::size_t i = 0; i < nLines; ++i) {
        WriteLine(stream, objBag.m_vecName[i].str() + '\t', objBag.m_vecValue[i].view());
    }
    return stream;
}

std::istream& operator>>(std::istream& stream, CFeatureBag& objBag) {
    if (stream.peek() == kEnd) {
        Throw<RuntimeException>("The stream is eof");
    }
    objBag.m_vecName.clear();
    objBag.m_vecValue.clear();
    std::string strPiece;
    ReadPiece(stream, '\n', '\n', strPiece);
    if (strPiece.find(kMagicGuid) == std::string::npos) {
        Throw<RuntimeException>(
            "The stream is not a GenApi feature stream since it is missing the magic GUID in the first line");
    }
    SkipComments(stream);
    std::string strValue;
    while (stream.good()) {
        if (ReadPiece(stream, '\t', '\n', strPiece) != '\t') {
            stream.setstate(std::ios_base::failbit);
            break;
        }
        if (!std::getline(stream, strValue)) {
            break;
        }
        objBag.m_vecName.emplace_back(strPiece);
        objBag.m_vecValue.emplace_back(strValue);
        SkipComments(stream);
    }
    return stream;
}

}  // namespace GenApi_3_0
