#include "Terminal.h"

#include "Platform.h"
#include "visibleText.h"
#include "wrapText.h"

#include <fmt/core.h>

#include <cstdlib>
#include <string>

namespace MoxTool {

namespace {

constexpr std::chrono::milliseconds ProgressInterval{100};

constexpr std::size_t NoteIndent = 2; // from the second line on

constexpr const char* Red = "\x1B[31m";
constexpr const char* Plain = "\x1B[0m";
constexpr const char* ClearLine = "\r\x1B[K";

bool coloursWanted() {
    const char* noColor = std::getenv("NO_COLOR");
    return noColor == nullptr || *noColor == '\0';
}

// What a terminal can't take is lost, since there is no better place for it: stderr may be closed, or a file on
// a full disk. The exit code says what matters.
void put(std::FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
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
    put(stream_, fmt::format("{}{}{}\n", colours_ ? Red : "", visibleLine(line), colours_ ? Plain : ""));
}

void Terminal::note(std::string_view line) {
    if (!showsNotes_) {
        return;
    }
    clearProgress();
    const auto text = visibleLine(line);
    const auto width = Platform::terminalWidth(stream_);
    put(stream_, (width == 0 ? text : wrapLine(text, readableWidth(width), NoteIndent)) + "\n");
}

void Terminal::progress(std::string_view work, double fraction) {
    const auto now = std::chrono::steady_clock::now();
    if (!interactive_ || now < nextProgress_) {
        return;
    }
    nextProgress_ = now + ProgressInterval;
    progressShows_ = true;
    put(stream_, fmt::format("{}{} {:3.0f} %", ClearLine, visibleLine(work), 100 * fraction));
    std::fflush(stream_);
}

void Terminal::clearForeignProgress() {
    progressShows_ = interactive_;
    clearProgress();
}

void Terminal::replaceStandardError(std::FILE* stream) {
    if (stream_ == stderr) {
        stream_ = stream;
    }
}

void Terminal::clearProgress() {
    if (!progressShows_) {
        return;
    }
    progressShows_ = false;
    put(stream_, ClearLine);
    std::fflush(stream_);
}

} // namespace MoxTool
