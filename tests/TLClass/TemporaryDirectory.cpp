#include "tests/TLClass/TemporaryDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

CTemporaryDirectory::CTemporaryDirectory()
    : m_strPath((std::filesystem::temp_directory_path() / "norvik-test-XXXXXX").string()) {
    if (mkdtemp(m_strPath.data()) == nullptr) {
        throw std::runtime_error("mkdtemp " + m_strPath + " failed");
    }
}

CTemporaryDirectory::~CTemporaryDirectory() {
    std::error_code objIgnored;
    std::filesystem::remove_all(m_strPath, objIgnored);
}

std::string CTemporaryDirectory::Path(const std::string& strName) const {
    return m_strPath + "/" + strName;
}

std::string CTemporaryDirectory::MakeFile(const std::string& strName, const std::string& strContent) const {
    std::ofstream(Path(strName)) << strContent;
    return Path(strName);
}

std::string CTemporaryDirectory::MakeDirectory(const std::string& strName) const {
    std::filesystem::create_directories(Path(strName));
    return Path(strName);
}
