#include "Terminal.h"

#include "Platform.h"

#include <fmt/core.h>

#include <cstdlib>

namespace MoxTool {

namespace {

constexpr std::chrono::milliseconds ProgressInterval{100};

constexpr const char* Red = "\x1B[31m";
constexpr const char* Plain = "\x1B[0m";
constexpr const char* ClearLine = "\r\x1B[K";

bool coloursWanted() {
    const char* noColor = std::getenv("NO_COLOR");
    return noColor == nullptr || *noColor == '\0';
}

} // namespace

Terminal::Terminal(std::FILE* stream, bool interactive, bool colours, bool colouredOutput)
    : stream_(stream), interactive_(interactive), colours_(colours), colouredOutput_(colouredOutput) {}

Terminal::~Terminal() {
    clearProgress();
}

Terminal Terminal::standardError() {
    const bool watched = Platform::isTerminal(stderr);
    return Terminal(stderr, watched, watched && coloursWanted(),
                    Platform::isTerminal(stdout) && coloursWanted());
}

void Terminal::dropColours() {
    colours_ = false;
    colouredOutput_ = false;
}

void Terminal::hideProgress() {
    clearProgress();
    interactive_ = false;
}

void Terminal::hideNotes() {
    hideProgress();
    showsNotes_ = false;
}

void Terminal::error(std::string_view line) {
    clearProgress();
    fmt::print(stream_, "{}{}{}\n", colours_ ? Red : "", line, colours_ ? Plain : "");
}

void Terminal::note(std::string_view line) {
    if (!showsNotes_) {
        return;
    }
    clearProgress();
    fmt::print(stream_, "{}\n", line);
}

void Terminal::progress(std::string_view work, double fraction) {
    const auto now = std::chrono::steady_clock::now();
    if (!interactive_ || now < nextProgress_) {
        return;
    }
    nextProgress_ = now + ProgressInterval;
    progressShows_ = true;
    fmt::print(stream_, "{}{} {:3.0f} %", ClearLine, work, 100 * fraction);
    std::fflush(stream_);
}

void Terminal::clearProgress() {
    if (!progressShows_) {
        return;
    }
    progressShows_ = false;
    fmt::print(stream_, "{}", ClearLine);
    std::fflush(stream_);
}

} // namespace MoxTool
