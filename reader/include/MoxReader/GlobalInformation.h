#pragma once

#include "MoxReader/StreamReader.h"

#include <string>
#include <vector>

namespace MoxReader {

/// Who saved the file; there is one of these for each save.
struct ModifierInfo {
    std::string version; ///< Version of this record.
    std::string sourceName;
    std::string sourceVersion;
    std::string formatVersion;
    std::string date; ///< As the writer's clock and locale gave it.
    std::string computer;
    std::string user;
    std::string comment;
};

/// The content of the stream "Global Information".
struct GlobalInformation {
    std::vector<ModifierInfo> modifiers;
    std::uint32_t resultAttributeCount = 0; ///< 0 in all known files; what would follow is unknown.
};

/// Reads the whole stream. Fields that a later version may append to a record are skipped.
/// @throws Error  BadCount, BadRecordSize, TrailingStreamBytes, and those of StreamReader.
GlobalInformation readGlobalInformation(StreamReader& global);

} // namespace MoxReader
