#include "CommandLine.h"
#include "HeatSolver.h"
#include "RankFile.h"
#include "Strip.h"

#include <fmt/core.h>
#include <mpi.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace Mox = Qel::Mox2;
using Plate::HeatSolver;
using Plate::RankFile;
using Plate::Strip;

struct Settings {
    std::string output = "plate.mox";
    std::size_t size = 40;
    int steps = 5;
    int dyingRank = -1; // for the test of what the others leave
};

struct Ranks {
    int rank = 0;
    int count = 1;
};

Ranks findRanks() {
    Ranks ranks;
    MPI_Comm_rank(MPI_COMM_WORLD, &ranks.rank);
    MPI_Comm_size(MPI_COMM_WORLD, &ranks.count);
    return ranks;
}

unsigned int addMesh(Mox::Model& model, const Strip& strip, int rank) {
    model.addNode(Mox::RootGroup, "Plate");
    const unsigned int shape = model.addNode(Mox::Shape, "Rank " + std::to_string(rank));
    Mox::Array2d<float> coordinates(strip.nodeCount(), 3, 0.0F);
    Mox::Array1d<unsigned int> nodeIds(strip.nodeCount());
    for (std::size_t node = 0; node < strip.nodeCount(); ++node) {
        const auto [x, y] = strip.position(node);
        coordinates(node, 0) = static_cast<float>(x);
        coordinates(node, 1) = static_cast<float>(y);
        nodeIds[node] = static_cast<unsigned int>(strip.globalNode(node));
    }
    Mox::Array1d<unsigned int> connectivity(4 * strip.elementCount());
    Mox::Array1d<unsigned int> elementIds(strip.elementCount());
    for (std::size_t element = 0; element < strip.elementCount(); ++element) {
        const auto corners = strip.corners(element);
        for (std::size_t i = 0; i < corners.size(); ++i) {
            connectivity[4 * element + i] = static_cast<unsigned int>(corners[i]);
        }
        elementIds[element] = static_cast<unsigned int>(strip.globalElement(element));
    }
    const Mox::Array1d<unsigned int> cornerCounts(strip.elementCount(), 4);
    model.addArrayProperty(Mox::Coordinates, coordinates, shape, Mox::Step{});
    model.addArrayProperty(Mox::NodeIds, nodeIds, shape, Mox::Step{});
    model.addArrayProperty(Mox::Connectivity1, connectivity, shape, Mox::Step{});
    model.addArrayProperty(Mox::Polylength1, cornerCounts, shape, Mox::Step{});
    model.addArrayProperty(Mox::ElementIds, elementIds, shape, Mox::Step{});
    return shape;
}

void addStep(Mox::Model& model, unsigned int shape, const HeatSolver& solver, int number, double factor) {
    Mox::Step step;
    step.name = "Step " + std::to_string(number);
    step.attributes.set("Factor", static_cast<float>(factor));
    const auto& temperatures = solver.temperatures();
    const std::vector<float> narrow(temperatures.begin(), temperatures.end());
    const auto flux = solver.flux();
    model.addArrayProperty("Temperature", Mox::NodeScalar, Mox::Array1d<float>(narrow), shape, step);
    model.addArrayProperty("Heat flux", Mox::ElementVector, Mox::Array2d<float>(flux.size() / 3, 3, flux),
                           shape, step);
}

double largestError(const Strip& strip, const HeatSolver& solver, double factor) {
    double own = 0;
    for (std::size_t node = 0; node < strip.nodeCount(); ++node) {
        const auto [x, y] = strip.position(node);
        own =
            std::max(own, std::abs(solver.temperatures()[node] - HeatSolver::exactTemperature(x, y, factor)));
    }
    double all = 0;
    MPI_Allreduce(&own, &all, 1, MPI_DOUBLE, MPI_MAX, MPI_COMM_WORLD);
    return all;
}

void solveAndSave(const Settings& settings, const Ranks& ranks) {
    const Strip strip(settings.size, ranks.rank, ranks.count);
    RankFile file(settings.output, ranks.rank);
    unsigned int shape = 0;
    file.save([&](Mox::Model& model) { shape = addMesh(model, strip, ranks.rank); });
    HeatSolver solver(strip, ranks.rank, ranks.count);
    for (int number = 1; number <= settings.steps; ++number) {
        const double factor = static_cast<double>(number) / settings.steps;
        const auto iterations = solver.solve(factor);
        if (ranks.rank == settings.dyingRank && number == settings.steps) {
            std::raise(SIGKILL);
        }
        file.save([&](Mox::Model& model) { addStep(model, shape, solver, number, factor); });
        const double error = largestError(strip, solver, factor);
        if (ranks.rank == 0) {
            fmt::print("Step {}: {} iterations, error {:.1e}\n", number, iterations, error);
        }
    }
    file.close();
    MPI_Barrier(MPI_COMM_WORLD);
}

// A rank that fails ends all of them: they would wait for it for ever.
int runRank(const Settings& settings) {
    const Ranks ranks = findRanks();
    try {
        if (settings.size < static_cast<std::size_t>(ranks.count)) {
            throw std::runtime_error(fmt::format("a plate of {} rows of elements is too small for {} ranks",
                                                 settings.size, ranks.count));
        }
        solveAndSave(settings, ranks);
        if (ranks.rank == 0) {
            const std::filesystem::path whole = settings.output;
            fmt::print("Saved {} to {}; mox join makes one file of them\n",
                       RankFile::pathOf(whole, 0).string(),
                       RankFile::pathOf(whole, ranks.count - 1).string());
        }
    } catch (const std::exception& failure) {
        fmt::print(stderr, "mpi_plate: rank {}: {}\n", ranks.rank, failure.what());
        MPI_Abort(MPI_COMM_WORLD, EXIT_FAILURE);
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    RankFile::holdBackTermination();
    MPI_Init(&argc, &argv);
    CLI::App app("Computes the temperatures of a plate on several processes; each saves its part.",
                 "mpi_plate");
    Settings settings;
    app.add_option("output", settings.output, "Named like the whole; rank 3 saves plate.3.mox")
        ->capture_default_str();
    app.add_option("--size", settings.size, "Elements along an edge")
        ->check(CLI::Range(2, 20000))
        ->capture_default_str();
    app.add_option("--steps", settings.steps, "Steps of the heating")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    app.add_option("--kill", settings.dyingRank,
                   "The rank that dies before its last step is saved, as a trial");
    const int code = Examples::run(app, argc, argv, [&] { runRank(settings); });
    MPI_Finalize();
    return code;
}
