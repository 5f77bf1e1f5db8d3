#include "random/Support/Call.h"

#include "random/Support/quoted.h"

#include <array>
#include <charconv>
#include <sstream>

namespace RandomUse {

namespace {

std::string written(const std::string& text) {
    return quoted(text);
}

std::string written(const CText& text) {
    return "const char* " + quoted(text.text);
}

std::string written(bool value) {
    return value ? "true" : "false";
}

std::string written(int value) {
    return std::to_string(value);
}

std::string written(unsigned int value) {
    return std::to_string(value) + "u";
}

std::string written(float value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return std::string(text.data(), end) + "f";
}

std::string written(const StepUse& step);
std::string written(const std::pair<std::string, AttributePairs>& path);

template <typename Item>
std::string written(const std::vector<Item>& items) {
    std::string text = "{";
    for (const Item& item : items) {
        text += (text.size() > 1 ? ", " : "") + written(item);
    }
    return text + "}";
}

std::string written(const AttributePairs& pairs) {
    std::string text = "{";
    for (const auto& [key, value] : pairs) {
        text += (text.size() > 1 ? ", " : "") + quoted(key) + ": " +
                std::visit([](const auto& held) { return written(held); }, value);
    }
    return text + "}";
}

std::string written(const PropertyPairs& pairs) {
    std::string text = "{";
    for (const auto& [key, value] : pairs) {
        text += (text.size() > 1 ? ", " : "") + std::to_string(key) + ": " +
                std::visit([](const auto& held) { return written(held); }, value);
    }
    return text + "}";
}

std::string written(const StepUse& step) {
    return "Step{" + quoted(step.name) + ", " + written(step.attributes) + "}";
}

std::string written(const std::pair<std::string, AttributePairs>& path) {
    return quoted(path.first) + ": " + written(path.second);
}

template <typename Argument>
std::string further(const std::optional<Argument>& argument) {
    return argument ? ", " + written(*argument) : "";
}

std::string written(const SaveTo& call) {
    return "saveTo(" + quoted(call.file) + ", " + (call.overwrite ? "overwrite" : "no overwrite") +
           ", source " + quoted(call.sourceName) + " version " + quoted(call.sourceVersion) + " comment " +
           quoted(call.sourceComment) + ")";
}

std::string written(const Close&) {
    return "close()";
}

std::string written(const Destroy&) {
    return "destroyed and made anew";
}

std::string written(const Share&) {
    return "assigned to another model, which takes the calls from here on";
}

std::string written(const AddNode& call) {
    return "addNode(" + std::to_string(call.type) + ", " + quoted(call.name) + further(call.attributes) + ")";
}

std::string written(const SetCurrentNodeId& call) {
    return "setCurrentNodeId(" + std::to_string(call.id) + ")";
}

std::string written(const MoveToParentNode&) {
    return "moveToParentNode()";
}

std::string written(const GetNodeId& call) {
    return "getNodeId(" + quoted(call.path) + further(call.separator) + ")";
}

std::string written(const GetNodeIdOfNames& call) {
    return "getNodeId(" + written(call.names) + ")";
}

std::string written(const SetNodeData& call) {
    return "setNodeData(" + std::to_string(call.id) + ", " + written(call.properties) +
           further(call.attributes) + ")";
}

std::string written(const AddPaths& call) {
    return "addAssemblyComponents(" + written(call.paths) + further(call.separator) + ")";
}

std::string written(const AddPathsWithAttributes& call) {
    return "addAssemblyComponents(map " + written(call.paths) + further(call.separator) + ")";
}

std::string makingOf(const AddArray& call) {
    constexpr std::array<const char*, MakingCount> names = {
        "sized", "filled", "of a vector", "of a range", "copied", "assigned", "of a longer vector"};
    return names.at(static_cast<std::size_t>(call.making));
}

std::string arrayOf(const AddArray& call) {
    std::string text = call.isTable ? "Array2d<" : "Array1d<";
    text += call.isFloat ? "float" : "unsigned int";
    text += ">(" + std::to_string(call.rows);
    text += call.isTable ? ", " + std::to_string(call.cols) : "";
    return text + ", " + makingOf(call) + ")";
}

std::string idsOf(const AddArray& call) {
    if (call.isNegativeIdCount) {
        return "Array1d<unsigned int>(0x80000000)";
    }
    return call.isSingleId ? written(call.ids.front()) : "ids " + written(call.ids);
}

std::string written(const AddArray& call) {
    return "addArrayProperty(" + (call.name ? quoted(*call.name) + ", " : "") + std::to_string(call.type) +
           ", " + arrayOf(call) + ", " + idsOf(call) + ", " +
           (call.isSingleStep ? written(call.steps.front()) : "StepList" + written(call.steps)) +
           further(call.attributes) + ")";
}

std::string written(const SetBlockSize& call) {
    return call.value ? "set the block size to " + quoted(*call.value) : "remove the block size";
}

} // namespace

std::string describe(const Call& call) {
    const std::string text = std::visit([](const auto& action) { return written(action); }, call.action);
    return std::holds_alternative<SetBlockSize>(call.action)
               ? text
               : "model " + std::to_string(call.model) + ": " + text;
}

std::string describe(const Sequence& calls) {
    std::ostringstream text;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        text << "  " << i + 1 << ". " << describe(calls[i]) << '\n';
    }
    return text.str();
}

} // namespace RandomUse
