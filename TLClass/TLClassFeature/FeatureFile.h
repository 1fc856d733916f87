#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "GenApi/NodeMapRef.h"
#include "TLClass/TLClassFeature/FeatureFileComparison.h"

namespace GenApi_3_0 {
class CFeatureBag;
}  // namespace GenApi_3_0

/// Saves the settings of a camera as one text, and writes them back or compares them later: those of the remote device,
/// which is the camera itself, of the local device, which is the producer's module for it, and of a data stream.
///
/// The text is a header, with the version of the format and the camera's model, and three sections, each behind a frame
/// line (see FeatureFileText.h) and each in the form of GenApi_3_0::CFeatureBag. Opening, closing and checking the
/// stream is the caller's business. A setting whose value holds the start of a frame, "</", makes a text that can't be
/// loaded.
///
/// Made on the stack for one save, load or comparison. It uses the node maps during these calls, with their own locks;
/// they must stay loaded meanwhile.
class CFeatureFile {
public:
    /// Bytes of a text that are taken in. Large cameras need some hundred thousand.
    static constexpr std::size_t kMaxFeatureFileSize = std::size_t{8} << 20U;

    /// @throws std::runtime_error  "Invalid feature node map": one of them is null or not loaded
    CFeatureFile(GenApi_3_0::CNodeMapRef* pRemote, GenApi_3_0::CNodeMapRef* pLocal, GenApi_3_0::CNodeMapRef* pStream);

    /// Features that can't be read and written now are left out. Selectors are moved and put back.
    /// @param pError  gets a text for each other feature that isn't saved, or only for the present setting of its
    ///                selectors since these have too many, behind those it holds; may be null
    /// @throws std::runtime_error  the camera doesn't tell its model; nothing is written then
    /// @throws what the camera's port throws once it has gone
    void Save(std::ostream& stream, std::vector<std::string>* pError = nullptr) const;

    /// Applies a text, section by section, as far as it can be applied: a value that is refused stops nothing, and
    /// nothing is rolled back. Nothing is applied before the text as a whole has been read and cut and its header is
    /// that of this version and of this camera's model.
    /// @param stream   read from its start, so it can be sought in; at most kMaxFeatureFileSize
    /// @param bVerify  check access and limits before each write
    /// @return one text for each value that was refused
    /// @throws std::runtime_error          the text isn't a feature file, or one of another version or model
    /// @throws GenICam_3_0::RuntimeException  a section isn't one of this format; those before it have been applied
    /// @throws what the camera's port throws once it has gone
    std::vector<std::string> Load(std::istream& stream, bool bVerify) const;

    /// Holds a text against the camera as it is, and changes no setting. Selectors are moved and put back.
    /// @param stream  as for Load
    /// @throws what Load throws
    FEATURE_FILE_COMPARISON Compare(std::istream& stream) const;

private:
    using UseSection = std::function<void(std::size_t nSection, GenApi_3_0::CFeatureBag& objBag)>;

    /// Calls for each section in their order, and not before the text as a whole has been read and cut and its header
    /// has been checked.
    void __ForEachSection(std::istream& stream, const UseSection& fnUse) const;
    std::string __GetDeviceModelName() const;
    void __CheckHeader(std::string_view strHeader) const;

    std::array<GenApi_3_0::INodeMap*, 3> __GetNodeMaps() const {
        return {m_pRemoteNodeMap, m_pLocalNodeMap, m_pStreamNodeMap};
    }

    // Not owned.
    GenApi_3_0::INodeMap* m_pRemoteNodeMap;
    GenApi_3_0::INodeMap* m_pLocalNodeMap;
    GenApi_3_0::INodeMap* m_pStreamNodeMap;
};
