// Tells what the C++ reader makes of a file, for comparison with another reader.
//
//   dumpModel FILE            prints the text of the file; ends with 3 if the reader refuses it
//   dumpModel FILE damages    reads one damage from each line of stdin and tells what becomes of the file
//                             with it: "refused", or "read" and the checksum of its text. A damage is
//                             "cut SIZE", or "flip OFFSET MASK" with one or more pairs.

#include "ModelText.h"

#include <MoxReader/MemorySource.h>

#include <fmt/format.h>
#include <zlib.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes bytesOf(const char* path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Bytes damaged(Bytes bytes, const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    if (verb == "cut") {
        std::size_t size = 0;
        words >> size;
        bytes.resize(size);
        return bytes;
    }
    std::size_t offset = 0;
    unsigned mask = 0;
    while (words >> offset >> mask)
        bytes.at(offset) = static_cast<std::uint8_t>(bytes.at(offset) ^ mask);
    return bytes;
}

std::string verdict(Bytes bytes) {
    try {
        const MoxReader::File file(std::make_shared<MoxReader::MemorySource>(std::move(bytes)));
        const ModelText model(file);
        const auto* text = reinterpret_cast<const Bytef*>(model.text().data());
        return fmt::format("read {:08x}", crc32(0, text, static_cast<uInt>(model.text().size())));
    } catch (const MoxReader::Error&) {
        return "refused";
    }
}

void judgeDamages(const Bytes& bytes) {
    for (std::string line; std::getline(std::cin, line);)
        std::cout << verdict(damaged(bytes, line)) << '\n';
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 2) {
        std::cerr << "usage: dumpModel FILE [damages]\n";
        return 2;
    }
    if (argc > 2)
        judgeDamages(bytesOf(argv[1]));
    else
        std::cout << ModelText(MoxReader::File(argv[1])).text();
    return 0;
} catch (const MoxReader::Error& error) {
    std::cerr << error.what() << '\n';
    return 3;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
