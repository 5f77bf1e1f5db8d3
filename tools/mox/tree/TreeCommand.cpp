#include "TreeCommand.h"

#include "../common/CommandLine.h"
#include "../common/OpenModel.h"
#include "../common/Terminal.h"

namespace MoxTool {

namespace {

constexpr const char* TreeDetails =
    R"(A line for each node: its name, its type and id, and what differs from the default of its transform or
material. Below a Geometry its datasets: name, type, element type, items x components, steps; and for a
dataset that shares the numbers of another, an arrow to where these are. A dataset of several steps is one
line, unless --steps asks for all. Steps are numbered from 1; after @ stands their time, or frequency. "..."
stands between the first and the last value of an attribute that differs from step to step.

Control characters and bytes that are no UTF-8 show as \n, \t or \xNN, a backslash as two. Below level 32
the lines are no further indented and begin with their level.

Examples:
  mox tree bracket.mox
  mox tree --attributes bracket.mox
  mox tree --steps bracket.mox
  mox tree --depth 2 car.mox
  mox tree --name '*door*' car.mox)";

} // namespace

void TreeCommand::addOptions(CommandLine& line) {
    line.add("FILE", path_, "The file to read; - for stdin").required();
    line.addFlag("-a,--attributes", options_.attributes, "With the attributes of groups and datasets");
    line.addFlag("--steps", options_.steps, "A line for each step of a dataset, with its time or frequency");
    line.add("-s,--step", options_.chosen.text,
             std::string("Only the datasets of these steps; ") + StepChoice::Syntax)
        .typeName("STEP");
    line.add("--depth", options_.depth, "Only so many levels; the root is the first").positive();
    line.add("--name", options_.pattern,
             "Only nodes whose names match, with the way to them: * stands for any text, ? for a character")
        .typeName("PATTERN");
    line.setDetails(TreeDetails);
}

int TreeCommand::run(Terminal& terminal) {
    const OpenModel opened(path_);
    const TreePrinter printer(opened.model(), path_, options_, Palette(terminal.outputColours()), stdout);
    if (printer.isEmpty()) {
        throw Failure(path_, "no node has such a name; mox tree without --name lists all");
    }
    printer.print();
    return 0;
}

} // namespace MoxTool
