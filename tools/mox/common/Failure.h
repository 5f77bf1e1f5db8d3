#pragma once

#include <stdexcept>
#include <string>

namespace MoxTool {

/// Why a command can't do its work: a file and a reason, in one line for the user.
class Failure : public std::runtime_error {
public:
    /// @param file   The file's path as the user gave it.
    /// @param reason What is wrong and, where it is not obvious, what to do; no full stop.
    Failure(const std::string& file, const std::string& reason) : std::runtime_error(file + ": " + reason) {}

    /// A failure in another process.
    /// @param line Its whole line.
    explicit Failure(const std::string& line) : std::runtime_error(line) {}
};

} // namespace MoxTool
