#pragma once

#include <MoxReader/File.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>

#include <string>

namespace MoxTool {

/// @param file The file's path as the user gave it.
/// @throws Failure if the datasets and sets of nodes claim more bytes in total than the file holds, so that
///                 many claim the same: reading them all would take time out of proportion to the file.
void requireNumbersFit(const std::string& file, const MoxReader::Model& model, MoxReader::HeavyData& heavy);

/// The same for a command that goes on after damage: only what lies inside the stored numbers counts, and small
/// overlaps, of up to a hundred times the size of the file, are no reason to refuse it.
void requireReadableNumbersFit(const std::string& file, const MoxReader::File& opened,
                               const MoxReader::Model& model);

} // namespace MoxTool
