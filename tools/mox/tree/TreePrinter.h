#pragma once

#include "../common/Palette.h"

#include <MoxReader/Model.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// A model as an indented list. Takes time and memory in proportion to the model, however deep it is.
class TreePrinter {
public:
    struct Options {
        bool attributes = false;
        std::uint32_t depth = std::numeric_limits<std::uint32_t>::max(); ///< Levels; 1 is the root alone.
        std::optional<std::string> pattern{};                            ///< See matchesGlob().
    };

    /// @param shown, treeOptions, file Must outlive this object.
    TreePrinter(const MoxReader::Model& model, const Options& options, Palette palette, std::FILE* out);

    /// Whether the pattern matches no node.
    bool isEmpty() const { return !chosen_.front(); }
    void print() const;

private:
    std::vector<bool> chooseNodes() const;
    void printNode(const MoxReader::Node& node) const;
    void printContent(const MoxReader::Node& node) const;
    void printDataset(const MoxReader::Dataset& dataset, std::uint32_t level) const;
    void printAttributes(const MoxReader::Attributes& attributes, std::uint32_t level) const;
    void printLine(std::uint32_t level, const std::string& text) const;
    std::string hiddenChildren(const MoxReader::Node& node) const;
    std::string numbersText(const MoxReader::Dataset& dataset) const;

    const MoxReader::Model& model_;
    const Options& options_;
    Palette palette_;
    std::FILE* out_;
    std::vector<std::uint32_t> levels_; ///< For each node of model.nodes().
    std::vector<bool> chosen_;          ///< For each node of model.nodes(): whether it is shown.
};

} // namespace MoxTool
