#include "ImportCommand.h"

#include "../OutputFile.h"
#include "../Terminal.h"
#include "importExodus.h"

namespace MoxTool {

namespace {

constexpr const char* Details =
    R"(Each element block becomes one shape. Variables whose names differ in their last letters become one
dataset:
  x y z              a vector (disp_x, DispY, disp_Z; in a 2-D model x y, with 0 for z)
  xx yy zz xy yz zx  six values, in this order (stress_xx, sigma_XY; xz stands for zx)
Either can have a number behind it: stress_xx_1 to stress_zx_1 become stress_1. Case does not matter,
and the underscore can be missing. An incomplete group stays as single variables.
disp, displ or displacement becomes "Displacement"; rot, rotation or rotations is added to it as three
more columns.
What the file has and a model can't take is listed at the end.

Examples:
  mox import bracket.e bracket.mox
  mox import --overwrite modes.exo modes.mox)";

} // namespace

std::string ImportCommand::name() const {
    return "import";
}

std::string ImportCommand::summary() const {
    return "Convert an Exodus II results file";
}

void ImportCommand::addOptions(CLI::App& app) {
    app.add_option("MODEL.e", request.input, "The Exodus II file to read")->required();
    app.add_option("OUT.mox", request.output, "The file to write")->required();
    app.add_flag("--overwrite", request.overwrite, "Replace OUT.mox if it exists; else that is an error");
    app.footer(Details);
}

int ImportCommand::run(Terminal& terminal) {
    importExodus(request, terminal).print(terminal);
    return 0;
}

} // namespace MoxTool
