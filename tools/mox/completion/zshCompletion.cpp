#include "zshCompletion.h"

#include <fmt/format.h>

#include <string_view>

namespace MoxTool {

namespace {

// The program, its commands with what they do, its options, and for each command what it takes. As a file in
// a folder of $fpath the script is the function's body; when it is sourced it names the function for the
// program.
constexpr const char* ZshScript = R"(#compdef {0}
# Completion of {0} for zsh. Made by "{0} completion zsh".
_{0}() {{
    local context state state_descr line
    typeset -A opt_args
    local -a commands=(
{1}    )
    _arguments -C \
{2}        '1: :->command' \
        '*:: :->rest'
    case $state in
    command) _describe -t commands command commands ;;
    rest)
        case $words[1] in
{3}        esac
        ;;
    esac
}}
if [[ "$funcstack[1]" == _{0} ]]; then
    _{0} "$@"
else
    compdef _{0} {0}
fi
)";

std::string inZshQuotes(const std::string& text) {
    std::string result = "'";
    for (const char letter : text) {
        if (letter == '\'') {
            result += "'\\'";
        }
        result += letter;
    }
    result += '\'';
    return result;
}

std::string withBackslashes(const std::string& text, std::string_view special) {
    std::string result;
    for (const char letter : text) {
        if (letter == '\\' || special.find(letter) != std::string_view::npos) {
            result += '\\';
        }
        result += letter;
    }
    return result;
}

std::string zshAction(ValueKind kind, const std::vector<std::string>& choices, const CommandHelp& program) {
    switch (kind) {
    case ValueKind::File:
        return "_files";
    case ValueKind::Folder:
        return "_files -/";
    case ValueKind::Choice:
        return fmt::format("({})", fmt::join(choices, " "));
    case ValueKind::Command:
        return fmt::format("({})", fmt::join(program.commandNames(), " "));
    default:
        return " ";
    }
}

// One line for each name of an option, which excludes the others.
std::string optionLines(const OptionHelp& option, const CommandHelp& program, std::string_view indent) {
    std::string lines;
    for (const auto& name : option.names) {
        auto entry = option.canRepeat ? "*" : fmt::format("({})", fmt::join(option.names, " "));
        entry += name;
        if (option.value != ValueKind::None) {
            entry += name.starts_with("--") ? "=" : "+";
        }
        entry += fmt::format("[{}]", withBackslashes(option.description, "[]"));
        if (option.value != ValueKind::None) {
            entry += fmt::format(":value:{}", zshAction(option.value, option.choices, program));
        }
        lines += fmt::format("{}{} \\\n", indent, inZshQuotes(entry));
    }
    return lines;
}

std::string argumentLine(const ArgumentHelp& argument, const CommandHelp& program, std::string_view indent) {
    return fmt::format("{}{} \\\n", indent,
                       inZshQuotes(fmt::format("{}:{}:{}", argument.canRepeat ? "*" : "",
                                               withBackslashes(argument.name, ":"),
                                               zshAction(argument.value, argument.choices, program))));
}

std::string commandCase(const CommandHelp& command, const CommandHelp& program) {
    constexpr const char* Indent = "                ";
    std::string lines;
    for (const auto& option : command.options) {
        lines += optionLines(option, program, Indent);
    }
    for (const auto& argument : command.arguments) {
        lines += argumentLine(argument, program, Indent);
    }
    return fmt::format(
        "        {})\n            _arguments \\\n{}                && return\n            ;;\n", command.name,
        lines);
}

} // namespace

std::string zshCompletion(const CommandHelp& program) {
    std::string names;
    std::string options;
    std::string cases;
    for (const auto& command : program.commands) {
        names += fmt::format("        {}\n", inZshQuotes(command.name + ":" + command.description));
        cases += commandCase(command, program);
    }
    for (const auto& option : program.options) {
        options += optionLines(option, program, "        ");
    }
    return fmt::format(ZshScript, program.name, names, options, cases);
}

} // namespace MoxTool
