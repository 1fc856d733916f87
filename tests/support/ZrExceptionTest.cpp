#include <exception>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "support/ErrorTextMode.h"
#include "support/ZrException.h"

namespace {

TEST(ZrException, TextModeSelectsTheFormOfWhat) {
    const CTimeoutError objError("busy", "Device.cpp", 42, "CDevice::DoOpen");
    const std::pair<int, const char*> arrCases[] = {
        {0, "{busy}"}, {1, "{busy}"}, {2, "{CDevice::DoOpen:line[42]}{busy}"}, {3, "{busy}"}};
    for (const auto& [nMode, pText] : arrCases) {
        g_nErrorTextMode = nMode;
        EXPECT_STREQ(objError.what(), pText) << nMode;
        EXPECT_STREQ(objError.what(), pText) << nMode;
    }
    g_nErrorTextMode = 0;
}

TEST(ZrException, WhatIsCutAndTheMessageIsNot) {
    const CZrException objError(std::string(3000, 'x'), "f", 1, "g");
    EXPECT_EQ(objError.what(), "{" + std::string(1022, 'x'));
    EXPECT_EQ(objError.GetMessage().size(), 3000U);
}

TEST(ZrException, CopyKeepsEverythingAndOutlivesItsOriginal) {
    auto pOriginal = std::make_unique<CUnexpectedError>(-1005, "no way", "TL.cpp", 7, "CTL::DoOpenTL");
    const CUnexpectedError objCopy = *pOriginal;
    pOriginal.reset();
    EXPECT_EQ(objCopy.GetErrorCode(), -1005);
    EXPECT_EQ(objCopy.GetFile(), "TL.cpp");
    EXPECT_EQ(objCopy.GetLine(), 7);
    EXPECT_EQ(objCopy.GetFunction(), "CTL::DoOpenTL");
    EXPECT_STREQ(objCopy.what(), "{no way}");
}

TEST(ZrException, ThreadsThatShareOneExceptionReadTheSameText) {
    const auto pError = std::make_exception_ptr(CNotFoundTLError("Not found TL library", "f", 1, "g"));
    const auto Read = [&pError] {
        for (int i = 0; i < 200; ++i) {
            try {
                std::rethrow_exception(pError);
            } catch (const CNotFoundTLError& objError) {
                EXPECT_STREQ(objError.what(), "{Not found TL library}");
                EXPECT_STREQ(CNotFoundTLError(objError).what(), "{Not found TL library}");
            }
        }
    };
    std::thread objOther(Read);
    Read();
    objOther.join();
}

}  // namespace
