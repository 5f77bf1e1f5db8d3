#pragma once

#include "Support/Bytes.h"

#include <cstdint>
#include <string>

/// The container's names and tables, written out independently of the library.
namespace ContainerBytes {

inline const std::string emptyName = "\x0b"
                                     "Empty Block ";
inline const std::string indexName = "\x0b"
                                     "Index Block ";

inline constexpr std::uint8_t compressed = 0x01;
inline constexpr std::uint8_t freezable = 0x20;

/// Appends an index record of 139 bytes, for a name of at most 128 bytes.
inline void addRecord(Support::Bytes& table, std::uint8_t number, const std::string& name,
                      std::uint32_t length, std::uint8_t flags) {
    table.u8(number).u32(128).raw(name).zeros(128 - name.size()).u32(length).u8(flags).u8(0);
}

/// Appends the records of free entries, starting with this number.
inline void addFreeRecords(Support::Bytes& table, unsigned int firstNumber, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i) {
        addRecord(table, static_cast<std::uint8_t>(firstNumber + i), emptyName, 0, 0);
    }
}

} // namespace ContainerBytes
