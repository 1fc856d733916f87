#pragma once

#include <cstdint>
#include <string_view>

namespace GenApi_3_0 {

/// Hashes texts of a description, with a seed drawn anew for each object: so no description can be made whose texts
/// all fall into one place of a table.
class CSeededHash {
public:
    CSeededHash();

    std::uint64_t operator()(std::string_view strText) const;

private:
    std::uint64_t m_nSeed;
};

}  // namespace GenApi_3_0
