#include <cstring>

#include <gtest/gtest.h>

#include "TLClass/TLClassInfo/ModuleID.h"

namespace {

/// An ID reader whose producer announces a size, and fills as much as the buffer is said to hold with 'x'.
class CScriptedID : public CModuleID {
public:
    CScriptedID(std::size_t nSize, GC_ERROR nSizeResult, GC_ERROR nTextResult)
        : CModuleID(nullptr, 0, nullptr), m_nSize(nSize), m_nSizeResult(nSizeResult), m_nTextResult(nTextResult) {}

    int Calls() const { return m_nCalls; }

protected:
    GC_ERROR _GetID(char* pBuffer, std::size_t* pSize) override {
        ++m_nCalls;
        if (pBuffer == nullptr) {
            *pSize = m_nSize;
            return m_nSizeResult;
        }
        std::memset(pBuffer, 'x', *pSize);
        *pSize = 1000;
        return m_nTextResult;
    }

private:
    std::size_t m_nSize;
    GC_ERROR m_nSizeResult;
    GC_ERROR m_nTextResult;
    int m_nCalls = 0;
};

TEST(ModuleID, IsEmptyUnlessBothCallsTellIt) {
    struct CASE {
        const char* pName;
        CScriptedID objID;
        std::string strID;
        int nCalls;
    };
    CASE arrCase[] = {
        {"without an end", CScriptedID(3, 0, 0), "xxx", 2},
        {"size 0 isn't asked for", CScriptedID(0, 0, 0), "", 1},
        {"size refused, though it was written", CScriptedID(3, GC_ERR_INVALID_INDEX, 0), "", 1},
        {"text refused, though it was written", CScriptedID(3, 0, GC_ERR_NO_DATA), "", 2},
        {"absurd size", CScriptedID(~std::size_t{0}, 0, 0), "", 1},
    };
    for (CASE& objCase : arrCase) {
        EXPECT_EQ(objCase.objID.GetID(), objCase.strID) << objCase.pName;
        EXPECT_EQ(objCase.objID.Calls(), objCase.nCalls) << objCase.pName;
    }
}

}  // namespace
