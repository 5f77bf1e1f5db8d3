#pragma once

#include "common/Terminal.h"

#include <cstdio>
#include <stdexcept>
#include <string>

/// A terminal whose messages a test can read.
class Messages {
public:
    explicit Messages(bool interactive = false, bool colours = false)
        : file(openFile()), shown(file, interactive, colours) {}
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;
    ~Messages() {
        shown.clearProgress();
        std::fclose(file);
    }

    MoxTool::Terminal& terminal() { return shown; }

    /// Everything written so far.
    std::string text() {
        std::rewind(file);
        std::string result;
        for (int letter = std::fgetc(file); letter != EOF; letter = std::fgetc(file)) {
            result += static_cast<char>(letter);
        }
        std::fseek(file, 0, SEEK_END);
        return result;
    }

private:
    static std::FILE* openFile() {
        if (std::FILE* opened = std::tmpfile()) {
            return opened;
        }
        throw std::runtime_error("no temporary file");
    }

    std::FILE* file;
    MoxTool::Terminal shown;
};
