#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/network/NetworkNamespace.h"

/// A test on a machine of its own: the test's thread is near, and what it is cabled to is far.
class CCableTest : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string strWhy = WhyNoNetworkNamespace(); !strWhy.empty()) {
            GTEST_SKIP() << strWhy;
        }
        m_pNear = std::make_unique<CNetworkNamespace>();
        m_pFar = std::make_unique<CNetworkNamespace>();
        m_pNear->Enter();
    }

    /// A cable between the adapter strName here and far-strName there.
    void Plug(const std::string& strName, const std::string& strAddress, const std::string& strFarAddress) {
        Connect(*m_pNear, strName, strAddress, *m_pFar, "far-" + strName, strFarAddress);
    }

    std::unique_ptr<CNetworkNamespace> m_pNear;
    std::unique_ptr<CNetworkNamespace> m_pFar;
};
