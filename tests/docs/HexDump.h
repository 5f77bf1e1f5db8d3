#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A dump in a page, a code block whose opening line is "```hexdump NAME". Each of its lines has the offset
/// of its first byte, its bytes, a bar, and a note: "00000019  4d 6f 78 00*125 | name". A byte followed by a
/// star and a decimal number is repeated that many times.
struct HexDump {
    std::string name;
    std::vector<std::uint8_t> bytes;
};

/// All dumps of a page, in their order. @throws std::runtime_error for a line of another form or a wrong
/// offset.
std::vector<HexDump> readHexDumps(const std::string& page);
