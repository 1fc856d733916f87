#include "camera/StateFile.h"

#include <stdexcept>
#include <system_error>
#include <utility>

#include "camera/CameraState.h"
#include "support/WholeFile.h"

namespace camera {

CStateFile::CStateFile(std::string strPath) : m_strPath(std::move(strPath)) {
    try {
        // Better known now than when the first thing is to be kept.
        TryWholeFile(m_strPath);
    } catch (const std::runtime_error& objReason) {
        throw CStateError(objReason.what());
    }
}

std::optional<std::string> CStateFile::Read() const {
    try {
        return ReadWholeFile(m_strPath, kLongest);
    } catch (const std::system_error& objReason) {
        if (objReason.code() == std::errc::no_such_file_or_directory) {
            return std::nullopt;
        }
        throw CStateError(objReason.what());
    } catch (const std::runtime_error& objReason) {
        throw CStateError(objReason.what());
    }
}

void CStateFile::Write(std::string_view strText) const {
    try {
        WriteWholeFile(m_strPath, strText, EWholeFile::Durable);
    } catch (const std::runtime_error& objReason) {
        throw CStateError(objReason.what());
    }
}

}  // namespace camera
