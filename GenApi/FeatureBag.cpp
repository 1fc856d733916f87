#include "GenApi/FeatureBag.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "GenApi/Command.h"
#include "GenApi/CommandBracket.h"
#include "GenApi/FeatureBagLimits.h"
#include "GenApi/FeatureComparison.h"
#include "GenApi/FeatureErrors.h"
#include "GenApi/FeatureSelectors.h"
#include "GenApi/FeatureStore.h"
#include "GenApi/GCException.h"
#include "GenApi/Lock.h"
#include "GenApi/Node.h"
#include "GenApi/NodeMap.h"
#include "GenApi/Value.h"

namespace GenApi_3_0 {

using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

namespace {

constexpr std::string_view kMagicGuid = "{05D8C294-F295-4dfb-9D01-096BD04049F4}";
constexpr std::string_view kVersionLine = "GenApi persistence file (version 3.0.0)";
constexpr std::string_view kCommentMark = "# ";
constexpr std::streamsize kMaxCommentSkip = 1024;
constexpr int kEnd = std::char_traits<char>::eof();

void WriteLine(std::ostream& stream, std::string_view strFirst, std::string_view strSecond) {
    // write and put, unlike <<, mind no field width that the caller may have left behind.
    stream.write(strFirst.data(), static_cast<std::streamsize>(strFirst.size()));
    stream.write(strSecond.data(), static_cast<std::streamsize>(strSecond.size()));
    stream.put('\n');
}

/// Reads up to one of the two characters and takes that out of the stream as well.
/// @return it; kEnd at the end of the stream or when the limit is reached, with the stream failed
int ReadPiece(std::istream& stream, char cFirst, char cSecond, std::string& strPiece) {
    strPiece.clear();
    for (int c = stream.get(); c != kEnd; c = stream.get()) {
        const char cRead = std::char_traits<char>::to_char_type(c);
        if (cRead == cFirst || cRead == cSecond) {
            return c;
        }
        if (strPiece.size() == kMaxNameLength) {
            stream.unget();
            stream.setstate(std::ios_base::failbit);
            return kEnd;
        }
        strPiece += cRead;
    }
    return kEnd;
}

void CheckNodeMap(const INodeMap* pNodeMap) {
    if (pNodeMap == nullptr) {
        Throw<InvalidArgumentException>("The feature bag got no node map");
    }
}

/// The name as a comment of one line that a reader takes in at once.
std::string CommentOf(const gcstring& strName) {
    std::string strComment = strName.str().substr(0, kMaxNameLength - kCommentMark.size());
    std::replace(strComment.begin(), strComment.end(), '\n', ' ');
    return strComment;
}

/// A bag holds settings. A command would make the device do something, which no file may.
IValue& SettingOf(const INodeMap& objNodeMap, const gcstring& strName) {
    INode* pNode = objNodeMap.GetNode(strName);
    auto* pValue = dynamic_cast<IValue*>(pNode);
    if (pValue == nullptr) {
        Throw<InvalidArgumentException>(pNode == nullptr ? "There is no such feature" : "It has no value");
    }
    if (dynamic_cast<ICommand*>(pNode) != nullptr) {
        Throw<InvalidArgumentException>("It is a command, which has no setting");
    }
    return *pValue;
}

/// Where the lines of a bag want the selectors, as far as they couldn't be brought there. What belongs to such a
/// selector would be written under another of its values.
class CFailedSelectors {
public:
    /// To be called before the feature is written.
    /// @throws RuntimeException  it belongs to a selector that stands elsewhere
    void Begin(IValue& objFeature, const gcstring& strValue) {
        const bool bSelector = IsSelector(objFeature);
        Require(objFeature, bSelector, strValue);
        if (bSelector) {
            m_mapWanted[&objFeature] = strValue;
        }
    }
    /// To be called once it is written.
    void End(IValue& objFeature) { m_mapWanted.erase(&objFeature); }

private:
    void Require(IValue& objFeature, bool bSelector, const gcstring& strValue) {
        if (m_mapWanted.empty()) {
            return;
        }
        const auto CountStep = [this] {
            if (++m_nSteps > kMaxStoreSteps) {
                Throw<RuntimeException>("The node map needs more than " + std::to_string(kMaxStoreSteps) +
                                        " steps to be loaded into");
            }
        };
        for (IValue* const pSelector : SelectorsOf(objFeature, CountStep).value_or(std::vector<IValue*>())) {
            const auto itWanted = m_mapWanted.find(pSelector);
            if (itWanted != m_mapWanted.end() && pSelector != &objFeature) {
                const std::string strWhy = NameOf(*pSelector) + " can't be set to '" + itWanted->second.str() + "'";
                if (bSelector) {
                    m_mapWanted[&objFeature] = strValue;
                }
                Throw<RuntimeException>(strWhy + ", which it belongs to");
            }
        }
    }

