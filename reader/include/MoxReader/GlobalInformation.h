#pragma once

#include "MoxReader/StreamReader.h"

#include <string>
#include <vector>

namespace MoxReader {

/// Who saved the file, once for each save.
struct ModifierInfo {
    std::string version; ///< Of this record.
    std::string sourceName;
    std::string sourceVersion;
    std::string formatVersion;
    std::string date; ///< As the writer's clock and locale gave it.
    std::string computer;
    std::string user;
    std::string comment;
};

/// What stands in the stream "Global Information".
struct GlobalInformation {
    std::vector<ModifierInfo> modifiers;
    std::uint32_t resultAttributeCount = 0; ///< Always 0 in known files. Their form is not known, nor read.
};

/// Reads the whole stream. Fields that a later version may append to a record are stepped over.
/// @throws Error  BadCount, BadRecordSize, TrailingStreamBytes, and those of StreamReader.
GlobalInformation readGlobalInformation(StreamReader& global);

} // namespace MoxReader
