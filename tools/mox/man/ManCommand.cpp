#include "ManCommand.h"

#include "../common/CommandLine.h"
#include "../common/Failure.h"
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
    if (!file) {
        throw Failure(path.string(), "can't be written; is the disk full?");
    }
}

} // namespace

void ManCommand::addOptions(CommandLine& line) {
    program_ = line.programHelp();
    line.hide();
    const auto page = line.add("COMMAND", command_, "The command; without it the page of mox itself");
    line.add("--all", folder_, "Write all pages into this existing folder instead").excludes({page});
    line.setDetails(Details);
}

int ManCommand::run(Terminal&) {
    if (folder_.empty()) {
        fmt::print("{}", pageOf(command_).text());
    } else {
        writeAll();
    }
    return 0;
}

void ManCommand::writeAll() const {
    if (!std::filesystem::is_directory(folder_)) {
        throw Failure(folder_, "is no folder; create it first");
    }
    const auto help = program_();
    writePage(folder_, ManPage(help));
    for (const auto& shown : help.commands) {
        if (!shown.isHidden) {
            writePage(folder_, ManPage(shown));
        }
    }
}

ManPage ManCommand::pageOf(const std::string& wanted) const {
    const auto help = program_();
    if (wanted.empty()) {
        return ManPage(help);
    }
    for (const auto& known : help.commands) {
        if (known.name == wanted) {
            return ManPage(known);
        }
    }
    throw Failure(wanted, "there is no such command; mox --help lists them");
}

} // namespace MoxTool
