#pragma once

#include "../../common/ConversionSummary.h"
#include "../ImportRequest.h"
#include "saveApart.h"

#include <string>

namespace MoxTool {

/// Saves a model under the name that the request gives, once it is complete: the part of an import that is
/// the same for each kind of input.
///
/// The input is read in a process of its own, where there are such, since the libraries of the formats crash on
/// some damage that can't be seen beforehand.
///
/// @param library  What messages call the library that reads the input.
/// @param terminal Shows the progress.
/// @param fill     Opens and reads the input. Called in the other process.
/// @return the summary of what `fill` has taken.
/// @throws Failure if `fill` fails or crashes, if the output can't be written, or if the check that the request
///                 asks for finds an error. Whatever has the output's name is then unchanged.
ConversionSummary saveImported(const ImportRequest& request, const std::string& library, Terminal& terminal,
                               const ModelFiller& fill);

} // namespace MoxTool
