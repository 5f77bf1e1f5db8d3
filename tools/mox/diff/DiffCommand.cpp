#include "DiffCommand.h"

#include "../common/CommandLine.h"
#include "../common/Terminal.h"
#include "../common/UsageError.h"
#include "../common/WorkLimit.h"
#include "DifferenceReport.h"
#include "ModelComparison.h"

#include <cmath>
#include <cstdlib>

namespace MoxTool {

namespace {

constexpr const char* DiffDetails =
    R"(Nodes are paired by their paths, datasets by name and step; of several with one name the first is paired
with the first and so on. Compared are types, transforms, materials, attributes, who saved the file, and all
numbers. Ids, the order of siblings and of datasets, and the blocks of the file don't count. A dataset that
links to others' numbers equals one that has the same numbers of its own, unless --links asks for more.

Floats a and b, those of transforms, materials and attributes as well, are equal if
  |a - b| <= max(abs, rel * max(|a|, |b|))
so that --abs is what allows something near zero, where --rel alone allows nothing. Not-a-number equals
not-a-number, an infinity equals itself alone. Integers, such as ids and connectivity, are compared exactly.

Of numbers that differ the worst is shown: the one that is farthest beyond what is allowed, or without --abs
and --rel the one with the greatest |a - b|. Its row (node or element) and component are counted from 0.

Exit code: 0 for equal models, 1 for different ones, 2 for trouble.

Examples:
  mox diff before.mox after.mox
  mox diff --rel 1e-5 --abs 1e-9 before.mox after.mox
  mox diff --step last before.mox after.mox
  mox diff --json before.mox after.mox > differences.json
  mox diff -q before.mox after.mox && echo same)";

std::string requireTolerance(const std::string& text) {
    char* end = nullptr;
    const auto number = std::strtod(text.c_str(), &end);
    const bool isNumber = !text.empty() && end == text.c_str() + text.size();
    const bool isFine = isNumber && std::isfinite(number) && number >= 0;
    return isFine ? "" : "must be a number from 0 up, not " + text;
}

} // namespace

std::string DiffCommand::name() const {
    return "diff";
}

std::string DiffCommand::summary() const {
    return "Report how two models differ";
}

std::optional<Command::Example> DiffCommand::example() const {
    return Example{"mox diff before.mox after.mox", "what differs between two files"};
}

void DiffCommand::addOptions(CommandLine& line) {
    line.add("A", inputA_, "The first file; - reads stdin").required();
    line.add("B", inputB_, "The second file; - reads stdin").required();
    line.add("--abs", options_.tolerance.absolute, "By how much floats may differ; 0 if not given")
        .typeName("NUMBER")
        .check(requireTolerance);
    line.add("--rel", options_.tolerance.relative, "The same, as a part of the larger one; 0 if not given")
        .typeName("NUMBER")
        .check(requireTolerance);
    line.add("-s,--step", options_.steps.text,
             std::string("Of the datasets with steps compare only those of these; ") + StepChoice::Syntax)
        .typeName("STEP");
    line.addFlag("--links", options_.links,
                 "Report also which datasets share their numbers in one file alone");
    line.addFlag("--date", options_.date, "Report also if the dates of saving differ");
    const auto json = line.addFlag("-j,--json", asJson_, "Write JSON");
    line.addFlag("-q,--quiet", quiet_, "Write nothing; the exit code says it").excludes({json});
    line.addFlag(WorkLimit::Option, options_.noLimit, WorkLimit::Help);
    line.setCheck([this] {
        if (inputA_ == "-" && inputB_ == "-") {
            throw UsageError("only one of A and B can be -");
        }
    });
    line.setDetails(DiffDetails);
}

int DiffCommand::run(Terminal& terminal) {
    NumberFile a(inputA_, options_.noLimit);
    NumberFile b(inputB_, options_.noLimit);
    const auto differences = ModelComparison(a, b, options_, terminal).run();
    const DifferenceReport report(a, b);
    if (asJson_) {
        report.writeJson(differences, options_.tolerance);
    } else if (!quiet_) {
        report.writeText(differences);
    }
    return differences.empty() ? Equal : Different;
}

} // namespace MoxTool
