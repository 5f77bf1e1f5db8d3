#include "JoinCommand.h"

#include "../common/CommandLine.h"
#include "../common/Terminal.h"
#include "../common/numberText.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

constexpr const char* JoinDetails =
    R"(The blocks of numbers go into OUT.mox as they are stored, at the speed of the disk, and the trees become one:
groups of one path are one group, and datasets of one path and different names or steps go into one geometry.
The order is that of the command line. Links lead where they led.

What clashes is an error: a dataset of one path, name and step in two files, or a path with different types,
transforms, attributes or materials. The roots must have one name and one type in any case.
--under and --suffix keep the files apart; in NAME, {n} stands for the place of a file on the command line,
from 1, {rank} for the same from 0, and {file} for the file's name without its extension.

A file is refused if mox check finds an error in anything but its numbers, which are not looked at; --check
looks at them as well. --force inflates every block and leaves out the datasets that can't be read: so the
join of a single damaged file is a whole one with what is left of it.

OUT.mox appears when it is complete. The inputs stay as they are.

Examples:
  mox join whole.mox part.*.mox
  mox join --under 'Rank {rank}' whole.mox rank.*.mox
  mox join --suffix ' {n}' both.mox left.mox right.mox
  mox join --force repaired.mox damaged.mox)";

constexpr std::size_t MostListed = 10;

void list(Terminal& terminal, const std::vector<std::string>& sentences, bool all) {
    const auto count = all ? sentences.size() : std::min(sentences.size(), MostListed);
    for (std::size_t i = 0; i < count; ++i) {
        terminal.note("mox join: left out: " + sentences[i]);
    }
    if (count < sentences.size()) {
        terminal.note(
            fmt::format("mox join: left out: {} more; --verbose lists all", sentences.size() - count));
    }
}

} // namespace

void JoinCommand::addOptions(CommandLine& line) {
    line.add("OUT.mox", request_.output, "The file to write").required();
    line.add("IN.mox", request_.inputs, "The files to join, in this order").required();
    line.addFlag("-f,--overwrite", request_.overwrite, "Replace OUT.mox if it exists; else that is an error");
    const auto check =
        line.addFlag("--check", check_, "Check the inputs as mox check does, with all numbers");
    line.addFlag("--force", force_, "Leave out what can't be read, and say what that is").excludes({check});
    line.addFlag("--prefer-first", request_.preferFirst, "Of what clashes, take the first file's");
    line.add("--under", request_.under, "Put what is below the root of each file into a group of this name")
        .typeName("NAME");
    line.add("--suffix", request_.suffix, "Append this to the names of the shapes of each file")
        .typeName("NAME");
    line.addFlag("-v,--verbose", verbose_, "List all that is left out, not only the first ten");
    line.setDetails(JoinDetails);
}

int JoinCommand::run(Terminal& terminal) {
    request_.check = force_ ? PartCheck::Repair : check_ ? PartCheck::Everything : PartCheck::Structure;
    const auto summary =
        joinFiles(request_, [&](const char* work, double fraction) { terminal.progress(work, fraction); });
    terminal.clearProgress();
    list(terminal, summary.leftOut, verbose_);
    terminal.note(fmt::format("mox join: {}: {} of {}, with {} and {} of numbers", request_.output,
                              countText(summary.nodes, "node"), countText(summary.files, "file"),
                              countText(summary.datasets, "dataset"), byteText(summary.numberBytes)));
    return 0;
}

} // namespace MoxTool
