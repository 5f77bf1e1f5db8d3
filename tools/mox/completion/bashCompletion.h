#pragma once

#include <CLI/App.hpp>

#include <string>

namespace MoxTool {

/// A script for bash that completes the program's commands, the options of each, and file names.
std::string bashCompletion(const CLI::App& program);

} // namespace MoxTool
