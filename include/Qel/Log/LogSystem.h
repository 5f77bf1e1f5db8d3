#pragma once

#include <Qel/Util/Export.h>

#include <iosfwd>

namespace Qel::Log {

template <typename CharT>
struct Record;

/// Takes the log records of the library, and drops them: a save writes nothing to any stream.
struct MOXWRITER_EXPORT LogSystem {
    LogSystem();
    /// There is nothing to copy.
    LogSystem(const LogSystem& other);
    /// Likewise.
    LogSystem& operator=(const LogSystem& other);
    virtual ~LogSystem();

    /// Drops the record.
    virtual void operator+=(const Record<char>& record);

    /// Writes the text collected in `stream`, and a newline, to `std::cout`.
    /// @pre `stream` is a `std::ostringstream`.
    virtual void operator+=(const std::ostream& stream);
};

} // namespace Qel::Log
