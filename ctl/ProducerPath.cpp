#include "ctl/ProducerPath.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "support/Environment.h"
#include "support/Text.h"

std::string GetBundledProducerFolder() {
    std::error_code objError;
    const std::filesystem::path objProgram = std::filesystem::read_symlink("/proc/self/exe", objError);
    return objError ? std::string() : (objProgram.parent_path().parent_path() / "cti").string();
}

std::string JoinSearchPath(const std::string& strUsersPath, const std::string& strBundledFolder) {
    const std::vector<std::string> vecFolder = Split(strUsersPath, kListSeparator);
    if (strBundledFolder.empty() ||
        std::find(vecFolder.begin(), vecFolder.end(), strBundledFolder) != vecFolder.end()) {
        return strUsersPath;
    }
    return vecFolder.empty() ? strBundledFolder : strUsersPath + kListSeparator + strBundledFolder;
}

void AddBundledProducerToSearchPath() {
    const std::string strUsersPath = ReadEnvironment(kProducerPathVariable).value_or("");
    SetEnvironment(kProducerPathVariable, JoinSearchPath(strUsersPath, GetBundledProducerFolder()));
}

std::vector<std::string> GetSearchPath() {
    return Split(ReadEnvironment(kProducerPathVariable).value_or(""), kListSeparator);
}
