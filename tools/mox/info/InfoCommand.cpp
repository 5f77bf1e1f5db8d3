#include "InfoCommand.h"

#include "../common/CommandLine.h"
#include "../common/Palette.h"
#include "../common/Terminal.h"
#include "../common/findFlaw.h"
#include "../common/numberText.h"
#include "../common/openSource.h"
#include "../common/readFailure.h"
#include "../common/visibleText.h"
#include "ModelSummary.h"

#include <MoxReader/Format.h>
#include <MoxReader/RawIndex.h>

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace MoxTool {

namespace {

constexpr const char* Details =
    R"(To say whether the file is whole, every block is decompressed and the tree is read; --quick leaves the
blocks of numbers out. Of a damaged file it shows what can be read. mox check looks closer.

Exit codes: 0 the file is whole, 1 it is not or can't be read, 2 wrong usage.

Examples:
  mox info bracket.mox
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
    printLine("blocks", fmt::format("{} (names: {}, index tables: {})", used, file.streamNames().size(),
                                    file.index().tables.size()));
    printLine("bytes",
              fmt::format("{}, compressed {} (ratio {:.2f})", byteText(content), byteText(stored), ratio));
}

void printSave(const MoxReader::ModifierInfo& save) {
    const auto gap = save.sourceVersion.empty() ? "" : " ";
    printTextIfAny("source", save.sourceName + gap + save.sourceVersion);
    printTextIfAny("date", save.date);
    printTextIfAny("computer", save.computer);
    printTextIfAny("user", save.user);
    printTextIfAny("comment", save.comment);
}

std::string nodesText(const ModelSummary& summary) {
    std::uint64_t total = 0;
    std::vector<std::string> kinds;
    for (const auto& [type, count] : summary.nodesByType) {
        total += count;
        kinds.push_back(fmt::format("{} {}", count, type.empty() ? "unset" : visibleText(type)));
    }
    return fmt::format("{} ({})", total, fmt::join(kinds, ", "));
}

std::string stepsText(const std::vector<std::string>& steps) {
    if (steps.empty()) {
        return "none";
    }
    const auto first = visibleText(steps.front());
    if (steps.size() == 1) {
        return fmt::format("1 (\"{}\")", first);
    }
    return fmt::format("{} (\"{}\" to \"{}\")", steps.size(), first, visibleText(steps.back()));
}

} // namespace

void InfoCommand::addOptions(CommandLine& line) {
    line.add("FILE", path_, "The file to read; - for stdin").required();
    line.addFlag("--quick", quick_, "Don't decompress the numbers");
    line.setDetails(Details);
}

int InfoCommand::run(Terminal& terminal) {
    return explainErrors(path_, [&] {
        const auto source = openSource(path_);
        auto index = MoxReader::scanIndex(*source);
        requireFormat(index);
        const MoxReader::File file(source, std::move(index));
        printLine("file", fmt::format("{} ({})", visibleText(path_), byteText(file.size())));
        printLine("version", visibleText(file.version()));
        printBlocks(file);
        const auto modelFlaw = printModel(file);
        const auto blockFlaw = findFlaw(file, terminal);
        const auto& flaw = blockFlaw ? blockFlaw : modelFlaw;
        printVerdict(flaw, terminal);
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
        printLine("nodes", nodesText(summary));
        printLine("depth", fmt::format("{} levels", summary.levels));
        printLine("datasets",
                  fmt::format("{} ({} share the numbers of others)", summary.datasets, summary.links));
        printLine("steps", stepsText(summary.steps));
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
