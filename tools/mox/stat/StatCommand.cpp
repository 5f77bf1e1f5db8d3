#include "StatCommand.h"

#include "../common/CommandLine.h"
#include "../common/OpenModel.h"
#include "../common/TextTable.h"
#include "../common/numberText.h"
#include "../common/visibleText.h"

#include <fmt/format.h>

#include <cmath>

namespace MoxTool {

namespace {

constexpr const char* Details =
    R"(Three tables: by block name, by dataset, by step. "content" is before compression, "in file" after it,
"ratio" the first over the second. Datasets are compressed together, block by block, so what one of them
takes in the file is its part of its block. "shared" is what links would take if they had numbers of their
own; the last line says what they saved.

Examples:
  mox stat bracket.mox
  mox stat --bytes --rows 0 bracket.mox)";

std::string ratioText(double content, double stored) {
    return stored > 0 ? fmt::format("{:.2f}", content / stored) : "-";
}

std::string ratioText(const Tally& tally) {
    return ratioText(static_cast<double>(tally.content), tally.stored);
}

std::string percentText(double part, double whole) {
    return whole > 0 ? fmt::format("{:.1f} %", 100 * part / whole) : "-";
}

std::string rowTitle(const std::string& name) {
    return name.empty() ? "(no step)" : visibleText(name);
}

} // namespace

void StatCommand::addOptions(CommandLine& line) {
    line.add("FILE", path_, "The file to read; - for stdin").required();
    line.addFlag("--bytes", exact_, "Bytes as whole numbers, not as KiB, MiB and so on");
    line.add("--rows", rows_, "Rows of the tables by dataset and by step; 0 for all").showDefault();
    line.setDetails(Details);
}

int StatCommand::run(Terminal&) {
    const OpenModel opened(path_);
    const auto statistics =
        explainErrors(path_, [&] { return collectStatistics(opened.file(), opened.model()); });
    printBlocks(statistics.blocks);
    printDatasets("dataset", statistics.datasets.sorted());
    printDatasets("step", statistics.steps);
    printLinks(statistics.datasets.sum());
    return 0;
}

void StatCommand::printBlocks(const TallyList& blocks) const {
    const auto total = blocks.sum();
    TextTable table;
    table.add({"block", "blocks", "content", "in file", "ratio", "of file"});
    const auto add = [&](const std::string& name, const Tally& tally) {
        table.add({name, std::to_string(tally.count), bytes(tally.content), bytes(tally.stored),
                   ratioText(tally), percentText(tally.stored, total.stored)});
    };
    for (const auto& [name, tally] : blocks.rows()) {
        add(visibleText(name), tally);
    }
    add("total", total);
    table.print(stdout);
}

void StatCommand::printDatasets(const char* title, const TallyList& groups) const {
    const auto total = groups.sum();
    TextTable table;
    table.add({title, "datasets", "links", "content", "in file", "ratio", "shared"});
    const auto add = [&](const std::string& name, const Tally& tally) {
        table.add({name, std::to_string(tally.count), std::to_string(tally.links), bytes(tally.content),
                   bytes(tally.stored), ratioText(tally), bytes(tally.shared)});
    };
    const auto shown = firstRows(groups);
    for (const auto& [name, tally] : shown.rows()) {
        add(rowTitle(name), tally);
    }
    add("total", total);
    fmt::print("\n");
    table.print(stdout);
}

// The links save, before compression, the numbers that they share. What they save in the file is not known,
// so it is estimated by the ratio of all numbers.
void StatCommand::printLinks(const Tally& total) const {
    const auto content = static_cast<double>(total.content);
    const auto saved = content > 0 ? static_cast<double>(total.shared) * total.stored / content : 0;
    fmt::print("\nlinks: {} datasets share {} with others, beside {} that are stored; in the file this saves "
               "about {}\n",
               total.links, bytes(total.shared), bytes(total.content), bytes(saved));
}

TallyList StatCommand::firstRows(const TallyList& groups) const {
    const auto& all = groups.rows();
    if (rows_ == 0 || all.size() <= rows_) {
        return groups;
    }
    TallyList result;
    const auto rest = fmt::format("({} more)", all.size() - rows_);
    for (std::size_t i = 0; i < all.size(); ++i) {
        result.add(i < rows_ ? all[i].first : rest, all[i].second);
    }
    return result;
}

std::string StatCommand::bytes(std::uint64_t count) const {
    return exact_ ? std::to_string(count) : byteText(count);
}

std::string StatCommand::bytes(double count) const {
    return bytes(static_cast<std::uint64_t>(std::llround(count)));
}

} // namespace MoxTool
