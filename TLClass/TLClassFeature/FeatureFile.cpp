#include "TLClass/TLClassFeature/FeatureFile.h"

#include <sstream>
#include <stdexcept>
#include <utility>

#include "GenApi/FeatureBag.h"
#include "GenApi/Node.h"
#include "GenApi/NodeMap.h"
#include "GenApi/Value.h"
#include "TLClass/TLClassFeature/FeatureFileText.h"

namespace {

constexpr std::string_view kVersionKey = "FileVersion";
constexpr std::string_view kModelKey = "DeviceModelName";
constexpr std::string_view kVersion = "1.0";

// In the order of the node maps and of EFeatureFileSection; a reader goes by the order alone.
constexpr std::array<std::string_view, 3> kSectionTitles = {
    "Remote device features are as follows:",
    "Local device features are as follows:",
    "Stream features are as follows:",
};

GenApi_3_0::INodeMap* NodeMapOf(const GenApi_3_0::CNodeMapRef* pNodeMapRef) {
    if (pNodeMapRef == nullptr || pNodeMapRef->_Ptr == nullptr) {
        throw std::runtime_error("Invalid feature node map");
    }
    return pNodeMapRef->_Ptr;
}

/// Characters go out by write: << would mind a field width that the caller has left behind.
void Write(std::ostream& stream, std::string_view strText) {
    stream.write(strText.data(), static_cast<std::streamsize>(strText.size()));
}

void WriteHeaderLine(std::ostream& stream, std::string_view strKey, std::string_view strValue) {
    Write(stream, strKey);
    Write(stream, ": ");
    Write(stream, strValue);
    stream.put('\n');
}

std::string ReadWhole(std::istream& stream) {
    const std::streamoff nLength = stream.seekg(0, std::ios_base::end).tellg();
    if (nLength < 0 || !stream.seekg(0)) {
        throw std::runtime_error("Failed to read the feature file");
    }
    if (static_cast<std::size_t>(nLength) > CFeatureFile::kMaxFeatureFileSize) {
        throw std::runtime_error("The feature file is larger than the " +
                                 std::to_string(CFeatureFile::kMaxFeatureFileSize) + " bytes that are taken in");
    }
    // The zero byte behind the text belongs to the last section. No line of a bag, it ends one.
    std::string strText(static_cast<std::size_t>(nLength) + 1, '\0');
    if (!stream.read(strText.data(), nLength)) {
        throw std::runtime_error("Failed to read the feature file");
    }
    return strText;
}

/// A section without the zero byte behind the text, where the last line has no end: it would belong to a value there.
std::string_view WithoutEnd(std::string_view strSection) {
    const std::size_t nLast = strSection.size() - 1;
    const bool bOpenLine = nLast > 0 && strSection[nLast] == '\0' && strSection[nLast - 1] != '\n';
    return bOpenLine ? strSection.substr(0, nLast) : strSection;
}

void AppendTexts(const GenApi_3_0::gcstring_vector& vecFrom, std::vector<std::string>* pTo) {
    for (const GenApi_3_0::gcstring& strText : vecFrom) {
        if (pTo != nullptr) {
            pTo->push_back(strText.str());
        }
    }
}

/// A value of a foreign file as part of a message.
std::string Quotable(std::string_view strValue) {
    constexpr std::size_t kMaxLength = 200;
    return strValue.size() <= kMaxLength ? std::string(strValue)
                                         : std::string(strValue.substr(0, kMaxLength)).append("...");
}

}  // namespace

CFeatureFile::CFeatureFile(GenApi_3_0::CNodeMapRef* pRemote, GenApi_3_0::CNodeMapRef* pLocal,
                           GenApi_3_0::CNodeMapRef* pStream)
    : m_pRemoteNodeMap(NodeMapOf(pRemote)), m_pLocalNodeMap(NodeMapOf(pLocal)), m_pStreamNodeMap(NodeMapOf(pStream)) {}

