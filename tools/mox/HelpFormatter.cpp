#include "HelpFormatter.h"

#include "common/typeWord.h"

#include <fmt/format.h>

#include <utility>

namespace MoxTool {

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
    return option->get_description() + (standard.empty() ? "" : fmt::format(" (default: {})", standard));
}

} // namespace MoxTool
