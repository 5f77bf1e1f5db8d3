#include "Analysis.h"
#include "BeamTheory.h"
#include "BoltedCantilever.h"
#include "CommandLine.h"
#include "SaveModel.h"

#include <fmt/core.h>

#include <cstddef>
#include <string>

namespace {

namespace Bolted = Cantilever::BoltedCantilever;

void printDeflection(const Cantilever::Analysis& analysis) {
    const Cantilever::LoadStep& last = analysis.steps.back();
    const auto [whole, beam] = Bolted::tipDeflection(analysis.mesh, last.displacements);
    fmt::print("Tip deflection at {:.0f} N: {:.3f} mm\n", last.load, whole);
    fmt::print("  bending of the beam: {:.3f} mm (beam theory: {:.3f} mm)\n", beam,
               tipDeflection(Bolted::TheBeam, analysis.material, last.load));
    fmt::print("  give of end plate and bolts: {:.3f} mm\n", whole - beam);
    fmt::print("Largest von Mises stress: {:.1f} MPa\n", last.vonMises.maxCoeff());
}

void printFrequencies(const Cantilever::Analysis& analysis) {
    const Cantilever::Beam& upright = Bolted::TheBeam;
    const Cantilever::Beam lying{upright.length, upright.height, upright.width};
    fmt::print("Natural frequencies in Hz:");
    for (const Cantilever::Mode& mode : analysis.modes) {
        fmt::print(" {:.1f}", mode.frequency);
    }
    fmt::print("\n  first bending of a rigidly clamped beam: {:.1f} sideways, {:.1f} up and down\n",
               firstBendingFrequency(lying, analysis.material),
               firstBendingFrequency(upright, analysis.material));
}

void printSummary(const Cantilever::Analysis& analysis) {
    fmt::print("Bolted cantilever: {} hexahedra, {} nodes, {} equations\n", analysis.mesh.elements.size(),
               analysis.mesh.nodes.rows(), analysis.freeCount);
    printDeflection(analysis);
    printFrequencies(analysis);
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Analyses a beam on a bolted end plate and saves the model with its results.", "cantilever");
    std::string output = "cantilever.mox";
    std::size_t size = 1;
    app.add_option("output", output, "The file to save, replaced if it exists")->capture_default_str();
    app.add_option("--size", size, "Refinement of the mesh; 2 halves the elements' edges")
        ->check(CLI::Range(1, 4))
        ->capture_default_str();
    return Examples::run(app, argc, argv, [&] {
        const Cantilever::Analysis analysis = Cantilever::analyse(size);
        saveModel(analysis, output);
        printSummary(analysis);
        fmt::print("Saved {}\n", output);
    });
}
