#pragma once

#include <cstddef>
#include <cstdint>

// How much a description may ask for. A camera hands it over, so nothing in it is trusted; each limit lies far above
// what the largest real descriptions need and low enough that reaching it costs less than a second and some hundred
// megabytes.

namespace GenApi_3_0 {

/// Bytes of a description. Real ones reach 4 MB.
inline constexpr std::size_t kMaxDescriptionSize = 16U << 20U;

/// Tags of a description: each costs about 100 bytes in the parser. Real ones have 100,000.
inline constexpr std::size_t kMaxTags = 1'500'000;

/// Nodes, enumeration entries counted. Real ones have 10,000.
inline constexpr std::size_t kMaxNodes = 200'000;

/// Bytes of a name. A persistence file has room for 1023.
inline constexpr std::size_t kMaxNameLength = 1023;

/// Properties of all nodes together, where those of a StructReg count for each of its entries. Real descriptions have
/// 100,000.
inline constexpr std::size_t kMaxAppliedProperties = 4'000'000;

/// Nodes below a selected feature that a selector invalidates with it. Real chains have up to 5.
inline constexpr unsigned kMaxSelectedDepth = 8;

/// Group elements within each other. Real ones have one level.
inline constexpr int kMaxGroupDepth = 64;

/// Nodes that stand on each other for one value. Each level needs stack; real chains stay below 20.
inline constexpr unsigned kMaxReferenceDepth = 150;

/// Nodes that ask each other within one operation for values, limits and access modes together.
inline constexpr unsigned kMaxEvaluationDepth = 300;

/// Nodes evaluated within one operation: without caches, nodes that stand on each other twice double the work each.
/// Long lists and formulas, and changes that reach many nodes, count for more than one.
inline constexpr std::uint64_t kMaxEvaluations = 1'000'000;

/// Callbacks that write, whose callbacks write, and so on.
inline constexpr unsigned kMaxCallbackDepth = 32;

/// Bytes of one register. Look-up tables and file buffers stay below 1 MB.
inline constexpr std::int64_t kMaxRegisterLength = 16LL << 20U;

/// Links between registers that overlap without being the same. Real descriptions need some hundred; what is beyond
/// isn't linked, and such a register's cache doesn't notice what is written to the other.
inline constexpr std::size_t kMaxByteLinks = 400'000;

/// Bytes of registers that one node map caches. What is beyond is read each time.
inline constexpr std::size_t kMaxCachedBytes = 64U << 20U;

/// Entries of one list of valid values.
inline constexpr std::size_t kMaxValidValues = 65'536;

}  // namespace GenApi_3_0
