#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "ctl/FeatureTree.h"
#include "tests/GenApi/TestMap.h"

namespace {

std::size_t Count(const FEATURE& objFeature) {
    std::size_t nCount = 1;
    for (const FEATURE& objChild : objFeature.vecFeature) {
        nCount += Count(objChild);
    }
    return nCount;
}

std::string Category(const std::string& strName, const std::string& strFirst, const std::string& strSecond) {
    return "<Category Name='" + strName + "'><pFeature>" + strFirst + "</pFeature><pFeature>" + strSecond +
           "</pFeature></Category>";
}

TEST(FeatureTree, OfCategoriesThatShareCategoriesEnds) {
    // Two categories on each of 24 levels, and both hold both of the next: 16 million ways down.
    std::string strNodes = Category("Root", "A0", "B0");
    for (int i = 0; i < 24; ++i) {
        const std::string strLevel = std::to_string(i);
        const std::string strNext = std::to_string(i + 1);
        strNodes += Category('A' + strLevel, 'A' + strNext, 'B' + strNext);
        strNodes += Category('B' + strLevel, 'B' + strNext, 'A' + strNext);
    }
    CTestMap objMap(strNodes + "<Integer Name='A24'><Value>1</Value></Integer><Category Name='B24'><pFeature>Root" +
                    "</pFeature><pFeature>A24</pFeature></Category>");
    EXPECT_LT(Count(ReadFeatureTree(*objMap.Map._Ptr, true)), 100'000U);
}

}  // namespace
