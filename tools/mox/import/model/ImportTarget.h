#pragma once

#include "DatasetWriter.h"
#include "FloatNarrowing.h"
#include "ImportLimits.h"
#include "ImportSummary.h"
#include "ShapeWriter.h"

#include <Qel/Mox2/Model.h>

#include <string>
#include <utility>

namespace MoxTool {

class Terminal;

/// Where an importer puts what it reads: a model, the means to write it, and the summary of what was taken
/// and what was not.
struct ImportTarget {
    /// @param inputPath The path of the file that is imported, as the user named it.
    /// @param output    Open and without nodes. All others must outlive the target.
    ImportTarget(std::string inputPath, Qel::Mox2::Model& output, Terminal& messages, ImportSummary& results)
        : limits(std::move(inputPath)),
          model(output),
          datasets(output, results),
          shapes(output, results),
          terminal(messages),
          summary(results) {}

    ImportLimits limits;
    Qel::Mox2::Model& model;
    DatasetWriter datasets;
    ShapeWriter shapes;
    FloatNarrowing narrowing;
    Terminal& terminal; ///< Shows the progress.
    ImportSummary& summary;
};

} // namespace MoxTool
