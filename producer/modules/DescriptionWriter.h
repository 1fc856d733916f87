#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "producer/modules/Feature.h"
#include "support/DescriptionText.h"

namespace producer {

/// What a module's description says of the module itself.
struct DESCRIPTION_HEADER {
    std::string ModelName;  ///< without blanks: it is part of the file name
    std::string ToolTip;
    std::string PortName;     ///< of the port node, and so of the port
    std::string ProductGuid;  ///< names the kind of module for good
};

/// Writes the GenICam description of a module from the table of its features, whose addresses are given.
///
/// Lives on the stack of one CRegisterMap::Finish. The elements of each node stand in the order of the schema.
/// Source: GenICam GenApi schema 1.1.
class CDescriptionWriter : private CDescriptionText {
public:
    CDescriptionWriter(const DESCRIPTION_HEADER& objHeader, const std::deque<CFeature>& deqFeature)
        : m_objHeader(objHeader), m_deqFeature(deqFeature) {}

    std::string Write();

private:
    void Categories();
    void Feature(const CFeature& objFeature);
    void CommonElements(const CFeature& objFeature);
    void Selected(const CFeature& objFeature);
    void Availability(const CFeature& objFeature);
    void NumberRegister(const std::string& strName, const CFeature& objFeature, std::uint64_t nAddress,
                        std::string_view strAccess, std::string_view strCachable);
    void RegisterElements(std::uint64_t nAddress, std::size_t nLength, std::string_view strAccess,
                          std::string_view strCachable);

    const DESCRIPTION_HEADER& m_objHeader;
    const std::deque<CFeature>& m_deqFeature;
};

}  // namespace producer
