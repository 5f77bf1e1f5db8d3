#include "ManPage.h"

#include "../common/wrapText.h"

#include <fmt/format.h>

#include <utility>

namespace MoxTool {

namespace {

constexpr std::string_view ExamplesTitle = "Examples:\n";

std::string section(std::string_view title, const std::string& content) {
    return content.empty() ? "" : fmt::format(".SH {}\n{}", title, content);
}

std::string item(const std::string& title, const std::string& content) {
    return fmt::format(".TP\n\\fB{}\\fR\n{}\n", roffText(title), roffText(content));
}

// What man leaves of a line of 80 characters.
constexpr std::size_t LineWidth = 71;

// Lines that keep their breaks.
std::string block(std::string_view text) {
    return text.empty() ? "" : fmt::format(".nf\n{}\n.fi\n", roffText(refillText(text, LineWidth)));
}

std::string_view withoutEndingLines(std::string_view text) {
    while (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    return text;
}

std::string pageName(const CommandHelp& help) {
    return help.program.empty() ? help.name : help.program + "-" + help.name;
}

} // namespace

// A point or a quote at the start of a line would be a request, and a plain hyphen prints as another
// character.
std::string roffText(std::string_view text) {
    std::string result;
    char before = '\n';
    for (const char letter : text) {
        if (before == '\n' && (letter == '.' || letter == '\'')) {
            result += "\\&";
        }
        if (letter == '\\') {
            result += "\\(rs";
        } else if (letter == '-') {
            result += "\\-";
        } else {
            result += letter;
        }
        before = letter;
    }
    return result;
}

ManPage::ManPage(CommandHelp help) : help_(std::move(help)) {
    const auto place = help_.details.find(ExamplesTitle);
    details_ = withoutEndingLines(std::string_view(help_.details).substr(0, place));
    if (place != std::string::npos) {
        examples_ = withoutEndingLines(std::string_view(help_.details).substr(place + ExamplesTitle.size()));
    }
}

std::string ManPage::fileName() const {
    return pageName(help_) + ".1";
}

std::string ManPage::text() const {
    const auto title = roffText(pageName(help_));
    return fmt::format(".TH \"{}\" 1 \"\" \"mox {}\" \"MOX model files\"\n", title, MOX_VERSION) +
           section("NAME", title + " \\- " + roffText(help_.description) + "\n") +
           section("SYNOPSIS", synopsis()) + section("DESCRIPTION", block(details_)) +
           section("COMMANDS", commands()) + section("OPTIONS", options()) +
           section("EXAMPLES", block(examples_)) + section("SEE ALSO", references());
}

std::string ManPage::synopsis() const {
    const auto prefix = help_.program.empty() ? "" : help_.program + " ";
    auto line = fmt::format("\\fB{}{}\\fR [OPTIONS]", prefix, roffText(help_.name));
    if (!help_.commands.empty()) {
        line += " COMMAND";
    }
    for (const auto& argument : help_.arguments) {
        const auto title = roffText(argument.name) + (argument.canRepeat ? "..." : "");
        line += argument.isRequired ? " " + title : " [" + title + "]";
    }
    return line + "\n";
}

std::string ManPage::options() const {
    std::string items;
    for (const auto& argument : help_.arguments) {
        items += item(argument.name, argument.description);
    }
    for (const auto& option : help_.options) {
        items += item(option.title, option.description);
    }
    return items;
}

std::string ManPage::commands() const {
    std::string items;
    for (const auto& command : help_.commands) {
        items += item(command.name, command.description);
    }
    return items;
}

std::string ManPage::references() const {
    if (!help_.program.empty()) {
        return roffText(help_.program) + "(1)\n";
    }
    std::string list;
    for (const auto& command : help_.commands) {
        list += (list.empty() ? "" : ", ") + roffText(pageName(command)) + "(1)";
    }
    return list + "\n";
}

} // namespace MoxTool
