#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace MoxTool {

/// How the help looks: types are words such as FILE, and what the line under "Usage" shows is not repeated.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter();

    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_option_desc(const CLI::Option* option) const override;
};

} // namespace MoxTool
