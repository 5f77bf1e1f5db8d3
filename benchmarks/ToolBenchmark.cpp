// How fast the commands of mox work on a mesh with results, as a user calls them: "bytes_per_second" counts the
// numbers in the model.

#include "TemporaryFile.h"
#include "workloads/common/sampleFields.h"

#include <Qel/Mox2/Model.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace Qel::Mox2;

constexpr unsigned int Edge = 50;
constexpr unsigned int Nodes = Edge * Edge * Edge;
constexpr unsigned int Elements = (Edge - 1) * (Edge - 1) * (Edge - 1);
constexpr unsigned int Steps = 10;
constexpr std::size_t Columns = 3;
constexpr std::int64_t NumbersSize = std::int64_t{4} * (Nodes * Columns * (Steps + 1) + Elements * 9);

constexpr unsigned int nodeAt(unsigned int x, unsigned int y, unsigned int z) {
    return x + Edge * (y + Edge * z);
}

std::vector<float> coordinates() {
    std::vector<float> values;
    for (unsigned int node = 0; node < Nodes; ++node) {
        for (const unsigned int place : {node % Edge, node / Edge % Edge, node / Edge / Edge}) {
            values.push_back(0.1F * static_cast<float>(place));
        }
    }
    return values;
}

std::vector<unsigned int> connectivity() {
    std::vector<unsigned int> nodes;
    for (unsigned int element = 0; element < Elements; ++element) {
        const unsigned int x = element % (Edge - 1);
        const unsigned int y = element / (Edge - 1) % (Edge - 1);
        const unsigned int z = element / (Edge - 1) / (Edge - 1);
        for (const unsigned int level : {z, z + 1}) {
            for (const unsigned int node : {nodeAt(x, y, level), nodeAt(x + 1, y, level),
                                            nodeAt(x + 1, y + 1, level), nodeAt(x, y + 1, level)}) {
                nodes.push_back(node);
            }
        }
    }
    return nodes;
}

// A block of hexahedra with displacements for some steps.
void save(const std::string& path) {
    Model model;
    model.saveTo(path, {.overwrite = true});
    model.addNode(Group, "root");
    const unsigned int part = model.addNode(Shape, "block");
    model.addArrayProperty(Coordinates, Array2d<float>(Nodes, Columns, coordinates()), part, Step());
    model.addArrayProperty(Connectivity2, Array1d<unsigned int>(connectivity()), part, Step());
    model.addArrayProperty(Polylength2, Array1d<unsigned int>(Elements, 8), part, Step());
    for (unsigned int i = 0; i < Steps; ++i) {
        Step step{"Step " + std::to_string(i), {}};
        step.attributes.set("Time", 0.1F * static_cast<float>(i));
        const std::vector<float> values = Workloads::sampleField(Nodes, Columns, i);
        model.addArrayProperty(DisplacementVector, Array2d<float>(Nodes, Columns, values), part, step);
    }
    model.close();
}

bool succeeds(const std::string& arguments) {
    return std::system(("\"" MOX_PROGRAM "\" " + arguments + " > /dev/null 2>&1").c_str()) == 0;
}

void runCommand(benchmark::State& state, const std::string& arguments) {
    for (auto _ : state) {
        if (!succeeds(arguments)) {
            state.SkipWithError(("mox failed: " + arguments).c_str());
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * NumbersSize);
}

void check(benchmark::State& state) {
    const TemporaryFile file;
    save(file.path);
    runCommand(state, "check " + file.path);
}

void diffOfEqualFiles(benchmark::State& state) {
    const TemporaryFile file;
    const TemporaryFile other;
    save(file.path);
    save(other.path);
    runCommand(state, "diff " + file.path + " " + other.path);
}

void exportTo(benchmark::State& state, const std::string& extension, const std::string& options) {
    const TemporaryFile file;
    const TemporaryFile target(extension);
    save(file.path);
    runCommand(state, "export --overwrite " + options + " " + file.path + " " + target.path);
}

void importExodus(benchmark::State& state) {
    const TemporaryFile file;
    const TemporaryFile exodus(".e");
    save(file.path);
    if (!succeeds("export " + file.path + " " + exodus.path)) {
        state.SkipWithError("mox can't make an Exodus II file");
        return;
    }
    runCommand(state, "import --overwrite " + exodus.path + " " + file.path);
}

BENCHMARK(check)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(diffOfEqualFiles)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportTo, exodus, ".e", "")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(exportTo, vtuOfOneStep, ".vtu", "--step \"Step 3\"")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(importExodus)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
