#include "StatCommand.h"

#include "../common/CommandLine.h"
#include "../common/OpenModel.h"
#include "../common/Palette.h"
#include "../common/StepFilter.h"
#include "../common/Terminal.h"
#include "../common/TextTable.h"
#include "../common/UsageError.h"
#include "../common/numberText.h"
#include "../common/runOnEach.h"
#include "../common/stepText.h"
#include "../common/visibleText.h"
#include "ValueSurvey.h"
#include "printValues.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace MoxTool {

namespace {

constexpr const char* StatDetails =
    R"(Without --values three tables: by block name, by dataset, by step. "content" is before compression, "in
file" after it, "ratio" the first over the second. Datasets are compressed together, block by block, so what
one of them takes in the file is its part of its block. "shared" is what links would take if they had numbers
of their own; the last line says what they saved. After @ stands a step's time, or its frequency.

With --values: the least and the greatest number of each component of each dataset, where they are, and the
mean. How many are no number (NaN) or infinite shows if there are any; they are left out of the rest. Datasets
of one name are one over all geometries and, without --steps, over all steps. The JSON has each step.

Examples:
  mox stat bracket.mox
  mox stat --bytes --rows 0 bracket.mox
  mox stat --values bracket.mox
  mox stat --values --step last bracket.mox
  mox stat --values --json bracket.mox > values.json)";

std::string ratioText(double content, double stored) {
    return stored > 0 ? fmt::format("{:.2f}", content / stored) : "-";
}

std::string ratioText(const Tally& tally) {
    return ratioText(static_cast<double>(tally.content), tally.stored);
}

std::string percentText(double part, double whole) {
    return whole > 0 ? fmt::format("{:.1f} %", 100 * part / whole) : "-";
}

Tally sumFrom(const TallyList& groups, std::size_t first) {
    Tally sum;
    for (std::size_t i = first; i < groups.rows().size(); ++i) {
        sum += groups.rows()[i].second;
    }
    return sum;
}

// The rows in the order of the steps.
TallyList inOrder(const TallyList& groups, const ModelSteps& steps) {
    auto rows = groups.rows();
    std::ranges::stable_sort(rows, {}, [&](const TallyList::Row& row) { return steps.find(row.first); });
    TallyList result;
    for (const auto& [name, tally] : rows) {
        result.add(name, tally);
    }
    return result;
}

std::string stepTitle(const ModelSteps& steps, const std::string& name) {
    const auto place = steps.find(name);
    return place ? stepText(steps, *place) : name;
}

Json toJson(const std::string& name, const Tally& tally) {
    return {{"name", jsonText(name)},
            {"count", tally.count},
            {"links", tally.links},
            {"content", tally.content},
            {"inFile", std::llround(tally.stored)},
            {"shared", tally.shared}};
}

void writeTallies(JsonStream& out, const char* key, const TallyList& groups) {
    out.key(key);
    out.beginArray();
    for (const auto& [name, tally] : groups.rows()) {
        out.value(toJson(name, tally));
    }
    out.endArray();
}

} // namespace

void StatCommand::addOptions(CommandLine& line) {
    line.add("FILE", paths_, "The files to read; - for stdin").required();
    line.addFlag("--bytes", exact_, "Bytes as whole numbers, not as KiB, MiB and so on");
    line.add("--rows", rows_, "Rows of the tables by dataset and by step; 0 for all").showDefault();
    line.addFlag("--values", values_, "Minimum, maximum and mean of the numbers instead of bytes");
    line.addFlag("--steps", bySteps_, "With --values: a table for each step");
    line.add("-s,--step", chosen_.text, std::string("With --values: only these steps; ") + StepChoice::Syntax)
        .typeName("STEP");
    line.addFlag("-j,--json", asJson_, "Write JSON, with all rows and bytes as whole numbers");
    line.setCheck([this] { checkOptions(); });
    line.setDetails(StatDetails);
}

void StatCommand::checkOptions() const {
    requireOneStdin(paths_);
    if (!values_ && (bySteps_ || chosen_.isMade())) {
        throw UsageError(bySteps_ ? "--steps requires --values" : "--step requires --values");
    }
}

