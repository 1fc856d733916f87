#include "TLClass/TLClassLoadTL/CtiRetrival.h"

#include <optional>
#include <utility>

#include "support/Environment.h"
#include "support/Text.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kPathVariable = "GENICAM_GENTL64_PATH";
constexpr const char* kSourceFile = "..\\..\\..\\TLClass\\TLClassLoadTL\\CtiRetrival";

}  // namespace

std::vector<std::string> CCtiRetrival::GetTLFilePaths(const std::vector<std::string>& vecFileName) {
    std::vector<std::string> vecDirectory;
    __GetTLDirectoryPath(vecDirectory);
    std::vector<std::string> vecPath;
    __GetFilePath(vecFileName, vecDirectory, vecPath);
    return vecPath;
}

void CCtiRetrival::__GetTLDirectoryPath(std::vector<std::string>& vecDirectory) {
    const std::optional<std::string> strDirectories = ReadEnvironment(kPathVariable);
    if (!strDirectories) {
        throw CUnexpectedError(-1, "Failed to get GenTL path", kSourceFile, 58, "CCtiRetrival::__GetTLDirectoryPath");
    }
    vecDirectory = Split(*strDirectories, kListSeparator);
}

void CCtiRetrival::__GetFilePath(const std::vector<std::string>& vecFileName,
                                 const std::vector<std::string>& vecDirectory, std::vector<std::string>& vecPath) {
    vecPath.clear();
    for (const std::string& strFileName : vecFileName) {
        for (const std::string& strDirectory : vecDirectory) {
            // Joined as they stand: a directory that ends in a separator gives a path with two.
            std::string strPath = strDirectory;
            strPath.append(kPathSeparator).append(strFileName);
            if (PathExists(strPath)) {
                vecPath.push_back(std::move(strPath));
                break;
            }
        }
    }
    if (vecPath.empty()) {
        throw CNotFoundTLError("Not found TL library", kSourceFile, 117, "CCtiRetrival::__GetFilePath");
    }
}
