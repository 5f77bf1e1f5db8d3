#include "ImportCommand.h"

#include "../common/CommandLine.h"
#include "../common/Failure.h"
#include "../common/Platform.h"
#include "../common/StepChoice.h"
#include "../common/Terminal.h"
#include "../common/UsageError.h"
#include "../common/visibleText.h"
#include "PieceFiles.h"
#include "cgns/importCgns.h"
#include "exodus/importExodus.h"
#include "gmsh/importGmsh.h"
#include "importFormatOf.h"

#include <fmt/format.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace MoxTool {

namespace {

constexpr const char* ImportDetails =
    R"(The kind of file is recognized by its content:
  Exodus II  each element block becomes one shape
  CGNS       each zone becomes a group, each section of elements a shape in it (one for each element type
             of a mixed section; one for the cells of a structured zone)
  Gmsh .msh  each physical group becomes one shape for each element type, likewise each entity that is in
             no physical group

Variables whose names differ in their last letters become one dataset:
  x y z              a vector (disp_x, DispY, disp_Z; in a 2-D model x y, with 0 for z)
  xx yy zz xy yz zx  six values, in this order (stress_xx, sigma_XY; xz stands for zx)
Either can end in a number: stress_xx_1 to stress_zx_1 become stress_1. Case does not matter,
and the underscore can be missing. An incomplete group stays as single variables.
disp, displ or displacement becomes "Displacement"; rot, rotation or rotations is added to it as three
more columns.
What the file has and a model can't take is listed at the end.

--block, --variable and --step choose what is taken, and can be repeated. In names, * stands for any text
and ? for a character. In a CGNS file, a block is a section or a zone, and in a Gmsh file a group. Steps
keep their names in the model: the seventh is "Step 7" also where it is the first that is taken.

The pieces of a decomposed Exodus model, such as run.e.4.0 to run.e.4.3, become the whole again with
--all-parts, or by a pattern in quotes that matches them all. Nodes that pieces share are there once.
With --pieces they stay apart, as shapes such as "Web piece 0".

Examples:
  mox import bracket.e bracket.mox
  mox import --overwrite modes.exo modes.mox
  mox import --check wing.cgns wing.mox
  mox import --block 'web*' --variable 'stress_*' --step 7:last bracket.e end.mox
  mox import 'run.e.4.*' run.mox
  mox import --all-parts run.e.4.0 run.mox
  mox import --pieces -j 4 'run.e.64.*' run.mox
  mox import horn.msh horn.mox)";

constexpr unsigned int MostProcesses = 128; // each takes a descriptor, as each open file does

using Importer = ConversionSummary (*)(const ImportRequest&, Terminal&);

const std::map<ForeignFormat, Importer> Importers = {{ForeignFormat::Exodus, importExodus},
                                                     {ForeignFormat::Cgns, importCgns},
                                                     {ForeignFormat::Gmsh, importGmsh}};

ForeignFormat formatOf(const ImportRequest& request) {
    if (!request.pieces) {
        return importFormatOf(request.input);
    }
    const auto& first = request.pieces->paths.front();
    if (importFormatOf(first) != ForeignFormat::Exodus) {
        throw Failure(first, "is no Exodus II file; mox import takes pieces of those alone");
    }
    return ForeignFormat::Exodus;
}

/// What to do instead of naming two pieces of one model, as a shell does with a pattern that is not in quotes.
std::string adviceOnPieces(const std::vector<std::string>& arguments) {
    std::map<std::pair<std::string, std::size_t>, std::string> pieces;
    for (const auto& argument : arguments) {
        const auto name = PieceName::of(argument);
        if (!name) {
            continue;
        }
        const auto [first, isNew] = pieces.try_emplace({name->whole, name->count}, argument);
        if (!isNew && first->second != argument) {
            return fmt::format(
                "{} and {} are pieces of one model; put the pattern in quotes, as in '{}.{}.*', or "
                "name one piece, with --all-parts",
                visibleText(first->second), visibleText(argument), visibleText(name->whole), name->count);
        }
    }
    return "";
}

} // namespace

