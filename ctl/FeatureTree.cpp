#include "ctl/FeatureTree.h"

#include <algorithm>
#include <set>

#include "GenApi/Category.h"
#include "GenApi/Float.h"
#include "GenApi/GCException.h"
#include "GenApi/Integer.h"
#include "GenApi/Node.h"
#include "GenApi/NodeCast.h"
#include "GenApi/NodeMap.h"
#include "GenApi/Register.h"
#include "support/Text.h"
#include "support/ZrException.h"

namespace {

using namespace GenApi_3_0;

constexpr std::size_t kDeepest = 32;        // categories in categories
constexpr std::size_t kMostLines = 50'000;  // categories that share categories are more ways than anybody can walk
constexpr std::size_t kLongestValue = 256;  // bytes; registers may hold megabytes

bool IsReadable(const IBase& objNode) {
    return objNode.GetAccessMode() == RO || objNode.GetAccessMode() == RW;
}

bool IsWritable(const IBase& objNode) {
    return objNode.GetAccessMode() == WO || objNode.GetAccessMode() == RW;
}

const char* KindOf(const INode& objNode) {
    switch (objNode.GetPrincipalInterfaceType()) {
        case intfICategory:
            return "category";
        case intfIInteger:
            return "integer";
        case intfIFloat:
            return "float";
        case intfIEnumeration:
            return "enumeration";
        case intfIBoolean:
            return "boolean";
        case intfIString:
            return "string";
        case intfICommand:
            return "command";
        case intfIRegister:
            return "register";
        default:
            return "other";
    }
}

std::string Shortened(const std::string& strText) {
    return strText.size() <= kLongestValue ? strText : strText.substr(0, kLongestValue) + "...";
}

/// A register larger than anyone reads on a screen is left where it is: over a network it takes seconds.
std::optional<std::string> ReadValue(INode& objNode) {
    auto* const pRegister = node_cast<IRegister>(&objNode);
    if (objNode.GetPrincipalInterfaceType() == intfIRegister && pRegister != nullptr &&
        pRegister->GetLength() > static_cast<std::int64_t>(kLongestValue)) {
        return std::to_string(pRegister->GetLength()) + " bytes";
    }
    auto* const pValue = dynamic_cast<IValue*>(&objNode);
    return pValue == nullptr ? std::nullopt : std::optional(Shortened(pValue->ToString().str()));
}

/// A walk down the categories. Remembers those it stands in, so that a circle ends.
class CTreeReader {
public:
    explicit CTreeReader(EVisibility eMost) : m_eMost(eMost) {}

    FEATURE ReadCategory(INode& objNode, ICategory& objCategory) {
        FEATURE objFeature;
        objFeature.strName = objNode.GetName().str();
        objFeature.strKind = "category";
        if (m_setInside.size() >= kDeepest || !m_setInside.insert(&objNode).second) {
            return objFeature;
        }
        FeatureList_t vecValue;
        objCategory.GetFeatures(vecValue);
        for (IValue* pValue : vecValue) {
            Append(objFeature.vecFeature, *pValue->GetNode());
        }
        m_setInside.erase(&objNode);
        return objFeature;
    }

private:
    void Append(std::vector<FEATURE>& vecFeature, INode& objNode) {
        const EAccessMode eAccess = objNode.GetAccessMode();
        if (eAccess == NI || objNode.GetVisibility() > m_eMost || m_nLines == kMostLines) {
            return;
        }
        ++m_nLines;
        if (auto* pCategory = node_cast<ICategory>(&objNode)) {
            FEATURE objCategory = ReadCategory(objNode, *pCategory);
            if (!objCategory.vecFeature.empty()) {
                vecFeature.push_back(std::move(objCategory));
            }
        } else {
            vecFeature.push_back(ReadFeature(objNode));
        }
    }

    EVisibility m_eMost;
    std::size_t m_nLines = 0;
    std::set<const INode*> m_setInside;
};

}  // namespace

FEATURE ReadFeature(INode& objNode) {
    FEATURE objFeature;
    objFeature.strName = objNode.GetName().str();
    objFeature.strKind = KindOf(objNode);
    objFeature.bReadable = IsReadable(objNode);
    objFeature.bWritable = IsWritable(objNode);
    try {
        if (auto* pInteger = node_cast<IInteger>(&objNode)) {
            objFeature.strUnit = pInteger->GetUnit().str();
        } else if (auto* pFloat = node_cast<IFloat>(&objNode)) {
            objFeature.strUnit = pFloat->GetUnit().str();
        }
        if (objFeature.bReadable) {
            objFeature.strValue = ReadValue(objNode);
        }
    } catch (const CTimeoutError&) {
        throw;  // a camera that has gone answers none of the others either, and each takes its time
    } catch (const CDeviceOfflineError&) {
        throw;
    } catch (const std::exception&) {
        // A camera that refuses one of its features still has the others.
    }
    objFeature.objLimits = objFeature.bWritable ? ReadLimits(objNode) : FEATURE_LIMITS();
    return objFeature;
}

FEATURE ReadFeatureTree(const INodeMap& objNodeMap, bool bAll) {
    INode* const pRoot = objNodeMap.FindNode("Root");
    auto* const pCategory = node_cast<ICategory>(pRoot);
    return pCategory == nullptr ? FEATURE() : CTreeReader(bAll ? Invisible : Expert).ReadCategory(*pRoot, *pCategory);
}

std::vector<std::string> FindSimilarFeatures(const INodeMap& objNodeMap, const std::string& strName) {
    constexpr std::size_t kMost = 5;
    const std::string strWanted = ToUpperAscii(strName);
    NodeList_t vecNode;
    objNodeMap.GetNodes(vecNode);
    std::vector<std::string> vecSimilar;
    for (const INode* pNode : vecNode) {
        if (pNode->IsFeature() && ToUpperAscii(pNode->GetName().str()).find(strWanted) != std::string::npos) {
            vecSimilar.push_back(pNode->GetName().str());
        }
    }
    // The shortest are the nearest: with the case alone different, nothing is shorter.
    std::stable_sort(vecSimilar.begin(), vecSimilar.end(),
                     [](const std::string& a, const std::string& b) { return a.size() < b.size(); });
    vecSimilar.resize(std::min(vecSimilar.size(), kMost));
    return vecSimilar;
}
