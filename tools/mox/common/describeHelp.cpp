#include "describeHelp.h"

#include "typeWord.h"

#include <CLI/App.hpp>

namespace MoxTool {

namespace {

// An option without a group is hidden.
std::vector<const CLI::Option*> shownOptions(const CLI::App& level, bool positional) {
    return level.get_options([positional](const CLI::Option* option) {
        return option->get_positional() == positional && !option->get_group().empty();
    });
}

// An argument is a file, unless its word says something else.
ValueKind kindOf(const std::string& word, bool isArgument) {
    if (word == "FILE") {
        return ValueKind::File;
    }
    if (word == "FOLDER" || word == "OUTDIR") {
        return ValueKind::Folder;
    }
    if (word == "COMMAND") {
        return ValueKind::Command;
    }
    return isArgument ? ValueKind::File : ValueKind::Other;
}

ArgumentHelp describeArgument(const CLI::Option& argument) {
    ArgumentHelp help;
    help.name = argument.get_name();
    help.description = argument.get_description();
    help.isRequired = argument.get_required();
    help.canRepeat = argument.get_expected_max() > 1;
    help.choices = choicesOf(argument);
    help.value = help.choices.empty() ? kindOf(help.name, true) : ValueKind::Choice;
    return help;
}

OptionHelp describeOption(const CLI::Option& option) {
    const auto type = typeWord(option);
    OptionHelp help;
    help.title = option.get_name(false, true) + (type.empty() ? "" : " " + type);
    help.description = option.get_description();
    help.canRepeat = option.get_expected_max() > 1;
    help.choices = choicesOf(option);
    if (!type.empty()) {
        help.value = help.choices.empty() ? kindOf(type, false) : ValueKind::Choice;
    }
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
    for (const auto* argument : shownOptions(level, true)) {
        help.arguments.push_back(describeArgument(*argument));
    }
    for (const auto* option : shownOptions(level, false)) {
        help.options.push_back(describeOption(*option));
    }
    for (const auto* command : level.get_subcommands([](const CLI::App*) { return true; })) {
        help.commands.push_back(describeHelp(*command));
    }
    return help;
}

} // namespace MoxTool
