#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassInfo/ZrInformation.h"
#include "TLClass/TLClassLoadTL/ProducerText.h"
#include "tests/TLClass/Thrown.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// One call into the producer, as it came in.
struct QUESTION {
    std::uint32_t nCommand;
    INFO_DATATYPE nType;
    std::size_t nSize;

    bool operator==(const QUESTION&) const = default;
};

/// A query whose producer is a function of the test.
class CScriptedQuery : public CZrInformation {
public:
    using ANSWER = std::function<GC_ERROR(std::uint32_t, INFO_DATATYPE*, void*, std::size_t*)>;

    explicit CScriptedQuery(ANSWER fnAnswer) : m_fnAnswer(std::move(fnAnswer)) {}

    using CZrInformation::_GetBoolInfo;
    using CZrInformation::_GetInt32Info;
    using CZrInformation::_GetPtrInfo;
    using CZrInformation::_GetSizetInfo;
    using CZrInformation::_GetStringInfo;
    using CZrInformation::_GetUint64Info;

    const std::vector<QUESTION>& Questions() const { return m_vecQuestion; }

protected:
    GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) override {
        m_vecQuestion.push_back({nCommand, *pType, *pSize});
        return m_fnAnswer(nCommand, pType, pBuffer, pSize);
    }

private:
    ANSWER m_fnAnswer;
    std::vector<QUESTION> m_vecQuestion;
};

template <typename VALUE>
struct GETTER {
    void (CScriptedQuery::*pGet)(const std::vector<std::uint32_t>&, const std::vector<VALUE*>&,
                                 const std::vector<bool*>&);
    INFO_DATATYPE nType;
    std::size_t nSize;
    VALUE value;
    const char* pFunction;
    int nLine;
};

/// Hands each of the getters to a generic lambda.
template <typename TEST>
void ForEachFixedSizeGetter(TEST&& fnTest) {
    using Q = CScriptedQuery;
    static int s_nAnything = 0;
    fnTest(GETTER<std::size_t>{&Q::_GetSizetInfo, 12, 8, 0x0123456789ABCDEF, "CZrInformation::_GetSizetInfo", 43});
    fnTest(GETTER<std::int32_t>{&Q::_GetInt32Info, 5, 4, -7, "CZrInformation::_GetInt32Info", 80});
    fnTest(GETTER<std::uint64_t>{&Q::_GetUint64Info, 8, 8, ~0ULL, "CZrInformation::_GetUint64Info", 117});
    fnTest(GETTER<bool>{&Q::_GetBoolInfo, 11, 1, true, "CZrInformation::_GetBoolInfo", 154});
    fnTest(GETTER<void*>{&Q::_GetPtrInfo, 10, 8, &s_nAnything, "CZrInformation::_GetPtrInfo", 191});
}

TEST(FixedSizeQuery, RefusedCommandLeavesItsFieldEmptyAndTheNextIsAsked) {
    ForEachFixedSizeGetter([]<typename VALUE>(const GETTER<VALUE>& objGetter) {
        CScriptedQuery objQuery([&](std::uint32_t nCommand, INFO_DATATYPE*, void* pBuffer, std::size_t* pSize) {
            std::memcpy(pBuffer, &objGetter.value, std::min(sizeof(VALUE), *pSize));
            return nCommand == 2 ? GC_ERR_NOT_IMPLEMENTED : GC_ERR_SUCCESS;
        });
        VALUE arrValue[3] = {VALUE{}, objGetter.value, VALUE{}};
        bool arrFlag[3] = {false, true, false};
        (objQuery.*objGetter.pGet)({1, 2, 3}, {&arrValue[0], &arrValue[1], &arrValue[2]},
                                   {&arrFlag[0], &arrFlag[1], &arrFlag[2]});
        EXPECT_THAT(arrValue, ElementsAre(objGetter.value, VALUE{}, objGetter.value)) << objGetter.pFunction;
        EXPECT_THAT(arrFlag, ElementsAre(true, false, true)) << objGetter.pFunction;
        const auto Asked = [&](std::uint32_t nCommand) { return QUESTION{nCommand, objGetter.nType, objGetter.nSize}; };
        EXPECT_THAT(objQuery.Questions(), ElementsAre(Asked(1), Asked(2), Asked(3))) << objGetter.pFunction;
    });
}

