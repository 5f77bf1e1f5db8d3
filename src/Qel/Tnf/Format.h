#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

/// The container's numbers and reserved names. Files on disk hold them, so they never change.
namespace QelTnf::Format {

/// 0x89 marks a binary file, the line ends reveal a transfer that rewrote them, and 0x1A ends a listing.
inline constexpr std::array<unsigned char, 8> Signature = {0x89, 'T', 'N', 'F', '\r', '\n', 0x1A, '\n'};
/// The version of the file format, written with its terminating zero.
inline constexpr char Version[] = "1.3";
static_assert(sizeof(Version) == 4);

inline constexpr std::uint64_t HeadIndexPosition = Signature.size() + sizeof(Version);

inline constexpr std::uint32_t NameSize = 128;
inline constexpr std::uint32_t RecordSize =
    1 /*number*/ + 4 /*name length*/ + NameSize + 4 /*length*/ + 1 /*flags*/ + 1 /*reserved*/;
inline constexpr std::uint32_t HeadRecords = 20;
inline constexpr std::uint32_t IndexBlockRecords = 200;

/// The size in bytes of an index table of `records` records, including its count word.
constexpr std::uint64_t indexTableSize(std::uint64_t records) {
    return 4 /*record count*/ + records * RecordSize;
}
static_assert(indexTableSize(HeadRecords) == 2784);
static_assert(indexTableSize(IndexBlockRecords) == 27804);

/// The length word before the head index.
inline constexpr std::uint64_t LengthWordSize = 4;

/// Bits of a record's flags byte.
inline constexpr unsigned char BlockCompressed = 0x01;
inline constexpr unsigned char BlockFreezable = 0x20;

// Each in two literals: the E of "Empty" is a hexadecimal digit and would belong to the escape.
inline const std::string EmptyBlockName = "\x0b"
                                          "Empty Block ";
inline const std::string IndexBlockName = "\x0b"
                                          "Index Block ";
inline constexpr std::size_t ReservedNameSize = 13;

inline constexpr int CompressionLevel = 6;

} // namespace QelTnf::Format
