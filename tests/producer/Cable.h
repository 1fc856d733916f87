#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "producer/wire/AdapterSocket.h"
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

    /// A cable between the adapter strName here and far-strName there. The kernel sends nothing over it before it has
    /// noticed the link, for which it takes up to a second.
    void Plug(const std::string& strName, const std::string& strAddress, const std::string& strFarAddress) {
        Connect(*m_pNear, strName, strAddress, *m_pFar, "far-" + strName, strFarAddress);
        for (int i = 0; i < 1000 && !(HasLink(*m_pNear, strName) && HasLink(*m_pFar, "far-" + strName)); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    static bool HasLink(const CNetworkNamespace& objNamespace, const std::string& strName) {
        bool bLink = false;
        objNamespace.Do([&] {
            const auto objAdapter = producer::FindAdapter(strName);
            bLink = objAdapter && objAdapter->HasLink;
        });
        return bLink;
    }

    std::unique_ptr<CNetworkNamespace> m_pNear;
    std::unique_ptr<CNetworkNamespace> m_pFar;
};
