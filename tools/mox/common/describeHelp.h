#pragma once

#include "CommandHelp.h"

namespace CLI {
class App;
} // namespace CLI

namespace MoxTool {

/// What the help of a program or a command shows. Commands that the help does not list are included too,
/// marked as hidden.
CommandHelp describeHelp(const CLI::App& level);

} // namespace MoxTool
