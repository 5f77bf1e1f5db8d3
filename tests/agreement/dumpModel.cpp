// Prints what the C++ reader finds in a file, for comparison with another reader.
//
//   dumpModel FILE            prints the text of the file; ends with 3 if the reader refuses it
//   dumpModel FILE damages    reads one damage from each line of stdin and prints the result of reading
//                             the file with it: "refused", or "read" or "in part" and the checksum of its
//                             text. A damage is "cut SIZE", or "flip OFFSET MASK" with one or more pairs.
//   dumpModel FILE outcome    prints a line for each dataset and each node of sets: its place, then its
//                             numbers as bits, or "refused"; ends with 3 if the reader refuses the file

#include "ModelText.h"

#include <MoxReader/MemorySource.h>

#include <fmt/format.h>
#include <zlib.h>

#include <bit>
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
    while (words >> offset >> mask) {
        bytes.at(offset) = static_cast<std::uint8_t>(bytes.at(offset) ^ mask);
    }
    return bytes;
}

std::string verdict(Bytes bytes) {
    try {
        const MoxReader::File file(std::make_shared<MoxReader::MemorySource>(std::move(bytes)));
        const ModelText model(file);
        const auto* text = reinterpret_cast<const Bytef*>(model.text().data());
        return fmt::format("{} {:08x}", model.isWhole() ? "read" : "in part",
                           crc32(0, text, static_cast<uInt>(model.text().size())));
    } catch (const MoxReader::Error&) {
        return "refused";
    }
}

void judgeDamages(const Bytes& bytes) {
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << verdict(damaged(bytes, line)) << '\n';
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
        std::cerr << "usage: dumpModel FILE [damages | outcome]\n";
        return 2;
    }
    if (argc > 2 && argv[2] == std::string("outcome")) {
        printOutcomes(MoxReader::File(argv[1]));
    } else if (argc > 2) {
        judgeDamages(bytesOf(argv[1]));
    } else {
        std::cout << ModelText(MoxReader::File(argv[1])).text();
    }
    return 0;
} catch (const MoxReader::Error& error) {
    std::cerr << error.what() << '\n';
    return 3;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