ImportCommand::ImportCommand() : memory_(Platform::machineMemory() / Mebibyte) {}

std::string ImportCommand::name() const {
    return "import";
}

std::string ImportCommand::summary() const {
    return "Convert an Exodus II, CGNS or Gmsh file";
}

std::optional<Command::Example> ImportCommand::example() const {
    return Example{"mox import bracket.e bracket.mox", "convert an Exodus II results file"};
}

void ImportCommand::addOptions(CommandLine& line) {
    line.add("MODEL", request_.input, "The Exodus II, CGNS or Gmsh .msh file to read").required();
    line.add("OUT.mox", request_.output, "The file to write; - for stdout").required();
    line.addFlag("-f,--overwrite", request_.overwrite, "Replace OUT.mox if it exists; else that is an error");
    line.addFlag("--check", request_.check,
                 "Check the result as mox check does, before it gets its name; an error ends the import");
    line.addFlag(
        "--all-parts", allParts_,
        "MODEL is one piece of a decomposed Exodus model, such as run.e.4.0: take all of them as one");
    line.addFlag("--pieces", request_.keepsPieces,
                 "Keep the pieces apart: each shape is of one piece, which its name says");
    line.add("-j,--jobs", processes_,
             "Import with so many processes at once: of pieces with --pieces, else of steps; Exodus II alone")
        .positive();
    line.add("--compressor", compressor_,
             "What compresses the result: zlib, or deflate, which takes about half the time; the content is "
             "the same")
        .typeName("NAME")
        .check(Compressor::problemWith)
        .showDefault();
    line.add("-p,--part,--block", request_.blocks,
             "Take this block, by its name or id, and no others but those named so")
        .typeName("NAME|ID")
        .repeatable();
    line.add("-d,--dataset,--variable", request_.variables,
             "Take this variable, by its name in MODEL, and no others but those named so")
        .typeName("NAME")
        .repeatable();
    line.add("-s,--step", request_.steps,
             std::string("Take these steps and no others; ") + StepChoice::Syntax)
        .typeName("STEP")
        .repeatable();
    line.add("--memory", memory_,
             "The most memory for reading MODEL, in MiB; 0 for any amount, else that of the machine")
        .typeName("MIB");
    line.addFlag("-v,--verbose", verbose_, "List all names of what is not taken, not only the first ten");
    line.setDetails(ImportDetails);
    line.setCheck([this] {
        if (processes_ > MostProcesses) {
            throw UsageError(fmt::format("--jobs: at most {} processes, not {}", MostProcesses, processes_));
        }
        if (request_.keepsPieces && !allParts_ && !isFilePattern(request_.input)) {
            throw UsageError(
                "--pieces takes a decomposed Exodus model: a pattern such as 'run.e.4.*', or one "
                "piece with --all-parts");
        }
    });
    line.explainExtra([this](const auto& extra) {
        std::vector<std::string> arguments = {request_.input, request_.output};
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        return adviceOnPieces(arguments);
    });
}

int ImportCommand::run(Terminal& terminal) {
    Compressor::choose(compressor_);
    request_.mostMemory = memory_ > UINT64_MAX / Mebibyte ? 0 : memory_ * Mebibyte;
    request_.processes = processes_;
    findPieces();
    Importers.at(format())(request_, terminal).print(terminal, verbose_);
    return 0;
}

ForeignFormat ImportCommand::format() const {
    const auto format = formatOf(request_);
    if (format != ForeignFormat::Exodus && request_.processes > 1) {
        throw Failure(request_.input, "is no Exodus II file; --jobs is for those alone");
    }
    return format;
}

void ImportCommand::findPieces() {
    if (allParts_) {
        request_.pieces = PieceFiles::besides(request_.input);
    } else if (isFilePattern(request_.input)) {
        request_.pieces = PieceFiles::matching(request_.input);
    }
}

} // namespace MoxTool
