#pragma once

#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>

#include <string>

namespace MoxTool {

/// @param file The file's path as the user gave it.
/// @throws Failure if the datasets and sets of nodes claim more bytes in total than the file holds, so that
///                 many claim the same: reading them all would take time out of proportion to the file.
void requireNumbersFit(const std::string& file, const MoxReader::Model& model, MoxReader::HeavyData& heavy);

} // namespace MoxTool
