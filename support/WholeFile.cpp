#include "support/WholeFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* kUnreadable = "it can't be read";
constexpr const char* kUnwritable = "it can't be written";

[[noreturn]] void Fail(const char* pWhat, int nError) {
    throw std::system_error(nError, std::generic_category(), pWhat);
}

/// An open file. Closes it at the end, unless that was done before, and then knows how it went.
class CDescriptor {
public:
    explicit CDescriptor(int nDescriptor) : m_nDescriptor(nDescriptor) {}
    ~CDescriptor() { Close(); }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;

    [[nodiscard]] int Get() const { return m_nDescriptor; }
    [[nodiscard]] bool IsOpen() const { return m_nDescriptor >= 0; }
    bool Close() {
        const int nDescriptor = std::exchange(m_nDescriptor, -1);
        return nDescriptor < 0 || close(nDescriptor) == 0;
    }

private:
    int m_nDescriptor;
};

/// A name beside a file's that no other writer has.
std::string MakePartName(const std::string& strPath) {
    static std::atomic<unsigned> s_nPart{0};
    return strPath + ".part-" + std::to_string(getpid()) + '-' + std::to_string(++s_nPart);
}

/// @param strPart  becomes its name
int OpenPart(const std::string& strPath, std::string& strPart) {
    struct stat objStatus {};
    if (stat(strPath.c_str(), &objStatus) == 0 && !S_ISREG(objStatus.st_mode)) {
        throw std::runtime_error("it is no regular file, so it isn't replaced");
    }
    // What has the name already is left from a process of this number that ended before its time.
    constexpr int kMostTries = 100;
    for (int i = 0; i < kMostTries; ++i) {
        constexpr mode_t kForAllThatTheUserLets = 0666;
        strPart = MakePartName(strPath);
        const int nDescriptor = open(strPart.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kForAllThatTheUserLets);
        if (nDescriptor >= 0) {
            return nDescriptor;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    Fail(kUnwritable, errno);
}

/// @return 0 or the error
int WritePart(CDescriptor& objPart, std::string_view strContent, EWholeFile eHow) {
    while (!strContent.empty()) {
        const ssize_t nStep = write(objPart.Get(), strContent.data(), strContent.size());
        if (nStep < 0 && errno != EINTR) {
            return errno;
        }
        strContent.remove_prefix(nStep < 0 ? 0 : static_cast<std::size_t>(nStep));
    }
    if (eHow == EWholeFile::Durable && fsync(objPart.Get()) != 0) {
        return errno;
    }
    // A disk behind a network may have no room, and say so no sooner.
    return objPart.Close() ? 0 : errno;
}

/// A new name is the folder's, and waits there for the disk as bytes do in a file.
void SyncFolderOf(const std::string& strPath) {
    const std::string strFolder = std::filesystem::path(strPath).parent_path().string();
    const CDescriptor objFolder(open(strFolder.empty() ? "." : strFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // One that may be written to and not read can't be opened, and file systems needn't know how to sync one.
    if (objFolder.IsOpen() && fsync(objFolder.Get()) != 0 && errno != EINVAL) {
        Fail(kUnwritable, errno);
    }
}

}  // namespace

std::string ReadWholeFile(const std::string& strPath, std::size_t nMost) {
    const CDescriptor objFile(open(strPath.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat objStatus {};
    if (!objFile.IsOpen() || fstat(objFile.Get(), &objStatus) != 0) {
        Fail(kUnreadable, errno);
    }
    if (!S_ISREG(objStatus.st_mode)) {
        throw std::runtime_error("it is no regular file");
    }
    const auto nKnown = static_cast<std::size_t>(objStatus.st_size);
    std::string strText;
    // One byte more than there should be: then its end is seen, or that it has become too long.
    for (std::size_t nRead = 0; nKnown <= nMost && nRead <= nMost;) {
        constexpr std::size_t kLeast = 4096;
        strText.resize(std::min(std::max({nKnown + 1, nRead * 2, kLeast}), nMost + 1));
        const ssize_t nStep = read(objFile.Get(), strText.data() + nRead, strText.size() - nRead);
        if (nStep < 0 && errno != EINTR) {
            Fail(kUnreadable, errno);
        }
        nRead += nStep < 0 ? 0 : static_cast<std::size_t>(nStep);
        if (nStep == 0) {
            strText.resize(nRead);
            return strText;
        }
    }
    throw std::runtime_error("it is longer than " + std::to_string(nMost) + " bytes");
}

void WriteWholeFile(const std::string& strPath, std::string_view strContent, EWholeFile eHow) {
    std::string strPart;
    CDescriptor objPart(OpenPart(strPath, strPart));
    int nError = WritePart(objPart, strContent, eHow);
    if (nError == 0 && rename(strPart.c_str(), strPath.c_str()) != 0) {
        nError = errno;
    }
    if (nError != 0) {
        unlink(strPart.c_str());
        Fail(kUnwritable, nError);
    }
    if (eHow == EWholeFile::Durable) {
        SyncFolderOf(strPath);
    }
}

void TryWholeFile(const std::string& strPath) {
    std::string strPart;
    const CDescriptor objPart(OpenPart(strPath, strPart));
    unlink(strPart.c_str());
}
