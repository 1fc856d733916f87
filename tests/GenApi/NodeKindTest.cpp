#include <gtest/gtest.h>

#include "tests/GenApi/TestMap.h"

TEST(NodeKinds, SmokeTest) {
    CTestMap objMap("<Integer Name='Width'><pValue>WidthReg</pValue><Max>100</Max></Integer>" + Reg("WidthReg", 16));
    objMap.Port.PutNumber(16, 42);
    EXPECT_EQ(objMap.Integer("Width").GetValue(), 42);
    EXPECT_EQ(objMap.Port.TakeReads(), 1);
    EXPECT_EQ(objMap.Integer("Width").GetValue(), 42);
    EXPECT_EQ(objMap.Port.TakeReads(), 0);
    objMap.Integer("Width").SetValue(43);
    EXPECT_EQ(objMap.Port.NumberAt(16), 43u);
    EXPECT_EQ(objMap.Integer("Width").GetValue(), 43);
    EXPECT_EQ(objMap.Port.TakeReads(), 0);
}
