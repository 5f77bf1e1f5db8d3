#include "HelpFormatter.h"

#include "common/typeWord.h"

#include <fmt/format.h>

#include <utility>

namespace MoxTool {

namespace {

constexpr std::size_t LineWidth = 110;

// In lines of a width; a word that is longer has a line of its own.
std::string wrapped(std::string text, std::size_t width) {
    std::size_t start = 0;
    while (text.size() - start > width) {
        auto blank = text.rfind(' ', start + width);
        if (blank == std::string::npos || blank <= start) {
            blank = text.find(' ', start + width);
        }
        if (blank == std::string::npos) {
            break;
        }
        text[blank] = '\n';
        start = blank + 1;
    }
    return text;
}

} // namespace

HelpFormatter::HelpFormatter() {
    label("Positionals", "Arguments");
    label("SUBCOMMAND", "COMMAND");
}

// The library leaves two empty lines between groups.
std::string HelpFormatter::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const {
    return CLI::detail::find_and_replace(CLI::Formatter::make_help(app, std::move(name), mode), "\n\n\n",
                                         "\n\n");
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
    const auto type = typeWord(*option);
    return type.empty() ? "" : " " + type;
}

std::string HelpFormatter::make_option_desc(const CLI::Option* option) const {
    const auto standard = option->get_default_str();
    const auto note = standard.empty() ? "" : fmt::format(" (default: {})", standard);
    return wrapped(option->get_description() + note, LineWidth - get_column_width());
}

} // namespace MoxTool
