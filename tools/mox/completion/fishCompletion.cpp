#include "fishCompletion.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

std::string inFishQuotes(const std::string& text) {
    std::string result = "'";
    for (const char letter : text) {
        if (letter == '\'' || letter == '\\') {
            result += '\\';
        }
        result += letter;
    }
    return result + "'";
}

// What fish is to offer for a value: files (-F), nothing but words (-x -a), or nothing (-x).
std::string fishAction(ValueKind kind, const std::vector<std::string>& choices, const CommandHelp& program) {
    switch (kind) {
    case ValueKind::None:
        return "";
    case ValueKind::File:
        return " -r -F";
    case ValueKind::Folder:
        return " -x -a '(__fish_complete_directories)'";
    case ValueKind::Choice:
        return fmt::format(" -x -a '{}'", fmt::join(choices, " "));
    case ValueKind::Command:
        return fmt::format(" -x -a '{}'", fmt::join(program.commandNames(), " "));
    case ValueKind::Other:
        break;
    }
    return " -x";
}

std::string namesOf(const OptionHelp& option) {
    std::string names;
    for (const auto& name : option.names) {
        names += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    return names;
}

class FishScript {
public:
    explicit FishScript(const CommandHelp& program) : program_(program) {}

    std::string text() {
        text_ = fmt::format(
            "# Completion of {0} for fish. Made by \"{0} completion fish\".\ncomplete -c {0} -f\n",
            program_.name);
        addOptions(program_, "__fish_use_subcommand");
        for (const auto& command : program_.commands) {
            add("__fish_use_subcommand",
                fmt::format(" -a {} -d {}", command.name, inFishQuotes(command.description)));
        }
        for (const auto& command : program_.commands) {
            const auto condition = "__fish_seen_subcommand_from " + command.name;
            addOptions(command, condition);
            addArguments(command, condition);
        }
        return text_;
    }

private:
    void add(const std::string& condition, const std::string& rest) {
        text_ += fmt::format("complete -c {} -n '{}'{}\n", program_.name, condition, rest);
    }

    void addOptions(const CommandHelp& level, const std::string& condition) {
        for (const auto& option : level.options) {
            add(condition, namesOf(option) + fishAction(option.value, option.choices, program_) + " -d " +
                               inFishQuotes(option.description));
        }
    }

    // Arguments of one kind need one line.
    void addArguments(const CommandHelp& command, const std::string& condition) {
        if (command.arguments.empty()) {
            return;
        }
        const auto& argument = command.arguments.front();
        const auto words = fishAction(argument.value, argument.choices, program_);
        add(condition, argument.value == ValueKind::File ? " -F" : words);
    }

    const CommandHelp& program_;
    std::string text_;
};

} // namespace

std::string fishCompletion(const CommandHelp& program) {
    return FishScript(program).text();
}

} // namespace MoxTool
