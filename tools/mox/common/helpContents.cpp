#include "helpContents.h"

namespace MoxTool {

// A thing without a group is hidden.

std::vector<const CLI::App*> shownCommands(const CLI::App& program) {
    return program.get_subcommands([](const CLI::App* level) { return !level->get_group().empty(); });
}

std::vector<const CLI::Option*> shownOptions(const CLI::App& level) {
    return level.get_options(
        [](const CLI::Option* option) { return !option->get_positional() && !option->get_group().empty(); });
}

std::vector<const CLI::Option*> shownArguments(const CLI::App& level) {
    return level.get_options(
        [](const CLI::Option* option) { return option->get_positional() && !option->get_group().empty(); });
}

} // namespace MoxTool
