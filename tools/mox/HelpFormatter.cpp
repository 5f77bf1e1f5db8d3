#include "HelpFormatter.h"

#include "common/typeWord.h"
#include "common/wrapText.h"

#include <fmt/format.h>

#include <sstream>
#include <utility>

namespace MoxTool {

HelpFormatter::HelpFormatter(std::size_t width) : width_(width) {
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
    return described(option->get_description() + note);
}

std::string HelpFormatter::make_subcommand(const CLI::App* command) const {
    std::ostringstream out;
    CLI::detail::format_help(out, command->get_name(), described(command->get_description()),
                             get_column_width());
    return out.str();
}

std::string HelpFormatter::make_footer(const CLI::App* app) const {
    return refillText(CLI::Formatter::make_footer(app), width_);
}

std::string HelpFormatter::described(const std::string& text) const {
    return wrapLine(text, width_ - get_column_width());
}

} // namespace MoxTool
