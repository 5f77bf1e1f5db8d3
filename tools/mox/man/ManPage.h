#pragma once

#include <CLI/App.hpp>

#include <string>
#include <string_view>

namespace MoxTool {

/// A page of the manual for the program or for one of its commands, in roff. All of its text comes from what
/// --help shows.
class ManPage {
public:
    /// @param shown Must outlive this object.
    explicit ManPage(const CLI::App& shown);

    /// Such as "mox-import.1".
    std::string fileName() const;
    std::string text() const;

private:
    std::string name() const;
    std::string synopsis() const;
    std::string options() const;
    std::string commands() const;
    std::string references() const;

    const CLI::App& level;
    std::string details;  ///< What the help tells in front of its examples.
    std::string examples; ///< The lines of its examples.
};

/// A text with all that roff would take for its own made plain.
std::string roffText(std::string_view text);

} // namespace MoxTool
