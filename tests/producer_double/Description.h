#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/producer_double/ProducerControl.h"

namespace ProducerDouble {

/// One feature of a generated description, and the register behind it.
struct FEATURE {
    enum class KIND { Integer, Float, Text, Command, Enumeration };

    FEATURE(std::string strFeature, KIND nFeatureKind) : strName(std::move(strFeature)), nKind(nFeatureKind) {}

    std::string strName;
    KIND nKind;
    std::uint64_t nAddress = 0;
    std::size_t nLength = 8;
    IPortControl::RANGE objRange;
    std::string strMax;       // a feature whose value is the greatest; the range then starts at 0
    std::string strSelector;  // a list feature: one register for each value of the selector, nLength apart, read only
    std::vector<std::pair<std::string, std::int64_t>> vecEntry;
    std::size_t nWrites = 0;
};

/// A description of these features in the schema's version 1.1, big-endian, on a port of this name.
std::string WriteDescription(const std::string& strModel, const std::string& strPort,
                             const std::vector<FEATURE>& vecFeature);

}  // namespace ProducerDouble
