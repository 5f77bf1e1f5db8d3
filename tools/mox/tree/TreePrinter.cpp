#include "TreePrinter.h"

#include "../common/datasetText.h"
#include "../common/matchesGlob.h"
#include "../common/numberText.h"
#include "../common/treeLevels.h"
#include "../common/visibleText.h"
#include "differenceText.h"

#include <MoxReader/Error.h>

#include <fmt/format.h>

#include <algorithm>

namespace MoxTool {

namespace {

// With unlimited indentation the output of a deep tree would grow with the square of its depth.
constexpr std::uint32_t DeepestIndent = 32;

struct ValueText {
    std::string operator()(std::uint32_t value) const { return fmt::format("{} (integer)", value); }
    std::string operator()(float value) const { return numberText(value) + " (float)"; }
    std::string operator()(double value) const { return numberText(value) + " (double)"; }
    std::string operator()(const std::string& value) const { return '"' + visibleText(value) + '"'; }
};

std::string typeText(const MoxReader::Node& node) {
    return node.typeName.empty() ? "(unset)" : visibleText(node.typeName);
}

std::string contentText(const MoxReader::Node& node) {
    if (const auto* group = node.group()) {
        return differenceText(*group);
    }
    if (const auto* shape = node.shape()) {
        return differenceText(shape->material);
    }
    if (const auto* sets = node.nodeSets()) {
        return fmt::format("{} sets, {}", sets->setCount, byteText(sets->heavySize));
    }
    return "";
}

} // namespace

TreePrinter::TreePrinter(const MoxReader::Model& model, const Options& options, Palette palette,
                         std::FILE* out)
    : model_(model),
      options_(options),
      palette_(palette),
      out_(out),
      levels_(treeLevels(model)),
      chosen_(chooseNodes()) {}

void TreePrinter::print() const {
    if (isEmpty()) {
        return;
    }
    std::vector<std::uint32_t> waiting{model_.root().id};
    while (!waiting.empty()) {
        const auto& node = model_.node(waiting.back());
        waiting.pop_back();
        printNode(node);
        if (levels_[node.id - 1] >= options_.depth) {
            continue;
        }
        const auto children = model_.children(node.id);
        std::copy_if(children.rbegin(), children.rend(), std::back_inserter(waiting),
                     [this](std::uint32_t id) { return chosen_[id - 1]; });
    }
}

// Parents have lower ids than their children, so one pass from the end carries each choice up to the root.
std::vector<bool> TreePrinter::chooseNodes() const {
    const auto& nodes = model_.nodes();
    std::vector<bool> choice(nodes.size(), !options_.pattern);
    if (!options_.pattern) {
        return choice;
    }
    for (std::size_t i = nodes.size(); i-- > 0;) {
        const auto& node = nodes[i];
        const bool matches =
            levels_[node.id - 1] <= options_.depth && matchesGlob(*options_.pattern, node.name);
        choice[node.id - 1] = choice[node.id - 1] || matches;
        if (choice[node.id - 1] && node.parent != 0) {
            choice[node.parent - 1] = true;
        }
    }
    return choice;
}

void TreePrinter::printNode(const MoxReader::Node& node) const {
    const auto content = contentText(node);
    printLine(levels_[node.id - 1],
              palette_.paint(Palette::Bold, visibleText(node.name)) + "  " +
                  palette_.paint(Palette::Cyan, fmt::format("{} {}", typeText(node), node.id)) +
                  (content.empty() ? "" : "  " + content) + hiddenChildren(node));
    printContent(node);
}

void TreePrinter::printContent(const MoxReader::Node& node) const {
    const auto level = levels_[node.id - 1] + 1;
    if (const auto* group = node.group()) {
        printAttributes(group->attributes, level);
    }
    if (const auto* geometry = node.geometry()) {
        for (const auto& dataset : geometry->datasets) {
            printDataset(dataset, level);
        }
    }
}

void TreePrinter::printDataset(const MoxReader::Dataset& dataset, std::uint32_t level) const {
    printLine(level,
              fmt::format("- {}  {}  {}", datasetTitle(dataset),
                          palette_.paint(Palette::Cyan, variableTypeText(dataset)), numbersText(dataset)));
    printAttributes(dataset.attributes, level + 1);
}

void TreePrinter::printAttributes(const MoxReader::Attributes& attributes, std::uint32_t level) const {
    if (!options_.attributes) {
        return;
    }
    for (const auto& [key, value] : attributes) {
        printLine(level,
                  palette_.paint(Palette::Dim, visibleText(key) + " = " + std::visit(ValueText{}, value)));
    }
}

void TreePrinter::printLine(std::uint32_t level, const std::string& text) const {
    if (level <= DeepestIndent) {
        fmt::print(out_, "{:{}}{}\n", "", 2 * (level - 1), text);
    } else {
        fmt::print(out_, "{:{}}[{}] {}\n", "", 2 * DeepestIndent, level, text);
    }
}

std::string TreePrinter::hiddenChildren(const MoxReader::Node& node) const {
    const auto count = model_.children(node.id).size();
    if (levels_[node.id - 1] < options_.depth || count == 0) {
        return "";
    }
    return palette_.paint(Palette::Dim, fmt::format("  (+ {} below)", count));
}

// A link that leads nowhere is damage to one dataset, and the rest is worth showing.
std::string TreePrinter::numbersText(const MoxReader::Dataset& dataset) const {
    try {
        const auto& holder = model_.resolve(dataset);
        auto numbers = elementTypeText(holder) + " " + shapeText(holder);
        if (!dataset.isLink) {
            return numbers;
        }
        return fmt::format("{}  -> {} of node {}", numbers, datasetTitle(holder), holder.nodeId);
    } catch (const MoxReader::Error& error) {
        return fmt::format("-> {}", palette_.paint(Palette::Red, errorText(error.code())));
    }
}

} // namespace MoxTool
