#pragma once

#include "Strip.h"

#include <cstddef>
#include <vector>

namespace Plate {

/// Steady heat flow in a plate of conductivity 1 whose edges are kept at 0, by bilinear elements. All functions are to
/// be called by all ranks together.
///
/// The source is 32 (x (1 - x) + y (1 - y)) times a factor, so the exact temperature is 16 x (1 - x) y (1 - y) times
/// that factor: at most 1. It is a mix of many modes of the plate, so the solver takes as many iterations as for
/// another source; a single sine would be solved in one.
class HeatSolver {
public:
    /// @param strip Must outlive the solver.
    HeatSolver(const Strip& strip, int rank, int rankCount);

    /// Solves by conjugate gradients, beginning with the last solution.
    /// @return the number of iterations.
    std::size_t solve(double factor);

    /// Of each node of the strip.
    const std::vector<double>& temperatures() const { return temperatures_; }
    /// x, y and z of each element of the strip, at its centre.
    std::vector<float> flux() const;

    static double exactTemperature(double x, double y, double factor);

private:
    using Values = std::vector<double>;

    Values source(double factor) const;
    Values conduct(const Values& values) const;
    void addFromNeighbours(Values& values) const;
    double product(const Values& left, const Values& right) const;

    const Strip& strip_;
    int rank_;
    int rankCount_;
    Values temperatures_;
};

} // namespace Plate
