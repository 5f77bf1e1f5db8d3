#include "ManPage.h"

#include "../common/helpContents.h"

#include <fmt/format.h>

namespace MoxTool {

namespace {

constexpr std::string_view ExamplesTitle = "Examples:\n";

std::string section(std::string_view title, const std::string& content) {
    return content.empty() ? "" : fmt::format(".SH {}\n{}", title, content);
}

std::string item(const std::string& title, const std::string& content) {
    return fmt::format(".TP\n\\fB{}\\fR\n{}\n", roffText(title), roffText(content));
}

// Lines as they stand.
std::string block(std::string_view text) {
    return text.empty() ? "" : fmt::format(".nf\n{}\n.fi\n", roffText(text));
}

std::string_view withoutEndingLines(std::string_view text) {
    while (text.ends_with('\n'))
        text.remove_suffix(1);
    return text;
}

std::string optionTitle(const CLI::Option& option) {
    return option.get_name(false, true) +
           (option.get_type_name().empty() ? "" : " " + option.get_type_name());
}

} // namespace

// A point or a quote at the start of a line would be a request, and a plain hyphen prints as another
// character.
std::string roffText(std::string_view text) {
    std::string result;
    char before = '\n';
    for (const char letter : text) {
        if (before == '\n' && (letter == '.' || letter == '\''))
            result += "\\&";
        if (letter == '\\')
            result += "\\(rs";
        else if (letter == '-')
            result += "\\-";
        else
            result += letter;
        before = letter;
    }
    return result;
}

ManPage::ManPage(const CLI::App& shown) : level(shown) {
    const auto footer = level.get_footer();
    const auto place = footer.find(ExamplesTitle);
    details = withoutEndingLines(footer.substr(0, place));
    if (place != std::string::npos)
        examples = withoutEndingLines(footer.substr(place + ExamplesTitle.size()));
}

std::string ManPage::fileName() const {
    return name() + ".1";
}

std::string ManPage::text() const {
    const auto title = roffText(name());
    return fmt::format(".TH \"{}\" 1 \"\" \"mox {}\" \"MOX model files\"\n", title, MOX_VERSION) +
           section("NAME", title + " \\- " + roffText(level.get_description()) + "\n") +
           section("SYNOPSIS", synopsis()) + section("DESCRIPTION", block(details)) +
           section("COMMANDS", commands()) + section("OPTIONS", options()) +
           section("EXAMPLES", block(examples)) + section("SEE ALSO", references());
}

std::string ManPage::name() const {
    return level.get_parent() == nullptr ? level.get_name()
                                         : level.get_parent()->get_name() + "-" + level.get_name();
}

std::string ManPage::synopsis() const {
    const auto prefix = level.get_parent() == nullptr ? "" : level.get_parent()->get_name() + " ";
    auto line = fmt::format("\\fB{}{}\\fR [OPTIONS]", prefix, roffText(level.get_name()));
    if (!shownCommands(level).empty())
        line += " COMMAND";
    for (const auto* argument : shownArguments(level)) {
        const auto title = roffText(argument->get_name()) + (argument->get_expected_max() > 1 ? "..." : "");
        line += argument->get_required() ? " " + title : " [" + title + "]";
    }
    return line + "\n";
}

std::string ManPage::options() const {
    std::string items;
    for (const auto* argument : shownArguments(level))
        items += item(argument->get_name(), argument->get_description());
    for (const auto* option : shownOptions(level))
        items += item(optionTitle(*option), option->get_description());
    return items;
}

std::string ManPage::commands() const {
    std::string items;
    for (const auto* command : shownCommands(level))
        items += item(command->get_name(), command->get_description());
    return items;
}

std::string ManPage::references() const {
    if (level.get_parent() != nullptr)
        return roffText(level.get_parent()->get_name()) + "(1)\n";
    std::string list;
    for (const auto* command : shownCommands(level))
        list += (list.empty() ? "" : ", ") + roffText(ManPage(*command).name()) + "(1)";
    return list + "\n";
}

} // namespace MoxTool
