#include "ctl/UserFile.h"

#include <stdexcept>

#include "ctl/ExitCode.h"

namespace {

[[noreturn]] void Fail(const std::string& strPath, const std::runtime_error& objReason) {
    throw CCommandError(EXIT_CODE::Failure, strPath + ": " + objReason.what());
}

}  // namespace

std::string ReadUserFile(const std::string& strPath, std::size_t nMost) {
    try {
        return ReadWholeFile(strPath, nMost);
    } catch (const std::runtime_error& objReason) {
        Fail(strPath, objReason);
    }
}

void WriteUserFile(const std::string& strPath, std::string_view strContent, EWholeFile eHow) {
    try {
        WriteWholeFile(strPath, strContent, eHow);
    } catch (const std::runtime_error& objReason) {
        Fail(strPath, objReason);
    }
}
