#pragma once

#include "Platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace MoxTool {

/// What work in a process of its own reports to the process that waits for it.
struct ApartReport {
    enum class Kind : char {
        Done = 'D',   ///< With what the work has brought.
        Failed = 'F', ///< With the line of a failure.
        Again = 'A',  ///< To be begun again, with what has to be different then.
    };

    Kind kind;
    std::string text;

    /// As bytes that can pass from one process to another.
    std::string pack() const { return static_cast<char>(kind) + text; }
    /// @return nothing if the process has died before it reported.
    static std::optional<ApartReport> in(const Platform::ApartOutcome& outcome);
};

/// Why there is no report: what has ended the process that worked with a library.
/// @param crash   The line for a crash of the library.
/// @param done    What was not done to the end, such as "read".
/// @param command What was done, such as "import".
std::string deathText(const Platform::ApartOutcome& outcome, const std::string& crash, std::string_view done,
                      std::string_view command);

} // namespace MoxTool
