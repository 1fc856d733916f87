#include <cstring>
#include <functional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TLClass/TLClassInfo/ModuleID.h"
#include "TLClass/TLClassLoadTL/ProducerText.h"

namespace {

/// An ID reader whose producer is a function of the test.
class CScriptedID : public CModuleID {
public:
    using ANSWER = std::function<GC_ERROR(char*, std::size_t*)>;

    explicit CScriptedID(ANSWER fnAnswer) : CModuleID(nullptr, 0, nullptr), m_fnAnswer(std::move(fnAnswer)) {}

    int Calls() const { return m_nCalls; }

protected:
    GC_ERROR _GetID(char* pBuffer, std::size_t* pSize) override {
        ++m_nCalls;
        return m_fnAnswer(pBuffer, pSize);
    }

private:
    ANSWER m_fnAnswer;
    int m_nCalls = 0;
};

/// Announces a size; then fills as much as the buffer is said to hold with 'x', and answers a code.
CScriptedID::ANSWER Fills(std::size_t nSize, GC_ERROR nSecondResult = GC_ERR_SUCCESS) {
    return [=](char* pBuffer, std::size_t* pSize) {
        if (pBuffer == nullptr) {
            *pSize = nSize;
            return static_cast<GC_ERROR>(GC_ERR_SUCCESS);
        }
        std::memset(pBuffer, 'x', *pSize);
        *pSize = 1000;
        return nSecondResult;
    };
}

TEST(ModuleID, IsEmptyUnlessBothCallsTellIt) {
    struct CASE {
        const char* pName;
        CScriptedID::ANSWER fnAnswer;
        std::string strID;
        int nCalls;
    };
    const CASE arrCases[] = {
        {"without an end", Fills(3), "xxx", 2},
        {"size 0 isn't asked for", Fills(0), "", 1},
        {"size refused, though it was written",
         [](char*, std::size_t* pSize) {
             *pSize = 5;
             return GC_ERR_INVALID_INDEX;
         },
         "", 1},
        {"entry missing", [](char*, std::size_t*) { return -1; }, "", 1},
        {"text refused, though it was written", Fills(3, GC_ERR_NO_DATA), "", 2},
        {"absurd", Fills(~std::size_t{0}), "", 1},
        {"over the longest", Fills(kMaxProducerTextSize + 1), "", 1},
    };
    for (const CASE& objCase : arrCases) {
        CScriptedID objID(objCase.fnAnswer);
        EXPECT_EQ(objID.GetID(), objCase.strID) << objCase.pName;
        EXPECT_EQ(objID.Calls(), objCase.nCalls) << objCase.pName;
    }
}

}  // namespace
