#pragma once

#include <Qel/Log/Origin.h>
#include <Qel/Log/Severity.h>

#include <sstream>

namespace Qel::Log {

/// One log message: whatever is streamed into it, with its severity and place of origin.
template <typename CharT>
struct Record : std::basic_ostringstream<CharT> {
    Record(Severity::Severity recordSeverity, const Origin& recordOrigin)
        : severity(recordSeverity), origin(recordOrigin) {}

    Severity::Severity severity;
    Origin origin;
};

} // namespace Qel::Log
