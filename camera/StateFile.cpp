#include "camera/StateFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "camera/CameraState.h"

namespace camera {
namespace {

[[noreturn]] void Fail(const std::string& strWhat, const std::error_code& objReason) {
    throw CStateError(strWhat + ": " + objReason.message());
}

struct CLOSER {
    void operator()(std::FILE* pFile) const { std::fclose(pFile); }
};
using FilePointer = std::unique_ptr<std::FILE, CLOSER>;

}  // namespace

CStateFile::CStateFile(std::string strPath) : m_strPath(std::move(strPath)), m_strPart(m_strPath + ".part") {
    // Better known now than when the first thing is to be kept.
    if (!FilePointer(std::fopen(m_strPart.c_str(), "wb"))) {
        Fail("it couldn't be written", {errno, std::generic_category()});
    }
    std::error_code objIgnored;
    std::filesystem::remove(m_strPart, objIgnored);
}

std::optional<std::string> CStateFile::Read() const {
    std::error_code objError;
    const std::filesystem::file_status objStatus = std::filesystem::status(m_strPath, objError);
    if (objStatus.type() == std::filesystem::file_type::not_found) {
        return std::nullopt;
    }
    if (!std::filesystem::is_regular_file(objStatus)) {
        throw CStateError("it is no file that a state could be kept in");
    }
    const FilePointer pFile(std::fopen(m_strPath.c_str(), "rb"));
    if (!pFile) {
        Fail("it can't be read", {errno, std::generic_category()});
    }
    std::string strText(kLongest + 1, '\0');
    strText.resize(std::fread(strText.data(), 1, strText.size(), pFile.get()));
    if (std::ferror(pFile.get()) != 0) {
        Fail("it can't be read", {errno, std::generic_category()});
    }
    if (strText.size() > kLongest) {
        throw CStateError("it is longer than a camera's state can be");
    }
    return strText;
}

void CStateFile::Write(std::string_view strText) const {
    FilePointer pFile(std::fopen(m_strPart.c_str(), "wb"));
    if (!pFile) {
        Fail("it can't be written", {errno, std::generic_category()});
    }
    // What has no room on the disk may show only when it leaves the buffer.
    errno = 0;
    const bool bWritten =
        std::fwrite(strText.data(), 1, strText.size(), pFile.get()) == strText.size() && std::fflush(pFile.get()) == 0;
    std::error_code objError(errno, std::generic_category());
    pFile.reset();
    if (bWritten) {
        std::filesystem::rename(m_strPart, m_strPath, objError);
    }
    if (!bWritten || objError) {
        std::error_code objIgnored;
        std::filesystem::remove(m_strPart, objIgnored);
        Fail("it can't be written", objError);
    }
}

}  // namespace camera
