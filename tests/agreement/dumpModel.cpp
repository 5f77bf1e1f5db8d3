// Prints what the C++ reader finds in a file, for comparison with another reader. A dump has the form of
// docs/format/dump.md, with the numbers and the storage.
//
//   dumpModel FILE            prints the dump of the file; ends with 3 if the reader refuses it
//   dumpModel FOLDER dumps    writes FILE.json beside each FILE of the folder that the reader does not refuse
//   dumpModel FILE damages    reads one damage from each line of stdin and prints the result of reading
//                             the file with it: "refused", or "read" or "in part" and the checksum of its
//                             dump. A damage is "cut SIZE", or "flip OFFSET MASK" with one or more pairs.
//   dumpModel - files         reads files from stdin, before each its size in 32 bits, and prints the result of
//                             reading each, as above
//   dumpModel FILE outcome    prints a line for each dataset and each node of sets: its place, then its
//                             numbers as bits, or "refused"; ends with 3 if the reader refuses the file

#include "dump/ModelDump.h"

#include <MoxReader/MemorySource.h>

#include <fmt/format.h>
#include <zlib.h>

#include <array>
#include <bit>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
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
    while (words >> offset >> mask) {
        bytes.at(offset) = static_cast<std::uint8_t>(bytes.at(offset) ^ mask);
    }
    return bytes;
}

struct Dump {
    explicit Dump(const MoxReader::File& file) {
        const auto model = MoxReader::readModel(file);
        MoxTool::JsonStream json(text);
        const MoxTool::ModelDump::Options options{.numbers = true, .storage = true};
        MoxTool::ModelDump dump(file, model, options, json);
        dump.write();
        isWhole = !dump.damage();
    }

    std::string text;
    bool isWhole = true;
};

std::string verdict(Bytes bytes) {
    try {
        const Dump dump(MoxReader::File(std::make_shared<MoxReader::MemorySource>(std::move(bytes))));
        const auto* text = reinterpret_cast<const Bytef*>(dump.text.data());
        return fmt::format("{} {:08x}", dump.isWhole ? "read" : "in part",
                           crc32(0, text, static_cast<uInt>(dump.text.size())));
    } catch (const MoxReader::Error&) {
        return "refused";
    }
}

void judgeDamages(const Bytes& bytes) {
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << verdict(damaged(bytes, line)) << '\n';
    }
}

/// @return nothing at the end of stdin.
std::optional<Bytes> nextFile() {
    std::array<std::uint8_t, 4> size{};
    if (!std::cin.read(reinterpret_cast<char*>(size.data()), size.size())) {
        return std::nullopt;
    }
    Bytes bytes(size[0] | std::size_t{size[1]} << 8 | std::size_t{size[2]} << 16 |
                std::size_t{size[3]} << 24);
    std::cin.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

void judgeFiles() {
    std::ios::sync_with_stdio(false);
    while (auto bytes = nextFile()) {
        std::cout << verdict(std::move(*bytes)) << std::endl;
    }
}

void writeDump(const std::filesystem::path& path) {
    try {
        const Dump dump{MoxReader::File(path)};
        std::ofstream(path.string() + ".json", std::ios::binary) << dump.text;
    } catch (const MoxReader::Error&) {
        // Refused.
    }
}

void writeDumps(const std::filesystem::path& folder) {
    using Files = std::filesystem::directory_iterator;
    const std::vector<std::filesystem::path> paths(Files{folder}, Files{});
    for (const auto& path : paths) {
        writeDump(path);
    }
}

std::vector<std::uint32_t> bitsOf(const std::vector<float>& numbers) {
    std::vector<std::uint32_t> bits;
    for (const auto number : numbers) {
        bits.push_back(std::bit_cast<std::uint32_t>(number));
    }
    return bits;
}

void printNumbers(const std::vector<std::uint32_t>& numbers) {
    for (const auto number : numbers) {
        std::cout << ' ' << number;
    }
}

void printNumbers(const std::vector<MoxReader::NodeSet>& sets) {
    for (const auto& set : sets) {
        std::cout << ' ' << set.members.size();
    }
}

template <class Read>
void printOutcome(const std::string& place, const Read& read) {
    std::cout << place;
    try {
        printNumbers(read());
    } catch (const MoxReader::Error&) {
        std::cout << " refused";
    }
    std::cout << '\n';
}

void printOutcomes(const MoxReader::File& file) {
    const auto model = MoxReader::readModel(file);
    MoxReader::HeavyData heavy(file, model);
    for (const auto& node : model.nodes()) {
        if (const auto* sets = node.nodeSets()) {
            printOutcome(std::to_string(node.id), [&] { return heavy.readNodeSets(*sets); });
        }
        if (node.geometry() == nullptr) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            printOutcome(fmt::format("{}/{}", node.id, dataset.index), [&] {
                const auto isFloat = [&] {
                    return model.resolve(dataset).elementTag == MoxReader::Format::FloatTag;
                };
                return isFloat() ? bitsOf(heavy.readFloats(dataset)) : heavy.readUnsigned(dataset);
            });
        }
    }
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 2) {
        std::cerr << "usage: dumpModel FILE [damages | outcome], or dumpModel FOLDER dumps\n";
        return 2;
    }
    const std::string mode = argc > 2 ? argv[2] : "dump";
    if (mode == "outcome") {
        printOutcomes(MoxReader::File(argv[1]));
    } else if (mode == "damages") {
        judgeDamages(bytesOf(argv[1]));
    } else if (mode == "files") {
        judgeFiles();
    } else if (mode == "dumps") {
        writeDumps(argv[1]);
    } else {
        std::cout << Dump(MoxReader::File(argv[1])).text;
    }
    return 0;
} catch (const MoxReader::Error& error) {
    std::cerr << error.what() << '\n';
    return 3;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
