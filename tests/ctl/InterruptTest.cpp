#include <csignal>

#include <gtest/gtest.h>

#include "ctl/Interrupt.h"

namespace {

volatile std::sig_atomic_t g_nPassedOn = 0;

extern "C" void OnPassedOn(int /*nSignal*/) {
    g_nPassedOn = g_nPassedOn + 1;
}

TEST(Interrupt, IsHeldBackUnlessItIsIgnoredAndPassedOnUnlessItIsAnswered) {
    for (const int nSignal : {SIGINT, SIGTERM, SIGHUP}) {
        for (const auto fnBefore : {OnPassedOn, SIG_IGN}) {
            for (const bool bAnswered : {true, false}) {
                const bool bCaught = fnBefore != SIG_IGN;
                g_nPassedOn = 0;
                std::signal(nSignal, fnBefore);
                {
                    CInterrupt objInterrupt;
                    std::raise(nSignal);
                    EXPECT_EQ(objInterrupt.IsAsked(), bCaught);
                    EXPECT_EQ(g_nPassedOn, 0);
                    if (bAnswered) {
                        objInterrupt.Answer();
                    }
                }
                EXPECT_EQ(g_nPassedOn, bCaught && !bAnswered ? 1 : 0);
                EXPECT_EQ(std::signal(nSignal, SIG_DFL), fnBefore);
            }
        }
    }
}

}  // namespace
