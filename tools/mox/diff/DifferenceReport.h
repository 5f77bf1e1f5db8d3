#pragma once

#include "../common/NodePaths.h"
#include "../common/NumberFile.h"
#include "Difference.h"
#include "Tolerance.h"

#include <string>
#include <vector>

namespace MoxTool {

/// Writes the differences of two files to stdout.
class DifferenceReport {
public:
    /// @param fileA,fileB Must outlive this object.
    DifferenceReport(const NumberFile& fileA, const NumberFile& fileB)
        : fileA_(fileA), fileB_(fileB), pathsA_(fileA.model().nodes()), pathsB_(fileB.model().nodes()) {}

    /// One line for each, such as: /car/door, Displacement, step "Load 1": numbers: 2 of 24 differ, ...
    void writeText(const std::vector<Difference>& differences) const;

    /// One object: "files", "tolerance", "equal" and "differences". Each difference has "what" and, where
    /// they apply, "node" (its path), "idA", "idB", "dataset", "step", "a", "b" and "numbers".
    void writeJson(const std::vector<Difference>& differences, const Tolerance& tolerance) const;

private:
    std::string pathOf(const Difference& difference) const;
    std::string placeText(const Difference& difference) const;
    std::string bodyText(const Difference& difference) const;
    Json json(const Difference& difference) const;

    const NumberFile& fileA_;
    const NumberFile& fileB_;
    NodePaths pathsA_;
    NodePaths pathsB_;
};

} // namespace MoxTool
