#pragma once

#include "../common/CommandHelp.h"

#include <string>
#include <string_view>

namespace MoxTool {

/// A page of the manual for the program or for one of its commands, in roff. All of its text comes from what
/// --help shows.
class ManPage {
public:
    explicit ManPage(CommandHelp help);

    /// Such as "mox-import.1".
    std::string fileName() const;
    std::string text() const;

private:
    std::string synopsis() const;
    std::string options() const;
    std::string commands() const;
    std::string references() const;

    CommandHelp help_;
    std::string details_;  ///< What the help says before its examples.
    std::string examples_; ///< The lines of its examples.
};

/// A text in which everything that roff would interpret is escaped.
std::string roffText(std::string_view text);

} // namespace MoxTool
