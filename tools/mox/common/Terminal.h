#pragma once

#include <chrono>
#include <cstdio>
#include <string_view>

namespace MoxTool {

/// The messages of a program to its user: errors, notes and the progress of long work.
///
/// Control characters, as in the name of a file, never reach the stream; see visibleLine(). What the stream
/// can't take is lost without a word.
///
/// Progress is one line that overwrites itself; it is shown only on an interactive stream and is cleared
/// before any other message.
class Terminal {
public:
    /// @param stream         Stays open for the lifetime of this object; not owned.
    /// @param interactive    Whether a user watches the stream, so that progress makes sense.
    /// @param colours        Whether errors are red.
    /// @param colouredOutput Whether data on stdout may be coloured.
    Terminal(std::FILE* stream, bool interactive, bool colours, bool colouredOutput = false);
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    /// Clears the progress.
    ~Terminal();

    /// Writes to stderr: interactive if that is a terminal, and coloured if, moreover, `NO_COLOR` is unset or
    /// empty. The same goes for stdout and its colours.
    static Terminal standardError();

    /// Turns off all colours, on stderr and on stdout.
    void dropColours();
    /// Shows no progress from now on.
    void hideProgress();
    /// Shows errors alone from now on.
    void hideNotes();
    /// Whether data on stdout may be coloured.
    bool outputColours() const { return colouredOutput_; }

    /// Writes one line.
    void error(std::string_view line);
    /// Writes one line.
    void note(std::string_view line);

    /// Shows how far the work has come, at most ten times a second.
    /// @param fraction From 0 to 1.
    void progress(std::string_view work, double fraction);
    void clearProgress();
    /// Clears the progress that another process may have left when it died.
    void clearForeignProgress();
    /// In a process whose stderr is set apart: writes to this stream instead, if it wrote to stderr.
    void replaceStandardError(std::FILE* stream);

private:
    std::FILE* stream_;
    bool interactive_;
    bool colours_;
    bool colouredOutput_;
    bool showsNotes_ = true;
    bool progressShows_ = false;
    std::chrono::steady_clock::time_point nextProgress_{};
};

} // namespace MoxTool