void CFeatureFile::Save(std::ostream& stream, std::vector<std::string>* pError) const {
    const std::string strModel = __GetDeviceModelName();
    WriteHeaderLine(stream, kVersionKey, kVersion);
    WriteHeaderLine(stream, kModelKey, strModel);
    for (std::size_t i = 0; i < kSectionTitles.size(); ++i) {
        Write(stream, MakeFeatureFrameLine(kSectionTitles[i]));
        GenApi_3_0::CFeatureBag objBag;
        GenApi_3_0::gcstring_vector vecBagError;
        objBag.StoreToBag(__GetNodeMaps()[i], -1, &vecBagError);
        AppendTexts(vecBagError, pError);
        std::ostringstream streamBag;
        streamBag << objBag;
        std::vector<std::string> vecLeftOut;
        Write(stream, WithoutFrames(streamBag.view(), vecLeftOut));
        for (const std::string& strName : vecLeftOut) {
            if (pError != nullptr) {
                pError->push_back(strName + ": Its value has a \"</\", which begins a section in a feature file");
            }
        }
    }
}

std::vector<std::string> CFeatureFile::Load(std::istream& stream, bool bVerify) const {
    std::vector<std::string> vecError;
    __ForEachSection(stream, [&](std::size_t nSection, GenApi_3_0::CFeatureBag& objBag) {
        GenApi_3_0::gcstring_vector vecBagError;
        objBag.LoadFromBag(__GetNodeMaps()[nSection], bVerify, &vecBagError);
        AppendTexts(vecBagError, &vecError);
    });
    return vecError;
}

FEATURE_FILE_COMPARISON CFeatureFile::Compare(std::istream& stream) const {
    FEATURE_FILE_COMPARISON objComparison;
    __ForEachSection(stream, [&](std::size_t nSection, const GenApi_3_0::CFeatureBag& objBag) {
        GenApi_3_0::gcstring_vector vecBagError;
        for (auto& objFeature : objBag.CompareWith(__GetNodeMaps()[nSection], &vecBagError)) {
            objComparison.Differences.push_back({static_cast<EFeatureFileSection>(nSection), std::move(objFeature)});
        }
        AppendTexts(vecBagError, &objComparison.NotCompared);
    });
    return objComparison;
}

void CFeatureFile::__ForEachSection(std::istream& stream, const UseSection& fnUse) const {
    const std::string strText = ReadWhole(stream);
    const std::vector<std::string_view> vecPiece = SplitFeatureSections(strText);
    if (vecPiece.size() != 1 + kSectionTitles.size()) {
        throw std::runtime_error("Invalid feature file format");
    }
    __CheckHeader(vecPiece.front());

    // One stream for all sections: what the bag of one leaves unread stands before the next.
    std::stringstream streamSections;
    for (std::size_t i = 0; i < kSectionTitles.size(); ++i) {
        streamSections.clear();
        Write(streamSections, WithoutEnd(vecPiece[1 + i]));
        GenApi_3_0::CFeatureBag objBag;
        streamSections >> objBag;
        fnUse(i, objBag);
    }
}

std::string CFeatureFile::__GetDeviceModelName() const {
    auto* const pModel = dynamic_cast<GenApi_3_0::IValue*>(m_pRemoteNodeMap->FindNode(kModelKey));
    if (pModel == nullptr) {
        throw std::runtime_error("Failed to get device model");
    }
    return pModel->ToString().str();
}

void CFeatureFile::__CheckHeader(std::string_view strHeader) const {
    const std::string strVersion = GetFeatureHeaderValue(strHeader, kVersionKey);
    if (strVersion != kVersion) {  // also an older one, whatever the message says
        throw std::runtime_error("The file with version " + Quotable(strVersion) +
                                 " is not supported. Please select a file with version smaller than or equal to " +
                                 std::string(kVersion));
    }
    const std::string strFileModel = GetFeatureHeaderValue(strHeader, kModelKey);
    const std::string strDeviceModel = __GetDeviceModelName();
    if (strFileModel != strDeviceModel) {
        throw std::runtime_error("The device model(" + Quotable(strFileModel) +
                                 ") in file is not the same as that in the device(" + strDeviceModel + ")");
    }
}
