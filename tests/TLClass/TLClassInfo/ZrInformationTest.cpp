#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassInfo/ZrInformation.h"
#include "TLClass/TLClassLoadTL/ProducerText.h"
#include "support/ZrException.h"

namespace {

using testing::ElementsAre;

/// What the producer was asked, and whether it was for the size alone.
struct QUESTION {
    std::uint32_t nCommand;
    INFO_DATATYPE nType;
    std::size_t nSize;
    bool bSizeOnly;

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
        m_vecQuestion.push_back({nCommand, *pType, *pSize, pBuffer == nullptr});
        return m_fnAnswer(nCommand, pType, pBuffer, pSize);
    }

private:
    ANSWER m_fnAnswer;
    std::vector<QUESTION> m_vecQuestion;
};

/// Writes what fits of a value, as a producer does that looks at the size.
template <typename VALUE>
GC_ERROR Put(const VALUE& value, void* pBuffer, const std::size_t* pSize) {
    std::memcpy(pBuffer, &value, std::min(sizeof(value), *pSize));
    return GC_ERR_SUCCESS;
}

/// A producer's well-behaved answer of a text.
GC_ERROR PutText(const std::string& strText, void* pBuffer, std::size_t* pSize) {
    const std::size_t nNeeded = strText.size() + 1;
    if (pBuffer != nullptr && *pSize < nNeeded) {
        return GC_ERR_BUFFER_TOO_SMALL;
    }
    *pSize = nNeeded;
    if (pBuffer != nullptr) {
        std::memcpy(pBuffer, strText.c_str(), nNeeded);
    }
    return GC_ERR_SUCCESS;
}

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

/// A command refused between two that are answered, with the type and size that the getter names.
template <typename VALUE>
void ExpectARefusalLeavesItsFieldAlone(const GETTER<VALUE>& objGetter) {
    CScriptedQuery objQuery([&](std::uint32_t nCommand, INFO_DATATYPE*, void* pBuffer, std::size_t* pSize) {
        Put(objGetter.value, pBuffer, pSize);
        return nCommand == 2 ? GC_ERR_NOT_IMPLEMENTED : GC_ERR_SUCCESS;
    });
    VALUE arrValue[3] = {VALUE{}, objGetter.value, VALUE{}};
    bool arrFlag[3] = {false, true, false};
    (objQuery.*objGetter.pGet)({1, 2, 3}, {&arrValue[0], &arrValue[1], &arrValue[2]},
                               {&arrFlag[0], &arrFlag[1], &arrFlag[2]});
    EXPECT_THAT(arrValue, ElementsAre(objGetter.value, VALUE{}, objGetter.value)) << objGetter.pFunction;
    EXPECT_THAT(arrFlag, ElementsAre(true, false, true)) << objGetter.pFunction;
    const auto Asked = [&](std::uint32_t n) { return QUESTION{n, objGetter.nType, objGetter.nSize, false}; };
    EXPECT_THAT(objQuery.Questions(), ElementsAre(Asked(1), Asked(2), Asked(3))) << objGetter.pFunction;
}

template <typename VALUE>
void ExpectUnequalVectorsAreThrownBack(const GETTER<VALUE>& objGetter) {
    CScriptedQuery objQuery([](auto, auto, auto, auto) { return GC_ERR_SUCCESS; });
    VALUE value{};
    bool bFlag = false;
    const auto Expect = [&](const std::vector<VALUE*>& vecDestination, const std::vector<bool*>& vecFlag) {
        try {
            (objQuery.*objGetter.pGet)({1, 2}, vecDestination, vecFlag);
            ADD_FAILURE() << objGetter.pFunction;
        } catch (const CUnexpectedError& objError) {
            EXPECT_EQ(objError.GetErrorCode(), -1);
            EXPECT_EQ(objError.GetMessage(), "Invalid vector size");
            EXPECT_EQ(objError.GetFile(), "..\\..\\..\\TLClass\\TLClassInfo\\ZrInformation");
            EXPECT_EQ(objError.GetLine(), objGetter.nLine) << objGetter.pFunction;
            EXPECT_EQ(objError.GetFunction(), objGetter.pFunction);
        }
    };
    Expect({&value}, {&bFlag, &bFlag});
    Expect({&value, &value}, {&bFlag});
    EXPECT_TRUE(objQuery.Questions().empty()) << objGetter.pFunction;
}

const GETTER<std::size_t> kSizet{&CScriptedQuery::_GetSizetInfo,  12, 8, 0x0123456789ABCDEF,
                                 "CZrInformation::_GetSizetInfo", 43};
