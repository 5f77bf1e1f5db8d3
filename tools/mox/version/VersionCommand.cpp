#include "VersionCommand.h"

#include "../common/CommandLine.h"
#include "versionText.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

constexpr const char* VersionDetails =
    R"(Files of a format that is not built in can be neither imported nor exported.

Examples:
  mox version)";

} // namespace

void VersionCommand::addOptions(CommandLine& line) {
    line.setDetails(VersionDetails);
}

int VersionCommand::run(Terminal&) {
    fmt::print("{}\n", versionText());
    return 0;
}

} // namespace MoxTool