    std::map<IValue*, gcstring> m_mapWanted;
    std::size_t m_nSteps = 0;
};

void SkipComments(std::istream& stream) {
    while (stream.peek() == '#') {
        stream.ignore(kMaxCommentSkip, '\n');
    }
}

}  // namespace

bool CFeatureBag::StoreToBag(INodeMap* pNodeMap, int nMaxPersistSets, gcstring_vector* pErrorList) {
    CheckNodeMap(pNodeMap);
    if (nMaxPersistSets < -1) {
        Throw<InvalidArgumentException>("The number of persist sets can't be " + std::to_string(nMaxPersistSets));
    }
    const AutoLock objLock(pNodeMap->GetLock());
    CFeatureErrors objErrors(pErrorList);
    CFeatureStore objStore(*pNodeMap, nMaxPersistSets, objErrors);
    CCommandBracket objBracket(*pNodeMap, "DeviceFeaturePersistenceStart", "DeviceFeaturePersistenceEnd", objErrors);
    objStore.Run();
    objBracket.End();
    m_strBagName = CommentOf(pNodeMap->GetDeviceName());
    m_vecName = objStore.TakeNames();
    m_vecValue = objStore.TakeValues();
    return objErrors.IsEmpty();
}

bool CFeatureBag::LoadFromBag(INodeMap* pNodeMap, bool bVerify, gcstring_vector* pErrorList) {
    CheckNodeMap(pNodeMap);
    const AutoLock objLock(pNodeMap->GetLock());
    CFeatureErrors objErrors(pErrorList);
    CCommandBracket objBracket(*pNodeMap, "DeviceRegistersStreamingStart", "DeviceRegistersStreamingEnd", objErrors);
    CFailedSelectors objFailed;
    for (std::size_t i = 0; i < m_vecName.size(); ++i) {
        objErrors.Try(m_vecName[i].view(), [&] {
            IValue& objFeature = SettingOf(*pNodeMap, m_vecName[i]);
            objFailed.Begin(objFeature, m_vecValue[i]);
            objFeature.FromString(m_vecValue[i], bVerify);
            objFailed.End(objFeature);
        });
    }
    objBracket.End();
    return objErrors.IsEmpty();
}

std::vector<FEATURE_DIFFERENCE> CFeatureBag::CompareWith(INodeMap* pNodeMap, gcstring_vector* pErrorList) const {
    CheckNodeMap(pNodeMap);
    const AutoLock objLock(pNodeMap->GetLock());
    CFeatureErrors objErrors(pErrorList);
    CCommandBracket objBracket(*pNodeMap, "DeviceFeaturePersistenceStart", "DeviceFeaturePersistenceEnd", objErrors);
    CFeatureComparison objComparison(objErrors);
    for (std::size_t i = 0; i < m_vecName.size(); ++i) {
        objErrors.Try(m_vecName[i].view(),
                      [&] { objComparison.Take(SettingOf(*pNodeMap, m_vecName[i]), m_vecValue[i].str()); });
    }
    std::vector<FEATURE_DIFFERENCE> vecDifference = objComparison.End();
    objBracket.End();
    return vecDifference;
}

std::ostream& operator<<(std::ostream& stream, const CFeatureBag& objBag) {
    WriteLine(stream, kCommentMark, kMagicGuid);
    WriteLine(stream, kCommentMark, kVersionLine);
    WriteLine(stream, kCommentMark, objBag.m_strBagName.view());
    const std::size_t nLines = std::min(objBag.m_vecName.size(), objBag.m_vecValue.size());
    for (std::size_t i = 0; i < nLines; ++i) {
        WriteLine(stream, objBag.m_vecName[i].str() + '\t', objBag.m_vecValue[i].view());
    }
    return stream;
}

std::istream& operator>>(std::istream& stream, CFeatureBag& objBag) {
    if (stream.peek() == kEnd) {
        Throw<RuntimeException>("The stream is eof");
    }
    objBag.m_vecName.clear();
    objBag.m_vecValue.clear();
    std::string strPiece;
    ReadPiece(stream, '\n', '\n', strPiece);
    if (strPiece.find(kMagicGuid) == std::string::npos) {
        Throw<RuntimeException>(
            "The stream is not a GenApi feature stream since it is missing the magic GUID in the first line");
    }
    SkipComments(stream);
    std::string strValue;
    while (stream.good()) {
        if (ReadPiece(stream, '\t', '\n', strPiece) != '\t') {
            stream.setstate(std::ios_base::failbit);
            break;
        }
        if (!std::getline(stream, strValue)) {
            break;
        }
        objBag.m_vecName.emplace_back(strPiece);
        objBag.m_vecValue.emplace_back(strValue);
        SkipComments(stream);
    }
    return stream;
}

}  // namespace GenApi_3_0
