#include "ctl/Interrupt.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t g_bAsked = 0;

extern "C" void OnInterrupt(int nSignal) {
    g_bAsked = 1;
    std::signal(nSignal, SIG_DFL);
}

}  // namespace

CInterrupt::CInterrupt() {
    g_bAsked = 0;
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);
}

CInterrupt::~CInterrupt() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

bool CInterrupt::IsAsked() const {
    return g_bAsked != 0;
}
