#pragma once

#include "../common/ConversionSummary.h"
#include "ExportRequest.h"

#include <functional>

namespace MoxTool {

class Terminal;

/// Writes a file in a process of its own where there are such, since the library of the format crashes where it gets no
/// memory.
///
/// @param write   Writes the file. Called in the other process, so that what it changes in memory is lost.
/// @param library What messages call the library that writes.
/// @return what `write` has returned.
/// @throws Failure if `write` fails or crashes. The file is left to be removed.
ConversionSummary writeApart(const ExportRequest& request, const std::string& library, Terminal& terminal,
                             const std::function<ConversionSummary()>& write);

} // namespace MoxTool
