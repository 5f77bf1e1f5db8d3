#include "ViewCommand.h"

#include "../common/CommandLine.h"
#include "../common/Failure.h"
#include "../common/OutputFile.h"
#include "../common/Platform.h"
#include "../common/Terminal.h"
#include "../common/UsageError.h"
#include "../common/WorkLimit.h"
#include "../common/pathHelp.h"
#include "../common/readFailure.h"
#include "../common/utf8Path.h"
#include "../common/visibleText.h"
#include "../common/writeFile.h"
#include "ViewPage.h"
#include "http/serveModel.h"
#include "pageSource.h"

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

constexpr const char* ViewDetails =
    R"(Makes one page with the surface of the model and its results, which works without a network, and opens it
if there is a desktop. It can be mailed: whoever gets it needs a browser alone. Without --output it stands in
the working folder and is called like FILE, with the extension .html; mox replaces a page of its own there.

A page takes results up to a size, the last step first, and says what is left out. --part, --dataset and
--step choose what it takes. --serve makes no page but shows everything, as long as mox runs: only to
browsers on this machine, and this file alone.

)";

constexpr const char* ViewExamples = R"(

Examples:
  mox view bracket.mox
  mox view --output ribs.html -p /bracket/rib -d Displacement -s last bracket.mox
  mox view --serve huge.mox)";

// In units of 1000, as --max-size is.
std::string sizeText(std::uint64_t bytes) {
    const auto kilobytes = static_cast<double>(bytes) / 1000;
    return bytes < 100000 ? fmt::format("{:.1f} kB", kilobytes) : fmt::format("{:.1f} MB", kilobytes / 1000);
}

// What a page of this program begins with.
bool isOwnPage(const fs::path& path) {
    const auto head = pageSource().head.substr(0, pageSource().head.find('\n'));
    std::string line;
    std::ifstream in(path, std::ios::binary);
    return std::getline(in, line) && line == head;
}

std::string defaultOutput(const std::string& input) {
    auto name = pathOf(input).filename();
    name.replace_extension(".html");
    return utf8Of(name);
}

std::string addressOf(const fs::path& file) {
    std::error_code ignored;
    return utf8Of(fs::absolute(file, ignored));
}

} // namespace

std::string ViewCommand::name() const {
    return "view";
}

std::string ViewCommand::summary() const {
    return "Show the model in a browser";
}

std::optional<Command::Example> ViewCommand::example() const {
    return Example{"mox view bracket.mox", "the model in a browser, in one page"};
}

void ViewCommand::addOptions(CommandLine& line) {
    line.add("FILE", selection_.input, "The file to read; - for stdin").required();
    auto output = line.add("-o,--output", output_, "The page to write; - for stdout").typeName("PAGE");
    line.addFlag("--serve", serve_, "Make no page, but show the model until Ctrl-C").excludes({output});
    line.add("--max-size", mostMegabytes_, "The most that the page's data may take, in MB")
        .typeName("MB")
        .positive()
        .showDefault();
    line.addFlag("--no-open", noOpen_, "Open no browser");
    line.add("-p,--part", selection_.parts, "Take this node alone, with all below it; can be repeated")
        .typeName("PATH")
        .repeatable();
    line.add("-d,--dataset", selection_.datasets, "Take the results of this name alone; can be repeated")
        .typeName("PATTERN")
        .repeatable();
    line.add("-s,--step", selection_.step.text, std::string("Take these steps alone; ") + StepChoice::Syntax)
        .typeName("STEP");
    line.addFlag("-f,--overwrite", overwrite_, "Replace PAGE if it exists; else that is an error");
    line.addFlag(WorkLimit::Option, selection_.noLimit, WorkLimit::Help);
    line.setCheck([this] {
        if (selection_.input == "-" && output_.empty() && !serve_) {
            throw UsageError("--output is required where the model comes from stdin");
        }
    });
    line.setDetails(std::string(ViewDetails) + PathHelp + ViewExamples);
}

int ViewCommand::run(Terminal& terminal) {
    if (!pageSource().exists()) {
        throw Failure(selection_.input, "can't be shown: this mox was built without its page, for which "
                                        "npm and Node.js are needed (on Debian npm)");
    }
    if (serve_) {
        serveModel(selection_, !noOpen_, terminal);
    } else {
        writePage(terminal);
    }
    return 0;
}

void ViewCommand::writePage(Terminal& terminal) const {
    const auto path = output_.empty() ? defaultOutput(selection_.input) : output_;
    OutputFile output(pathOf(path), overwrite_ || (output_.empty() && isOwnPage(pathOf(path))));
    ViewModel model(selection_);
    ViewPage::Contents contents;
    writeFile(output.temporaryPath(), path, [&](std::ostream& out) {
        explainErrors(selection_.input, [&] {
            contents = ViewPage(model, std::uint64_t{mostMegabytes_} * 1000000).write(out, selection_.input);
        });
    });
    output.commit();
    terminal.note(fmt::format("{}: nodes on the surface: {}, results: {}, data: {}", visibleText(path),
                              model.surface().nodes.size(), contents.results, sizeText(contents.bytes)));
    if (contents.leftOut > 0) {
        terminal.note(
            fmt::format("results left out for want of room: {}; --serve shows all, --max-size makes "
                        "room",
                        contents.leftOut));
    }
    if (!noOpen_ && path != "-") {
        Platform::openOnDesktop(addressOf(pathOf(path)));
    }
}

} // namespace MoxTool
