#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassFeature/FeatureFileText.h"

namespace {

using testing::ElementsAre;

template <class TCall>
std::string TextOfFailure(TCall funCall) {
    try {
        funCall();
    } catch (const std::runtime_error& objError) {
        return objError.what();
    }
    return "no failure";
}

TEST(FeatureHeader, ValueStandsBehindTheFirstOccurrenceOfItsKey) {
    struct Case {
        const char* pText;
        const char* pValue;
    };
    const Case arrCases[] = {
        {"Key: 1.0\nOther: 2\n", "1.0"}, {"Key:1.0", "1.0"},        {"Key 1.0\t9", "1.0"},
        {"Key\t: : 1.0 b\n", "1.0 b"},   {"Key: 1.0\r\n", "1.0\r"}, {"aKey: 1\nKey: 2", "1"},
    };
    for (const auto& objCase : arrCases) {
        EXPECT_EQ(GetFeatureHeaderValue(objCase.pText, "Key"), objCase.pValue) << objCase.pText;
    }
    for (const char* pText : {"", "Ke", "Key", "Keys: 1\nKey: 2", "Key:", "Key : \t", "Key: \nnext", "Key\n1"}) {
        EXPECT_EQ(TextOfFailure([&] { GetFeatureHeaderValue(pText, "Key"); }), "Can not find Key") << pText;
    }
}

}  // namespace
