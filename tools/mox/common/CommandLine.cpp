#include "CommandLine.h"

#include "describeHelp.h"

#include <CLI/App.hpp>

namespace MoxTool {

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
    option_->check(CLI::PositiveNumber);
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

CommandLine::Option CommandLine::add(const std::string& names, std::string& target,
                                     const std::string& description) {
    return Option(*level_.add_option(names, target, description));
}

CommandLine::Option CommandLine::add(const std::string& names, std::optional<std::string>& target,
                                     const std::string& description) {
    return Option(*level_.add_option(names, target, description));
}

CommandLine::Option CommandLine::add(const std::string& names, std::vector<std::string>& target,
                                     const std::string& description) {
    return Option(*level_.add_option(names, target, description));
}

CommandLine::Option CommandLine::add(const std::string& names, unsigned int& target,
                                     const std::string& description) {
    return Option(*level_.add_option(names, target, description));
}

CommandLine::Option CommandLine::add(const std::string& names, unsigned long& target,
                                     const std::string& description) {
    return Option(*level_.add_option(names, target, description));
}

CommandLine::Option CommandLine::add(const std::string& names, unsigned long long& target,
                                     const std::string& description) {
    return Option(*level_.add_option(names, target, description));
}

CommandLine::Option CommandLine::add(const std::string& names, double& target,
                                     const std::string& description) {
    return Option(*level_.add_option(names, target, description));
}

CommandLine::Option CommandLine::addFlag(const std::string& names, bool& target,
                                         const std::string& description) {
    return Option(*level_.add_flag(names, target, description));
}

void CommandLine::setDetails(const std::string& text) {
    level_.footer(text);
}

void CommandLine::hide() {
    level_.group("");
}

void CommandLine::setCheck(const std::function<void()>& check) {
    level_.final_callback(check);
}

std::function<CommandHelp()> CommandLine::programHelp() const {
    return [program = level_.get_parent()] { return describeHelp(*program); };
}

} // namespace MoxTool
