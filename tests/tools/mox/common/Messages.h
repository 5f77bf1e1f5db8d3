#pragma once

#include "common/Terminal.h"

#include <cstdio>
#include <stdexcept>
#include <string>

/// A terminal whose messages a test can read.
class Messages {
public:
    explicit Messages(bool interactive = false, bool colours = false)
        : file_(openFile()), shown_(file_, interactive, colours) {}
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;
    ~Messages() {
        shown_.clearProgress();
        std::fclose(file_);
    }

    MoxTool::Terminal& terminal() { return shown_; }

    /// Everything written so far.
    std::string text() {
        std::rewind(file_);
        std::string result;
        for (int letter = std::fgetc(file_); letter != EOF; letter = std::fgetc(file_)) {
            result += static_cast<char>(letter);
        }
        std::fseek(file_, 0, SEEK_END);
        return result;
    }

private:
    static std::FILE* openFile() {
        if (std::FILE* opened = std::tmpfile()) {
            return opened;
        }
        throw std::runtime_error("no temporary file");
    }

    std::FILE* file_;
    MoxTool::Terminal shown_;
};
