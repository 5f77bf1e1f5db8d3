#pragma once

#include "../common/Palette.h"
#include "../common/StepFilter.h"
#include "DatasetGroup.h"

#include <MoxReader/Model.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// A model as an indented list, in which a dataset of many steps is one line. Takes time and memory in proportion to the model, however deep it is.
class TreePrinter {
public:
    struct Options {
        bool attributes = false;
        bool steps = false;  ///< Whether each step of a dataset has a line of its own.
        StepChoice chosen{}; ///< Only datasets of these steps, each on a line of its own.
        std::uint32_t depth = std::numeric_limits<std::uint32_t>::max(); ///< Levels; 1 is the root alone.
        std::optional<std::string> pattern{};                            ///< See matchesGlob().
    };

    /// @param shown, treeOptions, file Must outlive this object.
    /// @param path The file, for messages.
    /// @throws Failure if the model lacks the chosen steps.
    TreePrinter(const MoxReader::Model& model, const std::string& path, const Options& options,
                Palette palette, std::FILE* out);

    /// Whether the pattern matches no node.
    bool isEmpty() const { return !chosen_.front(); }
    void print() const;

private:
    std::vector<bool> chooseNodes() const;
    void printNode(const MoxReader::Node& node) const;
    void printContent(const MoxReader::Node& node) const;
    void printDatasets(const std::vector<MoxReader::Dataset>& datasets, std::uint32_t level) const;
    std::string stepsOf(const DatasetGroup& group) const;
    std::vector<DatasetGroup> groupsOf(const std::vector<MoxReader::Dataset>& datasets) const;
    void printAttributes(const MoxReader::Attributes& attributes, std::uint32_t level) const;
    void printAttributes(const DatasetGroup& group, std::uint32_t level) const;
    void printAttribute(const std::string& key, const std::string& value, std::uint32_t level) const;
    void printLine(std::uint32_t level, const std::string& text) const;
    std::string hiddenChildren(const MoxReader::Node& node) const;
    NumbersText numbersText(const MoxReader::Dataset& dataset) const;

    const MoxReader::Model& model_;
    const Options& options_;
    Palette palette_;
    std::FILE* out_;
    ModelSteps steps_;
    StepFilter filter_;
    std::vector<std::uint32_t> levels_; ///< For each node of model.nodes().
    std::vector<bool> chosen_;          ///< For each node of model.nodes(): whether it is shown.
};

} // namespace MoxTool
