#include "NodePaths.h"

#include "visibleText.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>

namespace MoxTool {

using MoxReader::Node;

namespace {

constexpr std::size_t MaxPathSize = 4096;
constexpr std::string_view CutMark = "...";
constexpr std::string_view Digits = "0123456789";

std::string escapedName(std::string_view name) {
    std::string escaped;
    for (const char letter : visibleText(name)) {
        escaped += letter == '/' ? "\\/" : std::string(1, letter);
    }
    return escaped;
}

// The place of the "#" of an id at the end; npos if there is none.
std::size_t findIdMark(std::string_view path) {
    const auto mark = path.find_last_not_of(Digits);
    const bool isMark = mark != std::string_view::npos && path[mark] == '#' && mark + 1 < path.size();
    return isMark ? mark : std::string_view::npos;
}

// Whether an odd number of backslashes precedes a place.
bool isEscaped(std::string_view path, std::size_t place) {
    const auto front = path.substr(0, place);
    const auto last = front.find_last_not_of('\\');
    const auto backslashes = last == std::string_view::npos ? front.size() : front.size() - last - 1;
    return backslashes % 2 == 1;
}

std::optional<char> hexByte(std::string_view digits) {
    unsigned char byte = 0;
    const auto* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, byte, 16);
    return digits.size() == 2 && result.ptr == end ? std::optional(static_cast<char>(byte)) : std::nullopt;
}

// Takes one escape, without its backslash, off the front of a text.
std::optional<char> takeEscape(std::string_view& rest) {
    const char letter = rest.empty() ? '\0' : rest.front();
    rest.remove_prefix(rest.empty() ? 0 : 1);
    switch (letter) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case '\\':
    case '/':
    case '#':
        return letter;
    case 'x': {
        const auto byte = hexByte(rest.substr(0, 2));
        rest.remove_prefix(byte ? 2 : 0);
        return byte;
    }
    default:
        return std::nullopt;
    }
}

// Takes a name, up to the next "/" that is not escaped, off the front of a path; nothing for a wrong escape.
std::optional<std::string> takeName(std::string_view& rest) {
    std::string name;
    while (!rest.empty() && rest.front() != '/') {
        char letter = rest.front();
        rest.remove_prefix(1);
        if (letter == '\\') {
            const auto meant = takeEscape(rest);
            if (!meant) {
                return std::nullopt;
            }
            letter = *meant;
        }
        name += letter;
    }
    return name;
}

bool isCut(std::string_view path) {
    return path.starts_with(CutMark);
}

std::uint32_t idIn(std::string_view digits) {
    std::uint32_t id = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), id);
    return result.ec == std::errc() ? id : 0;
}

} // namespace

std::size_t NodePaths::KeyHash::operator()(const Key& key) const {
    constexpr std::size_t Spread = 0x9E3779B9;
    return std::hash<std::string_view>()(key.second) ^ (key.first * Spread);
}

// A parent's id is lower than those of its children, unless the tree is damaged.
NodePaths::NodePaths(const std::vector<Node>& nodes) : nodes_(nodes), isReached_(nodes.size()) {
    for (std::uint32_t id = 1; id <= nodes_.size(); ++id) {
        const auto& node = nodes_[id - 1];
        const bool isRoot = id == 1 && node.parent == 0;
        const bool canBeReached = isRoot || (node.parent != 0 && node.parent < id);
        if (canBeReached) {
            const bool isFirst = firstOfName_.emplace(Key{node.parent, node.name}, id).second;
            isReached_[id - 1] = isFirst && (isRoot || isReached_[node.parent - 1]);
        }
    }
}

std::string NodePaths::of(std::uint32_t id) const {
    auto path = nodeOf(id) == nullptr ? "" : namesTo(id);
    if (!path.empty() && isReached_[shownId(id) - 1] && !isCut(path)) {
        const auto mark = findIdMark(path);
        return mark == std::string::npos ? path : path.insert(mark, 1, '\\');
    }
    return path + '#' + std::to_string(id);
}

// Climbs only while ids fall, so that it terminates whatever the links say.
std::string NodePaths::namesTo(std::uint32_t id) const {
    id = shownId(id);
    auto path = '/' + escapedName(nodes_[id - 1].name);
    while (nodes_[id - 1].parent != 0 && nodes_[id - 1].parent < id) {
        id = nodes_[id - 1].parent;
        const auto level = '/' + escapedName(nodes_[id - 1].name);
        if (path.size() + level.size() > MaxPathSize) {
            return std::string(CutMark) + path;
        }
        path.insert(0, level);
    }
    return path;
}

const Node* NodePaths::find(std::string_view path) const {
    const auto mark = findIdMark(path);
    if (mark == std::string_view::npos || isEscaped(path, mark)) {
        return findByNames(path);
    }
    const auto id = idIn(path.substr(mark + 1));
    const auto* node = nodeOf(id);
    return node != nullptr && (mark == 0 || namesTo(id) == path.substr(0, mark)) ? node : nullptr;
}

std::string NodePaths::whyNone(std::string_view path) const {
    const auto end = fmt::format("{}{}", path.starts_with('/') ? "" : "/", path);
    for (std::uint32_t id = 1; end.size() > 1 && id <= nodes_.size(); ++id) {
        if (end.ends_with(escapedName(nodes_[id - 1].name)) && namesTo(id).ends_with(end)) {
            return fmt::format("has no node \"{}\", but {}; mox tree shows all nodes", visibleText(path),
                               of(id));
        }
    }
    return fmt::format("has no node \"{}\"; mox tree shows all nodes", visibleText(path));
}

const Node* NodePaths::nodeOf(std::uint32_t id) const {
    return id == 0 || id > nodes_.size() ? nullptr : &nodes_[id - 1];
}

// The node whose path a node has: the shape of a geometry, any other node itself.
std::uint32_t NodePaths::shownId(std::uint32_t id) const {
    const auto& node = nodes_[id - 1];
    const auto* parent = node.parent < id ? nodeOf(node.parent) : nullptr;
    const bool isOfShape = node.geometry() != nullptr && parent != nullptr && parent->shape() != nullptr &&
                           parent->firstChild == id;
    return isOfShape ? node.parent : id;
}

const Node* NodePaths::findByNames(std::string_view path) const {
    std::uint32_t id = 0;
    while (path.starts_with('/')) {
        path.remove_prefix(1);
        const auto name = takeName(path);
        const auto found = name ? firstOfName_.find({id, *name}) : firstOfName_.end();
        if (found == firstOfName_.end()) {
            return nullptr;
        }
        id = found->second;
    }
    return path.empty() ? nodeOf(id) : nullptr;
}

} // namespace MoxTool
