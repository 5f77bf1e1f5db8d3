#include "ExportCommand.h"

#include "../common/CommandLine.h"
#include "../common/Failure.h"
#include "../common/Terminal.h"
#include "../common/UsageError.h"
#include "../common/WorkLimit.h"
#include "../common/lowerCase.h"
#include "../common/pathHelp.h"
#include "../common/utf8Path.h"
#include "exodus/exportExodus.h"
#include "vtk/exportVtk.h"

#include <filesystem>
#include <map>
#include <optional>

namespace MoxTool {

namespace {

constexpr const char* ExportDetails =
    R"(The extension of OUT decides the format, unless --format does:
  .e .exo .ex2 .g   exodus: Exodus II. A model that mox import made of such a file comes back with the same
                    numbers, names, ids, steps and times
  .vtu              vtu: VTK's XML format, for ParaView: a mesh with the results of one step
  .pvd              pvd: the same for all steps: a list of them, and a folder OUT_steps with a .vtu for each
With - for OUT a vtu goes to stdout; the other formats can't be written to a pipe.

All parts go into one mesh. --part takes a node with all that is below it, --dataset the results whose names
match: * stands for any text, ? for a character. Either can be given several times; the ids of nodes and
elements always go along. What the format can't take is listed at the end.

)";

constexpr const char* Examples = R"(

Examples:
  mox export bracket.mox bracket.pvd
  mox export bracket.mox bracket.e
  mox export -s last bracket.mox last.vtu
  mox export -p /bracket/rib -p /bracket/foot -d Displacement -d 'Stress*' bracket.mox rib.pvd
  mox export -s @0.25 bracket.mox - | gzip > quarter.vtu.gz)";

enum class ExportFormat { Exodus, Vtu, Pvd };

const std::map<std::string, ExportFormat> FormatExtensions = {
    {".e", ExportFormat::Exodus}, {".exo", ExportFormat::Exodus}, {".ex2", ExportFormat::Exodus},
    {".g", ExportFormat::Exodus}, {".vtu", ExportFormat::Vtu},    {".pvd", ExportFormat::Pvd},
};

const std::map<std::string, ExportFormat> FormatNames = {
    {"exodus", ExportFormat::Exodus}, {"vtu", ExportFormat::Vtu}, {"pvd", ExportFormat::Pvd}};

// The only format that stdout can take is what "-" stands for.
std::optional<ExportFormat> formatOf(const ExportRequest& request, const std::string& name) {
    if (!name.empty()) {
        return FormatNames.at(name);
    }
    if (request.isToStandardOutput()) {
        return ExportFormat::Vtu;
    }
    const auto known = FormatExtensions.find(lowerCase(utf8Of(pathOf(request.output).extension())));
    return known == FormatExtensions.end() ? std::nullopt : std::optional(known->second);
}

void requireFormat(const ExportRequest& request, const std::string& name) {
    const auto format = formatOf(request, name);
    if (!format) {
        throw UsageError(request.output +
                         ": the extension must be .e, .exo, .ex2, .g, .vtu or .pvd, or --format be given");
    }
    if (request.isToStandardOutput() && *format == ExportFormat::Exodus) {
        throw UsageError(
            "Exodus II can't be written to stdout, since its library goes back and forth in a file");
    }
    if (request.isToStandardOutput() && *format == ExportFormat::Pvd) {
        throw UsageError(
            "pvd can't be written to stdout, since it takes several files; choose vtu and a step");
    }
}

void refuseToReplaceInput(const ExportRequest& request) {
    std::error_code missing;
    if (!request.isToStandardOutput() &&
        std::filesystem::equivalent(pathOf(request.input), pathOf(request.output), missing)) {
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
    line.add("OUT", request_.output, "The file to write; - for stdout").required();
    line.add("--format", format_, "exodus, vtu or pvd, whatever the extension of OUT")
        .typeName("FORMAT")
        .oneOf({"exodus", "vtu", "pvd"});
    line.add("-p,--part", request_.parts, "Take this node alone, with all below it; can be repeated")
        .typeName("PATH")
        .repeatable();
    line.add("-d,--dataset", request_.datasets, "Take the results of this name alone; can be repeated")
        .typeName("PATTERN")
        .repeatable();
    line.add("-s,--step", request_.step.text, std::string("Take these steps alone; ") + StepChoice::Syntax)
        .typeName("STEP");
    line.addFlag("-f,--overwrite", request_.overwrite, "Replace OUT if it exists; else that is an error");
    line.addFlag("-v,--verbose", verbose_, "List all names of what is not taken, not only the first ten");
    line.addFlag(WorkLimit::Option, request_.noLimit, WorkLimit::Help);
    line.setCheck([this] { requireFormat(request_, format_); });
    line.setDetails(std::string(ExportDetails) + PathHelp + Examples);
}

int ExportCommand::run(Terminal& terminal) {
    refuseToReplaceInput(request_);
    exportModel(terminal).print(terminal, verbose_);
    return 0;
}

ConversionSummary ExportCommand::exportModel(Terminal& terminal) const {
    switch (*formatOf(request_, format_)) {
    case ExportFormat::Exodus:
        return exportExodus(request_, terminal);
    case ExportFormat::Vtu:
        return exportVtu(request_);
    case ExportFormat::Pvd:
        return exportPvd(request_, terminal);
    }
    throw Failure(request_.output, "has no known extension");
}

} // namespace MoxTool
