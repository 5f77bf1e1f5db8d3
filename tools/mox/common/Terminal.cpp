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

Terminal::Terminal(std::FILE* target, bool isInteractive, bool hasColours, bool hasOutputColours)
    : stream(target), interactive(isInteractive), colours(hasColours), colouredOutput(hasOutputColours) {}

Terminal::~Terminal() {
    clearProgress();
}

Terminal Terminal::standardError() {
    const bool watched = Platform::isTerminal(stderr);
    return Terminal(stderr, watched, watched && coloursWanted(),
                    Platform::isTerminal(stdout) && coloursWanted());
}

void Terminal::dropColours() {
    colours = false;
    colouredOutput = false;
}

void Terminal::hideProgress() {
    clearProgress();
    interactive = false;
}

void Terminal::error(std::string_view line) {
    clearProgress();
    fmt::print(stream, "{}{}{}\n", colours ? Red : "", line, colours ? Plain : "");
}

void Terminal::note(std::string_view line) {
    clearProgress();
    fmt::print(stream, "{}\n", line);
}

void Terminal::progress(std::string_view work, double fraction) {
    const auto now = std::chrono::steady_clock::now();
    if (!interactive || now < nextProgress) {
        return;
    }
    nextProgress = now + ProgressInterval;
    progressShows = true;
    fmt::print(stream, "{}{} {:3.0f} %", ClearLine, work, 100 * fraction);
    std::fflush(stream);
}

void Terminal::clearProgress() {
    if (!progressShows) {
        return;
    }
    progressShows = false;
    fmt::print(stream, "{}", ClearLine);
    std::fflush(stream);
}

} // namespace MoxTool
