#include "MshCheck.h"

#include "../../../common/Failure.h"
#include "../../../common/visibleText.h"

#include <fmt/core.h>

#include <sstream>
#include <stdexcept>
#include <utility>

namespace MoxTool {

namespace {

std::string withoutTrailingBlanks(const std::string& line) {
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

} // namespace

MshCheck::MshCheck(const std::string& path, NodesOfType nodesOfType)
    : path_(path), nodesOfType_(std::move(nodesOfType)), file_(path, std::ios::binary) {}

void MshCheck::run() {
    try {
        readSections();
    } catch (const std::runtime_error& damage) {
        const auto place =
            sectionNames_.empty() ? "" : fmt::format("${}: ", visibleText(sectionNames_.back()));
        throw Failure(path_, fmt::format("damaged: {}{}", place, damage.what()));
    }
}

void MshCheck::readSections() {
    for (std::string line; std::getline(file_, line);) {
        line = withoutTrailingBlanks(line);
        if (line.empty()) {
            continue;
        }
        if (!line.starts_with('$')) {
            throw std::runtime_error("something stands between two sections");
        }
        const auto& name = sectionNames_.emplace_back(line.substr(1));
        if (name == "MeshFormat") {
            readFormat();
        } else if (name == "Nodes" && isVersion2()) {
            readNodes2();
        } else if (name == "Nodes" && isVersion41()) {
            readNodes41();
        } else if (name == "Elements" && isVersion2()) {
            readElements2();
        } else if (name == "Elements" && isVersion41()) {
            readElements41();
        }
        skipTo("$End" + name);
    }
}

// The version; 0 for words or 1 for bytes; the size of a real number. In a file of bytes, the number 1 then
// shows their order.
void MshCheck::readFormat() {
    std::string line;
    std::getline(file_, line);
    std::istringstream words(line);
    int isBinary = 0;
    if (!(words >> formatVersion_ >> isBinary)) {
        throw std::runtime_error("it has no version");
    }
    if (isBinary == 0) {
        return;
    }
    form_ = MshNumbers::Form::Bytes;
    if (numbers().next<int>() != 1) {
        form_ = MshNumbers::Form::SwappedBytes;
    }
}

// After numbers that were read comes the rest of their line; otherwise there is a whole section to skip.
void MshCheck::skipTo(const std::string& end) {
    const bool hasRead = end == "$EndNodes" || end == "$EndElements" ? isVersion2() || isVersion41() : false;
    for (std::string line; std::getline(file_, line);) {
        line = withoutTrailingBlanks(line);
        if (line == end) {
            return;
        }
        if (hasRead && !line.empty()) {
            throw std::runtime_error("it holds more than it says");
        }
    }
    throw std::runtime_error("cut off, since its end is missing");
}

MshNumbers MshCheck::numbers() {
    return {file_, form_};
}

// Counts are words in every file of version 2.
std::size_t MshCheck::countLine() {
    std::string line;
    std::getline(file_, line);
    std::istringstream words(line);
    std::size_t count = 0;
    if (!(words >> count)) {
        throw std::runtime_error("its count is missing");
    }
    return count;
}

void MshCheck::readNodes2() {
    const auto count = countLine();
    auto source = numbers();
    for (std::size_t i = 0; i < count; ++i) {
        addNode(static_cast<std::uint64_t>(source.next<int>()));
        source.skip<double>(3);
    }
    finishNodes();
}

void MshCheck::readElements2() {
    const auto count = countLine();
    auto source = numbers();
    for (std::size_t done = 0; done < count;) {
        done += readElementBlock2(source);
    }
}

// In words, each element's type and number of tags follow its own number; in bytes, they precede a whole
// block. Returns the number of elements.
std::size_t MshCheck::readElementBlock2(MshNumbers& source) {
    const bool isSingle = source.areWords();
    if (isSingle) {
        source.next<int>();
    }
    const auto nodes = nodesOf(source.next<int>());
    const auto elements = isSingle ? 1 : source.next<int>();
    const auto tags = source.next<int>();
    if (elements < 1 || tags < 0) {
        throw std::runtime_error("a block of elements has a wrong size");
    }
    for (int element = 0; element < elements; ++element) {
        source.skip<int>(static_cast<std::size_t>(tags) + (isSingle ? 0 : 1));
        for (std::size_t node = 0; node < nodes; ++node) {
            checkNode(static_cast<std::uint64_t>(source.next<int>()));
        }
    }
    return static_cast<std::size_t>(elements);
}

void MshCheck::readNodes41() {
    auto source = numbers();
    const auto blocks = source.next<std::size_t>();
    const auto count = source.next<std::size_t>();
    source.skip<std::size_t>(2);
    for (std::size_t block = 0; block < blocks; ++block) {
        const auto dimension = source.next<int>();
        source.next<int>();
        const auto parameters = source.next<int>() != 0 ? dimension : 0;
        if (dimension < 0 || dimension > 3) {
            throw std::runtime_error("a block of nodes has a wrong dimension");
        }
        const auto nodes = source.next<std::size_t>();
        for (std::size_t node = 0; node < nodes; ++node) {
            addNode(source.next<std::size_t>());
        }
        for (std::size_t node = 0; node < nodes; ++node) {
            source.skip<double>(3 + static_cast<std::size_t>(parameters));
        }
    }
    if (nodeTags_.size() != count) {
        throw std::runtime_error(fmt::format("it holds {} nodes instead of {}", nodeTags_.size(), count));
    }
    finishNodes();
}

void MshCheck::readElements41() {
    auto source = numbers();
    const auto blocks = source.next<std::size_t>();
    const auto count = source.next<std::size_t>();
    source.skip<std::size_t>(2);
    std::size_t done = 0;
    for (std::size_t block = 0; block < blocks; ++block) {
        source.skip<int>(2);
        const auto nodes = nodesOf(source.next<int>());
        const auto elements = source.next<std::size_t>();
        for (std::size_t element = 0; element < elements; ++element) {
            source.next<std::size_t>();
            for (std::size_t node = 0; node < nodes; ++node) {
                checkNode(source.next<std::size_t>());
            }
        }
        done += elements;
    }
    if (done != count) {
        throw std::runtime_error(fmt::format("it holds {} elements instead of {}", done, count));
    }
}

void MshCheck::addNode(std::uint64_t tag) {
    if (tag < 1 || tag > INT32_MAX) {
        throw std::runtime_error("a node has a wrong number");
    }
    nodeTags_.push_back(tag);
}

void MshCheck::finishNodes() {
    std::sort(nodeTags_.begin(), nodeTags_.end());
    if (std::adjacent_find(nodeTags_.begin(), nodeTags_.end()) != nodeTags_.end()) {
        throw std::runtime_error("two nodes have the same number");
    }
}

void MshCheck::checkNode(std::uint64_t tag) const {
    if (!std::binary_search(nodeTags_.begin(), nodeTags_.end(), tag)) {
        throw std::runtime_error(
            fmt::format("an element refers to node {}, which is not there", static_cast<std::int64_t>(tag)));
    }
}

std::size_t MshCheck::nodesOf(int type) const {
    const int nodes = nodesOfType_(type);
    if (nodes < 1) {
        throw std::runtime_error(fmt::format("elements of the unknown type {}", type));
    }
    return static_cast<std::size_t>(nodes);
}

} // namespace MoxTool
