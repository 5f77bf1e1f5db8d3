#include "SalvageCommand.h"

#include "../common/CommandLine.h"
#include "../common/Failure.h"
#include "../common/OutputFolder.h"
#include "../common/Terminal.h"
#include "../common/displacementText.h"
#include "../common/findFlaw.h"
#include "../common/openSource.h"
#include "../common/readFailure.h"
#include "../common/utf8Path.h"
#include "../common/writeFile.h"
#include "BlockWalk.h"
#include "SalvageReport.h"
#include "indexState.h"

#include <MoxReader/File.h>
#include <MoxReader/Format.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstdio>

namespace MoxTool {

namespace {

constexpr const char* SalvageDetails =
    R"(A file that was never closed, as after a crash, has no index; one that is cut short or damaged has blocks
that can't be read. Every compressed block that is whole is inflated into a file of its own in the new
folder OUTDIR, block-0001.raw and so on. Of a block that is cut off or damaged the beginning is saved, in
block-0007.part.raw or block-0007.damaged.raw: what could be inflated before the end came or the damage
showed. Nothing vouches for it, since the checksum of a block stands at its end. index.json lists all files
with their offsets and sizes, what stands between the blocks, and what is lost. The same list goes to stdout.

OUTDIR must not exist; it appears when it is complete. A file that is whole needs no salvaging: the command
then says so and ends with 1, unless --force is given.

Exit codes: 0 a block was saved, or the beginning of one; 1 nothing was saved, or the file is whole; 2 wrong
usage.

Examples:
  mox salvage crashed.mox saved
  mox salvage --force bracket.mox blocks)";

} // namespace

void SalvageCommand::addOptions(CommandLine& line) {
    line.add("FILE", path_, "The damaged file; - for stdin").required();
    line.add("OUTDIR", folder_, "The folder to make").required();
    line.addFlag("--force", force_, "Also if the file is whole, or is no MOX file by its first bytes");
    line.setDetails(SalvageDetails);
}

int SalvageCommand::run(Terminal& terminal) {
    explainErrors(path_, [&] {
        const auto source = openSource(path_);
        const auto index = MoxReader::scanIndex(*source);
        checkFront(index);
        const auto state = findState(source, index, terminal);
        if (state.empty() && !force_) {
            throw Failure(path_,
                          "is whole, nothing needs salvaging; --force takes its blocks out all the same");
        }
        salvage(*source, index, state.empty() ? "it is whole" : state, terminal);
    });
    return 0;
}

/// @throws Failure if this can't be a MOX file with blocks.
void SalvageCommand::checkFront(const MoxReader::RawIndex& index) const {
    if (index.fileSize == 0) {
        throw Failure(path_, "is empty, so nothing can be saved");
    }
    if (hasDamage(index, MoxReader::ErrorCode::BadSignature) && !force_) {
        throw Failure(path_, "is no MOX file by its first bytes; --force looks for blocks all the same");
    }
    if (index.fileSize <= MoxReader::Format::FirstBlockPosition) {
        throw Failure(
            path_, fmt::format("ends after {} bytes, and blocks begin at offset {}, so nothing can be saved",
                               index.fileSize, MoxReader::Format::FirstBlockPosition));
    }
}

/// @return what is wrong with the file; empty if it is whole.
std::string SalvageCommand::findState(const std::shared_ptr<MoxReader::Source>& source,
                                      const MoxReader::RawIndex& index, Terminal& terminal) const {
    if (isUnfinished(index)) {
        return "it was never closed by its writer";
    }
    if (const auto text = displacementText(index)) {
        return "it was " + *text;
    }
    if (index.end > index.fileSize) {
        return fmt::format("it is cut short: {}{} of the bytes that its index lists are missing",
                           isIncomplete(index) ? "at least " : "", index.end - index.fileSize);
    }
    const MoxReader::File file(source, index);
    const auto flaw =
        findBlockFlaw(file, [&](double part) { terminal.progress("looking for damage", part); });
    terminal.clearProgress();
    return flaw ? "it is damaged: " + *flaw : "";
}

void SalvageCommand::salvage(MoxReader::Source& source, const MoxReader::RawIndex& index,
                             const std::string& state, Terminal& terminal) const {
    OutputFolder target(pathOf(folder_));
    BlockWalk walk(source, index, target.temporaryPath());
    walk.run([&](double part) { terminal.progress("inflating blocks", part); });
    terminal.clearProgress();
    if (walk.blocks().empty()) {
        throw Failure(path_,
                      state + "; not even the beginning of a block can be inflated, so nothing can be saved");
    }
    const SalvageReport report(path_, state, index, walk);
    writeFile(target.temporaryPath() / "index.json", folder_ + "/index.json",
              [&](std::ostream& out) { out << report.toJson().dump(2) << '\n'; });
    target.commit();
    report.print(stdout);
}

} // namespace MoxTool
