#pragma once

#include "../../common/ConversionSummary.h"
#include "Choices.h"
#include "DatasetWriter.h"
#include "FloatNarrowing.h"
#include "ImportLimits.h"
#include "ShapeWriter.h"

#include <Qel/Mox2/Model.h>

namespace MoxTool {

class Terminal;

/// Where an importer puts what it reads: a model, the means to write it, and the summary of what was taken
/// and what was not.
struct ImportTarget {
    /// @param output Open and without nodes. All arguments must outlive the target.
    ImportTarget(const ImportRequest& request, Qel::Mox2::Model& output, Terminal& messages,
                 ConversionSummary& results)
        : limits(request.input),
          choices(request),
          share(request.share),
          model(output),
          datasets(output, results),
          shapes(output, results),
          terminal(messages),
          summary(results) {}

    ImportLimits limits;
    Choices choices;
    const ImportShare& share; ///< What of the input is written.
    Qel::Mox2::Model& model;
    DatasetWriter datasets;
    ShapeWriter shapes;
    FloatNarrowing narrowing;
    Terminal& terminal; ///< Shows the progress.
    ConversionSummary& summary;
};

} // namespace MoxTool