int StatCommand::run(Terminal& terminal) {
    JsonStream json(stdout);
    if (asJson_) {
        json.beginObject();
        json.key("files");
        json.beginArray();
    }
    const auto worst = runOnEach(*this, paths_, terminal, !asJson_, [&](const std::string& path) {
        if (asJson_) {
            writeFile(json, path, terminal);
        } else {
            printFile(path, terminal);
        }
        return 0;
    });
    if (asJson_) {
        json.endArray();
        json.endObject();
    }
    return worst;
}

void StatCommand::printFile(const std::string& path, Terminal& terminal) const {
    if (values_) {
        NumberFile file(path);
        const ModelSteps steps(file.model());
        const auto rows = survey(file, steps, bySteps_ || chosen_.isMade(), terminal);
        printHeading(path, terminal);
        return printValues(stdout, rows, steps);
    }
    const OpenModel opened(path);
    const auto statistics =
        explainErrors(path, [&] { return collectStatistics(opened.file(), opened.model()); });
    const ModelSteps steps(opened.model());
    printHeading(path, terminal);
    printBlocks(statistics.blocks);
    printDatasets("dataset", statistics.datasets.sorted(), visibleText);
    if (!steps.all().empty()) {
        printDatasets("step", inOrder(statistics.steps, steps), [&](const std::string& name) {
            return name.empty() ? "(no step)" : stepTitle(steps, name);
        });
    }
    printLinks(statistics.datasets.sum());
}

void StatCommand::writeFile(JsonStream& json, const std::string& path, Terminal& terminal) const {
    if (values_) {
        NumberFile file(path);
        const ModelSteps steps(file.model());
        const auto rows = survey(file, steps, true, terminal);
        json.beginObject();
        json.key("file");
        json.value(jsonText(path));
        json.key("values");
        printValues(json, rows, steps, file.model());
        return json.endObject();
    }
    const OpenModel opened(path);
    const auto statistics =
        explainErrors(path, [&] { return collectStatistics(opened.file(), opened.model()); });
    json.beginObject();
    json.key("file");
    json.value(jsonText(path));
    writeTallies(json, "blocks", statistics.blocks);
    writeTallies(json, "datasets", statistics.datasets.sorted());
    writeTallies(json, "steps", inOrder(statistics.steps, ModelSteps(opened.model())));
    json.endObject();
}

std::vector<ValueRow> StatCommand::survey(NumberFile& file, const ModelSteps& steps, bool bySteps,
                                          Terminal& terminal) const {
    const StepFilter filter(chosen_, file.model(), file.path());
    return ValueSurvey(file, steps, filter, bySteps, terminal).run();
}

void StatCommand::printHeading(const std::string& path, const Terminal& terminal) const {
    if (paths_.size() > 1) {
        fmt::print("{}\n\n", Palette(terminal.outputColours()).paint(Palette::Bold, visibleText(path)));
    }
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

void StatCommand::printDatasets(const char* title, const TallyList& groups,
                                const std::function<std::string(const std::string&)>& titleOf) const {
    const auto total = groups.sum();
    TextTable table;
    table.add({title, "datasets", "links", "content", "in file", "ratio", "shared"});
    const auto add = [&](const std::string& name, const Tally& tally) {
        table.add({name, std::to_string(tally.count), std::to_string(tally.links), bytes(tally.content),
                   bytes(tally.stored), ratioText(tally), bytes(tally.shared)});
    };
    const auto count = rows_ == 0 ? groups.rows().size() : std::min<std::size_t>(rows_, groups.rows().size());
    for (std::size_t i = 0; i < count; ++i) {
        add(titleOf(groups.rows()[i].first), groups.rows()[i].second);
    }
    if (count < groups.rows().size()) {
        add(fmt::format("({} more)", groups.rows().size() - count), sumFrom(groups, count));
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
    if (total.links == 0) {
        return;
    }
    fmt::print("\nlinks: {} {} {}{} of numbers with others; this saves about {}{} in the file\n",
               countText(total.links, "dataset"), total.links == 1 ? "shares" : "share", bytes(total.shared),
               exact_ ? " bytes" : "", bytes(saved), exact_ ? " bytes" : "");
}

std::string StatCommand::bytes(std::uint64_t count) const {
    return exact_ ? std::to_string(count) : byteText(count);
}

std::string StatCommand::bytes(double count) const {
    return bytes(static_cast<std::uint64_t>(std::llround(count)));
}

} // namespace MoxTool
