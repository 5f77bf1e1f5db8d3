#pragma once

#include "../common/ModelSteps.h"
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
        : fileA_(fileA),
          fileB_(fileB),
          pathsA_(fileA.model().nodes()),
          pathsB_(fileB.model().nodes()),
          stepsA_(fileA.model()),
          stepsB_(fileB.model()) {}

    /// One line for each, such as: /car/door, Displacement, step 3 @0.5: numbers: 2 of 24 differ, ...
    /// Steps have the numbers of the first file where it has them.
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
    ModelSteps stepsA_;
    ModelSteps stepsB_;
};

} // namespace MoxTool