TEST(AnyQuery, VectorsOfDifferentLengthAreThrownBackBeforeAnythingIsAsked) {
    const auto fnTest = []<typename VALUE>(const GETTER<VALUE>& objGetter) {
        CScriptedQuery objQuery([](auto, auto, auto, auto) { return GC_ERR_SUCCESS; });
        VALUE value{};
        bool bFlag = false;
        const std::vector<VALUE*> arrDestination[] = {{&value}, {&value, &value}};
        const std::vector<bool*> arrFlag[] = {{&bFlag, &bFlag}, {&bFlag}};
        for (int i : {0, 1}) {
            EXPECT_EQ(ThrownBy<CUnexpectedError>([&] {
                          (objQuery.*objGetter.pGet)({1, 2}, arrDestination[i], arrFlag[i]);
                      }),
                      "Invalid vector size, ..\\..\\..\\TLClass\\TLClassInfo\\ZrInformation(" +
                          std::to_string(objGetter.nLine) + ") " + objGetter.pFunction + ", -1");
        }
        EXPECT_THAT(objQuery.Questions(), IsEmpty()) << objGetter.pFunction;
    };
    ForEachFixedSizeGetter(fnTest);
    fnTest(GETTER<std::string>{&CScriptedQuery::_GetStringInfo, 1, 0, "", "CZrInformation::_GetStringInfo", 264});
}

TEST(FixedSizeQuery, EnlargedSizeNeverReachesTheNextCommandButOtherAnswersStay) {
    CScriptedQuery objQuery([](std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) {
        std::memset(pBuffer, static_cast<int>(nCommand), *pSize);
        *pType = INFO_DATATYPE_UINT32;
        *pSize = nCommand == 1 ? std::size_t{1} << 40 : 0;
        return GC_ERR_SUCCESS;
    });
    std::size_t arrValue[3] = {};
    bool arrFlag[3] = {};
    objQuery._GetSizetInfo({1, 2, 3}, {&arrValue[0], &arrValue[1], &arrValue[2]},
                           {&arrFlag[0], &arrFlag[1], &arrFlag[2]});
    EXPECT_THAT(objQuery.Questions(),
                ElementsAre(QUESTION{1, INFO_DATATYPE_SIZET, 8}, QUESTION{2, INFO_DATATYPE_UINT32, 8},
                            QUESTION{3, INFO_DATATYPE_UINT32, 0}));
    // The third command has no room for an answer, and gets what the second has left.
    EXPECT_THAT(arrValue, ElementsAre(0x0101010101010101, 0x0202020202020202, 0x0202020202020202));
}

/// Announces a size and fills what the buffer is said to hold with a text, without an end unless the text has one.
CScriptedQuery::ANSWER Tells(const std::string& strText, std::size_t nAnnounced, GC_ERROR nSecondResult = 0) {
    return [=](std::uint32_t, INFO_DATATYPE*, void* pBuffer, std::size_t* pSize) {
        if (pBuffer == nullptr) {
            *pSize = nAnnounced;
            return GC_ERROR{GC_ERR_SUCCESS};
        }
        std::memcpy(pBuffer, strText.data(), std::min(*pSize, strText.size()));
        *pSize = 5000;
        return nSecondResult;
    };
}

TEST(TextQuery, CornersOfTheTwoCallProtocol) {
    const std::string strLongest(kMaxProducerTextSize, 'x');
    const QUESTION objSizeAsked{9, INFO_DATATYPE_STRING, 0};
    struct CASE {
        const char* pName;
        CScriptedQuery::ANSWER fnAnswer;
        std::string strText;
        bool bValid;
        std::vector<std::size_t> vecTextAsked;  // the sizes of the second calls
    };
    const CASE arrCase[] = {
        {"zero byte inside", Tells(std::string("ab\0cd\0", 6), 6), "ab", true, {6}},
        {"no end", Tells("camera", 6), "camera", true, {6}},
        {"announced too small, and no end", Tells("camera", 3), "cam", true, {3}},
        {"size 0, which still is asked for", Tells("camera", 0), "", true, {0}},
        {"grown between the calls", Tells("came", 4, GC_ERR_BUFFER_TOO_SMALL), "", false, {4}},
        {"longest", Tells(strLongest, kMaxProducerTextSize), strLongest, true, {kMaxProducerTextSize}},
        {"over the longest", Tells(strLongest, kMaxProducerTextSize + 1), "", false, {}},
        {"absurd", Tells("camera", ~std::size_t{0}), "", false, {}},
    };
    for (const CASE& objCase : arrCase) {
        CScriptedQuery objQuery(objCase.fnAnswer);
        std::string strText = "before";
        bool bValid = !objCase.bValid;
        objQuery._GetStringInfo({9}, {&strText}, {&bValid});
        EXPECT_TRUE(strText == objCase.strText) << objCase.pName;  // not EXPECT_EQ, which would print a megabyte
        EXPECT_EQ(bValid, objCase.bValid) << objCase.pName;
        std::vector<QUESTION> vecExpected = {objSizeAsked};
        for (const std::size_t nSize : objCase.vecTextAsked) {
            vecExpected.push_back({9, INFO_DATATYPE_STRING, nSize});
        }
        EXPECT_TRUE(objQuery.Questions() == vecExpected) << objCase.pName;
    }
}

}  // namespace
