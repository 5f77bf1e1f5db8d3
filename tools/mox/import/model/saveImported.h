#pragma once

#include "../../common/ConversionSummary.h"
#include "../ImportRequest.h"
#include "ImportTarget.h"

#include <functional>

namespace MoxTool {

/// Puts the contents of an input file into a target, and notes what it took and what it did not.
using ModelFiller = std::function<void(ImportTarget&)>;

/// Saves a model under the name that the request gives, once it is complete: the part of an import that is
/// the same for each kind of input. The input should be opened before.
///
/// @param terminal Shows the progress.
/// @return the summary that `fill` has filled.
/// @throws Failure if `fill` fails, if the output can't be written, or if the check that the request asks for
///                 finds an error. Whatever has the output's name is then unchanged.
ConversionSummary saveImported(const ImportRequest& request, Terminal& terminal, const ModelFiller& fill);

} // namespace MoxTool
