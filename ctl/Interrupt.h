#pragma once

/// Turns Ctrl-C into a question for the length of its life: a command that holds a camera ends in order. A second
/// Ctrl-C ends the process at once. Where the signal is ignored, as behind a script's "&", it stays so.
///
/// One at a time in a process.
class CInterrupt {
public:
    CInterrupt();
    ~CInterrupt();
    CInterrupt(const CInterrupt&) = delete;
    CInterrupt& operator=(const CInterrupt&) = delete;

    bool IsAsked() const;

private:
    using HANDLER = void (*)(int);

    HANDLER m_fnInterrupt;  // what was done before about SIGINT
    HANDLER m_fnTerminate;  // and about SIGTERM
};
