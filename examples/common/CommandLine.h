#pragma once

#include <CLI/CLI.hpp>

#include <functional>

namespace Examples {

/// Parses the command line and then does the work.
///
/// Anything that goes wrong is reported in one line on stderr, which begins with the program's name.
/// @return the exit code: 0 if all went well, 1 if `work` threw, 2 for a wrong command line.
int run(CLI::App& app, int argc, char** argv, const std::function<void()>& work);

} // namespace Examples
