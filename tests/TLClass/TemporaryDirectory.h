#pragma once

#include <string>

/// A directory of a test's own, gone with everything in it when the object goes.
class CTemporaryDirectory {
public:
    CTemporaryDirectory();
    ~CTemporaryDirectory();
    CTemporaryDirectory(const CTemporaryDirectory&) = delete;
    CTemporaryDirectory& operator=(const CTemporaryDirectory&) = delete;

    /// The path of an entry of it, whether or not there is one yet.
    std::string Path(const std::string& strName) const;
    std::string MakeFile(const std::string& strName, const std::string& strContent = "") const;
    std::string MakeDirectory(const std::string& strName) const;

private:
    std::string m_strPath;
};
