#pragma once

#include <array>
#include <csignal>

/// Holds back Ctrl-C, and the other signals by which a user ends a command, for the length of its life: a command that
/// holds a camera ends in order. Its destructor passes on what was held back, unless the command has answered it by
/// ending for it. A second Ctrl-C ends the process at once. Where the signal is ignored, as behind a script's "&" or
/// nohup, it stays so.
///
/// One at a time in a process.
class CInterrupt {
public:
    CInterrupt();
    ~CInterrupt();
    CInterrupt(const CInterrupt&) = delete;
    CInterrupt& operator=(const CInterrupt&) = delete;

    bool IsAsked() const;
    /// What has been asked for is being done: it isn't passed on.
    void Answer();

private:
    using HANDLER = void (*)(int);
    static constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

    std::array<HANDLER, kSignals.size()> m_arrBefore;  // what was done about each
};
