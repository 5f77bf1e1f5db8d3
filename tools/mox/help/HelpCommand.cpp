#include "HelpCommand.h"

#include "../common/CommandLine.h"
#include "../common/UsageError.h"
#include "../common/unknownCommand.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

constexpr const char* HelpDetails = R"(Examples:
  mox help
  mox help import)";

} // namespace

void HelpCommand::addOptions(CommandLine& line) {
    program_ = line.programHelp();
    helpText_ = line.helpText();
    line.add("COMMAND", command_, "The command to explain; without it, mox itself");
    line.setDetails(HelpDetails);
    line.setCheck([this] { requireKnown(); });
}

int HelpCommand::run(Terminal&) {
    fmt::print("{}", helpText_(command_));
    return 0;
}

void HelpCommand::requireKnown() const {
    const auto help = program_();
    if (!command_.empty() && help.command(command_) == nullptr) {
        throw UsageError(unknownCommand(help, command_));
    }
}

} // namespace MoxTool
