#include "describeHelp.h"

#include <CLI/App.hpp>

namespace MoxTool {

namespace {

// An option without a group is hidden.
std::vector<const CLI::Option*> shownOptions(const CLI::App& level, bool positional) {
    return level.get_options([positional](const CLI::Option* option) {
        return option->get_positional() == positional && !option->get_group().empty();
    });
}

OptionHelp describe(const CLI::Option& option) {
    const auto type = option.get_type_name();
    OptionHelp help{
        option.get_name(false, true) + (type.empty() ? "" : " " + type), option.get_description(), {}};
    for (const auto& name : option.get_lnames()) {
        help.names.push_back("--" + name);
    }
    for (const auto& name : option.get_snames()) {
        help.names.push_back("-" + name);
    }
    return help;
}

} // namespace

CommandHelp describeHelp(const CLI::App& level) {
    CommandHelp help;
    help.name = level.get_name();
    help.program = level.get_parent() == nullptr ? "" : level.get_parent()->get_name();
    help.description = level.get_description();
    help.details = level.get_footer();
    help.isHidden = level.get_group().empty();
    for (const auto* argument : shownOptions(level, true)) {
        help.arguments.push_back({argument->get_name(), argument->get_description(), argument->get_required(),
                                  argument->get_expected_max() > 1});
    }
    for (const auto* option : shownOptions(level, false)) {
        help.options.push_back(describe(*option));
    }
    for (const auto* command : level.get_subcommands([](const CLI::App*) { return true; })) {
        help.commands.push_back(describeHelp(*command));
    }
    return help;
}

} // namespace MoxTool
