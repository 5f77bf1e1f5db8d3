#include "bashCompletion.h"

#include <fmt/format.h>

#include <vector>

namespace MoxTool {

namespace {

// The program, its commands, its options, and one line for each command with its options.
constexpr const char* Script = R"(# Completion of {0} for bash. Made by "{0} completion bash".
_{0}() {{
    local current="${{COMP_WORDS[COMP_CWORD]}}" command="" options="{2}" i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        if [[ "${{COMP_WORDS[i]}}" != -* ]]; then
            command="${{COMP_WORDS[i]}}"
            break
        fi
    done
    case "$command" in
{3}    esac
    if [[ "$current" == -* && "$current" != - ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -z "$command" ]]; then
        mapfile -t COMPREPLY < <(compgen -W "{1}" -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}}
complete -o filenames -F _{0} {0}
)";

std::vector<CommandHelp> shownCommands(const CommandHelp& program) {
    auto shown = program.commands;
    std::erase_if(shown, [](const auto& command) { return command.isHidden; });
    return shown;
}

std::string joinedNames(const std::vector<CommandHelp>& commands) {
    std::vector<std::string> names;
    names.reserve(commands.size());
    for (const auto& command : commands) {
        names.push_back(command.name);
    }
    return fmt::format("{}", fmt::join(names, " "));
}

std::string joinedOptions(const CommandHelp& level) {
    std::vector<std::string> names;
    for (const auto& option : level.options) {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return fmt::format("{}", fmt::join(names, " "));
}

} // namespace

std::string bashCompletion(const CommandHelp& program) {
    const auto commands = shownCommands(program);
    std::string cases;
    for (const auto& command : commands) {
        cases += fmt::format("    {}) options=\"{}\" ;;\n", command.name, joinedOptions(command));
    }
    return fmt::format(Script, program.name, joinedNames(commands), joinedOptions(program), cases);
}

} // namespace MoxTool
