#include "ctl/StandardOutput.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Whoever closes standard error wants to hear nothing, which is no reason to fail.
void OpenStandardError() {
    const int nDescriptor = fcntl(STDERR_FILENO, F_GETFD) < 0 ? open("/dev/null", O_WRONLY) : STDERR_FILENO;
    if (nDescriptor >= 0 && nDescriptor != STDERR_FILENO) {
        dup2(nDescriptor, STDERR_FILENO);
        close(nDescriptor);
    }
}

}  // namespace

CStandardOutput::CStandardOutput()
    : m_fnBrokenPipe(std::signal(SIGPIPE, SIG_IGN)),
      m_nDescriptor(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)),
      m_objStream(this) {
    OpenStandardError();
    if (m_nDescriptor < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        throw std::system_error(errno, std::generic_category(), "standard output");
    }
}

CStandardOutput::~CStandardOutput() {
    std::fflush(stdout);  // what the library left there belongs to standard error
    dup2(m_nDescriptor, STDOUT_FILENO);
    close(m_nDescriptor);
    std::signal(SIGPIPE, m_fnBrokenPipe);
    if (m_bReaderGone) {
        std::raise(SIGPIPE);
    }
}

bool CStandardOutput::IsErrorTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

CStandardOutput::int_type CStandardOutput::overflow(int_type nCharacter) {
    if (traits_type::eq_int_type(nCharacter, traits_type::eof())) {
        return traits_type::not_eof(nCharacter);
    }
    const char cCharacter = traits_type::to_char_type(nCharacter);
    return xsputn(&cCharacter, 1) == 1 ? nCharacter : traits_type::eof();
}

std::streamsize CStandardOutput::xsputn(const char* pText, std::streamsize nCount) {
    std::streamsize nWritten = 0;
    while (nWritten < nCount) {
        const ssize_t nStep = write(m_nDescriptor, pText + nWritten, static_cast<std::size_t>(nCount - nWritten));
        if (nStep < 0 && errno == EPIPE && m_fnBrokenPipe != SIG_IGN) {
            m_bReaderGone = true;
            return nCount;
        }
        if (nStep < 0 && errno != EINTR) {
            break;
        }
        nWritten += nStep < 0 ? 0 : nStep;
    }
    return nWritten;
}
