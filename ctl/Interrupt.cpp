#include "ctl/Interrupt.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t g_bAsked = 0;

extern "C" void OnInterrupt(int nSignal) {
    g_bAsked = 1;
    std::signal(nSignal, SIG_DFL);
}

/// @return what was done about the signal before
auto Catch(int nSignal) {
    const auto fnBefore = std::signal(nSignal, OnInterrupt);
    if (fnBefore == SIG_IGN) {
        std::signal(nSignal, SIG_IGN);
    }
    return fnBefore;
}

}  // namespace

CInterrupt::CInterrupt() {
    g_bAsked = 0;
    m_fnInterrupt = Catch(SIGINT);
    m_fnTerminate = Catch(SIGTERM);
}

CInterrupt::~CInterrupt() {
    std::signal(SIGINT, m_fnInterrupt);
    std::signal(SIGTERM, m_fnTerminate);
}

bool CInterrupt::IsAsked() const {
    return g_bAsked != 0;
}
