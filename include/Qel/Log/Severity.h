#pragma once

namespace Qel::Log::Severity {

/// How grave a log record is. The library itself uses only Info.
enum Severity : int {
    Info = 1,
};

} // namespace Qel::Log::Severity
