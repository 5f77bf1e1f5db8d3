#include "HexDump.h"

#include <sstream>
#include <stdexcept>

namespace {

constexpr const char* Opening = "```hexdump ";
constexpr const char* Closing = "```";

void addWord(HexDump& dump, const std::string& word) {
    std::size_t used = 0;
    const auto byte = static_cast<std::uint8_t>(std::stoul(word, &used, 16));
    if (used != 2) {
        throw std::invalid_argument("no byte");
    }
    const bool isRepeated = used < word.size() && word[used] == '*';
    const auto count = isRepeated ? std::stoul(word.substr(used + 1)) : 1;
    if (!isRepeated && used != word.size()) {
        throw std::invalid_argument("no byte");
    }
    dump.bytes.insert(dump.bytes.end(), count, byte);
}

void addLine(HexDump& dump, const std::string& line) {
    const auto bar = line.find('|');
    std::istringstream words(line.substr(0, bar));
    std::string word;
    words >> word;
    if (bar == std::string::npos || std::stoul(word, nullptr, 16) != dump.bytes.size()) {
        throw std::invalid_argument("no bar, or a wrong offset");
    }
    while (words >> word) {
        addWord(dump, word);
    }
}

} // namespace

std::vector<HexDump> readHexDumps(const std::string& page) {
    std::vector<HexDump> dumps;
    std::istringstream lines(page);
    bool isInside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(Opening)) {
            dumps.push_back({line.substr(std::string(Opening).size()), {}});
            isInside = true;
        } else if (line == Closing) {
            isInside = false;
        } else if (isInside) {
            try {
                addLine(dumps.back(), line);
            } catch (const std::logic_error& error) {
                throw std::runtime_error(line + ": " + error.what());
            }
        }
    }
    return dumps;
}
