#include "bashCompletion.h"

#include <fmt/format.h>

#include <vector>

namespace MoxTool {

namespace {

// The program, its commands, its options, a line for each command, and one for each option with a value.
constexpr const char* BashScript = R"(# Completion of {0} for bash. Made by "{0} completion bash".
_{0}() {{
    local current="${{COMP_WORDS[COMP_CWORD]}}" previous="${{COMP_WORDS[COMP_CWORD - 1]}}"
    local commands="{1}" command="" options="{2}" words="" i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        if [[ "${{COMP_WORDS[i]}}" != -* ]]; then
            command="${{COMP_WORDS[i]}}"
            break
        fi
    done
    case "$command" in
{3}    esac
    case "$command $previous" in
{4}    esac
    if [[ "$current" == -* && "$current" != - ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -z "$command" ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current")
    elif [[ -n "$words" ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}}
complete -o filenames -F _{0} {0}
)";

// The words that an argument of a command takes; empty for files.
std::string wordsOf(const CommandHelp& command) {
    for (const auto& argument : command.arguments) {
        if (argument.value == ValueKind::Choice) {
            return fmt::format("{}", fmt::join(argument.choices, " "));
        }
        if (argument.value == ValueKind::Command) {
            return "$commands";
        }
    }
    return "";
}

std::string commandLine(const CommandHelp& command) {
    const auto words = wordsOf(command);
    return fmt::format("    {}) options=\"{}\"{} ;;\n", command.name, fmt::join(command.optionNames(), " "),
                       words.empty() ? "" : fmt::format(" words=\"{}\"", words));
}

std::string valueAction(const OptionHelp& option) {
    switch (option.value) {
    case ValueKind::Choice:
        return fmt::format("mapfile -t COMPREPLY < <(compgen -W \"{}\" -- \"$current\")",
                           fmt::join(option.choices, " "));
    case ValueKind::File:
        return "mapfile -t COMPREPLY < <(compgen -f -- \"$current\")";
    case ValueKind::Folder:
        return "mapfile -t COMPREPLY < <(compgen -d -- \"$current\")";
    default:
        return "COMPREPLY=()";
    }
}

std::string valueLines(const CommandHelp& command) {
    std::string lines;
    for (const auto& option : command.options) {
        if (option.value != ValueKind::None) {
            lines += fmt::format("    \"{0} {1}\") {2}; return ;;\n", command.name,
                                 fmt::join(option.names, fmt::format("\" | \"{} ", command.name)),
                                 valueAction(option));
        }
    }
    return lines;
}

} // namespace

std::string bashCompletion(const CommandHelp& program) {
    std::string commandCases;
    std::string valueCases;
    for (const auto& command : program.commands) {
        commandCases += commandLine(command);
        valueCases += valueLines(command);
    }
    return fmt::format(BashScript, program.name, fmt::join(program.commandNames(), " "),
                       fmt::join(program.optionNames(), " "), commandCases, valueCases);
}

} // namespace MoxTool
