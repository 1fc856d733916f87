#pragma once

#include <ostream>
#include <streambuf>

/// The program's own way to its standard output. While it lives, whatever else writes to standard output, as the
/// library does when a description can't be unpacked, comes out on standard error. And when whoever reads either of
/// them goes, as "| head" does, the program doesn't go with him while it holds a camera: what is written then is lost.
///
/// One for the process, made before any thread and before anything is written.
class CStandardOutput : private std::streambuf {
public:
    /// @throws std::system_error  standard output can't be taken over
    CStandardOutput();
    /// Leaves standard output as it found it. If nobody read it any more, the process ends here by SIGPIPE, unless that
    /// was ignored before.
    ~CStandardOutput() override;
    CStandardOutput(const CStandardOutput&) = delete;
    CStandardOutput& operator=(const CStandardOutput&) = delete;

    /// Unbuffered. Turns bad when what is written doesn't arrive, on a full disk for example, unless nobody reads it.
    std::ostream& GetStream() { return m_objStream; }

    static bool IsErrorTerminal();

private:
    int_type overflow(int_type nCharacter) override;
    std::streamsize xsputn(const char* pText, std::streamsize nCount) override;

    void (*m_fnBrokenPipe)(int);  // what was done before about SIGPIPE
    bool m_bReaderGone = false;
    int m_nDescriptor;  // a copy of what standard output was
    std::ostream m_objStream;
};
