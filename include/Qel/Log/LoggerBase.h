#pragma once

#include <Qel/Log/Severity.h>
#include <Qel/Util/Export.h>

#include <iosfwd>

namespace Qel::Log {

/// A base for an application's own logger. The library never calls it.
class MOXWRITER_EXPORT LoggerBase {
public:
    LoggerBase();
    virtual ~LoggerBase();

    /// Announces a record's place of origin and severity. Does nothing here.
    /// @return this object.
    virtual LoggerBase& logRecord(const char* file, const char* function, unsigned long line,
                                  Severity::Severity severity);

    /// Takes a record's text. Does nothing here.
    virtual void operator+=(const std::ostream& stream);

private:
    LoggerBase(const LoggerBase& other);
    LoggerBase& operator=(const LoggerBase& other);
};

} // namespace Qel::Log
