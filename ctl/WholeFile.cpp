#include "ctl/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "ctl/ExitCode.h"

namespace {

[[noreturn]] void Fail(const std::string& strPath, const std::error_code& objError) {
    throw CCommandError(EXIT_CODE::Failure, strPath + ": it can't be written: " + objError.message());
}

}  // namespace

void WriteWholeFile(const std::string& strPath, std::string_view strContent) {
    const std::string strPart = strPath + ".part";
    errno = 0;
    std::FILE* const pFile = std::fopen(strPart.c_str(), "wb");
    if (pFile == nullptr) {
        Fail(strPath, {errno, std::generic_category()});
    }
    const bool bWritten = std::fwrite(strContent.data(), 1, strContent.size(), pFile) == strContent.size();
    const int nWriteError = errno;
    const bool bClosed = std::fclose(pFile) == 0;
    std::error_code objError(bWritten ? errno : nWriteError, std::generic_category());
    if (bWritten && bClosed) {
        std::filesystem::rename(strPart, strPath, objError);
    }
    if (!bWritten || !bClosed || objError) {
        std::error_code objIgnored;
        std::filesystem::remove(strPart, objIgnored);
        Fail(strPath, objError);
    }
}
