#include "wrapText.h"

#include "utf8.h"

#include <algorithm>
#include <vector>

namespace MoxTool {

namespace {

constexpr std::size_t NarrowestText = 40;

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    lines.push_back(text);
    return lines;
}

std::size_t indentOf(std::string_view line) {
    return std::min(line.find_first_not_of(' '), line.size());
}

// Where the meaning of a term begins; npos for a line that is none.
std::size_t meaningIn(std::string_view line) {
    const auto gap = line.find("  ", indentOf(line));
    return gap == std::string_view::npos ? gap : line.find_first_not_of(' ', gap);
}

// Whether a line was broken after a sentence although the next word had room.
bool endsEarly(std::string_view line, std::string_view next) {
    return (line.ends_with('.') || line.ends_with(':')) &&
           line.size() + 1 + std::min(next.find(' '), next.size()) <= TextWidth;
}

/// Takes lines one after the other and breaks anew what belongs together.
class Refill {
public:
    explicit Refill(std::size_t width) : width_(width) {}

    void add(std::string_view line) {
        if (!goesOn(line)) {
            flush();
            hang_ = indentOf(line) == 0 ? 0 : meaningIn(line);
            open_ = line;
            isOpen_ = true;
        } else {
            open_ += ' ';
            open_ += line.substr(hang_);
        }
        last_ = line;
    }

    std::string text() {
        flush();
        text_.pop_back();
        return text_;
    }

private:
    bool goesOn(std::string_view line) const {
        return isOpen_ && !last_.empty() && !line.empty() && indentOf(line) == hang_ &&
               !(hang_ == 0 && endsEarly(last_, line));
    }

    void flush() {
        if (isOpen_) {
            text_ += hang_ == std::string::npos ? open_ : wrapLine(open_, width_, hang_);
            text_ += '\n';
        }
    }

    std::size_t width_;
    std::string text_;
    std::string open_; ///< What lines that belong together say.
    std::string_view last_;
    std::size_t hang_ = 0; ///< npos for a line that stays as it is.
    bool isOpen_ = false;
};

} // namespace

std::size_t readableWidth(std::size_t terminal) {
    return terminal == 0 ? TextWidth : std::clamp(terminal, NarrowestText, TextWidth);
}

std::string wrapLine(std::string_view line, std::size_t width, std::size_t hang) {
    std::string text;
    std::size_t column = 0;
    bool isFirst = true;
    while (!line.empty()) {
        // A word with the blanks before it, which count only if it stays on the line.
        const auto start = indentOf(line);
        const auto end = std::min(line.find(' ', start), line.size());
        const auto word = line.substr(start, end - start);
        if (!isFirst && column + start + utf8Length(word) > width) {
            text += '\n' + std::string(hang, ' ');
            column = hang;
        } else {
            text += line.substr(0, start);
            column += start;
        }
        text += word;
        column += utf8Length(word);
        isFirst = false;
        line.remove_prefix(end);
    }
    return text;
}

std::string refillText(std::string_view text, std::size_t width) {
    if (width >= TextWidth) {
        return std::string(text);
    }
    Refill refill(width);
    for (const auto line : linesOf(text)) {
        refill.add(line);
    }
    return refill.text();
}

} // namespace MoxTool
