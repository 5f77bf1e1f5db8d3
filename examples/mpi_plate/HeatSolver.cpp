#include "HeatSolver.h"

#include <mpi.h>

#include <array>
#include <cmath>

namespace Plate {

namespace {

constexpr double Tolerance = 1e-12; // of the residual, relative to the source

// The conductivity matrix of a square bilinear element: by how far apart two corners are.
constexpr double Same = 2.0 / 3.0;
constexpr double Beside = -1.0 / 6.0;
constexpr double Across = -1.0 / 3.0;
constexpr std::array<std::array<double, 4>, 4> Conductivity{{{Same, Beside, Across, Beside},
                                                             {Beside, Same, Beside, Across},
                                                             {Across, Beside, Same, Beside},
                                                             {Beside, Across, Beside, Same}}};

// The negative Laplacian of the exact temperature.
double sourceDensity(double x, double y) {
    return 32 * (x * (1 - x) + y * (1 - y));
}

void axpy(std::vector<double>& to, double factor, const std::vector<double>& values) {
    for (std::size_t i = 0; i < to.size(); ++i) {
        to[i] += factor * values[i];
    }
}

} // namespace

HeatSolver::HeatSolver(const Strip& strip, int rank, int rankCount)
    : strip_(strip), rank_(rank), rankCount_(rankCount), temperatures_(strip.nodeCount()) {}

std::size_t HeatSolver::solve(double factor) {
    Values residual = source(factor);
    const double enough = Tolerance * std::sqrt(product(residual, residual));
    axpy(residual, -1.0, conduct(temperatures_));
    Values direction = residual;
    double square = product(residual, residual);
    std::size_t iterations = 0;
    for (; std::sqrt(square) > enough; ++iterations) {
        const Values conducted = conduct(direction);
        const double length = square / product(direction, conducted);
        axpy(temperatures_, length, direction);
        axpy(residual, -length, conducted);
        const double next = product(residual, residual);
        for (std::size_t i = 0; i < direction.size(); ++i) {
            direction[i] = residual[i] + next / square * direction[i];
        }
        square = next;
    }
    return iterations;
}

// A quarter of the heat of each element goes to each of its corners.
HeatSolver::Values HeatSolver::source(double factor) const {
    Values heat(strip_.nodeCount());
    const double size = strip_.elementSize();
    for (std::size_t element = 0; element < strip_.elementCount(); ++element) {
        const auto corners = strip_.corners(element);
        const auto [x, y] = strip_.position(corners[0]);
        const double density = factor * sourceDensity(x + size / 2, y + size / 2);
        for (const auto corner : corners) {
            heat[corner] += density * size * size / 4;
        }
    }
    addFromNeighbours(heat);
    for (std::size_t node = 0; node < heat.size(); ++node) {
        heat[node] = strip_.isOnEdge(node) ? 0 : heat[node];
    }
    return heat;
}

HeatSolver::Values HeatSolver::conduct(const Values& values) const {
    Values heat(values.size());
    for (std::size_t element = 0; element < strip_.elementCount(); ++element) {
        const auto corners = strip_.corners(element);
        for (std::size_t row = 0; row < corners.size(); ++row) {
            for (std::size_t column = 0; column < corners.size(); ++column) {
                heat[corners[row]] += Conductivity[row][column] * values[corners[column]];
            }
        }
    }
    addFromNeighbours(heat);
    for (std::size_t node = 0; node < heat.size(); ++node) {
        heat[node] = strip_.isOnEdge(node) ? 0 : heat[node];
    }
    return heat;
}

// Both ranks that have a row of nodes end up with the sum of what their elements gave it.
void HeatSolver::addFromNeighbours(Values& values) const {
    const auto length = strip_.nodesPerRow();
    const auto lastRow = values.size() - length;
    const int below = rank_ == 0 ? MPI_PROC_NULL : rank_ - 1;
    const int above = rank_ + 1 == rankCount_ ? MPI_PROC_NULL : rank_ + 1;
    Values fromBelow(length);
    Values fromAbove(length);
    const int count = static_cast<int>(length);
    MPI_Sendrecv(values.data(), count, MPI_DOUBLE, below, 0, fromAbove.data(), count, MPI_DOUBLE, above, 0,
                 MPI_COMM_WORLD, MPI_STATUS_IGNORE);
    MPI_Sendrecv(&values[lastRow], count, MPI_DOUBLE, above, 1, fromBelow.data(), count, MPI_DOUBLE, below, 1,
                 MPI_COMM_WORLD, MPI_STATUS_IGNORE);
    for (std::size_t i = 0; i < length; ++i) {
        values[i] += fromBelow[i];
        values[lastRow + i] += fromAbove[i];
    }
}

// A shared row counts once: for the rank above it.
double HeatSolver::product(const Values& left, const Values& right) const {
    const auto shared = rank_ + 1 == rankCount_ ? 0 : strip_.nodesPerRow();
    double own = 0;
    for (std::size_t i = 0; i + shared < left.size(); ++i) {
        own += left[i] * right[i];
    }
    double all = 0;
    MPI_Allreduce(&own, &all, 1, MPI_DOUBLE, MPI_SUM, MPI_COMM_WORLD);
    return all;
}

std::vector<float> HeatSolver::flux() const {
    std::vector<float> vectors;
    const double width = 2 * strip_.elementSize();
    for (std::size_t element = 0; element < strip_.elementCount(); ++element) {
        const auto c = strip_.corners(element);
        const auto& t = temperatures_;
        vectors.push_back(static_cast<float>((t[c[0]] + t[c[3]] - t[c[1]] - t[c[2]]) / width));
        vectors.push_back(static_cast<float>((t[c[0]] + t[c[1]] - t[c[2]] - t[c[3]]) / width));
        vectors.push_back(0.0F);
    }
    return vectors;
}

double HeatSolver::exactTemperature(double x, double y, double factor) {
    return factor * 16 * x * (1 - x) * y * (1 - y);
}

} // namespace Plate
