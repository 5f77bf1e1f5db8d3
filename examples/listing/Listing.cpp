#include "Listing.h"

#include <MoxReader/Model.h>

#include <fmt/core.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace Examples {
namespace {

using MoxReader::Dataset;
using MoxReader::Node;

// Columns are padded on the right, but no line is to end in blanks.
void printLine(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    fmt::print("{}\n", line);
}

std::string text(const MoxReader::AttributeValue& value) {
    return std::visit([](const auto& alternative) { return fmt::format("{}", alternative); }, value);
}

std::string text(const MoxReader::Attributes& attributes) {
    std::string line;
    for (const auto& [key, value] : attributes) {
        line += fmt::format("{}{} = {}", line.empty() ? "" : "; ", key, text(value));
    }
    return line;
}

std::string_view typeName(const Dataset& dataset) {
    const auto* type = MoxReader::Format::findVariableType(dataset.variableType);
    return type == nullptr ? "unknown" : type->name;
}

std::string size(const Dataset& dataset) {
    const std::string_view element = dataset.elementTag == MoxReader::Format::FloatTag ? "float" : "unsigned";
    const std::uint32_t rowSize = dataset.width * MoxReader::Format::ElementSize;
    return fmt::format("{} x {} {}", rowSize == 0 ? 0 : dataset.sizeInBytes / rowSize, dataset.width,
                       element);
}

// A linked dataset has no numbers of its own: its details come from the dataset that it refers to.
void printDataset(const MoxReader::Model& model, const Dataset& dataset, const std::string& indent) {
    const Dataset& holder = model.resolve(dataset);
    const std::string origin =
        dataset.isLink ? fmt::format("numbers of node {}", holder.nodeId) : text(dataset.attributes);
    printLine(fmt::format("{}- {:<17} {:<12} {:<14} {:<17} {}", indent, dataset.name, dataset.step,
                          typeName(dataset), size(holder), origin));
}

std::string place(const MoxReader::Group& group) {
    const auto& [x, y, z] = group.translation;
    return x == 0.0F && y == 0.0F && z == 0.0F ? "" : fmt::format("at ({}, {}, {}) ", x, y, z);
}

std::string remarks(const Node& node) {
    if (const MoxReader::Group* group = node.group()) {
        return place(*group) + text(group->attributes);
    }
    if (const MoxReader::Shape* shape = node.shape()) {
        const auto& colour = shape->material.diffuse;
        return fmt::format("colour ({}, {}, {})", colour[0], colour[1], colour[2]);
    }
    return {};
}

void printNode(const MoxReader::Model& model, const Node& node, const std::string& indent) {
    printLine(fmt::format("{:>4} {}{} \"{}\" {}", node.id, indent, node.typeName, node.name, remarks(node)));
    if (const MoxReader::Geometry* geometry = node.geometry()) {
        for (const Dataset& dataset : geometry->datasets) {
            printDataset(model, dataset, indent + "       ");
        }
    }
    for (const std::uint32_t child : model.children(node.id)) {
        printNode(model, model.node(child), indent + "  ");
    }
}

/// The sums over the blocks of one stream, or of all.
struct Total {
    std::uint64_t blocks = 0;
    std::uint64_t content = 0; ///< Bytes before compression.
    std::uint64_t stored = 0;  ///< Bytes in the file.

    void add(const MoxReader::BlockRecord& block) {
        ++blocks;
        content += block.contentLength.value_or(0);
        stored += block.length;
    }
};

void printTotal(std::string_view name, const Total& total) {
    fmt::print("  {:<20} {:>6} {:>14} {:>14}\n", name, total.blocks, total.content, total.stored);
}

void printStreams(const MoxReader::File& file) {
    fmt::print("\n  {:<20} {:>6} {:>14} {:>14}\n", "Stream", "blocks", "bytes", "compressed");
    Total all;
    for (const std::string& name : file.streamNames()) {
        Total stream;
        for (const MoxReader::BlockRecord& block : file.blocks()) {
            if (block.name == name) {
                stream.add(block);
                all.add(block);
            }
        }
        printTotal(name, stream);
    }
    printTotal("Total", all);
}

void printOrigin(const MoxReader::Model& model) {
    for (const MoxReader::ModifierInfo& info : model.globalInformation().modifiers) {
        printLine(fmt::format("Saved {}{}{} {}", info.date, info.sourceName.empty() ? "" : " by ",
                              info.sourceName, info.sourceVersion));
    }
}

} // namespace

void printListing(const std::filesystem::path& path) {
    const MoxReader::File file(path);
    const MoxReader::Model model = MoxReader::readModel(file);
    printOrigin(model);
    fmt::print("\n");
    printNode(model, model.root(), "");
    printStreams(file);
    fmt::print("\n{}: {} bytes, {} nodes\n", path.string(), file.size(), model.nodes().size());
}

} // namespace Examples
