#include <csignal>

#include <gtest/gtest.h>

#include "ctl/Interrupt.h"

namespace {

TEST(Interrupt, IsAskedUnlessItIsIgnoredAndLeavesAllAsItWas) {
    for (const auto fnBefore : {SIG_DFL, SIG_IGN}) {
        std::signal(SIGINT, fnBefore);
        {
            const CInterrupt objInterrupt;
            std::raise(SIGINT);
            EXPECT_EQ(objInterrupt.IsAsked(), fnBefore == SIG_DFL);
        }
        EXPECT_EQ(std::signal(SIGINT, SIG_DFL), fnBefore);
    }
}

}  // namespace