const GETTER<std::int32_t> kInt32{&CScriptedQuery::_GetInt32Info, 5, 4, -7, "CZrInformation::_GetInt32Info", 80};
const GETTER<std::uint64_t> kUint64{&CScriptedQuery::_GetUint64Info,  8,  8, 0xFEDCBA9876543210,
                                    "CZrInformation::_GetUint64Info", 117};
const GETTER<bool> kBool{&CScriptedQuery::_GetBoolInfo, 11, 1, true, "CZrInformation::_GetBoolInfo", 154};
const GETTER<void*> kPtr{&CScriptedQuery::_GetPtrInfo,  10, 8, const_cast<char*>("somewhere"),
                         "CZrInformation::_GetPtrInfo", 191};
const GETTER<std::string> kString{&CScriptedQuery::_GetStringInfo, 1, 0, "", "CZrInformation::_GetStringInfo", 264};

TEST(FixedSizeQuery, RefusedCommandLeavesItsFieldEmptyAndTheNextIsAsked) {
    ExpectARefusalLeavesItsFieldAlone(kSizet);
    ExpectARefusalLeavesItsFieldAlone(kInt32);
    ExpectARefusalLeavesItsFieldAlone(kUint64);
    ExpectARefusalLeavesItsFieldAlone(kBool);
    ExpectARefusalLeavesItsFieldAlone(kPtr);
}

TEST(AnyQuery, VectorsOfDifferentLengthAreThrownBackBeforeAnythingIsAsked) {
    ExpectUnequalVectorsAreThrownBack(kSizet);
    ExpectUnequalVectorsAreThrownBack(kInt32);
    ExpectUnequalVectorsAreThrownBack(kUint64);
    ExpectUnequalVectorsAreThrownBack(kBool);
    ExpectUnequalVectorsAreThrownBack(kPtr);
    ExpectUnequalVectorsAreThrownBack(kString);
}

TEST(FixedSizeQuery, EnlargedSizeNeverReachesTheNextCommandButOtherAnswersStay) {
    CScriptedQuery objQuery([](std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) {
        if (nCommand == 1) {
            Put(std::size_t{5}, pBuffer, pSize);
            *pSize = std::size_t{1} << 40;
            *pType = INFO_DATATYPE_UINT32;
        } else {
            std::memset(pBuffer, 0x11, *pSize);
            *pSize = nCommand == 2 ? 2 : 0;
        }
        return GC_ERR_SUCCESS;
    });
    std::size_t arrValue[4] = {};
    bool arrFlag[4] = {};
    objQuery._GetSizetInfo({1, 2, 3, 4}, {&arrValue[0], &arrValue[1], &arrValue[2], &arrValue[3]},
                           {&arrFlag[0], &arrFlag[1], &arrFlag[2], &arrFlag[3]});
    EXPECT_THAT(objQuery.Questions(),
                ElementsAre(QUESTION{1, INFO_DATATYPE_SIZET, 8, false}, QUESTION{2, INFO_DATATYPE_UINT32, 8, false},
                            QUESTION{3, INFO_DATATYPE_UINT32, 2, false}, QUESTION{4, INFO_DATATYPE_UINT32, 0, false}));
    // The fourth command is answered without a value, and gets what the third has left.
    EXPECT_THAT(arrValue, ElementsAre(5, 0x1111111111111111, 0x1111111111111111, 0x1111111111111111));
}

TEST(FixedSizeQuery, FlagMayBeAnyByte) {
    CScriptedQuery objQuery([](std::uint32_t nCommand, INFO_DATATYPE*, void* pBuffer, std::size_t* pSize) {
        return Put(static_cast<std::uint8_t>(nCommand), pBuffer, pSize);
    });
    bool arrValue[3] = {true, false, false};
    bool arrFlag[3] = {};
    objQuery._GetBoolInfo({0, 1, 0xFF}, {&arrValue[0], &arrValue[1], &arrValue[2]},
                          {&arrFlag[0], &arrFlag[1], &arrFlag[2]});
    EXPECT_THAT(arrValue, ElementsAre(false, true, true));
}

/// One text command of a producer, and what becomes of it.
struct TEXT_CASE {
    const char* pName;
    CScriptedQuery::ANSWER fnAnswer;
    std::string strText;
    bool bValid;
    std::vector<QUESTION> vecQuestion;
};

QUESTION SizeAsked() {
    return {9, INFO_DATATYPE_STRING, 0, true};
}
QUESTION TextAsked(std::size_t nSize) {
    return {9, INFO_DATATYPE_STRING, nSize, false};
}

