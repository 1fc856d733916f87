#include "ctl/Interrupt.h"

#include <cstddef>

namespace {

volatile std::sig_atomic_t g_nAsked = 0;  // the signal, 0 for none

extern "C" void OnInterrupt(int nSignal) {
    g_nAsked = nSignal;
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
    g_nAsked = 0;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        m_arrBefore[i] = Catch(kSignals[i]);
    }
}

CInterrupt::~CInterrupt() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        std::signal(kSignals[i], m_arrBefore[i]);
    }
    if (IsAsked()) {
        std::raise(g_nAsked);
    }
}

bool CInterrupt::IsAsked() const {
    return g_nAsked != 0;
}

void CInterrupt::Answer() {
    g_nAsked = 0;
}
