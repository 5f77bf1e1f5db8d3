#include "SplitCommand.h"

#include "../common/CommandLine.h"
#include "../common/Terminal.h"
#include "../common/numberText.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

constexpr const char* SplitDetails =
    R"(Each file has a child of the root, or with --shapes a shape, with all that is below it, and the groups that
it is in. The files are numbered, so that mox join makes the same model of them again. Siblings of one name
stay in one file.

Numbers that several files share, as coordinates often are, get into each. A block of numbers that no two
files need goes into its file as it is stored.

OUTDIR must not exist; it appears when it is complete.

Examples:
  mox split assembly.mox parts
  mox split --shapes assembly.mox parts
  mox join again.mox parts/*.mox)";

} // namespace

void SplitCommand::addOptions(CommandLine& line) {
    line.add("FILE", request_.input, "The file to split").required();
    line.add("OUTDIR", request_.folder, "The folder to make").required();
    line.addFlag("--shapes", byShape_, "A file for each shape, not for each child of the root");
    line.setDetails(SplitDetails);
}

int SplitCommand::run(Terminal& terminal) {
    request_.kind = byShape_ ? PartKind::Shape : PartKind::Child;
    const auto summary =
        splitFile(request_, [&](const char* work, double fraction) { terminal.progress(work, fraction); });
    terminal.clearProgress();
    terminal.note(fmt::format("mox split: {}: {}, {} copied, {} divided", request_.folder,
                              countText(summary.files, "file"), countText(summary.copiedBlocks, "block"),
                              summary.dividedBlocks));
    return 0;
}

} // namespace MoxTool
