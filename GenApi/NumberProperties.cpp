#include "GenApi/NumberProperties.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string_view>

#include "GenApi/NodeMapLimits.h"
#include "GenApi/NumberText.h"

namespace GenApi_3_0 {
namespace {

// What isn't a number has no place in an order, and sorting it among others is undefined.
std::optional<double> ParseOrderedFloat(std::string_view strText) {
    const auto fValue = ParseFloat(strText);
    return fValue && std::isnan(*fValue) ? std::nullopt : fValue;
}

// The values are separated by semicolons, or just by white space.
template <class Value, class Parse>
std::vector<Value> ReadList(const PROPERTY& objProperty, CPropertyReader& objReader, Parse parse) {
    std::vector<Value> vecValue;
    std::string_view strRest = objProperty.Text;
    while (!strRest.empty()) {
        const std::size_t nEnd = std::min(strRest.find_first_of("; ,\t\r\n"), strRest.size());
        if (nEnd > 0) {
            const auto value = parse(strRest.substr(0, nEnd));
            if (!value) {
                objReader.Fail(objProperty, "holds something that isn't a number");
            }
            vecValue.push_back(*value);
        }
        if (vecValue.size() > kMaxValidValues) {
            objReader.Fail(objProperty, "has too many values");
        }
        strRest.remove_prefix(std::min(nEnd + 1, strRest.size()));
    }
    std::sort(vecValue.begin(), vecValue.end());
    return vecValue;
}

}  // namespace

std::vector<std::int64_t> ReadValidIntegers(const PROPERTY& objProperty, CPropertyReader& objReader) {
    return ReadList<std::int64_t>(objProperty, objReader, ParseInteger);
}

std::vector<double> ReadValidFloats(const PROPERTY& objProperty, CPropertyReader& objReader) {
    return ReadList<double>(objProperty, objReader, ParseOrderedFloat);
}

ERepresentation ReadRepresentation(const PROPERTY& objProperty, CPropertyReader& objReader) {
    return objReader.Word<ERepresentation>(objProperty, {{"Linear", Linear},
                                                         {"Logarithmic", Logarithmic},
                                                         {"Boolean", Boolean},
                                                         {"PureNumber", PureNumber},
                                                         {"HexNumber", HexNumber},
                                                         {"IPV4Address", IPV4Address},
                                                         {"MACAddress", MACAddress}});
}

}  // namespace GenApi_3_0
