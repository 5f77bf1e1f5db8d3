#include "TreePrinter.h"

#include "../common/datasetText.h"
#include "../common/datasetTitle.h"
#include "../common/matchesGlob.h"
#include "../common/numberText.h"
#include "../common/stepText.h"
#include "../common/treeLevels.h"
#include "../common/utf8.h"
#include "../common/visibleText.h"
#include "differenceText.h"
#include "groupDatasets.h"

#include <MoxReader/Error.h>

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace MoxTool {

using MoxReader::Dataset;

namespace {

// With unlimited indentation the output of a deep tree would grow with the square of its depth.
constexpr std::uint32_t DeepestIndent = 32;

// One long name does not move the columns of all datasets far to the right.
constexpr std::size_t WidestNames = 40;

struct ValueText {
    std::string operator()(std::uint32_t value) const { return fmt::format("{} (integer)", value); }
    std::string operator()(float value) const { return numberText(value) + " (float)"; }
    std::string operator()(double value) const { return numberText(value) + " (double)"; }
    std::string operator()(const std::string& value) const { return '"' + visibleText(value) + '"'; }
};

class AttributeRange {
public:
    void add(const std::string& value) {
        first_ = count_ == 0 ? value : first_;
        last_ = value;
        ++count_;
        isConstant_ = isConstant_ && value == first_;
    }
    std::string text(std::size_t members) const {
        return (isConstant_ ? first_ : first_ + " ... " + last_) +
               (count_ < members ? fmt::format("  (at {} of {} steps)", count_, members) : "");
    }

private:
    std::string first_;
    std::string last_;
    std::size_t count_ = 0;
    bool isConstant_ = true;
};

std::string padded(const std::string& text, std::size_t width) {
    const auto length = utf8Length(text);
    return text + std::string(2 + (width > length ? width - length : 0), ' ');
}

std::string withoutLastSpaces(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

std::string originText(const Dataset& link, const Dataset& holder, const ModelSteps& steps) {
    const auto title = holder.key == link.key ? "" : datasetTitle(holder, steps) + " of ";
    return fmt::format("-> {}node {}", title, holder.nodeId);
}

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
        return fmt::format("{}, {}", countText(sets->setCount, "set"), byteText(sets->heavySize));
    }
    return "";
}

} // namespace

TreePrinter::TreePrinter(const MoxReader::Model& model, const std::string& path, const Options& options,
                         Palette palette, std::FILE* out)
    : model_(model),
      options_(options),
      palette_(palette),
      out_(out),
      steps_(model),
      filter_(options.chosen, model, path),
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
        printDatasets(geometry->datasets, level);
    }
}

void TreePrinter::printDatasets(const std::vector<Dataset>& datasets, std::uint32_t level) const {
    const auto groups = groupsOf(datasets);
    std::size_t name = 0, type = 0, shape = 0;
    const auto widen = [](std::size_t& width, const std::string& text) {
        width = std::clamp(utf8Length(text), width, WidestNames);
    };
    for (const auto& group : groups) {
        widen(name, visibleText(group.first().name));
        widen(type, variableTypeText(group.first()));
        widen(shape, group.numbers.shape);
    }
    for (const auto& group : groups) {
        const auto typeCell = padded(variableTypeText(group.first()), type);
        printLine(level, withoutLastSpaces("- " + padded(visibleText(group.first().name), name) +
                                           palette_.paint(Palette::Cyan, typeCell) +
                                           padded(group.numbers.shape, shape) + stepsOf(group) +
                                           group.numbers.origin));
        printAttributes(group, level + 1);
    }
}

std::string TreePrinter::stepsOf(const DatasetGroup& group) const {
    const auto places = group.places(steps_);
    return places.empty() ? "" : stepsText(steps_, places) + "  ";
}

std::vector<DatasetGroup> TreePrinter::groupsOf(const std::vector<Dataset>& datasets) const {
    std::vector<DatasetGroup> groups;
    std::vector<const Dataset*> all;
    for (const auto& dataset : datasets) {
        if (filter_.takes(dataset)) {
            all.push_back(&dataset);
        }
    }
    if (!options_.steps && !options_.chosen.isMade()) {
        return groupDatasets(all, steps_, [this](const Dataset& each) { return numbersText(each); });
    }
    for (const auto* dataset : all) {
        groups.push_back({{dataset}, numbersText(*dataset)});
    }
    return groups;
}

void TreePrinter::printAttributes(const MoxReader::Attributes& attributes, std::uint32_t level) const {
    if (!options_.attributes) {
        return;
    }
    for (const auto& [key, value] : attributes) {
        printAttribute(key, std::visit(ValueText{}, value), level);
    }
}

// What differs from step to step shows as its first and its last value.
void TreePrinter::printAttributes(const DatasetGroup& group, std::uint32_t level) const {
    if (!options_.attributes) {
        return;
    }
    std::map<std::string, AttributeRange> ranges;
    for (const auto* member : group.members) {
        for (const auto& [key, value] : member->attributes) {
            ranges[key].add(std::visit(ValueText{}, value));
        }
    }
    for (const auto& [key, range] : ranges) {
        printAttribute(key, range.text(group.members.size()), level);
    }
}

void TreePrinter::printAttribute(const std::string& key, const std::string& value,
                                 std::uint32_t level) const {
    printLine(level, palette_.paint(Palette::Dim, visibleText(key) + " = " + value));
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
NumbersText TreePrinter::numbersText(const Dataset& dataset) const {
    try {
        const auto& holder = model_.resolve(dataset);
        return {elementTypeText(holder) + " " + shapeText(holder),
                dataset.isLink ? originText(dataset, holder, steps_) : ""};
    } catch (const MoxReader::Error& error) {
        return {"", fmt::format("-> {}", palette_.paint(Palette::Red, errorText(error.code())))};
    }
}

} // namespace MoxTool
