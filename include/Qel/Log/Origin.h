#pragma once

#include <Qel/Util/Export.h>

#include <cstdint>

namespace Qel::Log {

/// Where and when a log record was created.
struct MOXWRITER_EXPORT Origin {
    /// Takes the current time. Neither text is copied: both must live as long as the program, as literals do.
    Origin(const char* sourcePath, const char* sourceName, unsigned long sourceLine);

    const char* file;     ///< Where the record comes from, as the path of a source.
    const char* function; ///< The function.
    unsigned long line;   ///< The line, from 1.
    /// Seconds since the epoch (1970-01-01 00:00 UTC).
    std::int64_t time;
};

} // namespace Qel::Log
