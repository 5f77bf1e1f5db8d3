#include "InfoCommand.h"

#include "../common/CommandLine.h"
#include "../common/Palette.h"
#include "../common/Terminal.h"
#include "../common/findFlaw.h"
#include "../common/foreignKind.h"
#include "../common/numberText.h"
#include "../common/openSource.h"
#include "../common/readFailure.h"
#include "../common/runOnEach.h"
#include "../common/visibleText.h"
#include "ModelSummary.h"

#include <MoxReader/Format.h>
#include <MoxReader/RawIndex.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace MoxTool {

namespace {

constexpr const char* InfoDetails =
    R"(To say whether the file is whole, every block is decompressed and the tree is read; --quick leaves the
blocks of numbers out. Of a damaged file it shows what can be read. mox check looks closer.

Exit codes, the highest of all files: 0 the file is whole, 1 it is not or can't be read, 2 wrong usage.

Examples:
  mox info bracket.mox
  mox info results/*.mox
  mox info --quick huge.mox
  xz -dc bracket.mox.xz | mox info -)";

void printLine(std::string_view label, const std::string& text) {
    fmt::print("{:<9} {}\n", label, text);
}

void printTextIfAny(std::string_view label, const std::string& text) {
    if (!text.empty()) {
        printLine(label, visibleText(text));
    }
}

// A file that does not have an index of this format has nothing to show.
void requireFormat(const MoxReader::RawIndex& index) {
    if (index.damage.empty()) {
        return;
    }
    const auto code = index.damage.front().code();
    if (code == MoxReader::ErrorCode::BadSignature || code == MoxReader::ErrorCode::UnsupportedFileVersion) {
        throw MoxReader::Error(index.damage.front());
    }
}

void printBlocks(const MoxReader::File& file) {
    std::uint64_t used = 0, stored = 0, content = 0;
    for (const auto& block : file.blocks()) {
        if (block.isEmptyEntry() || block.isIndexBlock()) {
            continue;
        }
        ++used;
        stored += block.length;
        content += block.contentLength.value_or(0);
    }
    const auto ratio = stored == 0 ? 1 : static_cast<double>(content) / static_cast<double>(stored);
    printLine("blocks", fmt::format("{} with {}, {}", used, countText(file.streamNames().size(), "name"),
                                    countText(file.index().tables.size(), "index table")));
    printLine("content",
              fmt::format("{}, compressed to {} (ratio {:.2f})", byteText(content), byteText(stored), ratio));
}

void printSave(const MoxReader::ModifierInfo& save) {
    const auto gap = save.sourceVersion.empty() ? "" : " ";
    printTextIfAny("source", save.sourceName + gap + save.sourceVersion);
    printTextIfAny("date", save.date);
    printTextIfAny("computer", save.computer);
    printTextIfAny("user", save.user);
    printTextIfAny("comment", save.comment);
}

std::string treeText(const ModelSummary& summary) {
    std::uint64_t total = 0;
    std::vector<std::string> kinds;
    for (const auto& [type, count] : summary.nodesByType) {
        total += count;
        kinds.push_back(fmt::format("{} {}", count, type.empty() ? "unset" : visibleText(type)));
    }
    return fmt::format("{} in {} ({})", countText(total, "node"), countText(summary.levels, "level"),
                       fmt::join(kinds, ", "));
}

std::string datasetsText(const ModelSummary& summary) {
    if (summary.links == 0) {
        return std::to_string(summary.datasets);
    }
    return fmt::format("{} ({} the numbers of another)", summary.datasets,
                       summary.links == 1 ? "1 of them shares"
                                          : fmt::format("{} of them share", summary.links));
}

std::string summaryText(const ModelSteps& steps) {
    if (steps.all().empty()) {
        return "none";
    }
    const auto first = visibleText(steps.all().front().name);
    if (steps.all().size() == 1) {
        return fmt::format("1 (\"{}\")", first);
    }
    return fmt::format("{} (\"{}\" to \"{}\")", steps.all().size(), first,
                       visibleText(steps.all().back().name));
}

// The range of some property of the steps, and how many have it if not all do.
void printRange(std::string_view label, const ModelSteps& steps,
                const std::function<std::optional<double>(const ModelStep&)>& property) {
    std::vector<double> numbers;
    for (const auto& step : steps.all()) {
        if (const auto number = property(step); number && !std::isnan(*number)) {
            numbers.push_back(*number);
        }
    }
    if (numbers.empty()) {
        return;
    }
    const auto [least, most] = std::ranges::minmax(numbers);
    auto text = shortNumberText(least);
    if (most > least) {
        text += " to " + shortNumberText(most);
    }
    if (numbers.size() < steps.all().size()) {
        text += fmt::format(" (of {})", countText(numbers.size(), "step"));
    }
    printLine(label, text);
}

// An import gives a mode its frequency as its time too.
void printSteps(const ModelSteps& steps) {
    printLine("steps", summaryText(steps));
    printRange("time", steps, [](const ModelStep& step) {
        return step.vibration && step.time == step.frequency ? std::nullopt : step.time;
    });
    printRange("frequency", steps, [](const ModelStep& step) { return step.frequency; });
}

} // namespace

void InfoCommand::addOptions(CommandLine& line) {
    line.add("FILE", paths_, "The files to read; - for stdin").required();
    line.addFlag("--quick", quick_, "Don't decompress the numbers");
    line.addFlag("-q,--quiet", quiet_, "Write nothing; the exit code says whether the files are whole");
    line.setCheck([this] { requireOneStdin(paths_); });
    line.setDetails(InfoDetails);
}

int InfoCommand::run(Terminal& terminal) {
    return runOnEach(*this, paths_, terminal, !quiet_,
                     [&](const std::string& path) { return runFile(path, terminal); });
}

int InfoCommand::runFile(const std::string& path, Terminal& terminal) const {
    const auto source = openSource(path);
    refuseForeignFile(path, *source);
    return explainErrors(path, [&] {
        auto index = MoxReader::scanIndex(*source);
        requireFormat(index);
        const MoxReader::File file(source, std::move(index));
        std::optional<std::string> modelFlaw;
        if (quiet_) {
            modelFlaw = findModelFlaw(file);
        } else {
            printLine("file", fmt::format("{} ({})", path == "-" ? "stdin" : visibleText(path),
                                          byteText(file.size())));
            printTextIfAny("version", file.version());
            modelFlaw = printModel(file);
            printBlocks(file);
        }
        const auto blockFlaw = findFlaw(file, terminal);
        const auto& flaw = blockFlaw ? blockFlaw : modelFlaw;
        if (!quiet_) {
            printVerdict(flaw, terminal);
        }
        return flaw ? 1 : 0;
    });
}

/// @return why the model can't be read; empty if it can.
std::optional<std::string> InfoCommand::printModel(const MoxReader::File& file) const {
    try {
        const auto model = MoxReader::readModel(file);
        const ModelSummary summary(model);
        for (const auto& save : model.globalInformation().modifiers) {
            printSave(save);
        }
        printLine("tree", treeText(summary));
        if (summary.meshNodes > 0 || summary.elements > 0) {
            printLine("mesh",
                      countText(summary.meshNodes, "node") + ", " + countText(summary.elements, "element"));
        }
        printLine("datasets", datasetsText(summary));
        printSteps(summary.steps);
        return std::nullopt;
    } catch (const MoxReader::Error& error) {
        return error.what();
    }
}

std::optional<std::string> InfoCommand::findModelFlaw(const MoxReader::File& file) const {
    try {
        MoxReader::readModel(file);
        return std::nullopt;
    } catch (const MoxReader::Error& error) {
        return error.what();
    }
}

std::optional<std::string> InfoCommand::findFlaw(const MoxReader::File& file, Terminal& terminal) const {
    if (quick_) {
        return findIndexFlaw(file);
    }
    auto flaw = findBlockFlaw(file, [&](double part) { terminal.progress("decompressing", part); });
    terminal.clearProgress();
    return flaw;
}

void InfoCommand::printVerdict(const std::optional<std::string>& flaw, Terminal& terminal) const {
    const Palette palette(terminal.outputColours());
    if (flaw) {
        printLine("whole", palette.paint(Palette::Red, "no") + ", " + visibleText(*flaw));
    } else {
        printLine("whole", palette.paint(Palette::Green, "yes") +
                               (quick_ ? ", as far as its numbers don't matter" : ""));
    }
}

} // namespace MoxTool
