#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/Formula.h"

namespace {

thread_local std::size_t g_nAllocations = 0;

}  // namespace

void* operator new(std::size_t nSize) {
    ++g_nAllocations;
    if (void* const p = std::malloc(nSize)) {
        return p;
    }
    throw std::bad_alloc();
}

void operator delete(void* p) noexcept {
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

namespace {

TEST(FormulaAllocation, EvaluationAllocatesNothing) {
    const GenApi_3_0::CFloatFormula objFormula(
        {"(A = 1) ? X * X : ROUND(SIN(A), 2) ** 2 && A << 3", {"A"}, {}, {{"X", "Y + 1"}, {"Y", "LG(A) + 1"}}});
    std::vector<double> vecValues = {1};
    const std::size_t nBefore = g_nAllocations;
    EXPECT_EQ(objFormula.Evaluate(vecValues), 4);
    vecValues[0] = 7;
    EXPECT_EQ(objFormula.Evaluate(vecValues), 1);
    EXPECT_EQ(g_nAllocations, nBefore);
    // The counter works.
    vecValues = std::vector<double>(100);
    EXPECT_GT(g_nAllocations, nBefore);
}

}  // namespace
