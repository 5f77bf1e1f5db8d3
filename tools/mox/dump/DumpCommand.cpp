#include "DumpCommand.h"

#include "../common/CommandLine.h"
#include "../common/JsonStream.h"
#include "../common/OpenModel.h"
#include "../common/Terminal.h"
#include "../common/WorkLimit.h"
#include "../common/requireNumbersFit.h"

#include <cstdio>

namespace MoxTool {

namespace {

constexpr const char* DumpDetails =
    R"(The order is that of the file for nodes and datasets and that of the alphabet for attributes, and one value
stands on one line, so that dumps can be kept in a version control system and compared. The same model
saved twice dumps the same, but for the date and for what --storage adds. A dataset that shares the numbers
of another shows where they are: "link" holds the other's node and its place in that node's list, from 0.

Numbers print so that they read back equal. JSON has no number for what is not finite: "nan", "inf" and
"-inf" stand for these, as texts. A text that is no UTF-8 shows as {"bytes": "<hexadecimal>"}. What can't be
read shows as "unreadable" with the reason, the rest prints nevertheless, and the command fails.

Examples:
  mox dump bracket.mox
  mox dump --numbers bracket.mox > bracket.json
  diff <(mox dump --no-date old.mox) <(mox dump --no-date new.mox)
  xz -dc bracket.mox.xz | mox dump -)";

} // namespace

void DumpCommand::addOptions(CommandLine& line) {
    line.add("FILE", path_, "The file to read; - for stdin").required();
    line.addFlag("--numbers", options_.numbers,
                 "With the numbers of all datasets and the members of node sets");
    line.addFlag("--no-date", options_.noDate, "Without the date on which the file was saved");
    line.addFlag("--storage", options_.storage,
                 "With the blocks and the streams of the file, and the places in them");
    line.addFlag(WorkLimit::Option, noLimit_, WorkLimit::Help);
    line.setDetails(DumpDetails);
}

int DumpCommand::run(Terminal& terminal) {
    const OpenModel opened(path_);
    if (options_.numbers && !noLimit_) {
        explainErrors(path_, [&] { requireReadableNumbersFit(path_, opened.file(), opened.model()); });
    }
    JsonStream json(stdout);
    ModelDump dump(opened.file(), opened.model(), options_, json);
    explainErrors(path_, [&] { dump.write([&](double share) { terminal.progress("dumping", share); }); });
    if (dump.damage()) {
        throw readFailure(path_, *dump.damage());
    }
    return 0;
}

} // namespace MoxTool
