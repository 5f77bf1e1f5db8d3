#pragma once

#include "../../common/ConversionSummary.h"
#include "../ImportRequest.h"
#include "ImportTarget.h"

#include <functional>

namespace MoxTool {

/// Puts what an input file holds into a target, and notes what it took and what not.
using ModelFiller = std::function<void(ImportTarget&)>;

/// Saves a model under the name that the request gives, once it is whole: the part of an import that is the
/// same for each kind of input. The input should have been opened before.
///
/// @param terminal Shows the progress.
/// @return the summary that `fill` has filled.
/// @throws Failure if `fill` fails, or the output can't be written, or is found wrong where the request wants
///         a check. The output's name is then as it was before.
ConversionSummary saveImported(const ImportRequest& request, Terminal& terminal, const ModelFiller& fill);

} // namespace MoxTool
