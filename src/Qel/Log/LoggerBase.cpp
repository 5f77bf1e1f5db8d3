#include <Qel/Log/LoggerBase.h>

namespace Qel::Log {

// Kept though nothing calls it; see docs/oddities.md.
LoggerBase::LoggerBase() = default;

LoggerBase::LoggerBase(const LoggerBase&) = default;

LoggerBase& LoggerBase::operator=(const LoggerBase&) = default;

LoggerBase::~LoggerBase() = default;

LoggerBase& LoggerBase::logRecord(const char* const, const char* const, unsigned long, Severity::Severity) {
    return *this;
}

void LoggerBase::operator+=(const std::ostream&) {}

} // namespace Qel::Log
