#include "bashCompletion.h"

#include "../common/helpContents.h"

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

std::string joinedNames(const std::vector<const CLI::App*>& commands) {
    std::vector<std::string> names;
    names.reserve(commands.size());
    for (const auto* command : commands)
        names.push_back(command->get_name());
    return fmt::format("{}", fmt::join(names, " "));
}

std::string joinedOptions(const CLI::App& level) {
    std::vector<std::string> names;
    for (const auto* option : shownOptions(level)) {
        for (const auto& name : option->get_lnames())
            names.push_back("--" + name);
        for (const auto& name : option->get_snames())
            names.push_back("-" + name);
    }
    return fmt::format("{}", fmt::join(names, " "));
}

} // namespace

std::string bashCompletion(const CLI::App& program) {
    std::string cases;
    for (const auto* command : shownCommands(program))
        cases += fmt::format("    {}) options=\"{}\" ;;\n", command->get_name(), joinedOptions(*command));
    return fmt::format(Script, program.get_name(), joinedNames(shownCommands(program)),
                       joinedOptions(program), cases);
}

} // namespace MoxTool
