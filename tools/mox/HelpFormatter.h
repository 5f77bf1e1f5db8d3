#pragma once

#include <CLI/CLI.hpp>

#include <cstddef>
#include <string>

namespace MoxTool {

/// How the help looks: types are words such as FILE, and what the line under "Usage" shows is not repeated.
class HelpFormatter : public CLI::Formatter {
public:
    /// @param width Of its lines, in characters.
    explicit HelpFormatter(std::size_t width);

    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_option_desc(const CLI::Option* option) const override;
    std::string make_subcommand(const CLI::App* command) const override;
    std::string make_footer(const CLI::App* app) const override;

private:
    std::string described(const std::string& text) const;

    std::size_t width_;
};

} // namespace MoxTool
