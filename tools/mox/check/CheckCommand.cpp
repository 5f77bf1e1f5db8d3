#include "CheckCommand.h"

#include "../common/CommandLine.h"
#include "../common/Terminal.h"
#include "../common/UsageError.h"
#include "../common/foreignKind.h"
#include "../common/openSource.h"
#include "../common/readFailure.h"
#include "../common/runOnEach.h"
#include "FileCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <exception>

namespace MoxTool {

namespace {

constexpr const char* CheckDetails =
    R"(Checks the index, each block with its checksum, the tree, each descriptor and each dataset, and goes on
after damage where it can. Then it looks at what the numbers say and warns of what can hardly be meant.

A line of the result: the file, the level, the number and title of the rule, the place, the reason. At the
end stands the verdict; for several files it is a table.
Levels: an error is damage; a warning is about a file that can be read; a note is for your information.

Exit codes, the highest of all files: 0 whole, 1 warnings, 2 errors (or wrong usage), 3 a file can't be
opened or read at all, or the result can't be written.

Examples:
  mox check bracket.mox
  mox check -W results/*.mox
  mox check --summary results/*.mox
  mox check --json bracket.mox
  mox check --rules
  xz -dc bracket.mox.xz | mox check -)";

} // namespace

void CheckCommand::addOptions(CommandLine& line) {
    line.add("FILE", paths_, "The files to check; - for stdin");
    line.addFlag("--rules", listRules_, "List all rules, without FILE: number, level, title, meaning");
    const auto json = line.addFlag("-j,--json", asJson_, "The result (or the rules) as JSON");
    line.addFlag("--summary", onlyTable_, "Only the table of verdicts, without findings").excludes({json});
    line.addFlag("-q,--quiet", quiet_, "Write nothing; the exit code says it").excludes({json});
    line.addFlag("-W,--strict", strict_, "Warnings count as errors: exit code 2");
    line.add("--limit", limit_, "List so many findings of each rule at most; 0 for all").showDefault();
    line.setDetails(CheckDetails);
    line.setCheck([this] {
        if (paths_.empty() && !listRules_) {
            throw UsageError("FILE is required");
        }
        if (!paths_.empty() && listRules_) {
            throw UsageError("--rules lists the rules and checks no file; leave out one of the two");
        }
        requireOneStdin(paths_);
    });
}

int CheckCommand::run(Terminal& terminal) {
    if (listRules_) {
        return runRules();
    }
    JsonStream json(stdout);
    if (asJson_) {
        json.beginObject();
        json.key("files");
        json.beginArray();
    }
    int worst = 0;
    for (const auto& path : paths_) {
        worst = std::max(worst, static_cast<int>(runFile(path, asJson_ ? &json : nullptr, terminal)));
    }
    if (asJson_) {
        json.endArray();
        json.endObject();
    } else if (!quiet_ && showsTable()) {
        fmt::print("{}", hasPrinted_ ? "\n" : "");
        printTable(stdout, verdicts_);
    }
    return worst;
}

int CheckCommand::runRules() const {
    if (!asJson_) {
        printRules(stdout);
        return 0;
    }
    JsonStream json(stdout);
    printRules(json);
    return 0;
}

// A file that can't be read does not prevent the check of the next one.
Verdict CheckCommand::runFile(const std::string& path, JsonStream* json, Terminal& terminal) {
    try {
        FindingList findings(limit_);
        const auto progress = [&](double part) { terminal.progress("checking " + path, part); };
        const auto source = openSource(path);
        explainErrors(path, [&] { checkFile(source, findings, progress); });
        terminal.clearProgress();
        const auto verdict = judge(findings, strict_);
        if (json != nullptr) {
            printReport(*json, path, findings, verdict);
        } else if (!quiet_) {
            print(path, findings, terminal);
            if (findings.count(RuleId::Signature) > 0) {
                noteKind(path, *source, terminal);
            }
        }
        verdicts_.emplace_back(path, verdict, findings);
        return verdict;
    } catch (const std::bad_alloc&) {
        std::fflush(stdout);
        terminal.error(fmt::format("mox check: {}: not enough memory to check it", path));
        if (json != nullptr) {
            printUnreadable(*json, path, "not enough memory");
        }
    } catch (const std::exception& failure) {
        if (std::ferror(stdout) != 0) {
            throw; // what is printed of the next ones would be lost too
        }
        std::fflush(stdout);
        terminal.error(fmt::format("mox check: {}", failure.what()));
        if (json != nullptr) {
            printUnreadable(*json, path, failure.what());
        }
    }
    verdicts_.emplace_back(path, Verdict::Unreadable, FindingList());
    return Verdict::Unreadable;
}

void CheckCommand::noteKind(const std::string& path, MoxReader::Source& source, Terminal& terminal) const {
    const auto kind = foreignKind(source);
    if (!kind.empty()) {
        std::fflush(stdout);
        terminal.note(fmt::format("mox check: {} is {}", path, kind));
    }
}

bool CheckCommand::showsTable() const {
    return onlyTable_ || paths_.size() > 1;
}

void CheckCommand::print(const std::string& path, const FindingList& findings, const Terminal& terminal) {
    if (!onlyTable_) {
        printFindings(stdout, path, findings, Palette(terminal.outputColours()));
        hasPrinted_ = hasPrinted_ || !findings.isEmpty();
    }
    if (!showsTable()) {
        printVerdict(stdout, path, findings);
    }
}

} // namespace MoxTool
