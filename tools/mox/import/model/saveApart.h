#pragma once

#include "../../common/ConversionSummary.h"
#include "../ImportRequest.h"
#include "FloatNarrowing.h"
#include "ImportTarget.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace MoxTool {

/// Puts the contents of an input file into a target, and notes what it took and what it did not.
using ModelFiller = std::function<void(ImportTarget&)>;

/// A file to save.
struct ImportPart {
    std::string path; ///< Where no file exists yet.
    ImportRequest request;
    ModelFiller fill; ///< Opens and reads the input. Called in another process.
};

/// What came of it.
struct SavedPart {
    ConversionSummary summary;
    FloatNarrowing narrowing;
};

/// Saves files, each in a process of its own where there are such, since the libraries of the formats crash on some
/// damage that can't be seen beforehand.
///
/// @param processes The most at a time; the bound of memory is divided among them.
/// @param library   What messages call the library that reads the input.
/// @throws Failure if one of them can't be saved; the others are ended then. The files are left to be removed.
std::vector<SavedPart> saveApart(const std::vector<ImportPart>& parts, std::size_t processes,
                                 const std::string& library, Terminal& terminal);

} // namespace MoxTool
