#include "CommandLine.h"

#include "UsageError.h"
#include "describeHelp.h"

#include <CLI/App.hpp>

#include <algorithm>

namespace MoxTool {

namespace {

constexpr const char* NameValue = "NAME";
constexpr const char* NumberValue = "NUMBER";

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool isWholeNumber(const std::string& text) {
    return !text.empty() && std::ranges::all_of(text, isDigit);
}

// The library would take "-3" and make a large number of it.
template <typename Integer>
CLI::Option& addWholeNumber(CLI::App& level, const std::string& names, Integer& target,
                            const std::string& description) {
    auto* option = level.add_option(names, target, description);
    option->type_name(NumberValue);
    option->check([](const std::string& text) {
        return isWholeNumber(text) ? "" : "must be a whole number from 0 up, not " + text;
    });
    return *option;
}

} // namespace

CommandLine::Option& CommandLine::Option::required() {
    option_->required();
    return *this;
}

CommandLine::Option& CommandLine::Option::typeName(const std::string& name) {
    option_->type_name(name);
    return *this;
}

CommandLine::Option& CommandLine::Option::showDefault() {
    option_->capture_default_str();
    return *this;
}

CommandLine::Option& CommandLine::Option::positive() {
    option_->transform(CLI::Validator( // these come before the checks
        [](std::string& text) {
            const bool isZero = std::ranges::all_of(text, [](char letter) { return letter == '0'; });
            return isWholeNumber(text) && !isZero ? "" : "must be a whole number from 1 up, not " + text;
        },
        ""));
    return *this;
}

CommandLine::Option& CommandLine::Option::oneOf(const std::vector<std::string>& values) {
    option_->check(CLI::IsMember(values));
    return *this;
}

CommandLine::Option&
CommandLine::Option::check(const std::function<std::string(const std::string&)>& problem) {
    option_->check(problem);
    return *this;
}

CommandLine::Option& CommandLine::Option::repeatable() {
    option_->allow_extra_args(false);
    return *this;
}

CommandLine::Option& CommandLine::Option::excludes(const std::vector<Option>& others) {
    for (const auto& other : others) {
        option_->excludes(other.option_);
    }
    return *this;
}

// What the help calls a value if the command does not say: nothing for an argument, whose name says it.
template <typename T>
CommandLine::Option CommandLine::declare(const std::string& names, T& target, const std::string& description,
                                         const char* type) {
    auto& option = *level_.add_option(names, target, description);
    option.type_name(option.get_positional() ? "" : type);
    return Option(option);
}

CommandLine::Option CommandLine::add(const std::string& names, std::string& target,
                                     const std::string& description) {
    return declare(names, target, description, NameValue);
}

CommandLine::Option CommandLine::add(const std::string& names, std::optional<std::string>& target,
                                     const std::string& description) {
    return declare(names, target, description, NameValue);
}

CommandLine::Option CommandLine::add(const std::string& names, std::vector<std::string>& target,
                                     const std::string& description) {
    return declare(names, target, description, NameValue);
}

CommandLine::Option CommandLine::add(const std::string& names, unsigned int& target,
                                     const std::string& description) {
    return Option(addWholeNumber(level_, names, target, description));
}

CommandLine::Option CommandLine::add(const std::string& names, unsigned long& target,
                                     const std::string& description) {
    return Option(addWholeNumber(level_, names, target, description));
}

CommandLine::Option CommandLine::add(const std::string& names, unsigned long long& target,
                                     const std::string& description) {
    return Option(addWholeNumber(level_, names, target, description));
}

CommandLine::Option CommandLine::add(const std::string& names, double& target,
                                     const std::string& description) {
    return declare(names, target, description, NumberValue);
}

CommandLine::Option CommandLine::addFlag(const std::string& names, bool& target,
                                         const std::string& description) {
    return Option(*level_.add_flag(names, target, description));
}

void CommandLine::setDetails(const std::string& text) {
    level_.footer(text);
}

void CommandLine::setCheck(const std::function<void()>& check) {
    level_.final_callback(check);
}

// Extra arguments are an error of the parser before a command's check is called.
void CommandLine::explainExtra(const std::function<std::string(const std::vector<std::string>&)>& reason) {
    level_.parse_complete_callback([level = &level_, reason] {
        if (const auto text = reason(level->remaining()); !text.empty()) {
            throw UsageError(text);
        }
    });
}

std::function<CommandHelp()> CommandLine::programHelp() const {
    return [program = level_.get_parent()] { return describeHelp(*program); };
}

// Asks the formatter for the program's help, since the program itself shows that of the selected command.
std::function<std::string(const std::string&)> CommandLine::helpText() const {
    return [program = level_.get_parent()](const std::string& command) {
        if (!command.empty()) {
            return program->get_subcommand(command)->help(program->get_name());
        }
        return program->get_formatter()->make_help(program, program->get_name(), CLI::AppFormatMode::Normal);
    };
}

} // namespace MoxTool