/// Announces one size and then answers with bytes of 'x', as many as the buffer is said to hold, without an end.
CScriptedQuery::ANSWER Unterminated(std::size_t nSize) {
    return [nSize](std::uint32_t, INFO_DATATYPE*, void* pBuffer, std::size_t* pSize) {
        if (pBuffer != nullptr) {
            std::memset(pBuffer, 'x', *pSize);
        }
        *pSize = nSize;
        return GC_ERR_SUCCESS;
    };
}

TEST(TextQuery, CornersOfTheTwoCallProtocol) {
    const TEXT_CASE arrCases[] = {
        {"plain",
         [](auto, auto, void* p, std::size_t* n) { return PutText("camera", p, n); },
         "camera",
         true,
         {SizeAsked(), TextAsked(7)}},
        {"empty",
         [](auto, auto, void* p, std::size_t* n) { return PutText("", p, n); },
         "",
         true,
         {SizeAsked(), TextAsked(1)}},
        {"size 0, which still is asked for", Unterminated(0), "", true, {SizeAsked(), TextAsked(0)}},
        {"size 0, refused by the second call",
         [](auto, auto, void* p, std::size_t*) { return p == nullptr ? GC_ERR_SUCCESS : GC_ERR_BUFFER_TOO_SMALL; },
         "",
         false,
         {SizeAsked(), TextAsked(0)}},
        {"zero byte inside",
         [](auto, auto, void* p, std::size_t* n) { return PutText(std::string("ab\0cd", 5), p, n); },
         "ab",
         true,
         {SizeAsked(), TextAsked(6)}},
        {"no end", Unterminated(4), "xxxx", true, {SizeAsked(), TextAsked(4)}},
        {"longest",
         Unterminated(kMaxProducerTextSize),
         std::string(kMaxProducerTextSize, 'x'),
         true,
         {SizeAsked(), TextAsked(kMaxProducerTextSize)}},
        {"over the longest", Unterminated(kMaxProducerTextSize + 1), "", false, {SizeAsked()}},
        {"absurd", Unterminated(~std::size_t{0}), "", false, {SizeAsked()}},
        {"size refused", [](auto, auto, auto, auto) { return GC_ERR_NOT_IMPLEMENTED; }, "", false, {SizeAsked()}},
        {"entry missing", [](auto, auto, auto, auto) { return -1; }, "", false, {SizeAsked()}},
        {"text grows between the calls",
         [](auto, auto, void* p, std::size_t* n) { return PutText(p == nullptr ? "cam" : "camera", p, n); },
         "",
         false,
         {SizeAsked(), TextAsked(4)}},
        {"text shrinks between the calls",
         [](auto, auto, void* p, std::size_t* n) { return PutText(p == nullptr ? "camera" : "cam", p, n); },
         "cam",
         true,
         {SizeAsked(), TextAsked(7)}},
        {"size grows behind the second call",
         [](auto, auto, void* p, std::size_t* n) {
             const GC_ERROR nResult = PutText("cam", p, n);
             *n = p == nullptr ? 4 : 4000;
             return nResult;
         },
         "cam",
         true,
         {SizeAsked(), TextAsked(4)}},
    };
    for (const TEXT_CASE& objCase : arrCases) {
        CScriptedQuery objQuery(objCase.fnAnswer);
        std::string strText = "before";
        bool bValid = !objCase.bValid;
        objQuery._GetStringInfo({9}, {&strText}, {&bValid});
        EXPECT_TRUE(strText == objCase.strText) << objCase.pName;  // not EXPECT_EQ, which would print a megabyte
        EXPECT_EQ(bValid, objCase.bValid) << objCase.pName;
        EXPECT_EQ(objQuery.Questions().size(), objCase.vecQuestion.size()) << objCase.pName;
        EXPECT_TRUE(objQuery.Questions() == objCase.vecQuestion) << objCase.pName;
    }
}

TEST(TextQuery, RefusedTextDoesNotEndTheLoop) {
    CScriptedQuery objQuery([](std::uint32_t nCommand, INFO_DATATYPE*, void* pBuffer, std::size_t* pSize) {
        return nCommand == 2 ? GC_ERR_NOT_AVAILABLE : PutText("text " + std::to_string(nCommand), pBuffer, pSize);
    });
    std::string arrText[3];
    bool arrFlag[3] = {};
    objQuery._GetStringInfo({1, 2, 3}, {&arrText[0], &arrText[1], &arrText[2]},
                            {&arrFlag[0], &arrFlag[1], &arrFlag[2]});
    EXPECT_THAT(arrText, ElementsAre("text 1", "", "text 3"));
    EXPECT_THAT(arrFlag, ElementsAre(true, false, true));
}

}  // namespace
