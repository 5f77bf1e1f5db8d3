#include "ExportCommand.h"

#include "../common/CommandLine.h"
#include "../common/Failure.h"
#include "../common/Terminal.h"
#include "../common/WorkLimit.h"
#include "../common/lowerCase.h"
#include "exodus/exportExodus.h"
#include "vtk/exportVtk.h"

#include <array>
#include <filesystem>
#include <map>

namespace MoxTool {

namespace {

constexpr const char* Details =
    R"(The extension of OUT decides the format:
  .e .exo .ex2 .g   Exodus II. A model that mox import made of such a file comes back with the same
                    numbers, names, ids, steps and times
  .vtu              VTK's XML format, for ParaView: a mesh with the results of one step
  .pvd              the same for all steps: a list of them, and a folder OUT_steps with a .vtu for each
All parts go into one mesh. What the format can't take is listed at the end.

Examples:
  mox export bracket.mox bracket.e
  mox export bracket.mox bracket.pvd
  mox export --step last bracket.mox last.vtu)";

enum class Format { Exodus, Vtu, Pvd };

const std::map<std::string, Format> Formats = {
    {".e", Format::Exodus}, {".exo", Format::Exodus}, {".ex2", Format::Exodus},
    {".g", Format::Exodus}, {".vtu", Format::Vtu},    {".pvd", Format::Pvd},
};

std::string extensionOf(const std::string& path) {
    return lowerCase(std::filesystem::path(path).extension().string());
}

std::string checkExtension(const std::string& path) {
    return Formats.contains(extensionOf(path))
               ? ""
               : path + ": the extension must be .e, .exo, .ex2, .g, .vtu or .pvd";
}

void refuseToReplaceInput(const ExportRequest& request) {
    std::error_code missing;
    if (std::filesystem::equivalent(request.input, request.output, missing)) {
        throw Failure(request.output, "is the input itself");
    }
}

} // namespace

std::string ExportCommand::name() const {
    return "export";
}

std::string ExportCommand::summary() const {
    return "Write the model for ParaView (.vtu, .pvd) or as Exodus II";
}

std::optional<Command::Example> ExportCommand::example() const {
    return Example{"mox export bracket.mox bracket.pvd", "for ParaView, or back to Exodus II"};
}

void ExportCommand::addOptions(CommandLine& line) {
    line.add("FILE", request_.input, "The file to read; - for stdin").required();
    line.add("OUT", request_.output, "The file to write").required().check(checkExtension);
    line.add("--step", request_.step.text, std::string("Take these steps alone; ") + StepChoice::Syntax)
        .typeName("STEP");
    line.addFlag("--overwrite", request_.overwrite, "Replace OUT if it exists; else that is an error");
    line.addFlag("--verbose", verbose_, "List all names of what is not taken, not only the first ten");
    line.addFlag(WorkLimit::Option, request_.noLimit, WorkLimit::Help);
    line.setDetails(Details);
}

int ExportCommand::run(Terminal& terminal) {
    refuseToReplaceInput(request_);
    exportModel(terminal).print(terminal, verbose_);
    return 0;
}

ConversionSummary ExportCommand::exportModel(Terminal& terminal) const {
    switch (Formats.at(extensionOf(request_.output))) {
    case Format::Exodus:
        return exportExodus(request_, terminal);
    case Format::Vtu:
        return exportVtu(request_);
    case Format::Pvd:
        return exportPvd(request_, terminal);
    }
    throw Failure(request_.output, "has no known extension");
}

} // namespace MoxTool
