#pragma once

#include <cstdio>
#include <string>

#include <QApplication>
#include <QTest>

#include "tests/network/NetworkNamespace.h"

/// Runs a Qt Test class whose windows may broadcast, on a machine of its own without any adapter or producer.
/// @return 77, which CTest reports as skipped, where no such machine can be made
template <class TTest>
int RunOnOwnMachine(int argc, char* argv[]) {
    constexpr int kSkipped = 77;
    if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
        std::printf("SKIPPED: %s\n", strWhy.c_str());
        return kSkipped;
    }
    const CNetworkNamespace objMachine;
    objMachine.Enter();
    qunsetenv("GENICAM_GENTL64_PATH");
    QApplication objApplication(argc, argv);
    TTest objTest;
    return QTest::qExec(&objTest, argc, argv);
}
