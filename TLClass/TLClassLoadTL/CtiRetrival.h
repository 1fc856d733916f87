#pragma once

#include <string>
#include <vector>

/// Finds producer files by bare name in the directories that GENICAM_GENTL64_PATH lists.
///
/// No state: the variable is read anew at every search. Any thread.
class CCtiRetrival {
public:
    /// One path at most for each name, in the order of the names: that in the earliest directory that has such an
    /// entry. Names found nowhere are left out; a name given twice is found twice.
    /// @throws CUnexpectedError  the variable isn't set
    /// @throws CNotFoundTLError  none of the names was found
    static std::vector<std::string> GetTLFilePaths(const std::vector<std::string>& vecFileName);

private:
    static void __GetTLDirectoryPath(std::vector<std::string>& vecDirectory);
    static void __GetFilePath(const std::vector<std::string>& vecFileName, const std::vector<std::string>& vecDirectory,
                              std::vector<std::string>& vecPath);
};
