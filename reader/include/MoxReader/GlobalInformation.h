#pragma once

#include "MoxReader/StreamReader.h"

#include <string>
#include <vector>

namespace MoxReader {

/// Who saved the file; there is one of these for each save.
struct ModifierInfo {
    std::string version;       ///< Version of this record.
    std::string sourceName;    ///< The application.
    std::string sourceVersion; ///< Its version.
    std::string formatVersion; ///< Of the file format.
    std::string date;          ///< As the writer's clock and locale gave it.
    std::string computer;      ///< Empty in known files.
    std::string user;          ///< Likewise.
    std::string comment;       ///< Likewise.
};

/// The content of the stream "Global Information".
struct GlobalInformation {
    std::vector<ModifierInfo> modifiers;    ///< In the order of the saves.
    std::uint32_t resultAttributeCount = 0; ///< 0 in all known files; what would follow is unknown.
};

/// Reads the whole stream. Fields that a later version may append to a record are skipped.
/// @throws Error  BadCount, BadRecordSize, TrailingStreamBytes, and those of StreamReader.
GlobalInformation readGlobalInformation(StreamReader& global);

} // namespace MoxReader
