#include "DiffCommand.h"

#include "../common/Terminal.h"
#include "DifferenceReport.h"

#include <cmath>

namespace MoxTool {

namespace {

constexpr const char* Details =
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
  mox diff --json before.mox after.mox > differences.json
  mox diff -q before.mox after.mox && echo same)";

std::string requireTolerance(const std::string& text) {
    double number = 0;
    const bool isFine = CLI::detail::lexical_cast(text, number) && std::isfinite(number) && number >= 0;
    return isFine ? "" : "must be a number from 0 up, not " + text;
}

} // namespace

std::string DiffCommand::name() const {
    return "diff";
}

std::string DiffCommand::summary() const {
    return "Tell in what two models differ";
}

void DiffCommand::addOptions(CLI::App& app) {
    app.add_option("A", inputA, "The first file; - reads stdin")->required();
    app.add_option("B", inputB, "The second file; - reads stdin")->required();
    app.add_option("--abs", options.tolerance.absolute, "What floats may differ by; else 0")
        ->type_name("NUMBER")
        ->check(requireTolerance);
    app.add_option("--rel", options.tolerance.relative,
                   "What part of the larger one floats may differ by; else 0")
        ->type_name("NUMBER")
        ->check(requireTolerance);
    app.add_flag("--links", options.links, "Tell also which datasets share their numbers in one file alone");
    app.add_flag("--date", options.date, "Tell also if the dates of saving differ");
    auto* json = app.add_flag("--json", asJson, "Write JSON");
    app.add_flag("-q,--quiet", quiet, "Write nothing; the exit code tells")->excludes(json);
    app.final_callback([this] {
        if (inputA == "-" && inputB == "-")
            throw CLI::ValidationError("only one of A and B can be -");
    });
    app.footer(Details);
}

int DiffCommand::run(Terminal& terminal) {
    NumberFile a(inputA);
    NumberFile b(inputB);
    const auto differences = ModelComparison(a, b, options, terminal).run();
    const DifferenceReport report(a, b);
    if (asJson)
        report.writeJson(differences, options.tolerance);
    else if (!quiet)
        report.writeText(differences);
    return differences.empty() ? Equal : Different;
}

} // namespace MoxTool
