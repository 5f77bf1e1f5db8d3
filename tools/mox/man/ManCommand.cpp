#include "ManCommand.h"

#include "../common/CommandLine.h"
#include "../common/Failure.h"
#include "../common/UsageError.h"
#include "../common/unknownCommand.h"
#include "../common/utf8Path.h"
#include "ManPage.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>

namespace MoxTool {

namespace {

constexpr const char* ManDetails =
    R"(The page is in the language of man(1), which shows it as in the first example. Where mox is installed
with its package, "man mox-import" shows the same.

Examples:
  mox man import | man -l -
  mox man --all share/man/man1)";

void writePage(const std::filesystem::path& folder, const ManPage& page) {
    const auto path = folder / pathOf(page.fileName());
    std::ofstream file(path, std::ios::binary);
    file << page.text();
    file.close();
    if (!file) {
        throw Failure(utf8Of(path), "can't be written; is the disk full?");
    }
}

} // namespace

void ManCommand::addOptions(CommandLine& line) {
    program_ = line.programHelp();
    const auto page = line.add("COMMAND", command_, "The command; without it the page of mox itself");
    line.add("--all", folder_, "Write all pages into this existing folder instead")
        .typeName("FOLDER")
        .excludes({page});
    line.setDetails(ManDetails);
    line.setCheck([this] { pageOf(command_); });
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
    if (!std::filesystem::is_directory(pathOf(folder_))) {
        throw Failure(folder_, "is no folder; create it first");
    }
    const auto help = program_();
    writePage(pathOf(folder_), ManPage(help));
    for (const auto& shown : help.commands) {
        writePage(pathOf(folder_), ManPage(shown));
    }
}

ManPage ManCommand::pageOf(const std::string& wanted) const {
    const auto help = program_();
    if (wanted.empty()) {
        return ManPage(help);
    }
    if (const auto* known = help.command(wanted)) {
        return ManPage(*known);
    }
    throw UsageError(unknownCommand(help, wanted));
}

} // namespace MoxTool
