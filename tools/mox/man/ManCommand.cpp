#include "ManCommand.h"

#include "../common/Failure.h"
#include "../common/helpContents.h"
#include "ManPage.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>

namespace MoxTool {

namespace {

constexpr const char* Details = R"(The pages are in the language of man(1).

Examples:
  mox man import | man -l -
  mox man --all share/man/man1)";

void writePage(const std::filesystem::path& folder, const ManPage& page) {
    const auto path = folder / page.fileName();
    std::ofstream file(path, std::ios::binary);
    file << page.text();
    file.close();
    if (!file)
        throw Failure(path.string(), "can't be written; is the disk full?");
}

} // namespace

void ManCommand::addOptions(CLI::App& app) {
    program = app.get_parent();
    app.group("");
    auto* page = app.add_option("COMMAND", command, "The command; without it the page of mox itself");
    app.add_option("--all", folder, "Write all pages into this existing folder instead")->excludes(page);
    app.footer(Details);
}

int ManCommand::run(Terminal&) {
    if (folder.empty())
        fmt::print("{}", ManPage(pageOf(command)).text());
    else
        writeAll();
    return 0;
}

void ManCommand::writeAll() const {
    if (!std::filesystem::is_directory(folder))
        throw Failure(folder, "is no folder; create it first");
    writePage(folder, ManPage(*program));
    for (const auto* level : shownCommands(*program))
        writePage(folder, ManPage(*level));
}

const CLI::App& ManCommand::pageOf(const std::string& wanted) const {
    if (wanted.empty())
        return *program;
    const auto found =
        program->get_subcommands([&](const CLI::App* level) { return level->get_name() == wanted; });
    if (found.empty())
        throw Failure(wanted, "there is no such command; mox --help lists them");
    return *found.front();
}

} // namespace MoxTool
